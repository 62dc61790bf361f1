// The upgrade of tables that lie on a server.
#include "servers/shared_erp.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <set>

namespace qx {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

class ServerUpgrade : public ::testing::Test {
protected:
  ServerUpgrade() {
    erp.stageCustomers("K", 2);
    before = tables(erp);
  }

  /// Columns and indexes as the server describes them.
  static std::vector<std::string> tables(SharedErp& of) {
    auto all = of.listed(
        "Select table_name, column_name, data_type, numeric_precision, collation_name, column_default, "
        "is_nullable, is_identity From information_schema.columns Where table_schema = current_schema() "
        "Order By table_name, column_name"_sql);
    const auto indexes = of.listed("Select tablename, indexname, substring(indexdef From 'UNIQUE'), "
                                   "substring(indexdef From ' USING .*') From "
                                   "pg_indexes Where schemaname = current_schema() Order By indexname"_sql);
    all.insert(all.end(), indexes.begin(), indexes.end());
    return all;
  }
  std::vector<std::string> content() {
    auto all = erp.listed("Select * From Kundenstamm Order By Kundennummer"_sql);
    const auto jobs =
        erp.listed("Select JobID, JobType, Kundennummer, Bez1 From ImportKopf Order By JobID"_sql);
    all.insert(all.end(), jobs.begin(), jobs.end());
    return all;
  }
  /// Tables as an earlier program might have made them, and something of another program's.
  void makeOlder() {
    erp.execute("Alter Table Auftragspos Drop Column "_sql, name("ÄndUser"));
    erp.execute("Alter Table ImportKopf Drop Column IndFild4"_sql);
    erp.execute("Alter Table Kundenstamm Alter Column Bez1 Type text Collate ucs_basic"_sql);
    erp.execute("Alter Table Kundenstamm Alter Column MwSt_KZ Drop Default"_sql);
    erp.execute("Alter Table Kundenstamm Alter Column Preistyp Set Default 7"_sql);
    erp.execute("Drop Table Belegindex"_sql);
    erp.execute("Drop Index ImportKopf_Datum"_sql);
    erp.execute("Create Index ImportKopf_Datum On ImportKopf (JobType)"_sql);
    erp.execute("Drop Index Adressenstamm_Adresse"_sql);
    erp.execute("Create Index Adressenstamm_Adresse On Adressenstamm (Kundennummer, Adressnummer)"_sql);
    erp.execute("Alter Table ImportKopf Drop Column Betreff"_sql);
    erp.execute("Create Index ImportKopf_Betreff On ImportKopf (Bez2)"_sql);
    erp.execute("Create Index Fremd On ImportKopf (Bez2)"_sql);
    erp.execute("Create View Sicht As Select JobID, Bez1 From ImportKopf"_sql);
    erp.execute("Update Schemastand Set Version = 3"_sql);
  }
  void removeForeign() {
    erp.execute("Drop Index Fremd"_sql);
    erp.execute("Drop View Sicht"_sql);
  }

