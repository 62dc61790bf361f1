// Amounts, prices and limits of the ERP as fixed-point numbers.
#pragma once

#include <compare>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qx {

/// An amount with exactly four decimals, held as a 64-bit integer of ten-thousandths. The currency is not
/// part of the value. Conversion from a double rounds half to even at the fourth decimal. Sums and
/// differences that do not fit raise `std::overflow_error`.
class Money {
public:
  constexpr Money() = default;

  /// The amount of `units` ten-thousandths: `Money::ofTenThousandths(15000)` is 1.5.
  static constexpr Money ofTenThousandths(std::int64_t units) {
    Money money;
    money.units_ = units;
    return money;
  }
  /// Null when the number is not finite or does not fit.
  static std::optional<Money> fromDouble(double number);
  /// Reads digits with at most one decimal point or comma and an optional sign; null for anything else and
  /// for what does not fit.
  static std::optional<Money> parse(std::string_view text);

  constexpr std::int64_t tenThousandths() const { return units_; }
  double toDouble() const { return static_cast<double>(units_) / 10000.0; }
  /// Decimal point, no superfluous zeros: "12.5", "-0.0001", "7".
  std::string toText() const;

  constexpr Money operator-() const { return Money() - *this; }
  constexpr Money& operator+=(Money other) {
    if (other.units_ > 0 ? units_ > Limits::max() - other.units_ : units_ < Limits::min() - other.units_)
      throw std::overflow_error(sumTooLarge);
    units_ += other.units_;
    return *this;
  }
  constexpr Money& operator-=(Money other) {
    if (other.units_ < 0 ? units_ > Limits::max() + other.units_ : units_ < Limits::min() + other.units_)
      throw std::overflow_error(sumTooLarge);
    units_ -= other.units_;
    return *this;
  }
  friend constexpr Money operator+(Money a, Money b) { return a += b; }
  friend constexpr Money operator-(Money a, Money b) { return a -= b; }
  // The linter takes the comparison with the literal 0 of a defaulted operator for a pointer.
  // NOLINTNEXTLINE(modernize-use-nullptr)
  friend constexpr auto operator<=>(const Money&, const Money&) = default;

private:
  using Limits = std::numeric_limits<std::int64_t>;
  static constexpr const char* sumTooLarge = "Die Summe der Beträge ist zu groß.";

  std::int64_t units_ = 0;
};

} // namespace qx
