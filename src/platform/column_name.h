// Column names compare without regard to case, and "ß" is the same as "ss".
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// The hash of a name as the comparison sees it: ASCII letters and the umlauts in lower case, "ß" as "ss".
constexpr std::uint64_t foldedNameHash(std::string_view name) {
  std::uint64_t hash = 14695981039346656037ULL;
  const auto add = [&hash](unsigned char byte) {
    hash ^= byte;
    hash *= 1099511628211ULL;
  };
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto byte = static_cast<unsigned char>(name[i]);
    if (byte == 0xC3 && i + 1 < name.size()) {
      const auto second = static_cast<unsigned char>(name[++i]);
      if (second == 0x9F) {
        add('s');
        add('s');
      } else {
        add(byte);
        // U+00C0..U+00DE are the capitals of U+00E0..U+00FE, the multiplication sign excepted.
        add(second >= 0x80 && second <= 0x9E && second != 0x97 ? static_cast<unsigned char>(second + 0x20)
                                                               : second);
      }
    } else {
      add(byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + ('a' - 'A')) : byte);
    }
  }
  return hash;
}

/// The name of a column, hashed where it is written when it is a literal. Does not own the text.
class ColumnName {
public:
  template <std::size_t N>
  consteval ColumnName(const char (&literal)[N]) : text_(literal, N - 1), hash_(foldedNameHash(text_)) {}
  explicit constexpr ColumnName(std::string_view name) : text_(name), hash_(foldedNameHash(name)) {}

  constexpr std::string_view text() const { return text_; }
  constexpr std::uint64_t hash() const { return hash_; }
  friend constexpr bool operator==(const ColumnName& a, const ColumnName& b) { return a.hash_ == b.hash_; }

private:
  std::string_view text_;
  std::uint64_t hash_;
};

} // namespace qx
