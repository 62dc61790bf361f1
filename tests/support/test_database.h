// A database of one test with the tables of the standalone ERP.
#pragma once

#include "platform/database.h"
#include "support/test_server.h"

#include <memory>
#include <string>

namespace qx {

/// A file or, with $QXIMPORTJOB_TEST_ERP = "server", a schema on the server of the tests, so that every suite
/// built on it can be run on either.
class TestDatabase {
public:
  /// `file`: where it lies when it is one.
  explicit TestDatabase(std::string file);

  bool onServer() const { return schema_ != nullptr; }
  /// Creates the tables. The connection's units of work are the component's own.
  std::shared_ptr<Connection> create();
  /// Another program's connection.
  std::unique_ptr<Connection> another() const;
  /// A host's connection, which has no units of its own.
  std::shared_ptr<Connection> host() const;

private:
  std::string file_;
  std::unique_ptr<TestSchema> schema_;
};

} // namespace qx
