// Processing runs, the lock, options and the protocol.
#include "adapters/system/processes.h"
#include "program_fixture.h"

#include "erp/process_identity.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace qx {
namespace {

std::string identityOfThisProcess() {
  const SystemProcesses processes;
  return erp::ProcessIdentity(thisMachine(), processes).sessionId();
}

/// What a process had that has ended.
std::string identityOfADeadProcess() {
  int ends[2] = {-1, -1};
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    const std::string identity = identityOfThisProcess();
    const ssize_t written = write(ends[1], identity.data(), identity.size());
    _exit(written == static_cast<ssize_t>(identity.size()) ? 0 : 1);
  }
  waitpid(child, nullptr, 0);
  std::string identity(erp::ProcessIdentity::length, ' ');
  const ssize_t length = read(ends[0], identity.data(), identity.size());
  close(ends[0]);
  close(ends[1]);
  if (length != static_cast<ssize_t>(identity.size())) throw std::runtime_error("no identity");
  return identity;
}

/// While it lives the first pages of a table and of its indexes cannot be read.
class DamagedTable {
public:
  DamagedTable(TestErp& erp, std::string_view table) : file_(erp.file) {
    pageSize_ = static_cast<std::size_t>(erp.count("PRAGMA page_size"_sql));
    for (const auto& row :
         erp.rows("Select rootpage From sqlite_master Where tbl_name = '"_sql, value(table), "'"_sql))
      if (const auto page = row[0].integer().value_or(0); page > 1) pages_.push_back(page - 1);
    erp.execute("PRAGMA wal_checkpoint(TRUNCATE)"_sql);
    std::ifstream file(file_, std::ios::binary);
    for (const std::int64_t page : pages_) {
      sound_.emplace_back(pageSize_, ' ');
      file.seekg(page * static_cast<std::int64_t>(pageSize_));
      file.read(sound_.back().data(), static_cast<std::streamsize>(pageSize_));
    }
    write(std::vector<std::string>(pages_.size(), std::string(pageSize_, '\xFF')));
  }
  DamagedTable(const DamagedTable&) = delete;
  DamagedTable& operator=(const DamagedTable&) = delete;
  ~DamagedTable() { write(sound_); }

private:
  void write(const std::vector<std::string>& contents) const {
    std::fstream file(file_, std::ios::in | std::ios::out | std::ios::binary);
    for (std::size_t i = 0; i < pages_.size(); ++i) {
      file.seekp(pages_[i] * static_cast<std::int64_t>(pageSize_));
      file << contents[i];
    }
  }

  std::string file_;
  std::size_t pageSize_ = 0;
  std::vector<std::int64_t> pages_;
  std::vector<std::string> sound_;
};

class Run : public ProgramTest {
protected:
  void stageCustomers(int count) const {
    std::string jobs;
    for (int i = 0; i < count; ++i)
      jobs +=
          R"({"type":"Kunde","Kundennummer":"K)" + std::to_string(10000 + i) + R"(","Bez1":"Firma"})" + "\n";
    mustStage(jobs);
  }
  void lockFor(const std::string& sessionId) {
    erp.execute("Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values "
                "('ImportJob', '1', 'unbennant', '"_sql,
                value(sessionId), "', 'meier')"_sql);
  }
};

