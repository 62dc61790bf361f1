// Opens SQLite database files.
#pragma once

#include "platform/database.h"

#include <memory>
#include <string_view>

namespace qx {

/// Who may use a new database file and what is written beside it.
enum class FileSharing { Owner, Group };

/// The embedded database: the connection string is the path of a file.
class SqliteDatabase final : public Database {
public:
  /// "qxij": identifies this program's databases in the header of the file.
  static constexpr int applicationId = 0x7178696A;

  std::unique_ptr<Connection> open(std::string_view path) override;
  std::unique_ptr<Connection> create(std::string_view path) override;
  /// Creates the missing folders and an empty file, for `create` to fill. An existing file or folder stays as
  /// it is.
  static void reserve(std::string_view path, FileSharing sharing);
  /// A connection like a host's, whose units of work are not ours.
  static std::unique_ptr<Connection> openAsHost(std::string_view path);
};

} // namespace qx
