#include "adapters/ado/field_values.h"

#include "model/date.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qx::ado {
namespace {

using automation::Variant;

// The types of fields and parameters.
constexpr std::int32_t smallInteger = 2;
constexpr std::int32_t integer = 3;
constexpr std::int32_t singleNumber = 4;
constexpr std::int32_t doubleNumber = 5;
constexpr std::int32_t currency = 6;
constexpr std::int32_t date = 7;
constexpr std::int32_t basicText = 8;
constexpr std::int32_t boolean = 11;
constexpr std::int32_t decimal = 14;
constexpr std::int32_t tinyInteger = 16;
constexpr std::int32_t unsignedTinyInteger = 17;
constexpr std::int32_t bigInteger = 20;
constexpr std::int32_t fixedText = 129;
constexpr std::int32_t fixedWideText = 130;
constexpr std::int32_t numeric = 131;
constexpr std::int32_t databaseDate = 133;
constexpr std::int32_t timeStamp = 135;
constexpr std::int32_t variableText = 200;
constexpr std::int32_t longText = 201;
constexpr std::int32_t wideText = 202;
constexpr std::int32_t longWideText = 203;

constexpr std::int32_t currencyDigits = 4;
/// In units of UTF-16.
constexpr std::size_t longestWideText = 4000;

/// A moment in a text: in German, or as the 14 digits of a time stamp.
std::optional<DateTime> momentIn(const Value& value) {
  if (value.kind() != ValueKind::Text) return value.moment();
  if (const auto moment = parseGermanDateTime(value.textView())) return moment;
  return parseTimeStamp(value.textView());
}

Variant wholeNumber(const Value& value) {
  if (const auto whole = value.integer()) return automation::variantOf(Value(*whole));
  return automation::variantOf(value);
}

/// No text has more units of UTF-16 than bytes of UTF-8.
std::int32_t sizeOf(std::string_view text) {
  constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp<std::size_t>(text.size(), 1, most));
}

} // namespace

bool isDecimal(std::int32_t type) { return type == decimal || type == numeric; }

FieldKind fieldKind(std::int32_t type, std::int32_t precision, std::int32_t scale) {
  switch (type) {
  case boolean:
    return FieldKind::Boolean;
  case smallInteger:
  case integer:
  case tinyInteger:
  case unsignedTinyInteger:
  case bigInteger:
    return FieldKind::Integer;
  case singleNumber:
  case doubleNumber:
    return FieldKind::Double;
  case currency:
    return FieldKind::Currency;
  case decimal:
  case numeric:
    // One digit is what our tables have for a truth value where a database has no other type for it.
    if (scale == 0) return precision == 1 ? FieldKind::Boolean : FieldKind::Integer;
    return scale == currencyDigits ? FieldKind::Currency : FieldKind::Double;
  case date:
  case databaseDate:
  case timeStamp:
    return FieldKind::Date;
  case basicText:
  case fixedText:
  case fixedWideText:
  case variableText:
  case longText:
  case wideText:
  case longWideText:
    return FieldKind::Text;
  default:
    return FieldKind::Other;
  }
}

Value valueIn(FieldKind kind, const Variant& given) {
  Value value = automation::valueOf(given);
  if (value.isNull()) return value;
  switch (kind) {
  case FieldKind::Boolean:
    if (const auto truth = value.truth()) return Value(*truth);
    break;
  case FieldKind::Integer:
    if (const auto number = value.number(); number && std::trunc(*number) == *number)
      return Value(value.integer().value_or(static_cast<std::int64_t>(*number)));
    break;
  case FieldKind::Double:
    if (const auto number = value.number()) return Value(*number);
    break;
  case FieldKind::Currency:
    if (const auto amount = value.money()) return Value(*amount);
    break;
  case FieldKind::Text:
  case FieldKind::Date:
  case FieldKind::Other:
    break;
  }
  return value;
}

Variant forField(FieldKind kind, const Value& value) {
  if (value.isNull()) return Variant::null();
  switch (kind) {
  case FieldKind::Boolean:
    if (const auto truth = value.truth()) return *truth;
    break;
  case FieldKind::Integer:
    return wholeNumber(value);
  case FieldKind::Double:
    if (const auto number = value.number()) return *number;
    break;
  case FieldKind::Currency:
    if (const auto amount = value.money()) return *amount;
    break;
  case FieldKind::Text:
    return Variant(value.text());
  case FieldKind::Date:
    if (const auto moment = momentIn(value)) return *moment;
    break;
  case FieldKind::Other:
    break;
  }
  return automation::variantOf(value);
}

Parameter parameterOf(const Value& value) {
  switch (value.kind()) {
  case ValueKind::Null:
    return {wideText, 1, Variant::null()};
  case ValueKind::Integer:
  // Statements compare a truth value with a number.
  case ValueKind::Boolean: {
    Variant number = wholeNumber(value);
    const bool isBig = number.kind() == automation::VariantKind::Int64;
    return {isBig ? bigInteger : integer, 0, std::move(number)};
  }
  case ValueKind::Double:
    return {doubleNumber, 0, automation::variantOf(value)};
  case ValueKind::Currency:
    return {currency, 0, automation::variantOf(value)};
  case ValueKind::TimeStamp:
    return {timeStamp, 0, automation::variantOf(value)};
  case ValueKind::Text:
    break;
  }
  const std::string_view text = value.textView();
  return {text.size() > longestWideText ? longWideText : wideText, sizeOf(text), Variant(text)};
}

} // namespace qx::ado
