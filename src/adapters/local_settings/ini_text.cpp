#include "adapters/local_settings/ini_text.h"

#include "adapters/local_settings/ini_line.h"
#include "adapters/local_settings/setting_text.h"
#include "model/text.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace qx {
namespace {

std::string sectionName(std::string_view application, std::string_view section) {
  return encodeSetting(application) + "/" + encodeSetting(section);
}

/// An empty key becomes "%", which no encoded key is.
std::string keyName(std::string_view key) { return key.empty() ? "%" : encodeSetting(key); }

struct IniPlace {
  std::optional<std::string_view> entry; ///< the line of the key, without its blanks
  std::size_t sectionEnd = 0;            ///< behind the last entry of the section; 0 without such a section
};

/// What begins with "[" ends the section before it, closed or not.
bool opensSection(std::string_view line, std::string_view section) {
  const auto close = line.find(']');
  return close != std::string_view::npos && equalCodes(withoutLineBlanks(line.substr(1, close - 1)), section);
}

/// The first entry of the key counts, as does the first section when there is none.
IniPlace findEntry(std::string_view content, std::string_view section, std::string_view key) {
  if (content.find('\0') != std::string_view::npos)
    throw std::runtime_error("the local settings file is no text file");
  constexpr std::string_view mark = "\xEF\xBB\xBF";
  std::string_view rest = content;
  if (rest.starts_with(mark)) rest.remove_prefix(mark.size());
  IniPlace place;
  bool inSection = false;
  bool inFirst = false;
  while (!rest.empty()) {
    const std::string_view line = takeIniLine(rest);
    if (line.empty() || line.starts_with(';') || line.starts_with('#')) continue;
    if (line.starts_with('[')) {
      inSection = opensSection(line, section);
      inFirst = inSection && place.sectionEnd == 0;
    } else if (inSection && equalCodes(withoutLineBlanks(line.substr(0, line.find('='))), key)) {
      place.entry = line;
      return place;
    }
    if (inFirst) place.sectionEnd = content.size() - rest.size();
  }
  return place;
}

} // namespace

std::string settingIn(std::string_view content, std::string_view application, std::string_view section,
                      std::string_view key) {
  const auto entry = findEntry(content, sectionName(application, section), keyName(key)).entry;
  if (!entry || entry->find('=') == std::string_view::npos) return {};
  return decodeSetting(withoutLineBlanks(entry->substr(entry->find('=') + 1)));
}

std::string withSetting(std::string_view content, std::string_view application, std::string_view section,
                        std::string_view key, std::string_view value) {
  const std::string name = sectionName(application, section);
  const std::string written = keyName(key) + " = " + encodeSetting(value);
  const std::string_view entry = withoutLineBlanks(written);
  const IniPlace place = findEntry(content, name, keyName(key));
  std::string text(content);
  if (place.entry) {
    const auto at = static_cast<std::size_t>(place.entry->data() - content.data());
    return text.replace(at, place.entry->size(), entry);
  }
  const std::string_view lineEnd = content.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
  const bool endsInLine = !text.empty() && !text.ends_with('\n');
  if (place.sectionEnd == 0) {
    if (endsInLine) text += lineEnd;
    if (!text.empty()) text += lineEnd;
    return text.append("[").append(name).append("]").append(lineEnd).append(entry).append(lineEnd);
  }
  const bool cut = place.sectionEnd == text.size() && endsInLine;
  std::string line(cut ? lineEnd : "");
  return text.insert(place.sectionEnd, line.append(entry).append(lineEnd));
}

} // namespace qx
