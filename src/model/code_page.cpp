#include "model/code_page.h"

#include "model/text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace qx {
namespace {

/// The characters of the bytes 80 to 9F; every other byte equals its code point.
constexpr std::array<char16_t, 32> upperControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr bool isAscii(char c) { return static_cast<unsigned char>(c) < 0x80; }

char16_t characterOf(unsigned char byte) {
  return byte >= 0x80 && byte < 0xA0 ? upperControls[byte - 0x80U] : byte;
}

/// The byte of a code point above 7F; 0 when there is none.
unsigned char byteOf(std::uint32_t character) {
  if (character >= 0xA0 && character <= 0xFF) return static_cast<unsigned char>(character);
  const auto* const found = std::ranges::find(upperControls, character);
  return found == upperControls.end() ? 0
                                      : static_cast<unsigned char>(0x80 + (found - upperControls.begin()));
}

void appendUtf8(std::string& text, char16_t character) {
  constexpr unsigned sixBits = 0x3F;
  if (character < 0x800) {
    text += static_cast<char>(0xC0U | (character >> 6U));
  } else {
    text += static_cast<char>(0xE0U | (character >> 12U));
    text += static_cast<char>(0x80U | ((character >> 6U) & sixBits));
  }
  text += static_cast<char>(0x80U | (character & sixBits));
}

/// The code point of a well-formed sequence of two or more bytes.
std::uint32_t decoded(std::string_view sequence) {
  std::uint32_t character = static_cast<unsigned char>(sequence.front()) & (0x7FU >> sequence.size());
  for (const char c : sequence.substr(1))
    character = (character << 6U) | (static_cast<unsigned char>(c) & 0x3FU);
  return character;
}

} // namespace

void appendTextFromCodePage(std::string& text, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(bytes, isAscii) - bytes.begin());
    text += bytes.substr(0, plain);
    bytes.remove_prefix(plain);
    for (; !bytes.empty() && !isAscii(bytes.front()); bytes.remove_prefix(1))
      appendUtf8(text, characterOf(static_cast<unsigned char>(bytes.front())));
  }
}

std::string textFromCodePage(std::string_view bytes) {
  std::string text;
  appendTextFromCodePage(text, bytes);
  return text;
}

std::size_t appendCodePage(std::string& bytes, std::string_view text) {
  std::size_t replaced = 0;
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(text, isAscii) - text.begin());
    bytes += text.substr(0, plain);
    text.remove_prefix(plain);
    while (!text.empty() && !isAscii(text.front())) {
      const std::size_t length = utf8Length(text);
      const unsigned char byte = length == 0 ? 0 : byteOf(decoded(text.substr(0, length)));
      bytes += byte == 0 ? '?' : static_cast<char>(byte);
      if (byte == 0) ++replaced;
      text.remove_prefix(std::max<std::size_t>(length, 1));
    }
  }
  return replaced;
}

} // namespace qx
