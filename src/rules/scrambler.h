// Scrambles and unscrambles texts by four code tables in turn.
#pragma once

#include "rules/code_tables.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// The sum of a UTF-8 text's bytes in code page 1252, where missing characters are "?". Raises
/// `std::overflow_error` when it exceeds 32 bits.
std::int32_t textCheckSum(std::string_view text);

/// A character's table depends on its position in the text, counted from 1 and in characters, not bytes.
/// Characters other than the 94 of the tables stay as they are.
class Scrambler {
public:
  /// The tables must be permutations.
  explicit Scrambler(const CodeTables& tables);

  /// Scrambles and unscrambles any UTF-8 text.
  std::string Encrypt(std::string_view strText) const { return substitute(strText, encrypting_); }
  std::string Decrypt(std::string_view strText) const { return substitute(strText, decrypting_); }
  static std::int32_t CheckSum(std::string_view strText) { return textCheckSum(strText); }

  /// The same for one single-byte character at a position.
  char encrypted(std::size_t position, char c) const { return at(encrypting_, position, c); }
  char decrypted(std::size_t position, char c) const { return at(decrypting_, position, c); }

  /// The banner of a scrambled file, between the quotes of its first line.
  const std::string& banner() const { return banner_; }
  /// The same for a version-1 file: its plain banner scrambled with the tables.
  const std::string& banner1() const { return banner1_; }

private:
  using Substitution = std::array<std::array<char, 256>, 4>;

  static char at(const Substitution& substitution, std::size_t position, char c);
  static std::string substitute(std::string_view text, const Substitution& substitution);

  Substitution encrypting_{};
  Substitution decrypting_{};
  std::string banner_;
  std::string banner1_;
};

} // namespace qx
