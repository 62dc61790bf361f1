// Brings the tables of an earlier version to those of this one.
#pragma once

#include "erp/schema_table.h"
#include "platform/database.h"
#include "platform/maintenance.h"

#include <stdexcept>
#include <vector>

namespace qx::erp {

/// A table holds something that the upgrade would lose; `what()` names it.
class SchemaConflict : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// The difference between the stored tables and `schemaTables()`, and the way to remove it. Every row stays,
/// new columns get their defaults, and what is right already is not touched, nor are tables, indexes,
/// triggers and views of others.
class SchemaUpgrade {
public:
  /// Compares only. Raises `SchemaConflict` when a table has a column that this version does not know.
  SchemaUpgrade(Connection& connection, Maintenance& maintenance);

  /// Changes the tables, stores the version and marks the database. Call it inside the unit of work in which
  /// the object was made. Returns the tables that were changed.
  std::vector<TableChange> perform();

private:
  struct Step {
    SchemaTable table;
    TableChange change;
    std::vector<SchemaIndex> replaced; ///< indexes of another definition
    std::vector<SchemaIndex> created;  ///< those and the missing ones
  };

  Step compared(const SchemaTable& table);
  void perform(const Step& step);

  Connection& connection_;
  Maintenance& maintenance_;
  std::vector<Step> steps_;
};

} // namespace qx::erp
