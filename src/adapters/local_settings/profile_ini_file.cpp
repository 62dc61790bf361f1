#include "adapters/local_settings/profile_ini_file.h"

#include "adapters/local_settings/ini_line.h"
#include "adapters/local_settings/shared_file.h"
#include "model/code_page.h"
#include "platform/column_name.h"

#include <algorithm>
#include <stdexcept>

namespace qx {
namespace {

std::string toUtf8(std::string_view bytes) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(mark)) return std::string(bytes.substr(mark.size()));
  return textFromCodePage(bytes);
}

std::string_view unquoted(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool sameName(std::string_view a, std::string_view b) { return foldedNameHash(a) == foldedNameHash(b); }

std::string_view findValue(std::string_view text, std::string_view section, std::string_view key) {
  bool inSection = false;
  while (!text.empty()) {
    const std::string_view line = takeIniLine(text);
    if (line.starts_with(';')) continue;
    if (line.starts_with('[')) {
      inSection = sameName(withoutLineBlanks(line.substr(1, line.find(']') - 1)), section);
      continue;
    }
    const auto equals = line.find('=');
    if (inSection && equals != std::string_view::npos &&
        sameName(withoutLineBlanks(line.substr(0, equals)), key))
      return unquoted(withoutLineBlanks(line.substr(equals + 1)));
  }
  return {};
}

/// The file as named, else with the separators of this system.
std::optional<std::string> readProfile(std::string_view file) {
  auto content = SharedFile(file).read();
  if (content || file.find('\\') == std::string_view::npos) return content;
  std::string path(file);
  std::ranges::replace(path, '\\', '/');
  return SharedFile(path).read();
}

} // namespace

std::string profileValue(std::string_view file, std::string_view section, std::string_view key) {
  return std::string(findValue(toUtf8(file), withoutLineBlanks(section), withoutLineBlanks(key)));
}

std::string ProfileIniFile::read(std::string_view file, std::string_view section, std::string_view key) {
  try {
    const auto content = readProfile(file);
    return content ? profileValue(*content, section, key) : std::string();
  } catch (const std::runtime_error& failure) {
    diagnostics_.report({"profile file", failure.what(), {}});
    return {};
  }
}

} // namespace qx
