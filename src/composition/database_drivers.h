// The kinds of databases that the programs can work on.
#pragma once

#include "platform/database.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// A database that a user has named.
struct DatabaseTarget {
  Database& database;
  std::string connectionString; ///< as `database` expects it
  std::string displayed;        ///< as messages name it, without passwords
};

/// The one list of kinds: whoever adds a kind adds its line here and its folder in `adapters`.
class DatabaseDrivers {
public:
  DatabaseDrivers();

  /// Finds the kind of a target by what the target begins with; whatever begins with no known kind is the
  /// name of a file. Raises `ProgramError` when the text is malformed.
  DatabaseTarget find(std::string_view target) const;

private:
  struct Driver {
    std::string_view scheme; ///< what targets of this kind begin with
    std::string_view form;   ///< how they are written
    std::unique_ptr<Database> database;
  };

  std::vector<std::string_view> columnNames_;
  std::vector<Driver> drivers_; ///< that of files last
};

} // namespace qx
