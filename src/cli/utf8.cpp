#include "cli/utf8.h"

#include <array>
#include <utility>

namespace qx::cli {
namespace {

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

bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80; }

} // namespace

std::size_t utf8Length(std::string_view text) {
  if (text.empty()) return 0;
  const auto first = static_cast<unsigned char>(text.front());
  for (const CharacterForm& form : forms) {
    if (first < form.first || first > form.last) continue;
    if (text.size() < form.length) return 0;
    for (std::size_t i = 1; i < form.length; ++i)
      if (!isContinuation(text[i])) return 0;
    if (form.length == 1) return 1;
    const auto second = static_cast<unsigned char>(text[1]);
    return second >= form.secondFrom && second <= form.secondTo ? form.length : 0;
  }
  return 0;
}

std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (const char c : text)
    if (!isContinuation(c)) ++count;
  return count;
}

std::string composeUmlauts(std::string_view text) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 6> umlauts{{{"a\u0308", "ä"},
                                                                                  {"o\u0308", "ö"},
                                                                                  {"u\u0308", "ü"},
                                                                                  {"A\u0308", "Ä"},
                                                                                  {"O\u0308", "Ö"},
                                                                                  {"U\u0308", "Ü"}}};
  std::string composed;
  while (!text.empty()) {
    std::size_t taken = 0;
    for (const auto& [apart, joined] : umlauts)
      if (text.starts_with(apart)) {
        composed += joined;
        taken = apart.size();
      }
    if (taken == 0) {
      composed += text.front();
      taken = 1;
    }
    text.remove_prefix(taken);
  }
  return composed;
}

std::string fitted(std::string_view text, std::size_t width) {
  std::string line;
  std::size_t count = 0;
  while (!text.empty() && text.front() != '\r' && text.front() != '\n' && count < width) {
    const std::size_t length = utf8Length(text);
    const bool printable = length > 1 || (length == 1 && text.front() >= ' ' && text.front() != '\x7F');
    if (printable)
      line += text.substr(0, length);
    else
      line += ' ';
    text.remove_prefix(length == 0 ? 1 : length);
    ++count;
  }
  return line.append(width - count, ' ');
}

} // namespace qx::cli
