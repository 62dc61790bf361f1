// Backup and upgrade of a database.
#include "adapters/system/processes.h"
#include "program_fixture.h"

#include "adapters/sqlite/sqlite_database.h"
#include "erp/process_identity.h"
#include "support/full_disk.h"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sqlite3.h>
#include <sstream>
#include <thread>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr fs::perms ownerAlone = fs::perms::owner_read | fs::perms::owner_write;

class Maintained : public ProgramTest {
protected:
  std::string path(const std::string& name) const { return (erp.folder.path() / name).string(); }
  std::vector<std::string> filesIn(const std::string& folder) const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path(folder))) names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }

  /// Runs any statements of a file of the test.
  static void onFile(const std::string& file, const std::string& statements) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, &message), SQLITE_OK) << message;
    sqlite3_free(message);
    sqlite3_close(database);
  }
  /// The rows of a query, values separated by bars, one row a line.
  static std::string rowsOf(const std::string& file, const std::string& query) {
    std::string text;
    const auto add = [](void* into, int count, char** values, char** /*names*/) {
      std::string& rows = *static_cast<std::string*>(into);
      for (int i = 0; i < count; ++i) rows += std::string(values[i] == nullptr ? "null" : values[i]) + '|';
      rows += '\n';
      return 0;
    };
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, query.c_str(), add, &text, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database) << query;
    sqlite3_close(database);
    return text;
  }
  static std::string schemaOf(const std::string& file) {
    return rowsOf(file, "Select type, name, tbl_name, sql From sqlite_master Order By type, name");
  }
  /// Every row of every table but the version, with its key.
  static std::map<std::string, std::string> contentOf(const std::string& file,
                                                      const std::string& columnsAsIn) {
    std::map<std::string, std::string> content;
    std::istringstream tables(
        rowsOf(columnsAsIn, "Select name From sqlite_master Where type = 'table' And name <> 'Schemastand'"));
    for (std::string table; std::getline(tables, table);) {
      table.pop_back();
      const std::string columns = rowsOf(
          columnsAsIn, "Select group_concat('\"' || name || '\"') From pragma_table_info('" + table + "')");
      content[table] = rowsOf(file, "Select rowid, " + columns.substr(0, columns.size() - 2) + " From \"" +
                                        table + "\" Order By rowid");
    }
    return content;
  }
  /// A database that an earlier program left.
  std::string earlier(int version) const {
    std::ifstream stream(std::string(EARLIER_DATABASES) + "/version" + std::to_string(version) + ".sql");
    std::ostringstream statements;
    statements << stream.rdbuf();
    const std::string file = path("alt/version" + std::to_string(version) + ".db");
    fs::create_directories(path("alt"));
    onFile(file, "PRAGMA journal_mode = WAL; " + statements.str());
    return file;
  }
};