TEST_F(Run, TellsEveryJobItsCountsAndItsProtocol) {
  erp.setOption("AutomatischVerarbeiten", "1");
  mustStage(R"([{"type":"Kunde","JobID":"gut","Kundennummer":"K1","Bez1":"Firma"},
                      {"type":"Kunde","Bez1":"N","JobID":"geparkt","Kundennummer":"K2","Versandart":"DROHNE"},
                      {"type":"Kunde","Bez1":"N","JobID":"falsch","Kundennummer":"-"}])");
  takeNumber("falsch");
  const ProgramResult result = run({"process", "--json", "--select", "kunden"});
  EXPECT_EQ(result.status, 1);
  const Json document = result.json();
  std::map<std::string, Json> jobs;
  for (const Json& job : document["jobs"]) jobs[job["JobID"]] = job;
  ASSERT_EQ(jobs.size(), 3U);
  EXPECT_EQ(jobs["gut"], Json::parse(R"({"JobID":"gut","Vorgang":"Kunden","Nummer":"K1","Status":"Erledigt",
                                         "JobType":13,"state":"done","kind":"kunde","number":"K1","Fehlertext":"","hints":[],"details":[]})"));
  EXPECT_EQ(jobs["geparkt"]["Status"], "Warnung");
  EXPECT_EQ(jobs["geparkt"]["JobType"], 11);
  EXPECT_EQ(jobs["geparkt"]["Fehlertext"], "Beim Verarbeiten wurden Warnungen festgestellt.\r\n"
                                           "Versandart: 'DROHNE' ist nicht angelegt.\r\n");
  EXPECT_EQ(jobs["falsch"]["JobType"], 12);
  EXPECT_EQ(document["counts"], Json::parse(R"({"processed":3,"done":1,"warning":1,"error":1})"));
  EXPECT_EQ(document["protocol"], erp.text("Select ID From Protokolle"_sql));
  EXPECT_TRUE(document["seconds"].is_number());
  EXPECT_FALSE(document.contains("stopped"));
  EXPECT_EQ(run({"process", "--json"}).json()["jobs"], Json::array());
}

