// Any text as the value of every setting: each judge against the rule worked out by hand.
#include "model/german_text.h"
#include "settings/options.h"

#include "require.h"

#include <cstdint>
#include <optional>
#include <string_view>

using namespace qx;

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view between(std::string_view text, std::string_view blanks) {
  while (!text.empty() && blanks.find(text.front()) != std::string_view::npos) text.remove_prefix(1);
  while (!text.empty() && blanks.find(text.back()) != std::string_view::npos) text.remove_suffix(1);
  return text;
}

/// A sign, then digits; anything beyond five figures does not fit.
std::optional<int> wholeNumber(std::string_view text) {
  text = between(text, " \t\r\n");
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  int number = 0;
  for (const char c : text) {
    if (!isDigit(c)) return std::nullopt;
    if (number <= 99'999) number = number * 10 + (c - '0');
  }
  return negative ? -number : number;
}

std::optional<int> shortNumber(std::string_view text) {
  const auto number = wholeNumber(text);
  return number && *number >= -32768 && *number <= 32767 ? number : std::nullopt;
}

bool isWord(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i] >= 'A' && text[i] <= 'Z' ? static_cast<char>(text[i] + 32) : text[i];
    if (c != word[i]) return false;
  }
  return true;
}

/// A sign, then digits with at most one comma or point among them, few enough for every double.
bool isPlainDecimal(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  std::size_t marks = 0;
  for (const char c : text) {
    if (c == ',' || c == '.')
      ++marks;
    else if (!isDigit(c))
      return false;
  }
  return marks <= 1 && text.size() > marks && text.size() <= 300;
}

/// What a permission says where that can be told without reading numbers: a decimal is true when it has
/// another digit than 0.
void requireTruth(const OptionSpec& option, std::string_view text) {
  const auto state = checkState(option, text);
  const bool yes = isWord(text, "true") || isWord(text, "wahr");
  if (yes || isWord(text, "false") || isWord(text, "falsch"))
    require(state == yes, "a permission understands its words");
  else if (const std::string_view number = between(text, " \t\r\n"); isPlainDecimal(number))
    require(state == (number.find_first_of("123456789") != std::string_view::npos),
            "a permission is a number of any size");
}

std::optional<bool> expectedState(OptionRule rule, std::string_view text) {
  const auto number = shortNumber(text);
  if (rule == OptionRule::One) {
    if (text == "1") return true;
    return text == "0" ? std::optional(false) : std::nullopt;
  }
  if (!number || (rule == OptionRule::AtLeastOne && *number < 0)) return std::nullopt;
  return *number != 0;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto number = settingToInt16(text);
  require(number == shortNumber(text), "a whole number is read as it stands");
  for (const OptionSpec* option : allOptions()) {
    if (!option->isCheck()) continue;
    if (option->rule == OptionRule::Truth)
      requireTruth(*option, text);
    else
      require(checkState(*option, text) == expectedState(option->rule, text),
              "a check is judged by its rule");
  }
  const auto truth = parseGermanBoolean(text);
  const std::string_view word = between(text, " ");
  const bool yes = isWord(word, "wahr") || isWord(word, "true") || word == "1" || word == "-1";
  const bool no = isWord(word, "falsch") || isWord(word, "false") || word == "0";
  require(truth.has_value() == (yes || no) && truth.value_or(false) == yes, "a truth value has seven forms");
  return 0;
}
