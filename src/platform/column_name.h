// Column names compare without regard to case, and "ß" is the same as "ss".
#pragma once

#include "model/text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// The hash of a name as the comparison sees it: ASCII letters and the umlauts in lower case, "ß" as "ss".
constexpr std::uint64_t foldedNameHash(std::string_view name) {
  TextHash hash;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (name[i] != accentedLead || i + 1 == name.size()) {
      hash.add(asciiLower(name[i]));
    } else if (name[++i] == '\x9F') {
      hash.add('s');
      hash.add('s');
    } else {
      hash.add(accentedLead);
      hash.add(accentedLower(name[i]));
    }
  }
  return hash.value();
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
