#include "adapters/odbc/server_maintenance.h"

#include "adapters/sql/translation.h"
#include "platform/database_error.h"

#include <algorithm>

namespace qx::odbc {
namespace {

using relational::ColumnKind;

/// What is made for comparison.
constexpr std::string_view likeness = "qx_vergleich";
constexpr std::string_view indexLikeness = "qx_vergleich_index";

} // namespace

std::string_view ServerMaintenance::backupTool() const { return driver_.server().backupTool; }

void ServerMaintenance::copyTo(const std::filesystem::path& file, ExistingFile /*existing*/) {
  throw BackupRefused(file.string() + ": a database of this server is backed up by " +
                      std::string(backupTool()));
}

std::string ServerMaintenance::quoted(std::string_view name) const {
  return relational::quotedName(name, driver_.dialect());
}

/// For texts that only the catalogue can give.
void ServerMaintenance::run(const std::string& statement) {
  driver_.prepare(statement, relational::StatementLife::Once)->run();
}

std::vector<ServerMaintenance::Column> ServerMaintenance::columnsOf(std::string_view table) {
  const auto statement = driver_.prepare(driver_.server().columns, relational::StatementLife::Once);
  const relational::StatementUse use(*statement);
  const Value name(quoted(table));
  statement->bind(0, name);
  std::vector<Column> columns;
  const auto text = [&](std::size_t index) { return statement->column(index, ColumnKind::Plain).text(); };
  while (statement->step()) columns.push_back({text(0), text(1), text(2)});
  return columns;
}

std::vector<ServerMaintenance::Column> ServerMaintenance::columnsOf(const CreateTable& create) {
  connection_.execute(create(likeness));
  std::vector<Column> columns = columnsOf(likeness);
  run("Drop Table " + quoted(likeness));
  return columns;
}

std::optional<std::string> ServerMaintenance::indexNamed(std::string_view index) {
  const auto statement = driver_.prepare(driver_.server().index, relational::StatementLife::Once);
  const relational::StatementUse use(*statement);
  const Value name(quoted(index));
  statement->bind(0, name);
  if (!statement->step()) return std::nullopt;
  return statement->column(0, ColumnKind::Plain).text();
}

Definition ServerMaintenance::compare(std::string_view table, const CreateTable& create) {
  const std::vector<Column> stored = columnsOf(table);
  if (stored.empty()) return Definition::Missing;
  return stored == columnsOf(create) ? Definition::Equal : Definition::Different;
}

Definition ServerMaintenance::compareIndex(std::string_view index, std::string_view table,
                                           const CreateIndex& create) {
  const auto stored = indexNamed(index);
  if (!stored) return Definition::Missing;
  run("Create Table " + quoted(likeness) + " (Like " + quoted(table) + ")");
  std::optional<std::string> wanted;
  try {
    connection_.execute(create(indexLikeness, likeness));
    wanted = indexNamed(indexLikeness);
  } catch (const StatementError&) {
    // It is on a column that the table does not have yet, so the stored one is another.
  }
  run("Drop Table " + quoted(likeness));
  return stored == wanted ? Definition::Equal : Definition::Different;
}

void ServerMaintenance::redefine(std::string_view table, const CreateTable& create) {
  const std::vector<Column> stored = columnsOf(table);
  const std::string alter = "Alter Table " + quoted(table);
  for (const Column& column : columnsOf(create)) {
    const auto before = std::ranges::find(stored, column.name, &Column::name);
    if (before == stored.end()) {
      run(alter + " Add Column " + column.name + " " + column.type +
          (column.standard.empty() ? "" : " Default " + column.standard));
      continue;
    }
    const std::string change = alter + " Alter Column " + column.name;
    if (before->type != column.type) run(change + " Type " + column.type);
    if (before->standard != column.standard)
      run(change + (column.standard.empty() ? " Drop Default" : " Set Default " + column.standard));
  }
}

} // namespace qx::odbc
