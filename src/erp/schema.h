// The schema of the standalone ERP: every table that the component and the ERP's own components touch.
#pragma once

#include "erp/schema_table.h"
#include "platform/database.h"

#include <optional>
#include <string>
#include <vector>

namespace qx::erp {

/// Grows with every change of the tables.
inline constexpr int schemaVersion = 3;

/// The tax mark that a customer gets who is created without one.
inline constexpr std::string_view domesticTaxMark = "IN";

/// All tables, each once, in the order in which they are created. The descriptions live as long as the
/// program.
std::vector<SchemaTable> schemaTables();

/// Creates all tables and indexes and notes the version. Call it inside a unit of work: a failure, for
/// example a table of that name, raises `StatementError` and leaves what was created before it.
void createSchema(Connection& connection);

/// The version of the schema in the database, as it stands there; null when it does not hold ours.
std::optional<std::string> storedSchemaVersion(Connection& connection);

} // namespace qx::erp
