// What every database adapter must do, shown with one table.
#include "conformance_fixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace qx {
namespace {

class GiveUpAfter final : public BusyWait {
public:
  explicit GiveUpAfter(std::chrono::milliseconds limit) : limit_(limit) {}
  bool goOn(std::chrono::milliseconds waited) override {
    ++calls;
    return waited < limit_;
  }
  int calls = 0;

private:
  std::chrono::milliseconds limit_;
};

INSTANTIATE_TEST_SUITE_P(Sqlite, DatabaseConformance, ::testing::Values(kind<SqliteFile>("sqlite")));
INSTANTIATE_TEST_SUITE_P(Server, DatabaseConformance, ::testing::Values(kind<ServerSchema>("odbc")));

/// What a connection does that has no units of its own.
class RowConformance : public DatabaseConformance {};

INSTANTIATE_TEST_SUITE_P(Sqlite, RowConformance, ::testing::Values(kind<SqliteFile>("sqlite")));
INSTANTIATE_TEST_SUITE_P(Server, RowConformance, ::testing::Values(kind<ServerSchema>("odbc")));
INSTANTIATE_TEST_SUITE_P(Host, RowConformance, ::testing::Values(kind<HostFile>("ado")));

/// What only files do.
class FileConformance : public DatabaseConformance {
protected:
  SqliteFile& file() { return dynamic_cast<SqliteFile&>(*database_); }
};

INSTANTIATE_TEST_SUITE_P(Sqlite, FileConformance, ::testing::Values(kind<SqliteFile>("sqlite")));

TEST_P(RowConformance, ValuesAreDataWhateverTheyHold) {
  const std::string nasty = "O'Brien'; DROP TABLE ImportKopf; -- \"ä€😀\" [x] ? " + std::string(10000, 'x');
  add(nasty, 10, "01.01.2026", nasty);
  const auto found =
      connection_->open(sql("SELECT * From ImportKopf where Kundennummer = '"_sql, value(nasty), "'"_sql));
  ASSERT_EQ(found->recordCount(), 1U);
  EXPECT_EQ(found->text("JobID"), nasty);
}

TEST_P(RowConformance, ColumnsAreFoundWithoutRegardToCaseAndSharpS) {
  add("A", 10, "");
  auto rows = connection_->open(sql("Select * From [ImportKopf] where [JobID] = '"_sql, value("a"), "'"_sql));
  rows->set("vs_strasse", Value("Am Wall 1"));
  rows->update();
  rows->requery();
  EXPECT_EQ(rows->text("VS_Straße"), "Am Wall 1");
  EXPECT_FALSE(rows->hasField("Straße"));
  EXPECT_THROW(rows->value("Straße"), StatementError);
}

TEST_P(RowConformance, KindsComeBackAsDeclaredAndUnsetColumnsTakeTheirDefault) {
  add("A", 10, "");
  auto rows = connection_->open(sql("SELECT * From ImportKopf"_sql));
  rows->set("Preis", Value(10.0));
  rows->set("Neukunde", Value(true));
  rows->set("Betrag", Value(*Money::parse("19.9999")));
  rows->update();
  rows->requery();
  EXPECT_EQ(rows->value("Preis"), Value(10.0));
  EXPECT_EQ(rows->value("Neukunde"), Value(true));
  EXPECT_EQ(rows->value("Betrag"), Value(*Money::parse("19.9999")));
  EXPECT_EQ(rows->value("Land"), Value("DE"));
  EXPECT_TRUE(rows->value("ProcessWarning").isNull());
}

TEST_P(RowConformance, AnUnknownColumnInAStatementIsAnErrorAndNotAText) {
  EXPECT_THROW(connection_->open(sql("SELECT * From ImportKopf Where \"Gibtsnicht\" = 1"_sql)),
               StatementError);
  EXPECT_THROW(connection_->execute(sql("Delete From Fehlt"_sql)), StatementError);
}

TEST_P(RowConformance, EqualSortKeysAndUnorderedRowsComeInInsertionOrder) {
  add("C", 10, "", "7");
  add("A", 10, "", "7");
  add("B", 10, "", "10");
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "C A B ");
  EXPECT_EQ(
      keys(sql("Select * From ImportKopf Where JobType = "_sql, number(10), " Order By Kundennummer"_sql)),
      "B C A ");
  EXPECT_EQ(keys(sql("Select * From ImportKopf Order By Kundennummer DESC"_sql)), "A C B ");
}

