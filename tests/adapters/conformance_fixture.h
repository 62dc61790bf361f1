// Databases of each kind for the tests of what every adapter must do.
#pragma once

#include "adapters/ado/ado_connection.h"
#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "platform/database.h"
#include "support/ado_objects.h"
#include "support/temporary_folder.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qx {

namespace fs = std::filesystem;

/// A database of one kind, empty at first and gone with this object.
class TestDatabase {
public:
  TestDatabase() = default;
  TestDatabase(const TestDatabase&) = delete;
  TestDatabase& operator=(const TestDatabase&) = delete;
  virtual ~TestDatabase() = default;

  virtual std::unique_ptr<Connection> create() = 0;
  virtual std::unique_ptr<Connection> open() = 0;
  /// Refuses every new row of `ImportKopf` with the key 'R', gives up the unit at 'L' and leaves out 'W'.
  virtual void refuseRows(Connection& connection) = 0;
  /// Whether one unit of work keeps all others out, not only from its rows.
  virtual bool hasOneWriter() const = 0;
};

class SqliteFile final : public TestDatabase {
public:
  std::unique_ptr<Connection> create() override { return SqliteDatabase().create(file); }
  std::unique_ptr<Connection> open() override { return SqliteDatabase().open(file); }
  void refuseRows(Connection& connection) override {
    connection.execute(sql("CREATE TRIGGER refuse BEFORE INSERT ON ImportKopf WHEN new.JobID = 'R' "
                           "BEGIN SELECT RAISE(ABORT, 'nicht erlaubt'); END"_sql));
    connection.execute(sql("CREATE TRIGGER lose BEFORE INSERT ON ImportKopf WHEN new.JobID = 'L' "
                           "BEGIN SELECT RAISE(ROLLBACK, 'alles verloren'); END"_sql));
    connection.execute(sql("CREATE TRIGGER leave BEFORE INSERT ON ImportKopf WHEN new.JobID = 'W' "
                           "BEGIN SELECT RAISE(IGNORE); END"_sql));
  }
  bool hasOneWriter() const override { return true; }

  TemporaryFolder folder;
  std::string file = (folder.path() / "erp.db").string();
};

/// The same, reached through the connection object of a host.
class HostFile final : public TestDatabase {
public:
  std::unique_ptr<Connection> create() override {
    file_.create();
    host_.emplace(file_.file);
    return open();
  }
  std::unique_ptr<Connection> open() override {
    return std::make_unique<AdoConnection>(host_->connection(),
                                           [this](std::string_view progId) { return host_->create(progId); });
  }
  void refuseRows(Connection& connection) override { file_.refuseRows(connection); }
  bool hasOneWriter() const override { return true; }

private:
  SqliteFile file_;
  std::optional<AdoDatabase> host_;
};

class ServerSchema final : public TestDatabase {
public:
  std::unique_ptr<Connection> create() override { return OdbcDatabase().create(schema_.connectionString()); }
  std::unique_ptr<Connection> open() override { return OdbcDatabase().open(schema_.connectionString()); }
  void refuseRows(Connection& connection) override {
    // A conflict with another program is what makes a server give up a unit.
    connection.execute(sql("CREATE FUNCTION refuse() RETURNS trigger LANGUAGE plpgsql AS $$ BEGIN "
                           "IF new.JobID = 'R' THEN RAISE 'nicht erlaubt'; END IF; "
                           "IF new.JobID = 'L' THEN RAISE 'alles verloren' USING ERRCODE = '40001'; END IF; "
                           "IF new.JobID = 'W' THEN RETURN NULL; END IF; RETURN new; END $$"_sql));
    connection.execute(
        sql("CREATE TRIGGER refuse BEFORE INSERT ON ImportKopf FOR EACH ROW EXECUTE FUNCTION refuse()"_sql));
  }
  bool hasOneWriter() const override { return false; }

private:
  TestSchema schema_;
};

/// A kind of database by its name.
struct Kind {
  std::string_view name;
  std::unique_ptr<TestDatabase> (*make)();

  friend std::ostream& operator<<(std::ostream& stream, const Kind& kind) { return stream << kind.name; }
};

template <class Database>
constexpr Kind kind(std::string_view name) {
  return {name, []() -> std::unique_ptr<TestDatabase> { return std::make_unique<Database>(); }};
}

class DatabaseConformance : public ::testing::TestWithParam<Kind> {
protected:
  void SetUp() override {
    database_ = GetParam().make();
    connection_ = database_->create();
    connection_->execute(
        sql("CREATE TABLE ImportKopf (JobID CODE PRIMARY KEY NOT NULL, JobType SMALLINT, Eingangsdatum TEXT, "
            "Kundennummer CODE, \"VS_Straße\" TEXT, Preis DOUBLE, Neukunde BOOLEAN, Betrag MONEY, "
            "Land TEXT DEFAULT 'DE', ProcessWarning SMALLINT)"_sql));
    connection_->execute(sql(
        "CREATE TABLE Kostenzuordnung (KostID ASSIGNED PRIMARY KEY, Kostenstelle TEXT, Kostentraeger TEXT)"_sql));
  }

  void add(std::string_view key, std::int16_t type, std::string_view date, std::string_view customer = "") {
    const auto rows =
        connection_->open(sql("SELECT * From ImportKopf where JobID = '"_sql, value(key), "'"_sql));
    rows->addNew();
    rows->set("JobID", Value(key));
    rows->set("JobType", Value(type));
    rows->set("Eingangsdatum", Value(date));
    rows->set("Kundennummer", Value(customer));
    rows->update();
  }
  std::string keys(const Sql& statement) {
    std::string found;
    const auto rows = connection_->open(statement);
    for (; !rows->eof(); rows->moveNext()) found += rows->text("JobID") + " ";
    return found;
  }
  std::unique_ptr<Connection> another() { return database_->open(); }
  /// Keeps the row 'A', which must exist, from all others while the unit of the connection lasts.
  static void hold(Connection& connection) {
    connection.execute(sql("Update ImportKopf Set ProcessWarning = 7 Where JobID = 'A'"_sql));
  }

  std::unique_ptr<TestDatabase> database_;
  std::unique_ptr<Connection> connection_;
};

} // namespace qx
