#include "cli/settings_file.h"

#include "cli/terminal_text.h"
#include "model/text.h"
#include "program/program_error.h"

#include <algorithm>
#include <charconv>

namespace qx::cli {
namespace {

std::string encoded(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c == '%')
      line += "%25";
    else if (c == '\r')
      line += "%0D";
    else if (c == '\n')
      line += "%0A";
    else
      line += c;
  }
  return line;
}

std::string decoded(std::string_view line) {
  std::string text;
  while (!line.empty()) {
    unsigned byte = 0;
    const std::string_view digits = line.substr(1, 2);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    const bool code = line.front() == '%' && digits.size() == 2 && error == std::errc() &&
                      end == digits.data() + digits.size();
    text += code ? static_cast<char>(byte) : line.front();
    line.remove_prefix(code ? 3 : 1);
  }
  return text;
}

struct Refusal {
  std::string file;
  std::string nextStep;

  [[noreturn]] void raise(std::int64_t line, const std::string& reason, const std::string& key = {}) const {
    throw ProgramError(ExitCode::BadInput, reason, nextStep, {file, line, key});
  }
};

} // namespace

void writeSettings(std::ostream& file, const std::vector<FileSetting>& settings) {
  std::string_view section;
  for (const FileSetting& entry : settings) {
    if (entry.section != section) file << (section.empty() ? "[" : "\n[") << entry.section << "]\n";
    section = entry.section;
    file << entry.key << '=' << encoded(entry.setting) << '\n';
  }
}

std::vector<FileSetting> readSettings(std::string_view text, const std::string& fileName,
                                      const std::string& nextStep) {
  const Refusal refusal{fileName, nextStep};
  if (text.starts_with(utf8Mark)) text.remove_prefix(utf8Mark.size());
  std::vector<FileSetting> settings;
  std::string section;
  for (std::int64_t number = 1; !text.empty(); ++number) {
    const std::string_view line = takeLine(text);
    const std::string_view trimmed = trimBlanks(line);
    if (trimmed.empty() || trimmed.front() == ';' || trimmed.front() == '#') continue;
    if (trimmed.front() == '[' && trimmed.back() == ']') {
      section = composed(trimmed.substr(1, trimmed.size() - 2));
      continue;
    }
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos || section.empty())
      refusal.raise(number, section.empty() ? "a [section] is expected" : "an option is expected: KEY=VALUE");
    FileSetting entry{section, composed(trimBlanks(line.substr(0, sign))), decoded(line.substr(sign + 1)),
                      number};
    const auto earlier = std::ranges::find_if(settings, [&](const FileSetting& other) {
      return other.section == entry.section && other.key == entry.key;
    });
    if (earlier != settings.end())
      refusal.raise(number,
                    "the option '" + section + "' '" + entry.key + "' is already given on line " +
                        std::to_string(earlier->line),
                    entry.key);
    settings.push_back(std::move(entry));
  }
  return settings;
}

} // namespace qx::cli
