// Characters and letters of UTF-8 texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// The line separator of all texts that the component stores.
inline constexpr std::string_view crlf = "\r\n";

/// The byte order mark of UTF-8.
inline constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";

/// An ASCII letter in lower case, every other byte as it is.
constexpr char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }
std::string asciiLower(std::string_view text);

/// Equal but for the case of ASCII letters, as the databases compare codes.
bool equalCodes(std::string_view a, std::string_view b);

/// The first byte of the letters U+00C0 to U+00FF in UTF-8.
inline constexpr char accentedLead = '\xC3';
/// The second byte of such a letter in lower or upper case. "×", "÷", "ß" and "ÿ" (whose other case lies
/// elsewhere) stay as they are.
constexpr char accentedLower(char second) {
  const auto byte = static_cast<unsigned char>(second);
  return byte >= 0x80 && byte <= 0x9E && byte != 0x97 ? static_cast<char>(byte + 0x20) : second;
}
constexpr char accentedUpper(char second) {
  const auto byte = static_cast<unsigned char>(second);
  return byte >= 0xA0 && byte <= 0xBE && byte != 0xB7 ? static_cast<char>(byte - 0x20) : second;
}

/// ASCII and accented letters in lower case, for searches.
std::string lowerCase(std::string_view text);

/// Without blanks at either end.
std::string_view trimBlanks(std::string_view text);
/// Without blanks, tabs and line breaks at either end.
std::string_view trimWhitespace(std::string_view text);

/// Takes the next line off the front of a text, without its line end.
std::string_view takeLine(std::string_view& text);

/// Whether the byte begins a character of a well-formed text.
constexpr bool beginsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80; }

/// The number of bytes of the well-formed character at the front; 0 when there is none.
std::size_t utf8Length(std::string_view text);

/// The number of characters of a well-formed text.
std::size_t characterCount(std::string_view text);

/// The first `count` characters (not bytes).
std::string_view firstCharacters(std::string_view text, std::size_t count);

/// A hash of bytes (FNV-1a) that is the same in every process and build.
class TextHash {
public:
  constexpr void add(char c) {
    value_ ^= static_cast<unsigned char>(c);
    value_ *= 1099511628211ULL;
  }
  constexpr std::uint64_t value() const { return value_; }

private:
  std::uint64_t value_ = 14695981039346656037ULL;
};

constexpr std::uint64_t textHash(std::string_view text) {
  TextHash hash;
  for (const char c : text) hash.add(c);
  return hash.value();
}

/// The text with every run of line breaks replaced by one blank, so that a value cannot forge a line of a
/// list or log.
std::string oneLine(std::string_view text);

} // namespace qx
