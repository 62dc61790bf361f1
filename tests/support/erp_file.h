// The tables of the standalone ERP in a database of their own, with fakes for everything else.
#pragma once

#include "support/database_access.h"
#include "support/fake_session.h"
#include "support/server_texts.h"
#include "support/temporary_folder.h"
#include "support/test_database.h"

#include <memory>
#include <string>
#include <string_view>

namespace qx {

/// `FakeWorld` on a real database.
struct ErpFile : FakeWorld, DatabaseAccess {
  TemporaryFolder folder;
  std::string path = (folder.path() / "erp.db").string();
  TestDatabase where{path};

  ErpFile() { connect(where.create()); }

  void connect(std::shared_ptr<Connection> database) {
    environment.connection = std::move(database);
    session->database = environment.connection;
  }
  /// For statements of the test.
  Connection& connection() override { return withoutServerTexts(*environment.connection); }
  /// Another program's connection to the same database.
  std::unique_ptr<Connection> secondConnection() const { return where.another(); }
  std::shared_ptr<Connection> hostConnection() const { return where.host(); }

  void set(std::string_view key, std::string_view value, std::string_view section = "ImportJob2") {
    session->SaveSetting(section, key, value);
  }
};

} // namespace qx
