// Where the database is, the errors when it cannot be used, and wrong usage.
#include "program_fixture.h"

#include "adapters/sqlite/sqlite_database.h"

#include <cstdlib>
#include <filesystem>
#include <sqlite3.h>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace qx {
namespace {

namespace fs = std::filesystem;

class InstallationOfTheProgram : public ProgramTest {
protected:
  std::string path(const char* name) const { return (erp.folder.path() / name).string(); }
};

TEST_F(InstallationOfTheProgram, IsCreatedOnceByInit) {
  const std::string file = path("neu/ordner/it's.db");
  const ProgramResult before = runPlain({"--db", file, "list"});
  EXPECT_EQ(before.status, 4);
  EXPECT_EQ(before.messages, "qximportjob: " + file +
                                 ": there is no such database\nCreate it with: qximportjob --db '" +
                                 path("neu/ordner/it") + "'\\''s.db' init\n");
  EXPECT_FALSE(fs::exists(path("neu")));
  EXPECT_EQ(runPlain({"--db", file, "init", "--json"}).output,
            "{\"created\":true,\"demo\":false,\"staged\":0}\n");
  EXPECT_EQ(runPlain({"--db", file, "list", "--json"}).output, "{\"jobs\":[]}\n");
  EXPECT_EQ(runPlain({"--db", file, "init", "--demo", "--json"}).output,
            "{\"created\":false,\"demo\":false,\"staged\":0}\n");
  EXPECT_EQ(runPlain({"--db", file, "list", "--json"}).output, "{\"jobs\":[]}\n");
}

TEST_F(InstallationOfTheProgram, ComesWithDemoJobsOnDemand) {
  const std::string file = path("demo.db");
  const Json report = runPlain({"--db", file, "init", "--demo", "--json"}).json();
  EXPECT_EQ(report["demo"], true);
  EXPECT_EQ(runPlain({"--db", file, "list", "--json"}).json()["jobs"].size(), report["staged"]);
  EXPECT_NE(erp.folder.read("Zubehoer.ini").find("MinBestGebuehr="), std::string::npos);
  erp.folder.write("Zubehoer.ini", "[Werte]");
  ASSERT_EQ(runPlain({"--db", path("zweite.db"), "init", "--demo"}).status, 0);
  EXPECT_EQ(erp.folder.read("Zubehoer.ini"), "[Werte]") << "an own file stays";
}

TEST_F(InstallationOfTheProgram, TheSampleJobsAreProcessedForTheDemoCompany) {
  const std::string file = path("demo.db");
  ASSERT_EQ(runPlain({"--db", file, "init", "--demo"}).status, 0);
  ASSERT_EQ(runPlain({"--db", file, "stage", SAMPLE_JOBS}).status, 0);
  const Json jobs = runPlain({"--db", file, "process", "--json"}).json()["jobs"];
  std::map<std::string, std::string> samples;
  for (const Json& job : jobs)
    if (job["JobID"].get<std::string>().starts_with("BEISPIEL")) samples[job["JobID"]] = job["Status"];
  EXPECT_EQ(samples, (std::map<std::string, std::string>{{"BEISPIEL-AUFTRAG", "Erledigt"},
                                                         {"BEISPIEL-KUNDE", "Erledigt"},
                                                         {"BEISPIEL-VERTRAG", "Erledigt"}}));
}

TEST_F(InstallationOfTheProgram, IsFoundByOptionVariableAndFolders) {
  variables["XDG_DATA_HOME"] = path("xdg");
  ASSERT_EQ(runPlain({"init"}).status, 0);
  EXPECT_TRUE(fs::exists(path("xdg/qximportjob/qximportjob.db")));
  variables["XDG_DATA_HOME"] = "relativ";
  ASSERT_EQ(runPlain({"init"}).status, 0);
  EXPECT_TRUE(fs::exists(path("home/.local/share/qximportjob/qximportjob.db")));
  variables["QXIMPORTJOB_DB"] = path("variable.db");
  ASSERT_EQ(runPlain({"init"}).status, 0);
  EXPECT_TRUE(fs::exists(path("variable.db")));
  EXPECT_NE(runPlain({"--db", path("option.db"), "list"}).messages.find("option.db"), std::string::npos);
  // An empty name must not lead to the file of the folders above.
  for (const std::vector<std::string>& empty :
       {std::vector<std::string>{"--db", "", "list"}, {"--db=", "list"}}) {
    const ProgramResult refused = runPlain(empty);
    EXPECT_EQ(refused.status, 2);
    EXPECT_EQ(refused.messages, "qximportjob: the name of the database is empty\nGive --db the name of a "
                                "database, or omit it.\n");
  }
  variables["QXIMPORTJOB_DB"] = "";
  const ProgramResult refused = runPlain({"list"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.messages, "qximportjob: the variable QXIMPORTJOB_DB is empty\nGive it the name of a "
                              "database, or unset it.\n");
  variables = {{"PATH", "/usr/bin:/bin"}};
  EXPECT_NE(runPlain({"list"}).messages.find("--db"), std::string::npos);
}

TEST_F(InstallationOfTheProgram, IsNotAForeignFile) {
  erp.folder.write("text.db", "This is no database, but a long enough text to be taken for one. " +
                                  std::string(200, '.'));
  EXPECT_EQ(runPlain({"--db", path("text.db"), "list"}).status, 4);
  EXPECT_EQ(runPlain({"--db", path("text.db"), "init"}).status, 4);
  EXPECT_EQ(runPlain({"--db", erp.folder.path().string(), "list"}).status, 4);

  SqliteDatabase().create(path("fremd.db"))->execute(sql("Create Table Kunden (Nr INTEGER)"_sql));
  const ProgramResult foreign = runPlain({"--db", path("fremd.db"), "list", "--json"});
  EXPECT_EQ(foreign.status, 4);
  EXPECT_NE(foreign.json()["error"].get<std::string>().find("does not hold the tables"), std::string::npos);
  EXPECT_EQ(runPlain({"--db", path("fremd.db"), "list"}).messages.find("init"), std::string::npos);
  const std::string before = erp.folder.read("fremd.db");
  const ProgramResult refused = runPlain({"--db", path("fremd.db"), "init"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.messages.find("a database of another program"), std::string::npos);
  EXPECT_EQ(erp.folder.read("fremd.db"), before);

  ASSERT_EQ(runPlain({"--db", path("neu.db"), "init"}).status, 0);
  EXPECT_EQ(erp.folder.read("neu.db").substr(68, 4), "qxij") << "the mark in the file's header";

  // The second one is 3 in its lower 32 bits.
  for (const std::string version : {"99", "4294967299", "alt"}) {
    erp.execute("Update Schemastand Set Version = '"_sql, value(version), "'"_sql);
    for (const char* verb : {"list", "init"}) {
      const ProgramResult newer = run({verb});
      EXPECT_EQ(newer.status, 4) << verb;
      EXPECT_NE(newer.messages.find("has version " + version + ", this program works with version"),
                std::string::npos)
          << verb << newer.messages;
    }
  }
}

TEST_F(InstallationOfTheProgram, IsAFileWhateverItsNameSays) {
  // Relative names, which SQLite would take for a database in memory and for an address.
  const fs::path before = fs::current_path();
  fs::current_path(erp.folder.path());
  for (const std::string name : {":memory:", "file:neu.db?mode=memory"}) {
    EXPECT_EQ(runPlain({"--db", name, "init"}).status, 0);
    EXPECT_EQ(runPlain({"--db", name, "list", "--json"}).output, "{\"jobs\":[]}\n");
    EXPECT_GT(fs::file_size(name), 0U);
  }
  fs::current_path(before);
}

TEST_F(InstallationOfTheProgram, BelongsToItsOwnerOrOnDemandToTheGroupWhateverTheMask) {
  const auto modeOf = [&](const std::string& name) {
    return static_cast<unsigned>(fs::status(path(name.c_str())).permissions());
  };
  for (const mode_t mask : {0000, 0077}) {
    const mode_t before = umask(mask);
    for (const auto& [options, folderMode, fileMode] :
         {std::tuple{std::vector<std::string>{}, 0700U, 0600U}, {{"--shared"}, 02770U, 0660U}}) {
      std::vector<std::string> init{"--db", path("a/b/neu.db"), "init"};
      init.insert(init.end(), options.begin(), options.end());
      ASSERT_EQ(runPlain(init).status, 0);
      const auto open = SqliteDatabase().open(path("a/b/neu.db"));
      open->execute(sql("Update Schemastand Set Version = Version"_sql));
      ASSERT_EQ(runPlain({"--db", path("a/b/neu.db"), "export", path("a/neu.edi")}).status, 0);
      ASSERT_EQ(runPlain({"--db", path("a/b/neu.db"), "backup", path("a/sicher.db")}).status, 0);
      for (const std::string folder : {"a", "a/b"}) EXPECT_EQ(modeOf(folder), folderMode) << folder;
      for (const std::string file : {"a/b/neu.db", "a/b/neu.db-wal", "a/b/neu.db-shm", "a/neu.edi"})
        EXPECT_EQ(modeOf(file), fileMode) << file;
      EXPECT_EQ(modeOf("a/sicher.db"), 0600U);
      fs::remove_all(path("a"));
    }
    umask(before);
  }
}

TEST_F(InstallationOfTheProgram, AFolderThatMayNotBeEnteredIsNamed) {
  // The program runs as a user without rights to the folder; root would be let through.
  fs::create_directories(path("zu"));
  fs::copy_file(erp.file, path("zu/erp.db"));
  fs::copy_file(QXIMPORTJOB_PROGRAM, path("programm"));
  fs::permissions(path("zu"), fs::perms::none);
  fs::permissions(erp.folder.path(), fs::perms::all);
  const std::string user = geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
  for (const std::string verb : {"list", "init", "upgrade"}) {
    const std::string command = user + "env HOME=/nonexistent " + path("programm") + " --db " +
                                path("zu/erp.db") + " " + verb + " 2> " + path("err");
    EXPECT_EQ(WEXITSTATUS(std::system(command.c_str())), 4) << verb;
    EXPECT_EQ(erp.folder.read("err"),
              "qximportjob: " + path("zu/erp.db") +
                  ": its folder may not be entered: Permission denied\nHave the right "
                  "to its folder granted, or name another database with --db FILE.\n")
        << verb;
  }
  fs::permissions(path("zu"), fs::perms::owner_all);
}

TEST_F(InstallationOfTheProgram, HoldsItsTextsInUtf8) {
  {
    sqlite3* wide = nullptr;
    ASSERT_EQ(sqlite3_open(path("wide.db").c_str(), &wide), SQLITE_OK);
    sqlite3_exec(wide, "PRAGMA encoding='UTF-16le'; Create Table Kunden (Nr TEXT)", nullptr, nullptr,
                 nullptr);
    sqlite3_close(wide);
  }
  for (const char* verb : {"list", "init"}) {
    const ProgramResult refused = runPlain({"--db", path("wide.db"), verb});
    EXPECT_EQ(refused.status, 4) << verb;
    EXPECT_NE(refused.messages.find("the texts of the database are stored as UTF-16le"), std::string::npos)
        << refused.messages;
  }
}

TEST_F(InstallationOfTheProgram, TellsVersionHelpAndWrongUsage) {
  const ProgramResult version = runPlain({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_EQ(version.output.rfind("qximportjob 0.", 0), 0U);
  const ProgramResult help = runPlain({"stage", "--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.output.find("--again"), std::string::npos);
  EXPECT_EQ(help.messages, "");
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{},
                                                {"verarbeite"},
                                                {"stage"},
                                                {"list", "--limit", "-1"},
                                                {"list", "zuviel"},
                                                {"--date", "30.02.2026", "list"},
                                                {"settings"},
                                                {"lock", "steal"},
                                                {"show"}}) {
    const ProgramResult result = run(wrong);
    EXPECT_EQ(result.status, 2) << ::testing::PrintToString(wrong);
    EXPECT_EQ(result.output, "");
    EXPECT_NE(result.messages, "");
  }
  const Json error = runPlain({"verarbeite", "--json"}).json();
  EXPECT_TRUE(error["error"].is_string());
  EXPECT_EQ(error["file"], Json());
}

} // namespace
} // namespace qx