TEST_F(Maintained, DatabasesOfEarlierProgramsAreUpgradedWithEveryRow) {
  ASSERT_EQ(runPlain({"--db", path("neu.db"), "init"}).status, 0);
  const Json ofDemonstration = {{"processed", 7}, {"done", 3}, {"warning", 0}, {"error", 4}};
  const Json ofCustomers = {{"processed", 2}, {"done", 1}, {"warning", 0}, {"error", 1}};
  for (const int version : {1, 2, 3, 4}) {
    const std::string file = earlier(version);
    const std::string untouched = path("unberührt.db");
    fs::copy_file(file, untouched, fs::copy_options::overwrite_existing);
    const std::string number = std::to_string(version);
    for (const char* verb : {"list", "process", "init"}) {
      const ProgramResult older = runPlain({"--db", file, verb});
      EXPECT_EQ(older.status, 4) << verb;
      EXPECT_EQ(older.messages, "qximportjob: " + file + ": the database has version " + number +
                                    ", this program works with version 6\nUpgrade it, after a backup, with: "
                                    "qximportjob --db " +
                                    file + " upgrade\n");
    }

    const ProgramResult serverOnly = runPlain({"--db", file, "upgrade", "--backup-made"});
    EXPECT_EQ(serverOnly.status, 2);
    EXPECT_EQ(serverOnly.messages,
              "qximportjob: --backup-made is for databases on a server\nA file is copied before "
              "it is upgraded: leave the option out.\n");
    const ProgramResult upgraded = runPlain({"--db", file, "upgrade", "--json"});
    ASSERT_EQ(upgraded.status, 0) << upgraded.messages;
    const Json report = upgraded.json();
    EXPECT_EQ(report["upgraded"], true);
    EXPECT_EQ(report["from"], version);
    EXPECT_EQ(report["to"], 6);
    const std::string backup = report["backup"];
    EXPECT_EQ(backup.rfind(file + ".version" + number + "-", 0), 0U) << backup;
    EXPECT_EQ(fs::status(backup).permissions(), ownerAlone);
    EXPECT_EQ(contentOf(backup, untouched), contentOf(untouched, untouched));
    EXPECT_EQ(rowsOf(backup, "Select Version From Schemastand"), number + "|\n");

    EXPECT_EQ(schemaOf(file), schemaOf(path("neu.db")));
    EXPECT_EQ(contentOf(file, untouched), contentOf(untouched, untouched));
    EXPECT_EQ(rowsOf(file, "Select Version From Schemastand"), "6|\n");
    EXPECT_EQ(rowsOf(file, "PRAGMA integrity_check"), "ok|\n");
    EXPECT_EQ(erp.folder.read("alt/" + fs::path(file).filename().string()).substr(68, 4), "qxij");

    const ProgramResult second = runPlain({"--db", file, "upgrade"});
    EXPECT_EQ(second.status, 0);
    EXPECT_EQ(second.output, "The database has version 6 already; nothing was changed.\n");
    const Json run = runPlain({"--db", file, "--date", "24.11.2026", "process", "--json"}).json();
    EXPECT_EQ(run["counts"], version < 3 ? ofDemonstration : ofCustomers) << version;
    EXPECT_EQ(runPlain({"--db", file, "status", "--json"}).json()["runs"].size(), 1U);
    EXPECT_EQ(runPlain({"--db", file, "list", "--state", "waiting", "--json"}).output, "{\"jobs\":[]}\n");
  }
}

TEST_F(Maintained, AnUpgradeSaysWhatItChangedAndLeavesWhatOthersAdded) {
  const std::string file = earlier(2);
  const std::string others =
      R"(index|Mein_Index|Auftragspos|CREATE INDEX Mein_Index ON Auftragspos (Zeilentyp)|
trigger|Mein_Trigger|Auftragspos|CREATE TRIGGER Mein_Trigger AFTER INSERT ON Auftragspos BEGIN DELETE FROM Mein; END|
table|Mein|Mein|CREATE TABLE Mein (A)|
view|Meine_Sicht|Meine_Sicht|CREATE VIEW Meine_Sicht AS SELECT * FROM Auftragspos|
)";
  onFile(file,
         "CREATE INDEX Mein_Index ON Auftragspos (Zeilentyp); CREATE TABLE Mein (A); INSERT INTO Mein VALUES "
         "(1); CREATE VIEW Meine_Sicht AS SELECT * FROM Auftragspos; CREATE TRIGGER Mein_Trigger AFTER "
         "INSERT ON Auftragspos BEGIN DELETE FROM Mein; END; DROP INDEX Kundenstamm_Name; CREATE INDEX "
         "Kundenstamm_Name ON Kundenstamm (Ort)");
  const ProgramResult result = runPlain({"--db", file, "upgrade"});
  EXPECT_EQ(result.status, 0) << result.messages;
  const auto until = result.output.find("As it was before: ");
  EXPECT_EQ(result.output.substr(0, until),
            "The database was upgraded from version 2 to version 6.\n"
            "  ImportKopf: columns unchanged; index ImportKopf_Datum\n"
            "  Kundenstamm: columns unchanged; index Kundenstamm_Name\n"
            "  Auftragspos: columns defined anew; added ÄndUser\n"
            "  Verkaufspreise: columns unchanged; index Verkaufspreise_Artikel\n"
            "  Importlaeufe: created; index Importlaeufe_Beginn\n"
            "  Eingangsdateien: created\n"
            "  Vorgangsinhalte: created; index Vorgangsinhalte_Kennung\n"
            "  Zustandswechsel: created; index Zustandswechsel_Job\n"
            "  Zaehlerstaende: created\n");
  EXPECT_EQ(rowsOf(file,
                   "Select type, name, tbl_name, sql From sqlite_master Where name Like 'Mein%' Order By "
                   "tbl_name, type"),
            others);
  EXPECT_EQ(rowsOf(file, "Select A From Mein"), "1|\n") << "no trigger ran";
}

