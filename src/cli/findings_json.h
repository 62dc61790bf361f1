// The findings of a job in a JSON document.
#pragma once

#include "cli/json_writer.h"
#include "engine/findings.h"

namespace qx::cli {

/// The members `hints` (texts) and `details` of an object: each finding and hint with code, severity, field,
/// position, values and text; field and position are null where there is none.
void writeDetails(JsonWriter& json, const Findings& findings);
/// The same after `status` and `findings` (texts), as in the result of a check.
void writeCheck(JsonWriter& json, const Findings& findings);

} // namespace qx::cli
