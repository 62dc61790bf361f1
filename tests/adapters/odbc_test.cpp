// What the adapter of database servers does beyond what all do, above all when the server or the way to it
// fails.
#include "adapters/odbc/connection_string.h"
#include "adapters/odbc/odbc_database.h"
#include "adapters/odbc/odbc_driver.h"
#include "platform/database.h"
#include "support/test_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace qx {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

TEST(OdbcConnectionString, KeepsWhatStandsInBracesAndHidesPasswords) {
  const odbc::ConnectionString text(
      " Driver = {PostgreSQL Unicode} ;server=db;PWD={a;b}}c}; pwd=second;;UID=x ");
  EXPECT_EQ(text.value("driver"), "PostgreSQL Unicode");
  EXPECT_EQ(text.value("PWD"), "a;b}c");
  EXPECT_EQ(text.text(), "Driver={PostgreSQL Unicode};server=db;PWD={a;b}}c};UID=x;");
  EXPECT_EQ(text.displayed(), "Driver={PostgreSQL Unicode};server=db;UID=x");
  for (const std::string_view malformed :
       {"", " ; ", "secret", "Server=a;secret", "=b", "PWD={secret", "PWD={a}b"}) {
    try {
      const odbc::ConnectionString refused(malformed);
      ADD_FAILURE() << malformed;
    } catch (const std::invalid_argument& error) {
      EXPECT_THAT(error.what(), Not(HasSubstr("secret")));
    }
  }
}

std::string replaced(std::string_view keyword, std::string_view value) {
  odbc::ConnectionString text(testServer());
  text.set(keyword, value);
  return text.text();
}

std::string messageOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const StoreError& error) {
    return error.what();
  }
  return "no failure";
}

TEST(OdbcServer, WhatPreventsAConnectionIsNamedWithCauseAndNextStep) {
  struct Row {
    std::string connectionString;
    std::string_view cause;
    std::string_view nextStep;
  };
  for (const Row& row :
       {Row{replaced("PWD", "geheim"), "password authentication failed", "Check database, user"},
        Row{replaced("Database", "fehlt"), "\"fehlt\" does not exist", "Check database, user"},
        Row{replaced("Port", "1"), "Connection refused", "Check that the server runs"},
        Row{"Driver={Fehlt};PWD=geheim", "Fehlt", "odbcinst -q -d lists"},
        Row{"DSN=fehlt;PWD=geheim", "Data source name not found", "odbcinst -q -d lists"}}) {
    const std::string message = messageOf([&] { OdbcDatabase().open(row.connectionString); });
    EXPECT_THAT(message, HasSubstr(row.cause));
    EXPECT_THAT(message, HasSubstr(row.nextStep));
    EXPECT_THAT(message, Not(HasSubstr("geheim")));
  }
}

TEST(OdbcServer, OnlyDatabasesInUtf8AreAccepted) {
  const std::string database =
      "latin_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
  const auto owner = OdbcDatabase().open(testServer());
  owner->execute(sql("Create Database "_sql, name(database),
                     " Template template0 Encoding LATIN1 LC_Collate 'C' LC_CType 'C'"_sql));
  EXPECT_THAT(
      messageOf([&] { OdbcDatabase().open(replaced("Database", database)); }),
      HasSubstr("the texts of the database are stored as LATIN1; only databases in UTF8 can be used"));
  owner->execute(sql("Drop Database "_sql, name(database)));
}

/// A table with one row in a schema of its own.
class OdbcServerTable : public ::testing::Test {
protected:
  void SetUp() override {
    connection->execute(
        sql("Create Table Lager (Artikel CODE Primary Key, Bestand SMALLINT, Preis MONEY)"_sql));
    connection->execute(sql("Insert Into Lager (Artikel, Bestand) Values ('a', 1)"_sql));
    connection->execute(sql("Insert Into Lager (Artikel, Bestand) Values ('b', 2)"_sql));
  }
  std::unique_ptr<Connection> another() { return OdbcDatabase().open(schema.connectionString()); }
  std::int64_t stock(std::string_view article) {
    return connection->open(sql("Select Bestand From Lager Where Artikel = '"_sql, value(article), "'"_sql))
        ->value("Bestand")
        .integer()
        .value_or(-1);
  }
  static void setStock(Connection& on, std::string_view article, std::int64_t stock) {
    on.execute(sql("Update Lager Set Bestand = "_sql, number(stock), " Where Artikel = '"_sql, value(article),
                   "'"_sql));
  }
  /// Ends the session of a connection from outside.
  void cut(Connection& victim) {
    const auto process = victim.open(sql("Select pg_backend_pid() As Nummer"_sql))->value("Nummer").integer();
    another()->open(sql("Select pg_terminate_backend("_sql, number(process.value_or(0)), ")"_sql));
  }