TEST_F(Maintained, WhatCannotBeUpgradedIsLeftAsItIs) {
  struct Case {
    std::string change;
    int status;
    std::string message;
  };
  const SystemProcesses processes;
  const erp::ProcessIdentity alive(thisMachine(), processes);
  int number = 0;
  for (const Case& refused :
       {Case{"ALTER TABLE Auftragspos ADD COLUMN Los", 4,
             ": the table Auftragspos has a column Los that this program does not know\nNothing was changed. "
             "Move what it holds to a table of its own and drop the column.\n"},
        Case{"UPDATE Schemastand SET Version = 7", 4,
             ": the database has version 7, this program works with version 6\nUse the program of that "
             "version, or another database with --db.\n"},
        Case{"UPDATE Schemastand SET Version = '1a'", 4, ": the database has version 1a, this program works"},
        Case{"DELETE FROM Schemastand", 4, ": the database does not hold the tables of this program\n"},
        Case{"PRAGMA application_id = 4711", 2, ": this is a database of another program\n"},
        Case{"INSERT INTO LockControl (Dateiname, Satz, SessionID, Benutzer) VALUES ('ImportJob', '1', '" +
                 alive.sessionId() + "', 'meier')",
             3, "the import is locked by meier\n"}}) {
    const std::string folder = "fall" + std::to_string(++number);
    fs::create_directories(path(folder));
    const std::string file = path(folder + "/erp.db");
    fs::copy_file(earlier(2), file);
    fs::remove_all(path("alt"));
    onFile(file, refused.change);
    const std::string before = erp.folder.read(folder + "/erp.db");
    const ProgramResult result = runPlain({"--db", file, "upgrade"});
    EXPECT_EQ(result.status, refused.status) << refused.change << result.messages;
    EXPECT_NE(result.messages.find(refused.message), std::string::npos) << result.messages;
    EXPECT_EQ(erp.folder.read(folder + "/erp.db"), before) << refused.change;
    EXPECT_EQ(filesIn(folder), std::vector<std::string>{"erp.db"});
  }
}

TEST_F(Maintained, AnUpgradeThatFailsLeavesTheDatabaseToTheNextOne) {
  const std::string file = earlier(1);
  const std::string before = schemaOf(file);
  {
    const FullDisk full(100000);
    const ProgramResult result = runPlain({"--db", file, "upgrade"});
    EXPECT_EQ(result.status, 4);
    EXPECT_NE(result.messages.find(file), std::string::npos) << result.messages;
    EXPECT_EQ(filesIn("alt"), std::vector<std::string>{"version1.db"});
  }
  // Orders come after customers, which are changed by then.
  onFile(file, "CREATE TABLE neu_Auftragspos (A)");
  const ProgramResult result = runPlain({"--db", file, "upgrade"});
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(
      result.messages.rfind("qximportjob: the upgrade failed: table \"neu_Auftragspos\" already exists\n"
                            "The database is as it was. Its backup " +
                                file + ".version1-",
                            0),
      0U)
      << result.messages;
  onFile(file, "DROP TABLE neu_Auftragspos");
  EXPECT_EQ(schemaOf(file), before);
  EXPECT_EQ(runPlain({"--db", file, "upgrade"}).status, 0);
}

TEST_F(Maintained, ABackupShowsOneMomentOfARunThatGoesOn) {
  WorkUnit unit(erp.connection());
  for (int i = 0; i < 3000; ++i) {
    const auto rows = erp.connection().open(sql("Select * From ImportKopf Where 0 = 1"_sql));
    rows->addNew();
    rows->set("JobID", "K" + std::to_string(i));
    rows->set("JobType", 10);
    rows->set("Kundennummer", std::to_string(10000 + i));
    rows->set("Bez1", "Firma");
    rows->update();
  }
  unit.commit();
  ProgramRun going(erp.folder, onDatabase({"process", "--json"}), variables, "");
  ASSERT_TRUE(going.waitForOutput());
  const ProgramResult result = run({"backup", path("sicher.db"), "--json"});
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_EQ(result.json(), Json({{"backup", path("sicher.db")}}));
  EXPECT_EQ(going.wait().status, 0);
  EXPECT_EQ(rowsOf(path("sicher.db"), "PRAGMA integrity_check"), "ok|\n");
  const std::string done = rowsOf(path("sicher.db"), "Select Count(*) From ImportKopf Where JobType = 13");
  EXPECT_NE(done, "0|\n");
  EXPECT_EQ(rowsOf(path("sicher.db"), "Select Count(*) From Protokollpositionen"), done);
  EXPECT_EQ(rowsOf(path("sicher.db"), "Select Count(*) From Kundenstamm"), done);
  EXPECT_EQ(runPlain({"--db", path("sicher.db"), "list", "--limit", "1", "--json"}).json()["jobs"].size(),
            1U);
}

