// Backup and upgrade of a SQLite database file.
#pragma once

#include "platform/database.h"
#include "platform/maintenance.h"

#include <filesystem>
#include <functional>
#include <string_view>

namespace qx::sqlite {

class DatabaseHandle;

class SqliteMaintenance final : public Maintenance {
public:
  /// The handle is the connection's; both outlive the object.
  SqliteMaintenance(Connection& connection, const DatabaseHandle& database)
      : connection_(connection), database_(database) {}

  void copyTo(const std::filesystem::path& file, ExistingFile existing) override;
  bool markedByOther() override;
  void mark() override;
  Definition compare(std::string_view table, const CreateTable& create) override;
  Definition compareIndex(std::string_view index, std::string_view table, const CreateIndex& create) override;
  void redefine(std::string_view table, const CreateTable& create) override;

private:
  Definition compareText(std::string_view name, const Sql& create);
  void run(const std::string& statement) const;

  Connection& connection_;
  const DatabaseHandle& database_;
};

} // namespace qx::sqlite