TEST_F(Run, NamesAJobThatTheDatabaseRefusesToMarkAndProcessesTheOthers) {
  stageCustomers(3);
  mustStage(R"({"type":"Kunde","JobID":"fest","Kundennummer":"K2","Bez1":"Firma"})");
  erp.execute("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf WHEN new.JobID = 'fest' "
              "BEGIN SELECT RAISE(ABORT, 'Vorgang gesperrt'); END"_sql);
  const ProgramResult result = run({"process", "--json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.json()["counts"], Json::parse(R"({"processed":3,"done":3,"warning":0,"error":0})"));
  EXPECT_EQ(result.json()["left"], Json::parse(R"([{"JobID":"fest","reason":"Vorgang gesperrt"}])"));
  const ProgramResult text = run({"process"});
  EXPECT_EQ(text.status, 1);
  EXPECT_NE(text.output.find("1 jobs are left as they were, because the database refuses to change them:\n"
                             "  fest: Vorgang gesperrt\n"),
            std::string::npos)
      << text.output;
  erp.execute("Drop Trigger freeze"_sql);
  EXPECT_EQ(run({"process"}).status, 0);
  EXPECT_EQ(show("fest")["JobType"], 13);
  EXPECT_EQ(erp.count("Select Count(*) From Protokollpositionen"_sql), 4);
}

TEST_F(Run, EndsBeforeItsFirstJobWhenAPageOfItsOptionsIsDamaged) {
  erp.setOption("AutomatischVerarbeiten", "1");
  stageCustomers(1);
  {
    const DamagedTable options(erp, "Einstellungen");
    const ProgramResult broken = run({"process"});
    EXPECT_EQ(broken.status, 4);
    EXPECT_NE(broken.messages.find("The run broke off: "), std::string::npos) << broken.messages;
    EXPECT_NE(broken.messages.find("malformed"), std::string::npos) << broken.messages;
    for (const std::vector<std::string>& read :
         {std::vector<std::string>{"settings", "get", "ImportJob2", "AutomatischVerarbeiten"},
          {"settings", "list"},
          {"check"}}) {
      const ProgramResult refused = run(read);
      EXPECT_EQ(refused.status, 4);
      EXPECT_EQ(refused.output, "");
      EXPECT_NE(refused.messages.find("malformed"), std::string::npos) << refused.messages;
    }
  }
  EXPECT_EQ(listed({"--state", "waiting"}).size(), 1U) << "nothing was written without its options";
  EXPECT_EQ(run({"process"}).status, 0);
}

TEST_F(Run, TakesOptionsWhoseTableIsMissingAsNotGiven) {
  stageCustomers(1);
  erp.execute("Drop Table Einstellungen"_sql);
  EXPECT_EQ(run({"process"}).status, 0);
  for (const std::vector<std::string>& words :
       {std::vector<std::string>{"settings", "get", "ImportJob2", "AutomatischVerarbeiten"},
        {"settings", "set", "ImportJob2", "AutomatischVerarbeiten", "1"},
        {"settings", "list"}}) {
    const ProgramResult refused = run(words);
    EXPECT_EQ(refused.status, 4);
    EXPECT_EQ(refused.output, "");
    EXPECT_EQ(refused.messages, "qximportjob: no such table: Einstellungen\n");
  }
}

TEST_F(Run, TellsThatASettingWasNotKept) {
  erp.execute("Create Trigger Nicht Before Insert On Einstellungen Begin Select Raise(Ignore); End"_sql);
  const ProgramResult lost = run({"settings", "set", "ImportJob2", "Löschen", "1"});
  EXPECT_EQ(lost.status, 4);
  EXPECT_EQ(lost.output, "");
  EXPECT_EQ(lost.messages,
            "qximportjob: the database has not taken the new row of the table Einstellungen\n");
}

TEST_F(Run, WritesParkedJobsWhenItIsToldNotToCheck) {
  erp.setOption("AutomatischVerarbeiten", "1");
  // The reference to an unknown invoice customer parks the job, but does not keep it from being written.
  mustStage(R"({"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"K1","RG_KdNr":"fehlt"})");
  EXPECT_EQ(run({"process", "--unevaluated", "--json"}).json()["counts"]["warning"], 0);
  EXPECT_EQ(erp.count("Select Count(*) From Kundenstamm Where Kundennummer = 'K1'"_sql), 1);
}

TEST_F(Run, SelectionsAreReadInEverySpelling) {
  for (const char* selection : {"alle", "kunden", "verträge", "vertraege", "vertra\u0308ge", "aufträge",
                                "auftraege", "auftra\u0308ge", "zubehör", "zubehoer", "zubeho\u0308r"})
    EXPECT_EQ(run({"process", "--select", selection}).status, 0) << selection;
  EXPECT_EQ(run({"process", "--select", "kundinnen"}).status, 2);
}

TEST_F(Run, CreatesMissingRepsWhenTheOptionIsOn) {
  mustStage(R"({"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"K1","Vertreter1":"77"})");
  EXPECT_EQ(run({"process"}).status, 1);
  EXPECT_EQ(show("K")["JobType"], 12);
  EXPECT_EQ(run({"settings", "set", "ImportJob2", "KundenVertreter", "1", "--json"}).output,
            "{\"section\":\"ImportJob2\",\"key\":\"KundenVertreter\",\"value\":\"1\",\"local\":false}\n");
  ASSERT_EQ(run({"release", "K"}).status, 0);
  EXPECT_EQ(run({"process"}).status, 0);
  EXPECT_EQ(show("K")["JobType"], 13);
  EXPECT_EQ(show("K")["Fehlertext"], "");
  EXPECT_EQ(erp.text("Select Bez1 From Vertreter Where VertreterNr = '77'"_sql), "Vertreter 77");
}

