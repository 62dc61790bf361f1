#include "erp/schema_upgrade.h"

#include "erp/schema.h"

#include <algorithm>
#include <string>
#include <utility>

namespace qx::erp {
namespace {

bool defines(const SchemaTable& table, ColumnName column) {
  return std::ranges::any_of(table.columns,
                             [&](const SchemaColumn& defined) { return ColumnName(defined.name) == column; });
}

/// The columns of the definition that the stored table lacks.
std::vector<std::string> missingColumns(Connection& connection, const SchemaTable& table) {
  const auto stored = connection.open(sql("Select * From "_sql, name(table.name), " Where 0 = 1"_sql));
  for (std::size_t i = 0; i < stored->fieldCount(); ++i)
    if (!defines(table, ColumnName(stored->fieldName(i))))
      throw SchemaConflict("the table " + std::string(table.name) + " has a column " +
                           std::string(stored->fieldName(i)) + " that this program does not know");
  std::vector<std::string> missing;
  for (const SchemaColumn& column : table.columns)
    if (!stored->hasField(ColumnName(column.name))) missing.emplace_back(column.name);
  return missing;
}

} // namespace

SchemaUpgrade::SchemaUpgrade(Connection& connection, Maintenance& maintenance)
    : connection_(connection), maintenance_(maintenance) {
  for (const SchemaTable& table : schemaTables()) {
    Step step = compared(table);
    if (step.change.created || step.change.redefined || !step.created.empty())
      steps_.push_back(std::move(step));
  }
}

SchemaUpgrade::Step SchemaUpgrade::compared(const SchemaTable& table) {
  Step step{table, {}, {}, {}};
  step.change.table = table.name;
  const auto create = [&](std::string_view name) { return createTable(table, name); };
  const Definition stored = maintenance_.compare(table.name, create);
  step.change.created = stored == Definition::Missing;
  step.change.redefined = stored == Definition::Different;
  if (step.change.redefined) step.change.columns = missingColumns(connection_, table);
  for (const SchemaIndex& index : table.indexes) {
    const auto createNamed = [&](std::string_view name, std::string_view tableName) {
      SchemaTable on = table;
      SchemaIndex named = index;
      on.name = tableName;
      named.name = name;
      return createIndex(on, named);
    };
    const Definition storedIndex = maintenance_.compareIndex(index.name, table.name, createNamed);
    if (storedIndex == Definition::Equal) continue;
    if (storedIndex == Definition::Different) step.replaced.push_back(index);
    step.created.push_back(index);
    step.change.indexes.emplace_back(index.name);
  }
  return step;
}

std::vector<TableChange> SchemaUpgrade::perform() {
  std::vector<TableChange> changes;
  for (const Step& step : steps_) {
    perform(step);
    changes.push_back(step.change);
  }
  connection_.execute(sql("Update Schemastand Set Version = "_sql, number(schemaVersion)));
  maintenance_.mark();
  return changes;
}

void SchemaUpgrade::perform(const Step& step) {
  const SchemaTable& table = step.table;
  if (step.change.created) connection_.execute(createTable(table, table.name));
  if (step.change.redefined)
    maintenance_.redefine(table.name, [&](std::string_view interim) { return createTable(table, interim); });
  for (const SchemaIndex& index : step.replaced)
    connection_.execute(sql("DROP INDEX "_sql, name(index.name)));
  for (const SchemaIndex& index : step.created) connection_.execute(createIndex(table, index));
}

} // namespace qx::erp
