#include "model/money.h"

#include <array>
#include <cmath>

namespace qx {
namespace {

constexpr std::int64_t scale = 10000;

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
  constexpr std::string_view digits = "0123456789";
  if (whole.empty() && decimals.empty()) return std::nullopt;
  if (whole.find_first_not_of(digits) != std::string_view::npos ||
      decimals.find_first_not_of(digits) != std::string_view::npos)
    return std::nullopt;
  constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
  std::int64_t units = 0;
  bool fits = true;
  const auto append = [&](char digit) {
    const int figure = digit - '0';
    fits = fits && units <= (most - figure) / 10;
    if (fits) units = units * 10 + figure;
  };
  for (const char c : whole) append(c);
  for (std::size_t i = 0; i < 4; ++i) append(i < decimals.size() ? decimals[i] : '0');
  if (decimals.size() > 4) {
    const std::string_view rest = decimals.substr(4);
    const bool tie = rest.front() == '5' && rest.find_first_not_of('0', 1) == std::string_view::npos;
    if (tie ? units % 2 != 0 : rest.front() >= '5') {
      fits = fits && units < most;
      if (fits) ++units;
    }
  }
  if (!fits) return std::nullopt;
  return ofTenThousandths(negative ? -units : units);
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
