#include "adapters/local_settings/ini_reader.h"

#include "model/text.h"

#include <algorithm>

namespace qx {
namespace {

/// Takes the next line off the front of the text, without its end and its outer blanks.
std::string_view takeLine(std::string_view& text) {
  const auto end = std::min(text.find('\n'), text.size());
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return trimWhitespace(line);
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
    const std::string_view line = takeLine(rest);
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

} // namespace qx
