// Any text as a German number, and any number as a text: compared with exact decimals.
#include "model/date.h"
#include "model/german_text.h"
#include "model/money.h"

#include "require.h"

#include <algorithm>
#include <cmath>
#include <compare>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace qx;

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// A natural number of any size.
class Natural {
public:
  explicit Natural(std::uint64_t number = 0) {
    for (; number != 0; number >>= 32U) limbs_.push_back(static_cast<std::uint32_t>(number));
  }
  static Natural ofDigits(std::string_view digits) {
    Natural number;
    for (const char c : digits) number.times(10, static_cast<std::uint32_t>(c - '0'));
    return number;
  }
  void times(std::uint32_t factor, std::uint32_t plus = 0) {
    std::uint64_t carry = plus;
    for (std::uint32_t& limb : limbs_) {
      carry += std::uint64_t{limb} * factor;
      limb = static_cast<std::uint32_t>(carry);
      carry >>= 32U;
    }
    if (carry != 0) limbs_.push_back(static_cast<std::uint32_t>(carry));
  }
  void timesPower(std::uint32_t base, int exponent) {
    for (; exponent > 0; --exponent) times(base);
  }
  friend std::strong_ordering operator<=>(const Natural& a, const Natural& b) {
    if (a.limbs_.size() != b.limbs_.size()) return a.limbs_.size() <=> b.limbs_.size();
    return std::lexicographical_compare_three_way(a.limbs_.rbegin(), a.limbs_.rend(), b.limbs_.rbegin(),
                                                  b.limbs_.rend());
  }

private:
  std::vector<std::uint32_t> limbs_; ///< the lowest first, the highest is not 0
};

/// An exact decimal: the digits, as a whole number, times a power of ten.
struct Decimal {
  bool negative = false;
  std::string digits; ///< without leading zeros; empty is 0
  int exponent = 0;
};

/// Compares a decimal, its sign left out, with `mantissa` times 2 to the power of `exponent`.
std::strong_ordering compare(const Decimal& decimal, std::uint64_t mantissa, int exponent) {
  Natural left = Natural::ofDigits(decimal.digits);
  Natural right(mantissa);
  left.timesPower(10, decimal.exponent);
  right.timesPower(10, -decimal.exponent);
  right.timesPower(2, exponent);
  left.timesPower(2, -exponent);
  return left <=> right;
}

constexpr std::uint64_t fullMantissa = std::uint64_t{1} << 52U;
constexpr int leastExponent = -1074;

/// The number as a whole mantissa and a power of two.
std::pair<std::uint64_t, int> parts(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  const auto biased = static_cast<int>((bits >> 52U) & 0x7FFU);
  const std::uint64_t fraction = bits & (fullMantissa - 1);
  if (biased == 0) return {fraction, leastExponent};
  return {fraction | fullMantissa, biased + leastExponent - 1};
}

/// Whether no other number is nearer to the decimal; of two that are as near, the even one is meant.
bool isNearest(const Decimal& decimal, double number) {
  if (decimal.digits.empty()) return number == 0;
  const auto [mantissa, exponent] = parts(number);
  const auto above = compare(decimal, 2 * mantissa + 1, exponent - 1);
  if (above > 0 || (above == 0 && mantissa % 2 != 0)) return false;
  if (mantissa == 0) return true;
  // Below a power of two the numbers are twice as dense.
  const bool close = mantissa == fullMantissa && exponent > leastExponent;
  const auto below = close ? compare(decimal, 4 * mantissa - 1, exponent - 2)
                           : compare(decimal, 2 * mantissa - 1, exponent - 1);
  return below > 0 || (below == 0 && mantissa % 2 == 0);
}

