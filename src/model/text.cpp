#include "model/text.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

std::string_view trimmed(std::string_view text, std::string_view blanks) {
  const auto first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

struct CharacterForm {
  unsigned char first, last;          ///< range of the first byte
  unsigned char secondFrom, secondTo; ///< range of the second byte
  std::size_t length;
};

// The well-formed sequences: no overlong forms, no surrogates, nothing above U+10FFFF.
constexpr std::array forms{CharacterForm{0x00, 0x7F, 0x00, 0x00, 1}, CharacterForm{0xC2, 0xDF, 0x80, 0xBF, 2},
                           CharacterForm{0xE0, 0xE0, 0xA0, 0xBF, 3}, CharacterForm{0xE1, 0xEC, 0x80, 0xBF, 3},
                           CharacterForm{0xED, 0xED, 0x80, 0x9F, 3}, CharacterForm{0xEE, 0xEF, 0x80, 0xBF, 3},
                           CharacterForm{0xF0, 0xF0, 0x90, 0xBF, 4}, CharacterForm{0xF1, 0xF3, 0x80, 0xBF, 4},
                           CharacterForm{0xF4, 0xF4, 0x80, 0x8F, 4}};

} // namespace

std::string asciiLower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = asciiLower(c);
  return lower;
}

bool equalCodes(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

std::string lowerCase(std::string_view text) {
  std::string lower = asciiLower(text);
  for (std::size_t i = 1; i < lower.size(); ++i)
    if (lower[i - 1] == accentedLead) lower[i] = accentedLower(lower[i]);
  return lower;
}

std::string_view trimBlanks(std::string_view text) { return trimmed(text, " "); }

std::string_view trimWhitespace(std::string_view text) { return trimmed(text, " \t\r\n"); }

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = std::min(text.find('\n'), text.size());
  std::string_view line = text.substr(0, end);
  if (line.ends_with('\r')) line.remove_suffix(1);
  text.remove_prefix(std::min(end + 1, text.size()));
  return line;
}

std::size_t utf8Length(std::string_view text) {
  if (text.empty()) return 0;
  const auto first = static_cast<unsigned char>(text.front());
  for (const CharacterForm& form : forms) {
    if (first < form.first || first > form.last) continue;
    if (text.size() < form.length) return 0;
    for (std::size_t i = 1; i < form.length; ++i)
      if (beginsCharacter(text[i])) return 0;
    if (form.length == 1) return 1;
    const auto second = static_cast<unsigned char>(text[1]);
    return second >= form.secondFrom && second <= form.secondTo ? form.length : 0;
  }
  return 0;
}

std::size_t characterCount(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count_if(text, beginsCharacter));
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; at < text.size(); ++at)
    if (beginsCharacter(text[at]) && count-- == 0) break;
  return text.substr(0, at);
}

std::string oneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  bool inBreak = false;
  for (const char c : text) {
    const bool isBreak = c == '\r' || c == '\n';
    if (!isBreak)
      line += c;
    else if (!inBreak)
      line += ' ';
    inBreak = isBreak;
  }
  return line;
}

} // namespace qx
