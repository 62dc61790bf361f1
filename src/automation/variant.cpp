#include "automation/variant.h"

#include "automation/automation_error.h"
#include "automation/automation_object.h"
#include "model/german_text.h"
#include "model/text.h"

#include <chrono>
#include <cmath>
#include <concepts>
#include <limits>

namespace qx::automation {
namespace {

namespace chrono = std::chrono;

constexpr chrono::sys_days serialOrigin{chrono::year{1899} / chrono::December / 30};
constexpr double secondsOfDay = 86400;

/// The text of what is neither Null nor an object.
std::string printed(const Variant& value) {
  switch (value.kind()) {
  case VariantKind::Boolean:
    return std::string(germanBoolean(value.as<bool>()));
  case VariantKind::Int16:
    return std::to_string(value.as<std::int16_t>());
  case VariantKind::Int32:
    return std::to_string(value.as<std::int32_t>());
  case VariantKind::Int64:
    return std::to_string(value.as<std::int64_t>());
  case VariantKind::Double:
    return germanNumber(value.as<double>());
  case VariantKind::Currency: {
    std::string amount = value.as<Money>().toText();
    if (const auto point = amount.find('.'); point != std::string::npos) amount[point] = ',';
    return amount;
  }
  case VariantKind::Date: {
    const auto& moment = value.as<DateTime>();
    std::string text = germanDate(moment.date);
    if (moment == DateTime{moment.date}) return text;
    const auto twoDigits = [](int number) { return (number < 10 ? "0" : "") + std::to_string(number); };
    return text + " " + twoDigits(moment.hour) + ":" + twoDigits(moment.minute) + ":" +
           twoDigits(moment.second);
  }
  case VariantKind::Text:
    return value.as<std::string>();
  default:
    return {};
  }
}

/// How a value is called in a message.
std::string shown(const Variant& value) {
  if (value.kind() == VariantKind::Object)
    return value.as<ObjectPointer>()
               ? "ein Objekt der Klasse " + std::string(value.as<ObjectPointer>()->className())
               : "Nothing";
  const std::string text = printed(value);
  constexpr std::size_t longest = 60;
  const bool whole = characterCount(text) <= longest;
  return "'" + oneLine(firstCharacters(text, longest)) + (whole ? "'" : "...'");
}

[[noreturn]] void mismatch(const Variant& value, std::string_view expected) {
  throw AutomationError(ErrorNumber::TypeMismatch,
                        shown(value) + " ist kein Wert der Art " + std::string(expected) + ".");
}

[[noreturn]] void overflow(const Variant& value) {
  throw AutomationError(ErrorNumber::Overflow, shown(value) + " liegt außerhalb des Wertebereichs.");
}

void refuseNull(const Variant& value) {
  if (value.kind() == VariantKind::Null)
    throw AutomationError(ErrorNumber::InvalidNull, "Null ist hier kein Wert.");
  if (value.isMissing())
    throw AutomationError(ErrorNumber::ArgumentNotOptional, "Das Argument ist nicht optional.");
}

/// The number in a value without a default member.
double numberOf(const Variant& value) {
  refuseNull(value);
  switch (value.kind()) {
  case VariantKind::Empty:
    return 0;
  case VariantKind::Boolean:
    return value.as<bool>() ? -1 : 0;
  case VariantKind::Int16:
    return value.as<std::int16_t>();
  case VariantKind::Int32:
    return value.as<std::int32_t>();
  case VariantKind::Int64:
    return static_cast<double>(value.as<std::int64_t>());
  case VariantKind::Double:
    return value.as<double>();
  case VariantKind::Currency:
    return value.as<Money>().toDouble();
  case VariantKind::Date:
    return serialOf(value.as<DateTime>());
  case VariantKind::Text: {
    if (const auto number = parseTypedNumber(value.as<std::string>())) return *number;
    mismatch(value, "Zahl");
  }
  default:
    mismatch(value, "Zahl");
  }
}

template <std::integral Whole>
Whole wholeOf(const Variant& value) {
  const Variant plain = plainValue(value);
  const double number = numberOf(plain);
  // The default rounding mode takes halves to the even neighbour.
  const double rounded = std::nearbyint(number);
  // Neither NaN nor infinity is in the range.
  if (!(rounded >= std::numeric_limits<Whole>::min() && rounded <= std::numeric_limits<Whole>::max()))
    overflow(plain);
  return static_cast<Whole>(rounded);
}

} // namespace

const Variant& Variant::value() const {
  const Variant* target = this;
  while (const Variant* const next = target->variable()) target = next;
  return *target;
}

Variant plainValue(const Variant& value) {
  Variant plain = value.value();
  // An object may give another one, as a record set gives a field.
  constexpr int deepest = 8;
  for (int depth = 0; plain.kind() == VariantKind::Object; ++depth) {
    const ObjectPointer object = plain.as<ObjectPointer>();
    if (!object) throw AutomationError(ErrorNumber::ObjectNotSet, "Die Objektvariable ist nicht festgelegt.");
    if (depth == deepest) mismatch(plain, "Wert");
    Arguments none;
    try {
      const Variant given = object->invoke(defaultMember, Access::MethodOrGet, none);
      plain = given.value();
    } catch (const AutomationError& error) {
      if (error.number() != ErrorNumber::NoSuchMember && error.number() != ErrorNumber::ArgumentNotOptional)
        throw;
      mismatch(plain, "Wert");
    }
  }
  return plain;
}

std::string textOf(const Variant& value) {
  const Variant plain = plainValue(value);
  refuseNull(plain);
  std::string text = printed(plain);
  if (text.find('\0') != std::string::npos)
    throw AutomationError(ErrorNumber::InvalidCall, "Der Text enthält das Zeichen NUL.");
  return text;
}

bool truthOf(const Variant& value) {
  const Variant plain = plainValue(value);
  if (plain.kind() == VariantKind::Text) {
    const auto& text = plain.as<std::string>();
    if (const auto truth = parseGermanBoolean(text)) return *truth;
    if (const auto number = parseTypedNumber(text)) return *number != 0;
    mismatch(plain, "Wahrheitswert");
  }
  return numberOf(plain) != 0;
}

std::int16_t int16Of(const Variant& value) { return wholeOf<std::int16_t>(value); }

std::int32_t int32Of(const Variant& value) { return wholeOf<std::int32_t>(value); }

double doubleOf(const Variant& value) {
  const Variant plain = plainValue(value);
  const double number = numberOf(plain);
  if (!std::isfinite(number)) overflow(plain);
  return number;
}

Value valueOf(const Variant& value) {
  const Variant plain = plainValue(value);
  switch (plain.kind()) {
  case VariantKind::Boolean:
    return plain.as<bool>();
  case VariantKind::Int16:
    return plain.as<std::int16_t>();
  case VariantKind::Int32:
    return plain.as<std::int32_t>();
  case VariantKind::Int64:
    return plain.as<std::int64_t>();
  case VariantKind::Double:
    return plain.as<double>();
  case VariantKind::Currency:
    return plain.as<Money>();
  case VariantKind::Date:
    return plain.as<DateTime>();
  case VariantKind::Text:
    return textOf(plain);
  default:
    return Value::null();
  }
}

DateTime momentOf(const Variant& value) {
  const Variant plain = plainValue(value);
  if (plain.kind() == VariantKind::Date) return plain.as<DateTime>();
  if (plain.kind() != VariantKind::Text) return momentOfSerial(numberOf(plain));
  if (const auto moment = parseGermanDateTime(plain.as<std::string>())) return *moment;
  mismatch(plain, "Datum");
}

ObjectPointer objectOf(const Variant& value) {
  const Variant& target = value.value();
  if (target.kind() != VariantKind::Object) {
    refuseNull(target);
    mismatch(target, "Objekt");
  }
  return target.as<ObjectPointer>();
}

Variant variantOf(const Value& value) {
  switch (value.kind()) {
  case ValueKind::Null:
    return Variant::null();
  case ValueKind::Integer: {
    const std::int64_t number = value.integer().value_or(0);
    if (std::in_range<std::int32_t>(number)) return static_cast<std::int32_t>(number);
    return number;
  }
  case ValueKind::Double:
    return value.number().value_or(0);
  case ValueKind::Currency:
    return value.money().value_or(Money());
  case ValueKind::Boolean:
    return value.truth().value_or(false);
  case ValueKind::Text:
    return value.textView();
  case ValueKind::TimeStamp:
    return value.moment().value_or(DateTime());
  }
  return {};
}

double serialOf(const DateTime& moment) {
  const auto days = static_cast<double>((chrono::sys_days(moment.date) - serialOrigin).count());
  const double time = (moment.hour * 3600 + moment.minute * 60 + moment.second) / secondsOfDay;
  return days < 0 ? days - time : days + time;
}

DateTime momentOfSerial(double serial) {
  constexpr double earliest = -657434; // 1.1.100
  constexpr double behindLast = 2958466;
  if (!(serial > earliest - 1 && serial < behindLast)) overflow(serial);
  const double day = std::trunc(serial);
  auto days = chrono::days(static_cast<int>(day));
  auto seconds = static_cast<int>(std::lround(std::fabs(serial - day) * secondsOfDay));
  if (seconds == static_cast<int>(secondsOfDay)) {
    days += chrono::days(1);
    seconds = 0;
  }
  return {Date(serialOrigin + days), seconds / 3600, seconds / 60 % 60, seconds % 60};
}

} // namespace qx::automation
