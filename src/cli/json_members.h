// Members that the JSON documents of several commands have.
#pragma once

#include "engine/findings.h"
#include "store/json_writer.h"

#include <map>
#include <string>

namespace qx::cli {

/// The members `hints` (texts) and `details` of an object: each finding and hint with code, severity, field,
/// position, values and text; field and position are null where there is none.
void writeDetails(JsonWriter& json, const Findings& findings);
/// The same after `status` and `findings` (texts), as in the result of a check.
void writeCheck(JsonWriter& json, const Findings& findings);

/// The member `left`: the keys of the jobs that the database refuses to change, with its reasons; nothing
/// without any.
void writeLeft(JsonWriter& json, const std::map<std::string, std::string>& left);

} // namespace qx::cli
