// The database server of the tests.
#pragma once

#include "platform/database.h"

#include <memory>
#include <string>

namespace qx {

/// The connection string of the server: $QXIMPORTJOB_TEST_ODBC, or what the file $QXIMPORTJOB_TEST_SERVER
/// holds, which ctest keeps while its server runs. Raises `std::runtime_error` without one.
std::string testServer();

/// An empty schema of its own on the server of the tests, which is removed with all that is in it.
class TestSchema {
public:
  TestSchema();
  TestSchema(const TestSchema&) = delete;
  TestSchema& operator=(const TestSchema&) = delete;
  ~TestSchema();

  /// Opens the server's database with this schema.
  const std::string& connectionString() const { return connectionString_; }

private:
  std::string name_;
  std::string connectionString_;
  std::unique_ptr<Connection> owner_;
};

} // namespace qx