TEST_F(Maintained, WhatAKilledBackupLeavesGoesWithTheNextOneButNotWhatARunningOneWrites) {
  fs::create_directories(path("ziel"));
  // Large enough to be met while it is written.
  onFile(erp.file, "CREATE TABLE Groß (A); INSERT INTO Groß VALUES (zeroblob(50000000))");
  const auto interrupted = [&](const char* target, int signal) {
    auto backup =
        std::make_unique<ProgramRun>(erp.folder, onDatabase({"backup", path(target)}), variables, "");
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (filesIn("ziel").empty() && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    backup->signal(signal);
    return backup;
  };
  interrupted("ziel/a.db", SIGKILL)->wait();
  const auto left = filesIn("ziel");
  ASSERT_FALSE(left.empty());
  ASSERT_EQ(left.front().rfind(".qximportjob-backup-", 0), 0U) << left.front();
  erp.folder.write("ziel/" + left.front() + "-journal", "");
  for (const char* other : {".qximportjob-backup-notours", ".qximportjob-abcdef"})
    erp.folder.write(std::string("ziel/") + other, "");
  fs::create_symlink(erp.file, path("ziel/.qximportjob-backup-abcdef"));
  const std::vector<std::string> others{".qximportjob-abcdef", ".qximportjob-backup-abcdef",
                                        ".qximportjob-backup-notours"};
  EXPECT_EQ(run({"backup", path("ziel/b.db")}).status, 0);
  auto expected = others;
  expected.emplace_back("b.db");
  EXPECT_EQ(filesIn("ziel"), expected);

  for (const std::string& name : expected) fs::remove(path("ziel/" + name));
  const auto stopped = interrupted("ziel/a.db", SIGSTOP);
  EXPECT_EQ(run({"backup", path("ziel/b.db")}).status, 0);
  stopped->signal(SIGCONT);
  EXPECT_EQ(stopped->wait().status, 0);
  EXPECT_EQ(filesIn("ziel"), (std::vector<std::string>{"a.db", "b.db"}));
  EXPECT_EQ(rowsOf(path("ziel/a.db"), "PRAGMA integrity_check"), "ok|\n");
}

TEST_F(Maintained, ABackupIsItsOwnersAndReplacesOnlyWhatItMay) {
  fs::create_directories(path("ziel"));
  const std::string file = path("ziel/sicher.db");
  EXPECT_EQ(run({"backup", file}).output, "The database was copied to " + file + ".\n");
  EXPECT_EQ(fs::status(file).permissions(), ownerAlone);
  const std::string first = erp.folder.read("ziel/sicher.db");
  ASSERT_EQ(run({"settings", "set", "ImportJob2", "AutomatischVerarbeiten", "1"}).status, 0);
  const ProgramResult exists = run({"backup", file});
  EXPECT_EQ(exists.status, 2);
  EXPECT_EQ(exists.messages, "qximportjob: " + file +
                                 ": the file exists already\nNothing was changed. Name another file; "
                                 "--replace replaces an earlier backup.\n");
  EXPECT_EQ(erp.folder.read("ziel/sicher.db"), first);
  EXPECT_EQ(run({"backup", file, "--replace"}).status, 0);
  EXPECT_NE(erp.folder.read("ziel/sicher.db"), first);
  EXPECT_EQ(filesIn("ziel"), std::vector<std::string>{"sicher.db"});

  fs::create_hard_link(erp.file, path("verweis.db"));
  fs::create_symlink(erp.file, path("zeiger.db"));
  for (const std::string& own : {erp.file, erp.file + "-wal", erp.file + "-journal", path("verweis.db"),
                                 path("zeiger.db"), path("ziel"), std::string("-"), std::string()})
    EXPECT_EQ(run({"backup", own, "--replace"}).status, 2) << own;
  const ProgramResult nowhere = run({"backup", path("fehlt/sicher.db")});
  EXPECT_EQ(nowhere.status, 4);
  EXPECT_EQ(nowhere.messages, "qximportjob: " + path("fehlt/sicher.db") + ": No such file or directory\n");
  {
    const FullDisk full(100000);
    EXPECT_EQ(run({"backup", path("ziel/halb.db")}).status, 4);
  }
  EXPECT_EQ(filesIn("ziel"), std::vector<std::string>{"sicher.db"});
  EXPECT_EQ(run({"list", "--json"}).output, "{\"jobs\":[]}\n");
}

} // namespace
} // namespace qx
