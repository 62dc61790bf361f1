// One value of a database column.
#pragma once

#include "model/date.h"
#include "model/money.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace qx {

enum class ValueKind : std::uint8_t { Null, Integer, Double, Currency, Boolean, Text, TimeStamp };

/// Null, a 64-bit integer, a double, an amount, a truth value, a UTF-8 text or a point in time.
///
/// Conversions that may fail return an optional; none of them raises.
class Value {
public:
  Value() = default;
  Value(std::int64_t number) : content_(number) {}
  Value(std::int32_t number) : content_(std::int64_t{number}) {}
  Value(std::int16_t number) : content_(std::int64_t{number}) {}
  Value(double number) : content_(number) {}
  Value(Money amount) : content_(amount) {}
  Value(bool truth) : content_(truth) {}
  Value(std::string text) : content_(std::move(text)) {}
  Value(std::string_view text) : content_(std::string(text)) {}
  Value(const char* text) : content_(std::string(text)) {}
  Value(const DateTime& moment) : content_(moment) {}
  /// Copies the text first, so that a lack of memory leaves the value unchanged.
  Value(const Value& other) : content_(copyOf(other.content_)) {}
  Value& operator=(const Value& other) {
    if (this == &other) return *this;
    auto* const mine = std::get_if<std::string>(&content_);
    const auto* const text = std::get_if<std::string>(&other.content_);
    if (mine != nullptr && text != nullptr)
      *mine = *text;
    else
      content_ = copyOf(other.content_);
    return *this;
  }
  Value(Value&&) noexcept = default;
  Value& operator=(Value&&) noexcept = default;
  ~Value() = default;

  static Value null() { return {}; }

  ValueKind kind() const { return static_cast<ValueKind>(content_.index()); }
  bool isNull() const { return kind() == ValueKind::Null; }
  /// Null, or empty when read as text. A blank is not empty, nor is 0.
  bool isEmpty() const;

  /// As text: numbers with a decimal point, truth as "1" or "0", time as its 14 digits, null as "".
  std::string text() const;
  /// The text without a copy; empty for every other kind.
  std::string_view textView() const;
  /// Whole numbers, truth as 1 or 0, and texts of an optional sign and digits, with blanks around them
  /// allowed.
  std::optional<std::int64_t> integer() const;
  /// Numbers, truth as 1 or 0, and texts that are a number with a decimal point.
  std::optional<double> number() const;
  std::optional<Money> money() const;
  /// Null and 0 are false, every other number is true; a text counts only when it is a number.
  std::optional<bool> truth() const;
  std::optional<DateTime> moment() const;

  friend bool operator==(const Value&, const Value&) = default;

private:
  using Content = std::variant<std::monostate, std::int64_t, double, Money, bool, std::string, DateTime>;

  static Content copyOf(const Content& other) {
    const auto* const text = std::get_if<std::string>(&other);
    if (text == nullptr) return other;
    std::string copy = *text;
    return copy;
  }

  Content content_;
};

/// Null for an empty text, else the value unchanged: the rule for every value copied into an ERP table.
Value emptyToNull(Value value);

/// A double as digits with a decimal point, up to 15 significant digits, never "-0".
std::string plainNumber(double number);

/// The whole number of a value as a `Number`; null when the value holds none or one that does not fit.
template <class Number>
std::optional<Number> wholeAs(const Value& value) {
  const auto whole = value.integer();
  if (!whole || !std::in_range<Number>(*whole)) return std::nullopt;
  return static_cast<Number>(*whole);
}

/// The job code in a value; 0, which is no code, for anything else.
inline std::int16_t jobCode(const Value& value) { return wholeAs<std::int16_t>(value).value_or(0); }

} // namespace qx