  TestSchema schema;
  std::unique_ptr<Connection> connection = OdbcDatabase().create(schema.connectionString());
};

TEST_F(OdbcServerTable, MissingRightsTablesAndColumnsAreNamed) {
  const std::string user =
      "reader_" + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
  const auto server = OdbcDatabase().open(testServer());
  server->execute(sql("Create Role "_sql, name(user), " Login Password 'geheim'"_sql));
  const auto schemaName = connection->open(sql("Select current_schema() As Name"_sql))->text("Name");
  server->execute(sql("Grant Usage On Schema "_sql, name(schemaName), " To "_sql, name(user)));
  server->execute(sql("Grant Select On All Tables In Schema "_sql, name(schemaName), " To "_sql, name(user)));
  {
    odbc::ConnectionString text(schema.connectionString());
    text.set("UID", user);
    text.set("PWD", "geheim");
    const auto reader = OdbcDatabase().open(text.text());
    EXPECT_EQ(reader->open(sql("Select * From Lager"_sql))->recordCount(), 2U);
    EXPECT_THAT(messageOf([&] { setStock(*reader, "a", 5); }),
                HasSubstr("permission denied for table lager. The user needs the right UPDATE there"));
  }
  server->execute(sql("Revoke All On All Tables In Schema "_sql, name(schemaName), " From "_sql, name(user)));
  server->execute(sql("Revoke All On Schema "_sql, name(schemaName), " From "_sql, name(user)));
  server->execute(sql("Drop Role "_sql, name(user)));

  WorkUnit unit(*connection);
  setStock(*connection, "a", 7);
  const auto stateOf = [&](const Sql& statement) {
    try {
      connection->execute(statement);
    } catch (const StatementError& error) {
      return std::string(error.sqlState());
    }
    return std::string("none");
  };
  EXPECT_EQ(stateOf(sql("Delete From Fehlt"_sql)), "42P01");
  EXPECT_EQ(stateOf(sql("Update Lager Set Fehlt = 1"_sql)), "42703");
  EXPECT_EQ(stateOf(sql("Insert Into Lager (Artikel) Values ('A')"_sql)), "23505")
      << "codes compare without case";
  unit.commit();
  EXPECT_EQ(stock("a"), 7);
}

TEST_F(OdbcServerTable, ATextIsANumberWhereTheColumnIsOne) {
  const auto rows = connection->open(sql("Select * From Lager Where Artikel = 'a'"_sql));
  const auto set = [&](const Value& value) {
    rows->set("Bestand", value);
    rows->update();
    rows->requery();
    return rows->value("Bestand");
  };
  EXPECT_EQ(set(Value("")), Value::null());
  EXPECT_EQ(set(Value("13.0")), Value(13));
  EXPECT_EQ(set(Value(14.0)), Value(14));
  EXPECT_THROW(set(Value(1.5)), StatementError);
  rows->cancelUpdate();
  EXPECT_THROW(set(Value("70000")), StatementError);
  rows->cancelUpdate();
  try {
    set(Value("viel"));
    ADD_FAILURE() << "it is no number";
  } catch (const StatementError& error) {
    EXPECT_STREQ(error.what(), "\"viel\" is not a number and cannot be stored as one");
  }
  const auto found = [&](std::string_view stock) {
    return connection->open(sql("Select * From Lager Where Bestand = '"_sql, value(stock), "'"_sql))
        ->recordCount();
  };
  EXPECT_EQ(found("14"), 1U);
  for (const std::string_view none : {"", "viel", "70000", "14.5"}) EXPECT_EQ(found(none), 0U) << none;
}