/// A sign, digits with at most one comma, and an exponent; null for every other text.
std::optional<Decimal> exactDecimal(std::string_view text) {
  while (text.starts_with(' ')) text.remove_prefix(1);
  while (text.ends_with(' ')) text.remove_suffix(1);
  Decimal decimal;
  decimal.negative = text.starts_with('-');
  if (decimal.negative || text.starts_with('+')) text.remove_prefix(1);
  bool any = false;
  bool comma = false;
  while (!text.empty() && (isDigit(text.front()) || (text.front() == ',' && !comma))) {
    if (text.front() == ',') {
      comma = true;
    } else {
      any = true;
      if (comma) --decimal.exponent;
      if (text.front() != '0' || !decimal.digits.empty()) decimal.digits += text.front();
    }
    text.remove_prefix(1);
  }
  if (!any) return std::nullopt;
  if (text.empty()) return decimal;
  if (text.front() != 'e' && text.front() != 'E') return std::nullopt;
  text.remove_prefix(1);
  const bool down = text.starts_with('-');
  if (down || text.starts_with('+')) text.remove_prefix(1);
  if (text.empty()) return std::nullopt;
  int power = 0;
  for (const char c : text) {
    if (!isDigit(c)) return std::nullopt;
    if (power < 100'000) power = power * 10 + (c - '0');
  }
  decimal.exponent += down ? -power : power;
  return decimal;
}

void checkRead(std::string_view text) {
  const auto read = parseGermanNumber(text);
  const auto exact = exactDecimal(text);
  require(exact || !read, "what is no number is not read");
  if (!exact) return;
  // Where the first digit stands: behind it the number is neither too large nor too small to be held.
  constexpr int surelyHeld = 300;
  const int magnitude = exact->exponent + static_cast<int>(exact->digits.size());
  if (!read) {
    require(!exact->digits.empty() && std::abs(magnitude) > surelyHeld, "every number is read that fits");
    return;
  }
  require(exact->digits.empty() || std::signbit(*read) == exact->negative, "the sign is kept");
  constexpr std::size_t shortEnough = 400;
  if (exact->digits.size() < shortEnough && std::abs(exact->exponent) < static_cast<int>(shortEnough))
    require(isNearest(*exact, std::fabs(*read)), "the nearest number is read");
}

/// Whether no other decimal of 15 digits is nearer.
bool isNearestText(double number, Decimal decimal) {
  constexpr std::size_t precision = 15;
  require(decimal.digits.size() <= precision, "a number has at most 15 digits");
  while (decimal.digits.size() < precision) {
    decimal.digits += '0';
    --decimal.exponent;
  }
  const auto binary = parts(std::fabs(number));
  std::uint64_t whole = 0;
  for (const char c : decimal.digits) whole = whole * 10 + static_cast<std::uint64_t>(c - '0');
  // Half a unit of the last digit away, at most.
  const auto away = [&](std::uint64_t halves) {
    return compare({false, std::to_string(halves * 5), decimal.exponent - 1}, binary.first, binary.second);
  };
  return away(2 * whole + 1) >= 0 && away(2 * whole - 1) <= 0;
}

/// Adds one to the digits.
void increment(std::string& digits) {
  std::size_t at = digits.size();
  while (at > 0 && digits[at - 1] == '9') digits[--at] = '0';
  if (at == 0)
    digits.insert(0, 1, '1');
  else
    ++digits[at - 1];
}

/// The decimal with that many digits after the comma, halves away from zero.
std::string roundedText(const Decimal& decimal, int decimals) {
  std::string digits = decimal.digits;
  int exponent = decimal.exponent;
  for (; exponent > -decimals; --exponent) digits += '0';
  const auto dropped = static_cast<std::size_t>(-decimals - exponent);
  if (digits.size() <= dropped) digits.insert(0, dropped + 1 - digits.size(), '0');
  const bool up = dropped > 0 && digits[digits.size() - dropped] >= '5';
  digits.resize(digits.size() - dropped);
  if (up) increment(digits);
  const auto behind = static_cast<std::size_t>(decimals);
  if (digits.size() <= behind) digits.insert(0, behind + 1 - digits.size(), '0');
  const auto first = std::min(digits.find_first_not_of('0'), digits.size() - behind - 1);
  const bool zero = digits.find_first_not_of('0') == std::string::npos;
  std::string text = decimal.negative && !zero ? "-" : "";
  text += digits.substr(first, digits.size() - behind - first);
  if (decimals > 0) text += "," + digits.substr(digits.size() - behind);
  return text;
}

void checkWritten(double number) {
  const std::string text = germanNumber(number);
  const auto exact = exactDecimal(text);
  require(exact.has_value(), "a number is written as one");
  if (number == 0) {
    require(text == "0", "nothing is written as 0");
    return;
  }
  require(exact->negative == (number < 0), "the sign is written");
  require(isNearestText(number, *exact), "the nearest decimal is written");
  const auto read = parseGermanNumber(text);
  // The largest numbers are rounded beyond the largest one.
  require(read ? germanNumber(*read) == text : std::fabs(number) > 1.79769313486231e308,
          "what is written is read and written again");
  for (const int decimals : {0, 2, 4, 6})
    require(germanDecimals(number, decimals) == roundedText(*exact, decimals),
            "decimals are rounded as they are written");
}

/// Ten-thousandths of a decimal without an exponent, halves to even; null when 64 bits do not hold them.
std::optional<std::int64_t> exactMoney(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find_first_of(".,"), text.size());
  std::string digits(text.substr(0, point));
  std::string behind(text.substr(std::min(point + 1, text.size())));
  if ((digits + behind).empty() || !std::ranges::all_of(digits + behind, isDigit)) return std::nullopt;
  constexpr std::size_t held = 4;
  if (behind.size() < held) behind.resize(held, '0');
  digits += behind.substr(0, held);
  std::string rest = behind.substr(held);
  while (rest.ends_with('0')) rest.pop_back();
  if (rest > "5" || (rest == "5" && (digits.back() - '0') % 2 != 0)) increment(digits);
  digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - 1));
  constexpr std::string_view most = "9223372036854775807";
  if (digits.size() > most.size() || (digits.size() == most.size() && digits > most)) return std::nullopt;
  const std::int64_t units = std::stoll(digits);
  return negative ? -units : units;
}

