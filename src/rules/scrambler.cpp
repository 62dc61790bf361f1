#include "rules/scrambler.h"

#include "model/code_page.h"
#include "model/text.h"

#include <limits>
#include <stdexcept>

namespace qx {
namespace {

/// The table of a position, by its remainder modulo 7: four of seven share the last one.
constexpr std::array<std::size_t, 7> tableOfRemainder{0, 1, 2, 3, 3, 3, 3};

constexpr std::size_t indexOf(char c) { return static_cast<unsigned char>(c); }

} // namespace

std::int32_t textCheckSum(std::string_view text) {
  std::string bytes;
  appendCodePage(bytes, text);
  std::int64_t sum = 0;
  for (const char c : bytes) sum += static_cast<std::int64_t>(indexOf(c));
  if (sum > std::numeric_limits<std::int32_t>::max())
    throw std::overflow_error("the sum of the characters exceeds 32 bits");
  return static_cast<std::int32_t>(sum);
}

Scrambler::Scrambler(const CodeTables& tables) {
  for (std::size_t table = 0; table < tables.tables.size(); ++table) {
    for (std::size_t i = 0; i < encrypting_[table].size(); ++i)
      encrypting_[table][i] = decrypting_[table][i] = static_cast<char>(i);
    char plain = ' ';
    for (const char scrambled : tables.tables[table]) {
      if (plain == '"') ++plain;
      encrypting_[table][indexOf(plain)] = scrambled;
      decrypting_[table][indexOf(scrambled)] = plain;
      ++plain;
    }
  }
  const auto scrambledBanner = [this](std::string_view plain) {
    return Encrypt("\"" + std::string(plain)).substr(1);
  };
  banner_ = tables.banner.empty() ? scrambledBanner(jobFileBanner) : tables.banner;
  banner1_ = scrambledBanner(jobFileBanner1);
}

char Scrambler::at(const Substitution& substitution, std::size_t position, char c) {
  return substitution[tableOfRemainder[position % tableOfRemainder.size()]][indexOf(c)];
}

std::string Scrambler::substitute(std::string_view text, const Substitution& substitution) {
  std::string result;
  result.reserve(text.size());
  std::size_t position = 0;
  for (const char c : text) {
    if (beginsCharacter(c)) ++position;
    result += at(substitution, position, c);
  }
  return result;
}

} // namespace qx