TEST_F(Run, IsRefusedWhileALivingProgramHoldsTheLock) {
  lockFor(identityOfThisProcess());
  stageCustomers(1);
  const ProgramResult result = run({"process", "--json"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.json()["error"], "the import is locked by user 'meier'");
  EXPECT_EQ(run({"list", "--state", "waiting", "--json"}).json()["jobs"].size(), 1U);
  const Json shown = run({"lock", "show", "--json"}).json();
  EXPECT_EQ(shown["held"], true);
  EXPECT_EQ(shown["alive"], true);
  EXPECT_EQ(shown["SessionID"], identityOfThisProcess());
  EXPECT_EQ(run({"lock", "release"}).status, 3) << "a living program's lock";
  EXPECT_EQ(erp.count("Select Count(*) From LockControl"_sql), 1);
  EXPECT_EQ(run({"lock", "release", "--force", "--json"}).json()["Benutzer"], "meier");
  EXPECT_EQ(run({"lock", "show", "--json"}).output,
            "{\"held\":false,\"Benutzer\":\"\",\"SessionID\":\"\",\"alive\":null}\n");
  EXPECT_EQ(run({"lock", "release"}).status, 0);
  EXPECT_EQ(run({"process"}).status, 0);
}

TEST_F(Run, WaitsForTheLockAsLongAsItIsTold) {
  lockFor(identityOfThisProcess());
  stageCustomers(1);
  const auto before = std::chrono::steady_clock::now();
  EXPECT_EQ(run({"process", "--wait=1s"}).status, 3);
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::seconds(1));
  ProgramRun waiting(erp.folder, onDatabase({"process", "--wait"}), variables, {});
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  erp.execute(sql("Delete From LockControl"_sql));
  const ProgramResult result = waiting.wait();
  EXPECT_EQ(result.status, 0);
  EXPECT_NE(result.messages.find("Waiting until user 'meier' releases the lock...\n"), std::string::npos)
      << result.messages;
  for (const char* span : {"--wait=soon", "--wait=-1s", "--wait=5 min", "--wait=99999999999"})
    EXPECT_EQ(run({"process", span}).status, 2) << span;
}

TEST_F(Run, TakesTheLockOfADeadProgramOverButNotThatOfAnotherMachine) {
  lockFor(identityOfADeadProcess());
  const ProgramResult taken = run({"process"});
  EXPECT_EQ(taken.status, 0);
  EXPECT_NE(taken.messages.find("Die Sperre von Benutzer 'meier' wurde übernommen"), std::string::npos);
  EXPECT_EQ(erp.count("Select Count(*) From LockControl"_sql), 0);
  lockFor("anderer Rechner");
  EXPECT_EQ(run({"lock", "show", "--json"}).json()["alive"], Json());
  EXPECT_EQ(run({"process"}).status, 3);
}

TEST_F(Run, IsRefusedWhileAnOrderIsReadIn) {
  erp.setOption("NewMail", "1");
  stageCustomers(1);
  const ProgramResult result = run({"process", "--json"});
  EXPECT_EQ(result.status, 3);
  EXPECT_EQ(result.json()["error"], "Es wird gerade eine Bestellung eingelesen.");
  EXPECT_EQ(erp.count("Select Count(*) From LockControl"_sql), 0);
}

TEST_F(Run, StopsAfterTheCurrentJobAndReleasesTheLock) {
  constexpr std::size_t jobs = 3000;
  stageCustomers(jobs);
  ProgramRun program(erp.folder, onDatabase({"process", "--json"}), variables, {});
  ASSERT_TRUE(program.waitForOutput());
  EXPECT_EQ(run({"process"}).status, 3); // the lock of the running one
  program.signal(SIGTERM);
  const ProgramResult result = program.wait();
  EXPECT_EQ(result.status, 5);
  const Json document = result.json();
  EXPECT_EQ(document["stopped"], true);
  EXPECT_EQ(document["waiting"], jobs - document["counts"]["done"].get<std::size_t>());
  const std::size_t done = document["counts"]["done"];
  EXPECT_LT(done, jobs);
  EXPECT_EQ(document["jobs"].size(), done);
  EXPECT_EQ(listed({"--state", "done"}).size(), done);
  EXPECT_EQ(erp.count("Select Count(*) From LockControl"_sql), 0);
  EXPECT_EQ(run({"process", "--json"}).json()["counts"]["done"], jobs - done);
  EXPECT_EQ(erp.count("Select Count(*) From Protokollpositionen"_sql), static_cast<std::int64_t>(jobs));
}