  SharedErp erp{Kept::OnTheServer};
  std::vector<std::string> before;
};

TEST_F(ServerUpgrade, TablesOfAnEarlierProgramAreUpgradedInOneUnitWithEveryRow) {
  makeOlder();
  const auto rows = content();
  const ProgramResult older = erp.run({"list"});
  EXPECT_EQ(older.status, 4);
  EXPECT_THAT(older.messages,
              HasSubstr("the database has version 3, this program works with version 6\nUpgrade it, "
                        "after a backup, with: qximportjob --db"));
  const ProgramResult unsaved = erp.run({"upgrade"});
  EXPECT_EQ(unsaved.status, 2);
  EXPECT_THAT(unsaved.messages,
              AllOf(HasSubstr("the server's own tool, pg_dump, then start: qximportjob --db"),
                    HasSubstr(" upgrade --backup-made\n")));
  EXPECT_EQ(erp.text("Select Version From Schemastand"_sql), "3");

  const ProgramResult result = erp.run({"upgrade", "--backup-made"});
  ASSERT_EQ(result.status, 0) << result.messages;
  EXPECT_EQ(result.output,
            "The database was upgraded from version 3 to version 6.\n"
            "  ImportKopf: columns defined anew; added Betreff, IndFild4; index ImportKopf_Datum, "
            "ImportKopf_Betreff\n"
            "  Kundenstamm: columns defined anew\n"
            "  Adressenstamm: columns unchanged; index Adressenstamm_Adresse\n"
            "  Auftragspos: columns defined anew; added ÄndUser\n"
            "  Belegindex: created; index Belegindex_Beleg\n");
  EXPECT_EQ(content(), rows);
  EXPECT_EQ(erp.text("Select Count(*) From Sicht"_sql), "2") << "what others have made stays";
  removeForeign();
  EXPECT_EQ(tables(erp), before);
  EXPECT_EQ(erp.run({"upgrade", "--backup-made"}).output,
            "The database has version 6 already; nothing was changed.\n");
  EXPECT_EQ(erp.run({"process"}).status, 0);
  erp.expectWrittenOnce(2);
  const ProgramResult backup = erp.run({"backup", "erp.db"});
  EXPECT_EQ(backup.status, 2);
  EXPECT_THAT(backup.messages, HasSubstr("Use the server's own tool: pg_dump."));
}

TEST_F(ServerUpgrade, WhatPreventsItLeavesTheTablesAsTheyAre) {
  makeOlder();
  const auto older = tables(erp);
  struct Case {
    std::function<void()> begin;
    std::function<void()> end;
    int status;
    std::string_view message;
  };
  for (const Case& each :
       {Case{[&] { erp.execute("Alter Table Auftragspos Add Column Los text"_sql); },
             [&] { erp.execute("Alter Table Auftragspos Drop Column Los"_sql); }, 4,
             "the table Auftragspos has a column los that this program does not know\nNothing was changed."},
        Case{[&] {
               erp.execute("Insert Into LockControl (Dateiname, Satz, SessionID, Benutzer) Values "
                           "('ImportJob', '1', 'anderswo', 'meier')"_sql);
             },
             [&] { erp.execute("Delete From LockControl"_sql); }, 3,
             "the import is locked by meier\nNothing was changed. Try again when that program has ended; it "
             "is "
             "one of another machine."},
        // The last table cannot be made, when the others are done already.
        Case{[&] { erp.execute("Create Type Belegindex As Enum ('Eins')"_sql); },
             [&] { erp.execute("Drop Type Belegindex"_sql); }, 4,
             "the upgrade failed: type \"belegindex\" already exists\nThe database is as it was."},
        Case{[&] { erp.execute("Update Schemastand Set Version = 7"_sql); },
             [&] { erp.execute("Update Schemastand Set Version = 3"_sql); }, 4,
             "the database has version 7, this program works with version 6"}}) {
    each.begin();
    const ProgramResult result = erp.run({"upgrade", "--backup-made"});
    EXPECT_EQ(result.status, each.status) << result.messages;
    EXPECT_THAT(result.messages, HasSubstr(std::string(each.message)));
    each.end();
    EXPECT_EQ(tables(erp), older);
  }
}

TEST_F(ServerUpgrade, OfTwoAtTheSameTimeOneUpgradesAndTheOtherFindsItDone) {
  makeOlder();
  ProgramRun first = erp.start({"upgrade", "--backup-made"});
  ProgramRun second = erp.start({"upgrade", "--backup-made"});
  std::set<std::string> outputs;
  for (const ProgramResult& result : {first.wait(), second.wait()}) {
    EXPECT_EQ(result.status, 0) << result.messages;
    outputs.insert(result.output.substr(0, result.output.find('\n')));
  }
  EXPECT_THAT(outputs, ::testing::ElementsAre("The database has version 6 already; nothing was changed.",
                                              "The database was upgraded from version 3 to version 6."));
  removeForeign();
  EXPECT_EQ(tables(erp), before);
}

} // namespace
} // namespace qx