TEST_P(RowConformance, ReceiptDatesSortByTimeAndUnreadableOnesFirst) {
  const std::array<std::pair<const char*, const char*>, 8> dates{{{"late", "02.12.2006"},
                                                                  {"early", "15.01.2006"},
                                                                  {"now", "now"},
                                                                  {"no such day", "31.02.2006"},
                                                                  {"short", "1.2.06"},
                                                                  {"old", "1.2.30"},
                                                                  {"timed", "03.12.2006 7:05"},
                                                                  {"leap", "29.02.2004"}}};
  for (const auto& [key, date] : dates) add(key, 10, date);
  EXPECT_EQ(keys(sql("Select * From ImportKopf Order by Eingangsdatum"_sql)),
            "now no such day old leap early short late timed ");
  EXPECT_EQ(keys(sql("Select * From ImportKopf Order by Eingangsdatum DESC"_sql)),
            "timed late short early leap old no such day now ");
}

TEST_P(RowConformance, ChronologicalOrderAgreesWithTheDateReader) {
  const std::array<std::string, 20> texts{
      "01.01.2000", "1.1.00",      "31.12.1999", "31.04.2001",     "30.04.2001",    "29.02.1900",
      "29.02.2000", "00.01.2001",  "01.13.2001", "1.1.2001 24:00", "1.1.2001 9:61", "1.1.2001 09:05:07",
      "1.1.2001 ",  " 1.1.2001",   "1.1.200",    "1.1.20011",      "01/01/2001",    "",
      "1.1.29",     "1.1.2001 1:2"};
  for (const std::string& text : texts) {
    add(text + "#", 10, text);
    const auto rows =
        connection_->open(sql("SELECT Convert(DateTime, Eingangsdatum, 104) as FormatDatum From ImportKopf "
                              "Where JobID = '"_sql,
                              value(text + "#"), "'"_sql));
    const auto date = parseGermanDate(text);
    if (!date) {
      EXPECT_TRUE(rows->value("FormatDatum").isNull()) << text;
      continue;
    }
    const std::int64_t expected = static_cast<int>(date->year()) * 10000 +
                                  static_cast<std::int64_t>(static_cast<unsigned>(date->month())) * 100 +
                                  static_cast<unsigned>(date->day());
    EXPECT_EQ(rows->value("FormatDatum"), Value(expected)) << text;
  }
}

TEST_P(RowConformance, AKeysetKeepsItsRowsWhileTheyChange) {
  add("A", 10, "", "1");
  add("B", 10, "", "2");
  add("C", 10, "", "3");
  const auto rows = connection_->openKeyset(
      sql("Select * From ImportKopf Where JobType = "_sql, number(10), " Order By Kundennummer"_sql));
  ASSERT_EQ(rows->recordCount(), 3U);
  rows->set("JobType", Value(std::int16_t{13}));
  rows->update();
  connection_->execute(sql("Delete From ImportKopf where JobID = 'B'"_sql));
  connection_->execute(sql("Update ImportKopf Set Kundennummer = '9' where JobID = 'C'"_sql));
  add("D", 10, "", "4");
  EXPECT_EQ(rows->value("JobType"), Value(std::int16_t{13}));
  rows->moveNext();
  EXPECT_FALSE(rows->resync());
  EXPECT_TRUE(rows->value("JobID").isNull());
  rows->moveNext();
  EXPECT_TRUE(rows->resync());
  EXPECT_EQ(rows->text("Kundennummer"), "9");
  rows->moveNext();
  EXPECT_TRUE(rows->eof());
  rows->requery();
  EXPECT_EQ(rows->recordCount(), 2U);
}

TEST_P(RowConformance, AKeysetDoesNotTakeANewRowForADeletedOne) {
  add("A", 10, "");
  add("B", 10, "");
  const auto rows = connection_->openKeyset(sql("Select * From ImportKopf Where JobType = "_sql, number(10)));
  connection_->execute(sql("Delete From ImportKopf where JobID = 'B'"_sql));
  add("X", 10, "");
  rows->moveNext();
  EXPECT_FALSE(rows->resync());
}

