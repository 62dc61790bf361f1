#include "adapters/local_settings/profile_ini_file.h"

#include "adapters/local_settings/file_content.h"
#include "adapters/local_settings/ini_text.h"
#include "model/code_page.h"
#include "model/text.h"
#include "platform/column_name.h"
#include "platform/path_text.h"

#include <algorithm>
#include <stdexcept>

namespace qx {
namespace {

std::string toUtf8(std::string_view bytes) {
  return bytes.starts_with(utf8Mark) ? std::string(bytes) : textFromCodePage(bytes);
}

std::string_view unquoted(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

bool sameName(std::string_view a, std::string_view b) { return foldedNameHash(a) == foldedNameHash(b); }

/// The file as named, else with this system's path separators.
std::optional<std::string> readProfile(std::string_view file) {
  auto content = contentOf(pathOf(file));
  if (content || file.find('\\') == std::string_view::npos) return content;
  std::string path(file);
  std::ranges::replace(path, '\\', '/');
  return contentOf(pathOf(path));
}

} // namespace

std::string profileValue(std::string_view file, std::string_view section, std::string_view key) {
  const std::string text = toUtf8(file);
  const IniRules rules{";", sameName, false};
  return std::string(unquoted(findIniEntry(text, trimWhitespace(section), trimWhitespace(key), rules).value));
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
