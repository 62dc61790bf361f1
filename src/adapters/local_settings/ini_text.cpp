#include "adapters/local_settings/ini_text.h"

#include "adapters/local_settings/setting_text.h"
#include "model/text.h"

#include <algorithm>
#include <stdexcept>

namespace qx {
namespace {

std::string sectionName(std::string_view application, std::string_view section) {
  return encodeSetting(application) + "/" + encodeSetting(section);
}

/// An empty key becomes "%", which no encoded key can be.
std::string keyName(std::string_view key) { return key.empty() ? "%" : encodeSetting(key); }

IniEntry findSetting(std::string_view content, std::string_view section, std::string_view key) {
  if (content.find('\0') != std::string_view::npos)
    throw std::runtime_error("the local settings file is not a text file");
  return findIniEntry(content, section, key, {";#", equalCodes, true});
}

} // namespace

IniEntry findIniEntry(std::string_view content, std::string_view section, std::string_view key,
                      const IniRules& rules) {
  std::string_view rest = content;
  if (rest.starts_with(utf8Mark)) rest.remove_prefix(utf8Mark.size());
  IniEntry found;
  bool inSection = false;
  bool inFirst = false;
  while (!rest.empty()) {
    const std::string_view line = trimWhitespace(takeLine(rest));
    if (line.empty() || rules.commentMarks.find(line.front()) != std::string_view::npos) continue;
    const auto equals = line.find('=');
    if (line.starts_with('[')) {
      const auto close = line.find(']');
      inSection = close != std::string_view::npos &&
                  rules.sameName(trimWhitespace(line.substr(1, close - 1)), section);
      inFirst = inSection && found.sectionEnd == 0;
    } else if (inSection && (rules.bareKeys || equals != std::string_view::npos) &&
               rules.sameName(trimWhitespace(line.substr(0, equals)), key)) {
      found.line = line;
      if (equals != std::string_view::npos) found.value = trimWhitespace(line.substr(equals + 1));
      return found;
    }
    if (inFirst) found.sectionEnd = content.size() - rest.size();
  }
  return found;
}

std::string settingIn(std::string_view content, std::string_view application, std::string_view section,
                      std::string_view key) {
  return decodeSetting(findSetting(content, sectionName(application, section), keyName(key)).value);
}

std::string withSetting(std::string_view content, std::string_view application, std::string_view section,
                        std::string_view key, std::string_view value) {
  const std::string name = sectionName(application, section);
  const std::string written = keyName(key) + " = " + encodeSetting(value);
  const std::string_view entry = trimWhitespace(written);
  const IniEntry found = findSetting(content, name, keyName(key));
  std::string text(content);
  if (found.line) {
    const auto at = static_cast<std::size_t>(found.line->data() - content.data());
    return text.replace(at, found.line->size(), entry);
  }
  const std::string_view lineEnd = content.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
  const bool endsInLine = !text.empty() && !text.ends_with('\n');
  if (found.sectionEnd == 0) {
    if (endsInLine) text += lineEnd;
    if (!text.empty()) text += lineEnd;
    return text.append("[").append(name).append("]").append(lineEnd).append(entry).append(lineEnd);
  }
  const bool cut = found.sectionEnd == text.size() && endsInLine;
  std::string line(cut ? lineEnd : "");
  return text.insert(found.sectionEnd, line.append(entry).append(lineEnd));
}

} // namespace qx
