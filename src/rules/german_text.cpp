#include "rules/german_text.h"

#include "rules/rounding.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace qx {
namespace {

/// Steps of as many decimals as the index says; a computed power has other digits on other platforms.
constexpr std::array decimalSteps{1.0, 0.1, 0.01, 0.001, 0.0001, 0.00001, 0.000001};

char asciiLower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

} // namespace

std::string germanNumber(double number) {
  if (number == 0) return "0";
  std::array<char, 40> buffer{};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::general, 15);
  std::string text(buffer.data(), end);
  std::ranges::replace(text, '.', ',');
  std::ranges::replace(text, 'e', 'E');
  return text;
}

std::string germanDecimals(double number, int decimals) {
  if (decimals < 0 || static_cast<std::size_t>(decimals) >= decimalSteps.size())
    throw std::out_of_range("germanDecimals: between 0 and 6 decimals");
  const double rounded = rundenEx(number, decimalSteps[static_cast<std::size_t>(decimals)], false);
  // A double has at most 309 digits before the point.
  std::array<char, 400> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                          rounded == 0 ? 0.0 : rounded, std::chars_format::fixed, decimals);
  std::string text(buffer.data(), end);
  std::ranges::replace(text, '.', ',');
  return text;
}

std::optional<double> parseGermanNumber(std::string_view text) {
  text = trimBlanks(text);
  if (text.find('.') != std::string_view::npos) return std::nullopt;
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  std::string digits(text);
  std::ranges::replace(digits, ',', '.');
  double number = 0;
  const char* const last = std::to_address(digits.cend());
  const auto [end, error] = std::from_chars(digits.data(), last, number);
  if (error != std::errc() || end != last || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<double> parseTypedNumber(std::string_view text) {
  std::string german(text);
  if (german.find(',') == std::string::npos) std::replace(german.begin(), german.end(), '.', ',');
  return parseGermanNumber(german);
}

std::optional<double> parseEnteredNumber(std::string_view text) {
  text = trimBlanks(text);
  const std::size_t comma = std::min(text.find(','), text.size());
  std::string whole(text.substr(0, comma));
  if (whole.find('.') != std::string::npos) {
    const std::size_t sign = whole.starts_with('-') || whole.starts_with('+') ? 1 : 0;
    const std::size_t first = whole.find('.') - sign;
    if (first < 1 || first > 3 || whole.find_first_not_of("0123456789.", sign) != std::string::npos)
      return std::nullopt;
    // Every fourth character from the first point on, and nothing else, is one.
    for (std::size_t i = sign; i < whole.size(); ++i)
      if ((whole[i] == '.') != (i >= sign + first && (i - sign - first) % 4 == 0)) return std::nullopt;
    if ((whole.size() - sign - first) % 4 != 0) return std::nullopt;
    std::erase(whole, '.');
  }
  return parseGermanNumber(whole.append(text.substr(comma)));
}

std::string_view germanBoolean(bool truth) { return truth ? "Wahr" : "Falsch"; }

std::optional<bool> parseGermanBoolean(std::string_view text) {
  text = trimBlanks(text);
  for (const std::string_view yes : {"Wahr", "True", "1", "-1"})
    if (equalCodes(text, yes)) return true;
  for (const std::string_view no : {"Falsch", "False", "0"})
    if (equalCodes(text, no)) return false;
  return std::nullopt;
}

std::string_view firstCharacters(std::string_view text, std::size_t count) {
  std::size_t at = 0;
  for (; at < text.size(); ++at) {
    const bool begins = (static_cast<unsigned char>(text[at]) & 0xC0) != 0x80;
    if (begins && count-- == 0) break;
  }
  return text.substr(0, at);
}

bool equalCodes(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, [](char x, char y) { return asciiLower(x) == asciiLower(y); });
}

std::string_view trimBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace qx