TEST_F(Run, ASecondSignalEndsAStatementThatNeverEnds) {
  stageCustomers(3);
  erp.execute("Create View Endlos As With Recursive Zahl(n) As (Select 1 Union All Select n + 1 From Zahl) "
              "Select Count(*) As n From Zahl"_sql);
  erp.execute("Create Trigger Haengt After Insert On Kundenstamm When new.Kundennummer = 'K10001' "
              "Begin Update Kundenstamm Set Bez2 = (Select n From Endlos); End"_sql);
  ProgramRun program(erp.folder, onDatabase({"process", "--json"}), variables, {});
  std::this_thread::sleep_for(std::chrono::seconds(2));
  program.signal(SIGTERM);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  program.signal(SIGINT);
  const ProgramResult result = program.wait();
  EXPECT_EQ(result.status, 5) << result.output << result.messages;
  const Json document = result.json();
  EXPECT_EQ(document["stopped"], true);
  EXPECT_EQ(document["waiting"], 3);
  EXPECT_EQ(document["counts"]["processed"], 0);
  EXPECT_EQ(listed({"--state", "waiting"}).size(), 3U);
  EXPECT_EQ(erp.count("Select Count(*) From Kundenstamm"_sql), 0);
  EXPECT_EQ(erp.count("Select Count(*) From LockControl"_sql), 0);
  erp.execute("Drop Trigger Haengt"_sql);
  EXPECT_EQ(run({"process", "--json"}).json()["counts"]["done"], 3);
}

TEST_F(Run, ClosesItsDocumentWhenTheStoreFails) {
  stageCustomers(2);
  {
    const DamagedTable customers(erp, "Kundenstamm");
    const ProgramResult result = run({"process", "--json"});
    EXPECT_EQ(result.status, 4);
    const Json document = result.json();
    EXPECT_EQ(document["counts"]["processed"], 0);
    EXPECT_NE(document["error"].get<std::string>().find("malformed"), std::string::npos);
  }
  EXPECT_EQ(listed({"--state", "waiting"}).size(), 2U);
  EXPECT_EQ(erp.count("Select Count(*) From LockControl"_sql), 0);
  EXPECT_EQ(run({"process", "--json"}).json()["counts"]["done"], 2);
}