void checkMoney(std::string_view text, double number) {
  const auto read = Money::parse(text);
  const auto exact = exactMoney(text);
  require(read.has_value() == exact.has_value(), "an amount is read when it is one");
  if (read) {
    require(read->tenThousandths() == *exact, "an amount is read exactly");
    require(Money::parse(read->toText()) == *read, "an amount is written as it is read");
  }
  const auto rounded = Money::fromDouble(number);
  require(rounded.has_value() == (std::fabs(number * 10000.0) < 9.2e18), "an amount fits or does not");
  constexpr double exactBelow = 4e11;
  if (!rounded || std::fabs(number) > exactBelow) return;
  require(Money::fromDouble(rounded->toDouble()) == *rounded, "an amount survives the way through a number");
  require(std::fabs(rounded->toDouble() - number) < 0.0000501 + std::fabs(number) * 1e-15,
          "half a unit away");
}

void checkDate(std::string_view text) {
  const auto moment = parseGermanDateTime(text);
  require(parseGermanDate(text).has_value() == moment.has_value(), "a date may have a time");
  if (!moment) return;
  require(moment->date.ok(), "every date that is read exists");
  require(parseGermanDate(germanDate(moment->date)) == moment->date, "a date is read as it is written");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  double number = 0;
  if (size >= sizeof number) std::memcpy(&number, data + size - sizeof number, sizeof number);
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  checkRead(text);
  const auto read = parseGermanNumber(text);
  checkMoney(text, std::isfinite(number) ? number : 0);
  checkDate(text);
  std::string pointed(text);
  const bool comma = pointed.find(',') != std::string::npos;
  require(!comma || parseTypedNumber(text) == read, "with a comma a typed number is a German one");
  if (!comma && pointed.find('.') != std::string::npos) {
    std::ranges::replace(pointed, '.', ',');
    require(parseTypedNumber(text) == parseGermanNumber(pointed), "a typed point is a comma");
  }
  if (std::isfinite(number)) checkWritten(number);
  if (read) checkWritten(*read);
  return 0;
}
