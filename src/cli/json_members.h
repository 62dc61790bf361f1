// Members that the JSON documents of several commands have.
#pragma once

#include "engine/findings.h"
#include "platform/database.h"
#include "program/input_fault.h"
#include "store/json_writer.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace qx::cli {

/// The members `hints` (texts) and `details` of an object: each finding and hint with code, severity, field,
/// position, values and text; field and position are null where there is none.
void writeDetails(JsonWriter& json, const Findings& findings);
/// The same after `checkStatus` and `findings` (texts), as in the result of a check.
void writeCheck(JsonWriter& json, const Findings& findings);

/// The name of a column as the properties of a staged object have it.
std::string_view propertyName(std::string_view column);
/// The first columns of a row as members with these names.
void writeColumns(JsonWriter& json, Recordset& row, std::size_t count);

/// The members `state`, `kind` and `number` of a job: the words of the filters, and the number that the ERP
/// gave to what a done job became. From a row of `ImportKopf`.
void writeOutcome(JsonWriter& json, Recordset& header);
/// The first two, and the number of a job that may be done.
void writeOutcome(JsonWriter& json, std::int16_t jobType, std::string_view number);

/// An object with the members `line`, `object`, `property`, `code`, `message` and `hint`; unknown parts are
/// null.
void writeFault(JsonWriter& json, const InputFault& fault);

/// The member `left`: the keys of the jobs that the database refuses to change, with its reasons; nothing
/// without any.
void writeLeft(JsonWriter& json, const std::map<std::string, std::string>& left);

} // namespace qx::cli