TEST_P(RowConformance, ARowWithoutItsKeyInTheListCanBeChanged) {
  add("A", 11, "");
  connection_->execute(sql("Update ImportKopf Set ProcessWarning = 1"_sql));
  const auto rows = connection_->openKeyset(
      sql("Select JobType, ProcessWarning From ImportKopf Where ProcessWarning = 1"_sql));
  rows->set("JobType", Value(std::int16_t{10}));
  rows->update();
  EXPECT_EQ(keys(sql("Select JobID From ImportKopf Where JobType = '10'"_sql)), "A ");
}

TEST_P(RowConformance, AnAssignedKeyIsReadAfterTheInsert) {
  const auto rows = connection_->open(sql("Select * FROM Kostenzuordnung WHERE Kostenstelle Is Null"_sql));
  rows->addNew();
  rows->set("Kostenstelle", Value("100"));
  rows->update();
  const auto first = rows->value("KostID").integer();
  ASSERT_TRUE(first.has_value());
  rows->addNew();
  rows->set("Kostenstelle", Value("200"));
  rows->update();
  EXPECT_EQ(rows->value("KostID").integer(), *first + 1);
  connection_->execute(sql("Insert Into Kostenzuordnung (KostID, Kostenstelle) Values (7, '300')"_sql));
  rows->addNew();
  rows->set("Kostenstelle", Value("400"));
  rows->update();
  EXPECT_EQ(rows->value("KostID").integer(), 8) << "the number after the highest";
}

TEST_P(RowConformance, PendingValuesAreSeenUntilTheyAreCancelled) {
  add("A", 10, "", "1");
  const auto rows = connection_->open(sql("Select * From ImportKopf"_sql));
  rows->set("Kundennummer", Value("2"));
  EXPECT_EQ(rows->text("Kundennummer"), "2");
  rows->cancelUpdate();
  EXPECT_EQ(rows->text("Kundennummer"), "1");
  rows->addNew();
  EXPECT_TRUE(rows->value("Kundennummer").isNull());
  rows->cancelUpdate();
  EXPECT_EQ(rows->text("Kundennummer"), "1");
}

TEST_P(RowConformance, AggregatesAndComputedColumnsCannotBeChanged) {
  add("A", 10, "");
  const auto sum = connection_->open(sql("SELECT Sum([Preis]*JobType) AS Gesamt From ImportKopf"_sql));
  EXPECT_TRUE(sum->value("Gesamt").isNull());
  const auto rows =
      connection_->open(sql("SELECT *, Cast(Kundennummer as int) as intPos From ImportKopf"_sql));
  EXPECT_EQ(rows->value("intPos"), Value(std::int64_t{0}));
  EXPECT_THROW(rows->set("intPos", Value(1.0)), StatementError);
  EXPECT_THROW(connection_->openKeyset(sql("Select Sum(Preis) as s From ImportKopf"_sql)), StatementError);
}

TEST_P(DatabaseConformance, AUnitIsAllOrNothingAndASavepointAPartOfIt) {
  {
    WorkUnit unit(*connection_);
    add("A", 10, "");
  }
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "");
  {
    WorkUnit unit(*connection_);
    add("A", 10, "");
    {
      Savepoint part(*connection_);
      add("B", 10, "");
    }
    Savepoint part(*connection_);
    add("C", 10, "");
    part.release();
    unit.commit();
  }
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "A C ");
}

TEST_P(DatabaseConformance, ARefusedStatementLeavesTheUnitOpenAndALostUnitSaysSo) {
  add("A", 10, "");
  database_->refuseRows(*connection_);
  connection_->beginWork(nullptr);
  add("B", 10, "");
  try {
    add("R", 10, "");
    FAIL() << "the trigger must refuse the row";
  } catch (const StatementError& error) {
    EXPECT_STREQ(error.what(), "nicht erlaubt");
  }
  EXPECT_TRUE(connection_->inWork());
  EXPECT_THROW(add("A", 10, ""), StatementError);
  EXPECT_THROW(add("L", 10, ""), WorkLostError);
  EXPECT_FALSE(connection_->inWork());
  // Nothing is written outside of the unit until its owner has taken note.
  EXPECT_THROW(add("D", 10, ""), WorkLostError);
  EXPECT_THROW(connection_->beginWork(nullptr), WorkLostError);
  EXPECT_THROW(connection_->commitWork(), WorkLostError);
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "A ");
}

