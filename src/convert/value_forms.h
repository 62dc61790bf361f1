// The forms in which a file writes numbers and dates, and the JSON that becomes of its values.
#pragma once

#include "model/field_table.h"

#include <optional>
#include <string>
#include <string_view>

namespace qx::convert {

/// How a file writes values. Nothing else is accepted.
struct ValueForms {
  char decimal = ',';
  char thousands = '\0'; ///< between groups of three digits, which may also stand without it; NUL for none
  /// A run of d, m or y stands for that many digits, a single d or m for one or two, # for a digit that does
  /// not matter, everything else for itself.
  std::string date;
};

/// The forms of a file of jobs, in which maps write what they set.
ValueForms jobFileForms();

/// Why the text is no pattern of dates; null when it is one.
std::optional<std::string> faultOfDatePattern(std::string_view pattern);

/// Appends a value as JSON, numbers digit by digit. Returns why it is none of that kind; then nothing is
/// appended. The text is well-formed, not empty and without outer blanks.
std::optional<std::string> appendValue(std::string& json, std::string_view text, FieldKind kind,
                                       const ValueForms& forms);

/// Appends a text in quotes, escaped.
void appendText(std::string& json, std::string_view text);

} // namespace qx::convert
