// One property of a staged object as in the file, and its conversion to a property of a record.
#pragma once

#include "cli/stage_fault.h"
#include "model/field_table.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace qx::cli {

/// Null, a truth value, a whole number, any other number or a text.
using StageValue = std::variant<std::monostate, bool, std::int64_t, double, std::string>;

struct StageProperty {
  std::string name;
  std::int64_t line = 0;
  StageValue value;
};

/// Which texts a date property accepts beside "", the German date forms and the ISO form, which is stored as
/// dd.mm.yyyy.
struct DateRule {
  bool contract = false; ///< also the two times that mean "no date"
  bool openEnd = false;  ///< also the mark of a contract without an end
};

/// Each sets the property and returns null, or leaves it unchanged and returns what is wrong with the value.
std::optional<ValueFault> assign(StageValue& value, std::string& property, FieldKind kind, DateRule rule);
std::optional<ValueFault> assign(StageValue& value, std::int16_t& property, FieldKind kind, DateRule rule);
std::optional<ValueFault> assign(StageValue& value, std::int32_t& property, FieldKind kind, DateRule rule);
std::optional<ValueFault> assign(StageValue& value, double& property, FieldKind kind, DateRule rule);
std::optional<ValueFault> assign(StageValue& value, bool& property, FieldKind kind, DateRule rule);

/// The number of characters of a text, which are one byte each in a job file; for a short text an upper
/// bound.
std::size_t jobFileLength(std::string_view text);

/// A property that the type lacks, with the name that was probably meant.
ValueFault unknownProperty(std::string_view name, const std::vector<std::string>& known);
ValueFault repeatedProperty(std::int64_t line);

/// The type of a value for messages: "a text", "a number"...
std::string_view describe(const StageValue& value);

} // namespace qx::cli
