// Opens SQLite database files.
#pragma once

#include "platform/database.h"

#include <memory>
#include <string_view>

namespace qx {

/// The embedded database: the connection string is the path of a file.
class SqliteDatabase final : public Database {
public:
  /// "qxij": identifies this program's databases in the header of the file.
  static constexpr int applicationId = 0x7178696A;

  bool exists(std::string_view path) const override;
  std::filesystem::path folder(std::string_view path) const override;
  std::unique_ptr<Connection> open(std::string_view path) override;
  std::unique_ptr<Connection> create(std::string_view path) override;
  void reserve(std::string_view path, FileSharing sharing) override;
  /// A connection like a host's, whose units of work are not ours.
  static std::unique_ptr<Connection> openAsHost(std::string_view path);
};

} // namespace qx
