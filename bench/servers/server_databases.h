// Databases on the server that is measured.
#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <string_view>

namespace qx {
class Connection;
}

namespace qx::bench {

/// Makes databases with the rows of files. They are dropped with the object.
class ServerDatabases {
public:
  /// The user of the connection string may create databases.
  explicit ServerDatabases(std::string_view connectionString);
  ServerDatabases(const ServerDatabases&) = delete;
  ServerDatabases& operator=(const ServerDatabases&) = delete;
  ~ServerDatabases();

  /// A database with the tables and rows of the file. Its name is made from `name`.
  void fill(const std::string& name, const std::filesystem::path& file);
  /// A fresh copy of one that was filled, in place of the last one. Returns its connection string.
  std::string copyOf(const std::string& name);

private:
  void create(const std::string& database, const std::string& likeness);
  void drop(const std::string& database);
  std::string connectionStringOf(const std::string& database) const;

  std::string connectionString_;
  std::unique_ptr<Connection> server_;
  std::set<std::string> databases_;
};

} // namespace qx::bench
