#include "model/money.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>

namespace qx {
namespace {

constexpr std::int64_t scale = 10000;
constexpr std::size_t places = 4;

bool isDigits(std::string_view text) {
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// Whether the dropped decimals round the last kept one away from 0; a half rounds to even.
bool roundsUp(std::string_view rest, bool isOdd) {
  if (rest.empty()) return false;
  const bool half = rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string_view::npos;
  return half ? isOdd : rest.front() >= '5';
}

/// Builds a number from its digits; null when it does not fit.
std::optional<std::int64_t> numberOf(std::string_view digits) {
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  std::int64_t number = 0;
  for (const char digit : digits) {
    const int figure = digit - '0';
    if (number > (most - figure) / 10) return std::nullopt;
    number = number * 10 + figure;
  }
  return number;
}

} // namespace

std::optional<Money> Money::fromDouble(double number) {
  // The product of a double and 10000 is off by at most half a unit in the last place; nearbyint then rounds
  // half to even as the default rounding mode demands.
  const double scaled = number * static_cast<double>(scale);
  if (!std::isfinite(scaled) || std::fabs(scaled) >= 9.2e18) return std::nullopt;
  return ofTenThousandths(static_cast<std::int64_t>(std::nearbyint(scaled)));
}

std::optional<Money> Money::parse(std::string_view text) {
  bool negative = false;
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
    negative = text.front() == '-';
    text.remove_prefix(1);
  }
  const auto point = text.find_first_of(".,");
  const std::string_view whole = text.substr(0, point);
  const std::string_view decimals = point == std::string_view::npos ? "" : text.substr(point + 1);
  if ((whole.empty() && decimals.empty()) || !isDigits(whole) || !isDigits(decimals)) return std::nullopt;

  std::string digits(whole);
  digits += decimals.substr(0, places);
  digits.append(places - std::min(places, decimals.size()), '0');
  auto units = numberOf(digits);
  if (units && roundsUp(decimals.substr(std::min(places, decimals.size())), *units % 2 != 0))
    units = *units < std::numeric_limits<std::int64_t>::max() ? std::optional(*units + 1) : std::nullopt;
  if (!units) return std::nullopt;
  return ofTenThousandths(negative ? -*units : *units);
}

std::string Money::toText() const {
  const bool negative = units_ < 0;
  const std::uint64_t magnitude =
      negative ? 0 - static_cast<std::uint64_t>(units_) : static_cast<std::uint64_t>(units_);
  std::string text = negative ? "-" : "";
  text += std::to_string(magnitude / scale);
  auto rest = magnitude % scale;
  if (rest != 0) {
    std::array<char, 4> digits{};
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit) {
      *digit = static_cast<char>('0' + rest % 10);
      rest /= 10;
    }
    std::string_view decimals(digits.data(), digits.size());
    decimals = decimals.substr(0, decimals.find_last_not_of('0') + 1);
    text += '.';
    text += decimals;
  }
  return text;
}

} // namespace qx
