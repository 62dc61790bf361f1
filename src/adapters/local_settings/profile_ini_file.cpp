#include "adapters/local_settings/profile_ini_file.h"

#include "adapters/local_settings/ini_line.h"
#include "adapters/local_settings/shared_file.h"
#include "platform/column_name.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

namespace qx {
namespace {

/// Code points of the bytes 80 to 9F. The five bytes that the code page leaves out keep their number.
constexpr std::array<std::uint16_t, 32> upperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

void appendUtf8(std::string& text, unsigned codePoint) {
  if (codePoint < 0x80) {
    text += static_cast<char>(codePoint);
  } else if (codePoint < 0x800) {
    text += static_cast<char>(0xC0U | (codePoint >> 6U));
    text += static_cast<char>(0x80U | (codePoint & 0x3FU));
  } else {
    text += static_cast<char>(0xE0U | (codePoint >> 12U));
    text += static_cast<char>(0x80U | ((codePoint >> 6U) & 0x3FU));
    text += static_cast<char>(0x80U | (codePoint & 0x3FU));
  }
}

std::string toUtf8(std::string_view bytes) {
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  if (bytes.starts_with(mark)) return std::string(bytes.substr(mark.size()));
  std::string text;
  text.reserve(bytes.size());
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    appendUtf8(text, byte >= 0x80 && byte < 0xA0 ? upperControls.at(byte - 0x80U) : byte);
  }
  return text;
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
