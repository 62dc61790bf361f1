#include "adapters/local_settings/setting_text.h"

#include <optional>

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

} // namespace qx