TEST_F(Run, CountsProtocolLinesThatCouldNotBeWritten) {
  stageCustomers(2);
  erp.execute(
      "Create Trigger Zeile Before Insert On Protokollpositionen Begin Select Raise(Abort, 'gesperrt'); End"_sql);
  const ProgramResult result = run({"process", "--json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.json()["protocolErrors"], 2);
  EXPECT_EQ(result.json()["counts"]["done"], 2);
}

TEST_F(Run, LeavesAProtocolOfTheDay) {
  EXPECT_EQ(run({"protocol", "--json"}).output, "{\"protocol\":null,\"protocols\":[],\"lines\":[]}\n");
  ASSERT_EQ(
      stage(R"({"type":"Kunde","Kundennummer":"K1","Bez1":"Firma","Eingangsdatum":"20.11.2026"})").status, 0);
  ASSERT_EQ(run({"process"}).status, 0);
  const Json protocol = run({"protocol", "--json"}).json();
  EXPECT_TRUE(protocol["protocol"].is_string());
  EXPECT_EQ(protocol["lines"],
            Json::parse(R"([{"Vorgang":"Kunden","Nummer":"K1","Status":"Erledigt","VADatum":"20.11.2026",
              "Info":"Neukunde angelegt.\r\nBez1: Firma\r\nBez2: \r\nBez3: ","Artikelnummern":"","Bez":"",
              "Menge":"","Preis":"","Neukunde":true,"state":"done","kind":"kunde","number":"K1"}])"));
  EXPECT_EQ(runPlain({"--db", erp.file, "protocol", "--date", "23.11.2026", "--json"}).json()["lines"],
            Json::array());
}

TEST_F(Run, PrintsTheLinesOfEveryProtocolOfTheDay) {
  const auto processed = [&](const std::string& number, const char* day) {
    mustStage(R"({"type":"Kunde","Kundennummer":")" + number + R"(","Bez1":"Firma"})");
    const ProgramResult result = runPlain({"--db", erp.file, "--date", day, "process", "--json"});
    EXPECT_EQ(result.status, 0);
    return result.json()["protocol"].get<std::string>();
  };
  const std::string first = processed("K1", "24.11.2026");
  const std::string between = processed("K2", "25.11.2026");
  const std::string second = processed("K3", "24.11.2026");
  const Json both = runPlain({"--db", erp.file, "--date", "24.11.2026", "protocol", "--json"}).json();
  EXPECT_EQ(both["protocol"], second);
  EXPECT_EQ(both["protocols"], (Json{first, second}));
  ASSERT_EQ(both["lines"].size(), 2U);
  EXPECT_EQ(both["lines"][0]["Nummer"], "K1");
  EXPECT_EQ(both["lines"][1]["Nummer"], "K3");
  const std::string text = runPlain({"--db", erp.file, "--date", "24.11.2026", "protocol"}).output;
  EXPECT_LT(text.find("  K1  "), text.find("  K3  "));
  EXPECT_EQ(text.find("K2"), std::string::npos);
  EXPECT_EQ(runPlain({"--db", erp.file, "--date", "25.11.2026", "protocol", "--json"}).json()["protocols"],
            Json{between});
}

TEST_F(Run, ADayAmongTheOptionsIsStoredAsATimeStamp) {
  const auto set = [&](const char* typed) {
    return run({"settings", "set", "Allgemein", "DatumMwStÄnderung", typed});
  };
  EXPECT_EQ(set("21.11.2026").output, "20261121000000\n");
  for (const char* typed : {"31.11.2026", "2026-11-21", "morgen", "2026"})
    EXPECT_EQ(set(typed).status, 2) << typed;
  EXPECT_EQ(run({"settings", "get", "Allgemein", "DatumMwStÄnderung"}).output, "20261121000000\n");
  EXPECT_EQ(set("20270101").output, "20270101000000\n");
  EXPECT_EQ(set("").output, "\n");
}

TEST_F(Run, ANumberThatMayBeAThousandOrOneIsRefusedWithBothReadings) {
  const ProgramResult refused = run({"settings", "set", "OP-Info", "Kreditlimit1", "12.500"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_NE(refused.messages.find("'12.500': this may mean 12500 or 12,5; type one of them"),
            std::string::npos)
      << refused.messages;
  for (const char* typed : {"12500", "12,5", "12.50", "1.0000", "1.000,00"})
    EXPECT_EQ(run({"settings", "set", "OP-Info", "Kreditlimit1", typed}).status,
              std::string_view(typed) == "1.000,00" ? 2 : 0)
        << typed;
}

TEST_F(Run, AnOptionThatItsReadersDoNotUnderstandIsRefused) {
  const auto set = [&](std::string section, std::string key, std::string text) {
    return run({"settings", "set", std::move(section), std::move(key), std::move(text)}).status;
  };
  for (const char* text : {"true", "Wahr", "ja"})
    EXPECT_EQ(set("ImportJob2", "AutomatischVerarbeiten", text), 2);
  for (const char* text : {"2", "true"}) EXPECT_EQ(set("ImportJob2", "KundeDelete", text), 2);
  EXPECT_EQ(set("ImportJob2", "abGewicht", "schwer"), 2);
  EXPECT_EQ(set("ImportJob2", "abGewicht", "1e999"), 2);
  EXPECT_EQ(set("Kostenzuordnung", "Kundenauftrag", "70000"), 2);
  EXPECT_EQ(erp.count("Select Count(*) From Einstellungen Where Section = 'ImportJob2'"_sql), 0);
  EXPECT_EQ(set("ImportJob2", "AutomatischVerarbeiten", "1"), 0);
  EXPECT_EQ(set("ImportJob2", "Löschen", "Wahr"), 0);
  EXPECT_EQ(set("ImportJob2", "abGewicht", "31,5"), 0);
}

TEST_F(Run, OptionsAreListedReadAndWrittenInTheirStore) {
  const Json all = run({"settings", "list", "--json"}).json()["settings"];
  const auto find = [&](std::string_view key) {
    for (const Json& option : all)
      if (option["key"] == key) return option;
    return Json();
  };
  EXPECT_EQ(find("KundenVertreter")["section"], "ImportJob2");
  EXPECT_EQ(find("KundenVertreter")["value"], "");
  EXPECT_EQ(find("MainWidth")["local"], true);
  EXPECT_EQ(run({"settings", "set", "MAIN", "MainWidth", "800", "--local"}).status, 0);
  EXPECT_EQ(run({"settings", "get", "MAIN", "MainWidth", "--local"}).output, "800\n");
  EXPECT_EQ(run({"settings", "get", "MAIN", "MainWidth"}).output, "\n");
  EXPECT_EQ(run({"settings", "set", "ImportJob2", "Lo\u0308schen", "1"}).status, 0);
  EXPECT_EQ(erp.text("Select Value From Einstellungen Where Key = 'Löschen'"_sql), "1");
  EXPECT_EQ(run({"settings", "set", "ImportJob2", "Löschen", ""}).status, 0);
  EXPECT_EQ(run({"settings", "set", "ImportJob2", "KundenVertreter", "ja"}).status, 2);
  const ProgramResult mistyped = run({"settings", "set", "ImportJob2", "KundenVertretr", "1"});
  EXPECT_EQ(mistyped.status, 2);
  EXPECT_NE(mistyped.messages.find("did you mean 'ImportJob2' 'KundenVertreter'?"), std::string::npos)
      << mistyped.messages;
  EXPECT_EQ(run({"settings", "set", "Fremd", "Schalter", "an", "--force"}).output, "an\n");
}

TEST_F(Run, ListedOptionsSayWhatTheyDoAndWhatHolds) {
  erp.setOption("AutomatischVerarbeiten", "vielleicht");
  const Json all = run({"settings", "list", "--json"}).json()["settings"];
  const auto found =
      std::ranges::find_if(all, [](const Json& option) { return option["key"] == "AutomatischVerarbeiten"; });
  ASSERT_NE(found, all.end());
  EXPECT_EQ(*found, Json::parse(R"({"section":"ImportJob2","key":"AutomatischVerarbeiten",
      "value":"vielleicht","local":false,"meaning":"a run checks jobs and parks those with findings",
      "effective":"0","default":"0","allowed":"0 or 1","readers":["process"]})"));
  EXPECT_NE(run({"settings", "list"})
                .output.find("  AutomatischVerarbeiten = vielleicht  (counts as 0)\n"
                             "    a run checks jobs and parks those with findings\n"
                             "    0 or 1; default 0; read by process\n"),
            std::string::npos);
}

TEST_F(Run, OptionsTravelToAnotherInstallationAsAFile) {
  const std::string file = (erp.folder.path() / "optionen.ini").string();
  for (const auto& [section, key, setting] :
       {std::tuple("ImportJob2", "AutomatischVerarbeiten", "1"),
        std::tuple("ImportJob2", "ZAVSRG", " 50 %\r\nNN "), std::tuple("Allgemein", "Landeswährung", "EUR"),
        std::tuple("ImportJob2", "ProtoID", "nicht mit")})
    ASSERT_EQ(run({"settings", "set", section, key, setting}).status, 0);
  ASSERT_EQ(run({"settings", "export", file}).output, "3 options written to " + file + "\n");
  const std::string text = erp.folder.read("optionen.ini");
  EXPECT_EQ(text, "[Allgemein]\nLandeswährung=EUR\n\n[ImportJob2]\nAutomatischVerarbeiten=1\n"
                  "ZAVSRG= 50 %25%0D%0ANN \n");
  EXPECT_EQ(run({"settings", "export", "-"}).output, text);
  EXPECT_EQ(run({"settings", "export", file}).status, 2) << "it exists";
  const auto stored = erp.rows("Select * From Einstellungen Order By Section, Key"_sql);
  erp.execute("Delete From Einstellungen Where Key <> 'ProtoID'"_sql);
  ASSERT_EQ(run({"settings", "import", file}).output, "3 options imported\n");
  EXPECT_EQ(erp.rows("Select * From Einstellungen Order By Section, Key"_sql), stored);
  // The first two lines are right, and yet nothing of the file is stored.
  const ProgramResult wrong =
      run({"settings", "import", "-"}, "[ImportJob2]\nKundeDelete=1\nAuftragDelete=ja\n");
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.messages,
            "qximportjob: standard input, line 3: 'ja': the option is 0 or 1\nNothing was changed.\n");
  EXPECT_EQ(run({"settings", "import", "-"}, "[ImportJob2]\nKundeDelet=1\n").status, 2);
  EXPECT_EQ(run({"settings", "import", "-"}, "KundeDelete=1\n").status, 2);
  EXPECT_EQ(erp.rows("Select * From Einstellungen Order By Section, Key"_sql), stored);
}

TEST_F(Run, GroupsTheCausesAndPrintsOnlyWhatWasNotWrittenWhenQuiet) {
  std::string jobs = R"({"type":"Kunde","JobID":"gut","Kundennummer":"K1","Bez1":"Firma"})";
  for (const char* key : {"a", "b", "c"})
    jobs += std::string(R"({"type":"Kunde","Bez1":"N","JobID":")") + key + R"(","Kundennummer":"-"})";
  jobs += R"({"type":"Kunde","Bez1":"N","JobID":"d","Kundennummer":"-","Versandart":"DROHNE"})";
  mustStage(jobs);
  for (const char* key : {"a", "b", "c", "d"}) takeNumber(key);
  const ProgramResult quiet = run({"process", "-q"});
  EXPECT_EQ(quiet.status, 1);
  EXPECT_EQ(quiet.output.find("gut"), std::string::npos);
  EXPECT_NE(quiet.output.find(
                "Fehler    Kunden               a                                 Die Kundennummer fehlt.\n"),
            std::string::npos)
      << quiet.output;
  const std::string cause =
      "4 not written, 1 cause:\n  4 x customer.number.missing\n5 processed: 1 done, 0 with warnings";
  EXPECT_NE(quiet.output.find(cause), std::string::npos) << quiet.output;
  ASSERT_EQ(run({"release", "a", "b"}).status, 0);
  const ProgramResult lines = run({"process", "--json=lines"});
  std::istringstream text(lines.output);
  std::vector<Json> documents;
  for (std::string line; std::getline(text, line);) documents.push_back(Json::parse(line));
  ASSERT_EQ(documents.size(), 3U);
  EXPECT_EQ(documents[0]["Vorgang"], "Kunden");
  EXPECT_EQ(documents[2]["counts"], Json::parse(R"({"processed":2,"done":0,"warning":0,"error":2})"));
  EXPECT_EQ(documents[2]["causes"],
            Json::parse(R"([{"code":"customer.number.missing","value":"","jobs":2}])"));
  EXPECT_EQ(run({"check", "--json=lines"}).status, 2);
  EXPECT_EQ(run({"list", "--json=lines", "--state", "done"}).json()["JobID"], "gut");
}

TEST_F(Run, MessagesCarryTheirPriorityBelowTheJournal) {
  // The program compares the stream with the file that the variable names.
  const auto statusOf = [&](const std::string& file) {
    struct stat status {};
    EXPECT_EQ(stat(file.c_str(), &status), 0);
    return std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
  };
  const std::string log = (erp.folder.path() / "journal").string();
  const auto logged = [&](const std::string& words) {
    erp.folder.write("journal", "");
    const std::string command = "JOURNAL_STREAM=" + statusOf(log) + " HOME=" + log + " " +
                                QXIMPORTJOB_PROGRAM + " --db '" + erp.file + "' --date 24.11.2026 " + words +
                                " >/dev/null 2>>'" + log + "'";
    EXPECT_NE(std::system(command.c_str()), -1);
    return erp.folder.read("journal");
  };
  EXPECT_EQ(logged("show nicht"), "<3>qximportjob: there is no job 'nicht'\n"
                                  "<3>Nothing was changed. 'qximportjob list' shows the jobs.\n");
  EXPECT_EQ(logged("settings set MAIN MainWidth 1"),
            "<4>Note: this option is read from the local store; add --local.\n");
}

} // namespace
} // namespace qx