/// The driver manager lets one thread of a process wait at a time, so the other unit is that of another
/// process.
TEST_F(OdbcServerTable, OfTwoUnitsThatBlockEachOtherOneGivesWay) {
  std::array<int, 2> holding{};
  ASSERT_EQ(pipe(holding.data()), 0);
  constexpr int committed = 10;
  constexpr int gaveWay = 11;
  WorkUnit mine(*connection);
  setStock(*connection, "a", 10);
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    try {
      const auto other = another();
      WorkUnit theirs(*other);
      setStock(*other, "b", 20);
      if (write(holding[1], "!", 1) != 1) _exit(1);
      setStock(*other, "a", 20);
      theirs.commit();
      _exit(committed);
    } catch (const ConflictError&) {
      _exit(gaveWay);
    } catch (...) {
      _exit(2);
    }
  }
  char held = 0;
  ASSERT_EQ(read(holding[0], &held, 1), 1);
  bool conflict = false;
  try {
    setStock(*connection, "b", 10);
    mine.commit();
  } catch (const ConflictError&) {
    conflict = true;
    EXPECT_FALSE(connection->inWork());
    EXPECT_THROW(setStock(*connection, "b", 10), WorkLostError);
    connection->rollbackWork();
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), conflict ? committed : gaveWay);
  EXPECT_EQ(stock("a"), conflict ? 20 : 10);
  EXPECT_EQ(stock("b"), stock("a")) << "one unit as a whole, nothing of the other";
  for (const int end : holding) close(end);
}

TEST_F(OdbcServerTable, AStatementIsEndedOnRequestOrByALimit) {
  const auto sleep = [&] { connection->open(sql("Select pg_sleep(20) As Nichts"_sql)); };
  connection->interrupt();
  {
    WorkUnit unit(*connection);
    setStock(*connection, "a", 9);
    std::thread asking([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      connection->interrupt();
    });
    EXPECT_THROW(sleep(), InterruptedError);
    asking.join();
    EXPECT_FALSE(connection->inWork());
  }
  EXPECT_EQ(stock("a"), 1);
  connection->execute(sql("Set statement_timeout = '50ms'"_sql));
  EXPECT_THROW(sleep(), StatementEndedError);
}

TEST_F(OdbcServerTable, ALostConnectionLosesItsUnitAndIsOpenedAgainForTheNext) {
  EXPECT_EQ(stock("a"), 1);
  connection->beginWork(nullptr);
  setStock(*connection, "a", 5);
  cut(*connection);
  EXPECT_THAT(messageOf([&] { stock("a"); }), HasSubstr("Check that the server runs and can be reached"));
  EXPECT_FALSE(connection->inWork());
  EXPECT_THROW(setStock(*connection, "a", 6), WorkLostError);
  EXPECT_THROW(connection->commitWork(), WorkLostError);
  WorkUnit unit(*connection);
  EXPECT_EQ(stock("a"), 1);
  setStock(*connection, "a", 8);
  unit.commit();
  cut(*connection);
  WorkUnit next(*connection);
  setStock(*connection, "a", 9);
  next.commit();
  EXPECT_EQ(stock("a"), 9) << "a connection that was lost between two units is no failure";
}