TEST_P(DatabaseConformance, AUnitThatIsLostBelowASavepointIsLostAsAWhole) {
  database_->refuseRows(*connection_);
  WorkUnit unit(*connection_);
  {
    Savepoint part(*connection_);
    EXPECT_THROW(add("L", 10, ""), WorkLostError);
  }
  EXPECT_THROW(add("D", 10, ""), WorkLostError) << "the end of the part does not make the loss forgotten";
  EXPECT_THROW(unit.commit(), WorkLostError);
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "");
}

TEST_P(DatabaseConformance, ARowThatTheDatabaseSilentlyLeavesOutIsRefused) {
  database_->refuseRows(*connection_);
  add("A", 10, "");
  EXPECT_THROW(add("W", 10, ""), StatementError);
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "A ");
}

TEST_P(RowConformance, AValueWithoutAPlaceInTheStatementIsAnError) {
  EXPECT_THROW(connection_->execute(sql("Delete From ImportKopf -- '"_sql, value("x"), "'"_sql)),
               StatementError);
}

TEST_P(DatabaseConformance, AnotherProgramMayWriteBetweenUnitsWhileAKeysetIsOpen) {
  for (const char* key : {"A", "B", "C"}) add(key, 10, "");
  const auto other = another();
  const auto rows = connection_->openKeyset(sql("Select * From ImportKopf Where JobType = "_sql, number(10)));
  int written = 0;
  for (; !rows->eof(); rows->moveNext()) {
    WorkUnit unit(*connection_);
    rows->resync();
    rows->set("JobType", Value(std::int16_t{13}));
    rows->update();
    unit.commit();
    other->execute(sql("INSERT INTO ImportKopf (JobID, JobType) VALUES ('"_sql,
                       value("new" + std::to_string(written)), "', 10)"_sql));
    ++written;
  }
  EXPECT_EQ(written, 3);
}

TEST_P(DatabaseConformance, ABusyDatabaseIsWaitedForAsLongAsTheCallerSays) {
  add("A", 10, "");
  const auto other = another();
  WorkUnit held(*other);
  hold(*other);
  GiveUpAfter wait(std::chrono::milliseconds(40));
  const auto begin = [&] {
    connection_->beginWork(&wait);
    hold(*connection_);
  };
  EXPECT_THROW(begin(), BusyError);
  EXPECT_GT(wait.calls, database_->hasOneWriter() ? 3 : 0);
  EXPECT_EQ(connection_->inWork(), !database_->hasOneWriter());
  connection_->rollbackWork();
}

TEST_P(FileConformance, AUnitWaitsForAnotherOneByItself) {
  auto other = another();
  other->beginWork(nullptr);
  std::thread holder([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(900));
    other->rollbackWork();
  });
  EXPECT_NO_THROW(connection_->beginWork(nullptr));
  holder.join();
  connection_->rollbackWork();
}

/// Reads on the waiting connection and lets it continue after a while.
class ReadingWait final : public BusyWait {
public:
  ReadingWait(Connection& own, Connection& other) : own_(own), other_(other) {}
  bool goOn(std::chrono::milliseconds) override {
    rows = own_.open(sql("Select * From ImportKopf"_sql))->recordCount();
    if (++asked == 2) other_.rollbackWork();
    return true;
  }
  std::size_t rows = 99;
  int asked = 0;

private:
  Connection& own_;
  Connection& other_;
};

TEST_P(DatabaseConformance, WhoeverWaitsMayUseTheConnectionMeanwhile) {
  add("A", 10, "");
  const auto other = another();
  other->beginWork(nullptr);
  hold(*other);
  ReadingWait wait(*connection_, *other);
  connection_->beginWork(&wait);
  add("B", 10, "");
  hold(*connection_);
  EXPECT_TRUE(connection_->inWork());
  EXPECT_EQ(wait.rows, database_->hasOneWriter() ? 1U : 2U);
  EXPECT_EQ(wait.asked, 2);
  connection_->commitWork();
  EXPECT_EQ(keys(sql("Select * From ImportKopf Where ProcessWarning = 7 Or JobID = 'B'"_sql)), "A B ");
}

