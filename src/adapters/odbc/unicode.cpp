#include "adapters/odbc/unicode.h"

#include "platform/database_error.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>

namespace qx::odbc {
namespace {

constexpr char32_t firstBeyond = 0x10000;
constexpr char32_t leadMark = 0xD800;
constexpr char32_t trailMark = 0xDC00;
constexpr unsigned halfBits = 10;
constexpr char32_t halfMask = 0x3FF;
constexpr char32_t replacement = 0xFFFD;

[[noreturn]] void refuse(std::string_view text, const char* cause) {
  constexpr std::size_t shown = 40;
  std::string begin;
  for (const char c : text.substr(0, shown))
    begin += (c >= ' ' && static_cast<unsigned char>(c) < 0x7F) ? c : '.';
  throw StatementError("the text \"" + begin + "\" " + cause, 0);
}

void appendUtf8(std::string& text, char32_t character) {
  std::array<utf8proc_uint8_t, 4> bytes{};
  const auto length = utf8proc_encode_char(static_cast<utf8proc_int32_t>(character), bytes.data());
  text.append(bytes.begin(), bytes.begin() + length);
}

bool isHalf(char16_t unit, char32_t mark) { return (unit & ~halfMask) == mark; }

} // namespace

std::u16string toUtf16(std::string_view text) {
  std::u16string wide;
  wide.reserve(text.size());
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): bytes as the library names them
  const auto* at = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
  auto left = static_cast<utf8proc_ssize_t>(text.size());
  while (left > 0) {
    utf8proc_int32_t character = *at;
    utf8proc_ssize_t length = 1;
    if (character >= 0x80) length = utf8proc_iterate(at, left, &character);
    if (length < 0) refuse(text, "is not in UTF-8");
    if (character == 0) refuse(text, "holds the character 0, which the database cannot store");
    const auto unit = static_cast<char32_t>(character);
    if (unit < firstBeyond) {
      wide += static_cast<char16_t>(unit);
    } else {
      wide += static_cast<char16_t>(leadMark + ((unit - firstBeyond) >> halfBits));
      wide += static_cast<char16_t>(trailMark + ((unit - firstBeyond) & halfMask));
    }
    at += length;
    left -= length;
  }
  return wide;
}

std::string toUtf8(std::u16string_view text) {
  std::string narrow;
  narrow.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char16_t unit = text[i];
    if (unit < 0x80) {
      narrow += static_cast<char>(unit);
    } else if (isHalf(unit, leadMark) && i + 1 < text.size() && isHalf(text[i + 1], trailMark)) {
      appendUtf8(narrow, firstBeyond + ((unit & halfMask) << halfBits) + (text[i + 1] & halfMask));
      ++i;
    } else {
      const bool half = isHalf(unit, leadMark) || isHalf(unit, trailMark);
      appendUtf8(narrow, half ? replacement : unit);
    }
  }
  return narrow;
}

} // namespace qx::odbc
