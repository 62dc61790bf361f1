// The port for what concerns a database as a whole: backups and the upgrade of its tables.
#pragma once

#include "platform/sql.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The copy must not be written there; `what()` names the file and says why. Nothing was changed.
class BackupRefused : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// What happens to an existing file that stands where a backup is to be written.
enum class ExistingFile : std::uint8_t { Refuse, Replace };

/// What the database holds under the name of a table or index, compared with what a statement would create.
enum class Definition : std::uint8_t { Missing, Equal, Different };

/// How an upgrade changed one table.
struct TableChange {
  std::string table;
  bool created = false;
  bool redefined = false;           ///< its rows were copied into a table defined anew
  std::vector<std::string> columns; ///< that were added
  std::vector<std::string> indexes; ///< that were created, also in place of others
};

/// Must not outlive its connection.
class Maintenance {
public:
  Maintenance() = default;
  Maintenance(const Maintenance&) = delete;
  Maintenance& operator=(const Maintenance&) = delete;
  virtual ~Maintenance() = default;

  /// The statement that creates a table under this name, and an index under this name on the table so called.
  using CreateTable = std::function<Sql(std::string_view name)>;
  using CreateIndex = std::function<Sql(std::string_view name, std::string_view table)>;

  /// The server's own tool for backups, in place of `copyTo`; empty where that does it.
  virtual std::string_view backupTool() const { return {}; }
  /// Whether the members that compare and redefine are there.
  virtual bool upgrades() const { return true; }

  /// Copies the whole database as it is at one moment; other programs go on reading and writing. Works inside
  /// a unit of the connection that has not yet written anything. The file is readable by its owner only, and
  /// has its name only when it is complete. Raises `BackupRefused`, `StoreError` or `std::system_error`,
  /// which name the file.
  virtual void copyTo(const std::filesystem::path& file, ExistingFile existing) = 0;

  /// Whether the database carries the mark of another program than this one.
  virtual bool markedByOther() = 0;
  /// Marks the database as one of this program.
  virtual void mark() = 0;

  /// For a table and an index. Call these and `redefine` inside a unit of work.
  virtual Definition compare(std::string_view table, const CreateTable& create) = 0;
  virtual Definition compareIndex(std::string_view index, std::string_view table,
                                  const CreateIndex& create) = 0;
  /// Gives a table the definition that `create` states. Rows, their order and
  /// row keys stay; columns that are new have their defaults. All columns of the table must be in the new
  /// definition. Indexes and triggers stay.
  virtual void redefine(std::string_view table, const CreateTable& create) = 0;
};

} // namespace qx