TEST_P(FileConformance, NoUnitBeginsOnAFileThatWasRemovedOrReplaced) {
  const std::string& path = file().file;
  const std::string aside = path + ".alt";
  fs::rename(path, aside);
  EXPECT_THROW(connection_->beginWork(nullptr), StoreError);
  fs::copy_file(aside, path);
  EXPECT_THROW(connection_->beginWork(nullptr), StoreError) << "another file of the same name";
  EXPECT_FALSE(connection_->inWork());
  fs::remove(path);
  fs::rename(aside, path);
  EXPECT_NO_THROW(connection_->beginWork(nullptr));
  connection_->rollbackWork();
}

TEST_P(FileConformance, OnAHostsConnectionUnitsDoNothing) {
  const auto host = SqliteDatabase::openAsHost(file().file);
  host->beginWork(nullptr);
  host->execute(sql("INSERT INTO ImportKopf (JobID) VALUES ('H')"_sql));
  host->rollbackWork();
  EXPECT_FALSE(host->ownsWork());
  EXPECT_EQ(keys(sql("Select * From ImportKopf"_sql)), "H ");
}

TEST_P(RowConformance, AStreamReadsForwardAndChangesNothing) {
  for (const char* key : {"A", "B", "C"}) add(key, 10, "");
  const auto rows =
      connection_->openStream(sql("Select JobID From ImportKopf Where JobType = "_sql, number(10)));
  std::string found;
  for (; !rows->eof(); rows->moveNext()) found += rows->text("JobID");
  EXPECT_EQ(found, "ABC");
  EXPECT_THROW(rows->set("JobID", Value("X")), StatementError);
}

TEST_P(FileConformance, WhatCannotBeOpenedIsNamedWithItsCause) {
  const auto message = [](const std::string& target) {
    try {
      SqliteDatabase().open(target);
    } catch (const StoreError& error) {
      return std::string(error.what());
    }
    return std::string("opened");
  };
  const std::string folder = file().folder.path().string();
  EXPECT_EQ(message(folder + "/none.db"), folder + "/none.db: there is no such file");
  EXPECT_EQ(message(folder), folder + ": is a directory");
  const std::string text = folder + "/text.db";
  std::ofstream(text) << std::string(5000, 'x');
  EXPECT_EQ(message(text), text + ": file is not a database");
}

TEST_P(RowConformance, PutAddsARowOrOverwritesTheOtherColumnsOfTheOneWithItsKey) {
  const auto put = [&](const char* key, const Value& price) {
    const std::array<ColumnValue, 2> row{ColumnValue{"JobID", key}, ColumnValue{"Preis", price}};
    connection_->put("ImportKopf", row, 1);
  };
  put("it's", 1.5);
  put("B", 2.5);
  connection_->execute(sql("UPDATE ImportKopf SET Land = 'AT' WHERE JobID = 'B'"_sql));
  put("b", Value::null());
  std::string found;
  const auto rows = connection_->open(sql("SELECT * From ImportKopf"_sql));
  for (; !rows->eof(); rows->moveNext())
    found += rows->text("JobID") + " " + rows->text("Preis") + " " + rows->text("Land") + "; ";
  EXPECT_EQ(found, "it's 1.5 DE; B  AT; ");
}

TEST_P(RowConformance, TheDatabaseNamesItsTablesAndViewsAndTheKeyOfARow) {
  connection_->execute(sql("CREATE TABLE sqliteExtra (A INTEGER)"_sql));
  connection_->execute(sql("CREATE VIEW Offen AS SELECT * FROM ImportKopf"_sql));
  connection_->execute(sql("CREATE INDEX Nach_Art ON ImportKopf (JobType)"_sql));
  auto names = connection_->tableNames();
  for (std::string& name : names) name = asciiLower(name);
  EXPECT_THAT(names,
              ::testing::UnorderedElementsAre("importkopf", "kostenzuordnung", "sqliteextra", "offen"));
  add("B", 10, "");
  add("A", 10, "");
  const auto rows =
      connection_->open(sql("SELECT JobID From ImportKopf Order By "_sql, name(connection_->rowKey())));
  EXPECT_EQ(rows->text("JobID"), "B");
}

} // namespace
} // namespace qx
