// The schema of the standalone ERP: every table that the component and the ERP's components use.
#pragma once

#include "erp/schema_table.h"
#include "platform/database.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::erp {

/// Incremented with every change of the tables.
inline constexpr int schemaVersion = 6;

/// The tax mark of a customer created without one.
inline constexpr std::string_view domesticTaxMark = "IN";

/// All tables, each once, in the order in which they are created. The descriptions live as long as the
/// program.
std::vector<SchemaTable> schemaTables();

/// The names of all columns, as the catalogue spells them; a name has the same spelling in every table.
std::vector<std::string_view> schemaNames();
/// The statement that creates a table under this name, and the one that creates one of its indexes.
Sql createTable(const SchemaTable& table, std::string_view tableName);
Sql createIndex(const SchemaTable& table, const SchemaIndex& index);

/// Creates all tables and indexes and stores the version. Call it inside a unit of work: a failure, such as
/// an existing table, raises `StatementError` and leaves what was created before it.
void createSchema(Connection& connection);

/// The version of the schema as stored in the database; null when the database does not have our schema.
std::optional<std::string> storedSchemaVersion(Connection& connection);

} // namespace qx::erp
