#include "model/german_text.h"

#include "model/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace qx {
namespace {

constexpr int mostDecimals = 6;
/// The significant digits of every number that is written.
constexpr int precision = 15;

/// The digits of a number, of which `whole` (at least one) precede the comma. Rounding works on them because
/// dividing by a step would add digits that the number does not have.
struct DecimalDigits {
  std::string digits;
  std::size_t whole = 1;

  /// Rounds to that many decimals, halves up.
  void round(std::size_t decimals) {
    const std::size_t kept = whole + decimals;
    const bool up = kept < digits.size() && digits[kept] >= '5';
    digits.resize(kept, '0');
    if (!up) return;
    std::size_t at = kept;
    while (at > 0 && digits[at - 1] == '9') digits[--at] = '0';
    if (at > 0) {
      ++digits[at - 1];
    } else {
      digits.insert(0, 1, '1');
      ++whole;
    }
  }
};

DecimalDigits decimalDigits(double number) {
  std::array<char, 40> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                          std::chars_format::scientific, precision - 1);
  const std::string_view written(buffer.data(), end);
  const std::size_t mark = written.find('e');
  int exponent = 0;
  std::from_chars(written.data() + mark + 2, end, exponent);
  const auto power = static_cast<std::size_t>(exponent);
  DecimalDigits result;
  result.digits.append(written.substr(0, 1)).append(written.substr(2, mark - 2));
  if (written[mark + 1] == '-')
    result.digits.insert(0, power, '0');
  else
    result.whole += power;
  return result;
}

} // namespace

std::string germanNumber(double number) {
  if (number == 0) return "0";
  std::array<char, 40> buffer{};
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                          std::chars_format::general, precision);
  std::string text(buffer.data(), end);
  std::ranges::replace(text, '.', ',');
  std::ranges::replace(text, 'e', 'E');
  return text;
}

std::string germanDecimals(double number, int decimals) {
  if (decimals < 0 || decimals > mostDecimals)
    throw std::out_of_range("germanDecimals: between 0 and 6 decimals");
  if (!std::isfinite(number)) return germanNumber(number);
  DecimalDigits rounded = decimalDigits(std::fabs(number));
  rounded.round(static_cast<std::size_t>(decimals));
  const bool zero = rounded.digits.find_first_not_of('0') == std::string::npos;
  std::string text = number < 0 && !zero ? "-" : "";
  text.append(rounded.digits, 0, rounded.whole);
  if (decimals > 0) text.append(",").append(rounded.digits, rounded.whole);
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
    // Every fourth character from the first point on must be a point, and no other.
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

std::optional<NumberReadings> readingsOf(std::string_view text) {
  constexpr std::size_t group = 3;
  text = trimBlanks(text);
  const auto point = text.find('.');
  if (point == std::string_view::npos || text.size() - point - 1 != group) return std::nullopt;
  std::string digits(text);
  digits.erase(point, 1);
  const auto thousands = parseGermanNumber(digits);
  const auto decimals = parseTypedNumber(text);
  if (!thousands || !decimals) return std::nullopt;
  return NumberReadings{*thousands, *decimals};
}

std::string doubtAbout(std::string_view text) {
  if (const auto readings = readingsOf(text))
    return "may mean " + germanNumber(readings->thousands) + " or " + germanNumber(readings->decimals);
  return parseTypedNumber(text) ? "" : "is not a number";
}

} // namespace qx
