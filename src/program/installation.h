// The port to the database and the ERP that a command works on.
#pragma once

#include "platform/environment.h"
#include "platform/maintenance.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace qx {

/// Who may use a new database.
enum class DatabaseUsers : std::uint8_t { Owner, Group };

struct InstallationReport {
  bool created = false;
  bool demo = false;
  std::size_t staged = 0; ///< demo jobs
};

/// What an upgrade did; without changes and backup when the database had the version of the program.
struct UpgradeReport {
  std::int64_t from = 0;
  std::int64_t to = 0;
  std::filesystem::path backup;
  std::vector<TableChange> changes;

  bool upgraded() const { return from != to; }
};

/// Implemented in the composition.
class Installation {
public:
  virtual ~Installation() = default;
  /// Opens the database, which must hold our schema, and connects the ERP's session. Raises `ProgramError`,
  /// which says how to create one, or a database error.
  virtual Environment& open() = 0;
  /// Creates the database unless it exists.
  virtual InstallationReport create(bool demo, DatabaseUsers users) = 0;
  /// Backs the database up and brings its tables to the version of the program; does nothing when they have
  /// it. A server's own tool makes the backup: `backupMade` says that it has. Raises `ProgramError` without
  /// it, and for a database that is not ours, of a newer version, or being processed.
  virtual UpgradeReport upgrade(bool backupMade) = 0;
};

} // namespace qx
