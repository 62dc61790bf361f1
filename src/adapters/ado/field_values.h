// Values on their way between the component and the fields of a host's record set.
#pragma once

#include "automation/variant.h"
#include "platform/value.h"

#include <cstdint>

namespace qx::ado {

/// What decides how the values of a field are read and written.
enum class FieldKind : std::uint8_t { Other, Boolean, Integer, Double, Currency, Text, Date };

/// `type`, `precision` and `scale` as the data access interface counts them.
FieldKind fieldKind(std::int32_t type, std::int32_t precision, std::int32_t scale);
/// Whether the kind of a type depends on its precision and scale.
bool isDecimal(std::int32_t type);

/// The value that a field gives. Raises `AutomationError` for a kind that no column has.
Value valueIn(FieldKind kind, const automation::Variant& given);
/// The value as the field takes it, so that no setting of the system decides what a text means. A text that
/// is no value of the kind is passed as it is, for the database to refuse.
automation::Variant forField(FieldKind kind, const Value& value);

/// A value as the parameter of a statement.
struct Parameter {
  std::int32_t type = 0;
  std::int32_t size = 0;
  automation::Variant value;
};
Parameter parameterOf(const Value& value);

} // namespace qx::ado
