#include "adapters/local_settings/ini_text.h"

#include "model/text.h"

#include <algorithm>
#include <optional>
#include <stdexcept>

namespace qx {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool isCritical(char character) {
  constexpr std::string_view critical = "%;#=\"'[]/\\";
  constexpr unsigned char firstPrintable = 0x20;
  constexpr unsigned char deleteCharacter = 0x7F;
  const auto byte = static_cast<unsigned char>(character);
  return byte < firstPrintable || byte == deleteCharacter ||
         critical.find(character) != std::string_view::npos;
}

std::optional<unsigned> hexValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return std::nullopt;
}

/// The character that begins at `at` in its encoded form, or null.
std::optional<char> encodedAt(std::string_view text, std::size_t at) {
  if (text[at] != '%' || at + 2 >= text.size()) return std::nullopt;
  const auto high = hexValue(text[at + 1]);
  const auto low = hexValue(text[at + 2]);
  if (!high || !low) return std::nullopt;
  return static_cast<char>(*high * 16 + *low);
}

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

std::string encodeSetting(std::string_view text) {
  std::string encoded;
  encoded.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool outer = at == 0 || at + 1 == text.size();
    if (isCritical(text[at]) || (outer && text[at] == ' ')) {
      const auto byte = static_cast<unsigned char>(text[at]);
      encoded += '%';
      encoded += hexDigits[byte / 16];
      encoded += hexDigits[byte % 16];
    } else {
      encoded += text[at];
    }
  }
  return encoded;
}

std::string decodeSetting(std::string_view text) {
  std::string decoded;
  decoded.reserve(text.size());
  for (std::size_t at = 0; at < text.size(); ++at) {
    const auto character = encodedAt(text, at);
    decoded += character.value_or(text[at]);
    if (character) at += 2;
  }
  return decoded;
}

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