TEST_F(OdbcServerTable, ManyRowsGoOutTogetherAndARefusedOneCostsTheirUnit) {
  const std::string longText = std::string(30000, 'x') + "ü'\\?";
  const auto add = [&](int from, int to) {
    WorkUnit unit(*connection);
    connection->collectWrites();
    const auto rows = connection->openKeyset(sql("Select * From Lager Where Artikel = 'x'"_sql));
    for (int i = from; i < to; ++i) {
      rows->addNew();
      rows->set("Artikel", Value(i == 201 ? longText : "O'" + std::to_string(i)));
      rows->set("Bestand", i % 2 == 0 ? Value(i) : Value(""));
      rows->set("Preis", i % 3 == 0 ? Value(*Money::parse("-0.0001")) : Value::null());
      rows->update();
    }
    unit.commit();
  };
  add(0, 250);
  EXPECT_THROW(add(249, 260), WorkLostError);
  const auto sums =
      connection->open(sql("Select Count(*) As Zeilen, Count(Bestand) As Zahlen, Sum(Bestand) As Summe, "
                           "Sum(Preis) As Betrag From Lager"_sql));
  EXPECT_EQ(sums->value("Zeilen"), Value(252));
  EXPECT_EQ(sums->value("Zahlen"), Value(127));
  EXPECT_EQ(sums->value("Summe"), Value(124 * 125 + 3)) << "two were there before";
  EXPECT_EQ(sums->value("Betrag"), Value(-0.0084));
  EXPECT_EQ(connection->open(sql("Select * From Lager Where Artikel = '"_sql, value(longText), "'"_sql))
                ->recordCount(),
            1U);
}

TEST_F(OdbcServerTable, TextsOfAnyLengthComeOutOfABlockInAnyOrderAndAsOftenAsAsked) {
  // Around the room of a value in a block and of a part of a long one; two units of UTF-16 at either end.
  std::vector<std::string> texts;
  for (const std::size_t length : {0, 1, 62, 63, 64, 65, 66, 16382, 16383, 16384, 16385, 32768, 50000})
    for (const std::string end : {"", "ß", "😀", "😀z"}) texts.push_back(std::string(length, 'x') + end);
  for (int i = 0; i < 20; ++i) texts.push_back(std::string(100, 'y') + std::to_string(i));
  connection->execute(sql("Create Table Notiz (Nummer INTEGER, Inhalt TEXT, Zahl INTEGER, Rest TEXT)"_sql));
  const auto rows = connection->open(sql("Select * From Notiz"_sql));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    rows->addNew();
    rows->set("Nummer", Value(static_cast<std::int64_t>(i)));
    rows->set("Inhalt", texts[i]);
    rows->set("Zahl", 7);
    rows->set("Rest", i % 5 == 0 ? Value::null() : Value(texts[texts.size() - 1 - i]));
    rows->update();
  }
  odbc::OdbcDriver driver(odbc::ConnectionString(schema.connectionString()));
  const auto select = driver.prepare("Select inhalt, zahl, rest From notiz Order By nummer",
                                     relational::StatementLife::Cached);
  using relational::ColumnKind;
  for (int round = 0; round < 2; ++round) {
    const relational::StatementUse use(*select);
    for (std::size_t i = 0; i < texts.size(); ++i) {
      ASSERT_TRUE(select->step());
      const Value rest = i % 5 == 0 ? Value::null() : Value(texts[texts.size() - 1 - i]);
      EXPECT_TRUE(select->column(2, ColumnKind::Plain) == rest) << i;
      EXPECT_TRUE(select->column(0, ColumnKind::Plain) == Value(texts[i])) << i;
      EXPECT_EQ(select->column(1, ColumnKind::Plain), Value(7));
      EXPECT_TRUE(select->column(0, ColumnKind::Plain) == Value(texts[i])) << i << ", once more";
      EXPECT_TRUE(select->column(2, ColumnKind::Plain) == rest) << i << ", once more";
    }
    EXPECT_FALSE(select->step());
  }
}

TEST_F(OdbcServerTable, ChangedTablesAreReadAnew) {
  const auto select = sql("Select * From Lager Where Artikel = 'a'"_sql);
  EXPECT_EQ(connection->open(select)->fieldCount(), 3U);
  another()->execute(sql("Alter Table Lager Add Ort TEXT"_sql));
  EXPECT_EQ(connection->open(select)->fieldCount(), 4U);
}

TEST_F(OdbcServerTable, AReadViewStaysTheSameWhoeverWrites) {
  const auto other = another();
  {
    const ReadView view(*connection);
    EXPECT_EQ(stock("a"), 1);
    setStock(*other, "a", 5);
    EXPECT_THROW(connection->open(sql("Select * From Fehlt"_sql)), StatementError);
    EXPECT_EQ(stock("a"), 1);
  }
  EXPECT_EQ(stock("a"), 5);
}

} // namespace
} // namespace qx
