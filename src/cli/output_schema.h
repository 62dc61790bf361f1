// JSON schemas of what the commands print.
#pragma once

#include "cli/output_terms.h"
#include "store/json_writer.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx::cli {

/// Of all schemas: raised when a member, or a word that it takes, goes, gets another name, type or meaning,
/// not when one is added.
inline constexpr std::int64_t schemaVersion = 1;

/// The members that every schema begins with. `subject` is a part of its identity: "output:list".
void writeSchemaHead(JsonWriter& json, std::string_view subject, std::string_view title);

/// The whole document.
void writeOutputSchema(JsonWriter json, const OutputTerm& output);

} // namespace qx::cli
