// Upgrade of the tables on a database server.
#pragma once

#include "adapters/odbc/odbc_driver.h"
#include "platform/database.h"
#include "platform/maintenance.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::odbc {

/// Compares a definition with what the server makes of the statement for it: a table or index without rows is
/// made beside the other one, described by the catalogue and dropped, inside the unit of the caller.
class ServerMaintenance final : public Maintenance {
public:
  /// The driver is the connection's; both outlive the object.
  ServerMaintenance(Connection& connection, OdbcDriver& driver) : connection_(connection), driver_(driver) {}

  std::string_view backupTool() const override;
  bool upgrades() const override { return !driver_.server().columns.empty(); }
  /// Raises `BackupRefused`, which names the tool.
  void copyTo(const std::filesystem::path& file, ExistingFile existing) override;
  /// False: a schema of the server has no mark beside its tables.
  bool markedByOther() override { return false; }
  void mark() override {}
  Definition compare(std::string_view table, const CreateTable& create) override;
  Definition compareIndex(std::string_view index, std::string_view table, const CreateIndex& create) override;
  /// Changes the table in place. Raises `StatementError` when the server cannot do that.
  void redefine(std::string_view table, const CreateTable& create) override;

private:
  struct Column {
    std::string name; ///< as statements write it
    std::string type;
    std::string standard; ///< the default; empty without one

    friend bool operator==(const Column&, const Column&) = default;
  };

  std::vector<Column> columnsOf(std::string_view table);
  /// Of the table that the statement would create.
  std::vector<Column> columnsOf(const CreateTable& create);
  std::optional<std::string> indexNamed(std::string_view index);
  std::string quoted(std::string_view name) const;
  void run(const std::string& statement);

  Connection& connection_;
  OdbcDriver& driver_;
};

} // namespace qx::odbc
