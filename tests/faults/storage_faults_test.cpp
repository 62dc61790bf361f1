// Lets every single call of a run to its storage fail, then runs again: every job is written once, whatever
// the moment. A few points of every kind here, all of them by scripts/fault_matrix.sh.
#include "adapters/sqlite/sqlite_database.h"
#include "cli/program_fixture.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <set>
#include <sstream>

namespace qx {
namespace {

namespace fs = std::filesystem;

using Rows = std::multiset<std::string>;

constexpr std::array<std::string_view, 4> callKinds{"write", "sync", "truncate", "open"};
constexpr std::array<std::string_view, 3> faultEffects{"error", "full", "kill"};
constexpr std::chrono::seconds longestRun{60};

/// Two customers to be written, one that is known, one that is refused for a code, one released by a clerk;
/// contracts with and without a position; an order of the new customer, one that fails, one that follows it.
constexpr std::string_view sampleJobs = R"([
{"type":"Kunde","JobID":"KUNDE-NEU","Eingangsdatum":"23.11.2026","Kundennummer":"90001",
 "Bez1":"Takelwerk Nord","Ort":"Emden","VS_AdrNr":"1","VS_Bez1":"Lager Nord","VS_Ort":"Leer"},
{"type":"Kunde","JobID":"KUNDE-BEKANNT","Eingangsdatum":"23.11.2026","Kundennummer":"70181",
 "Bez1":"Ahlendorn Bauservice GmbH","Strasse":"Zum Steinbruch 3","Land":"DE","PLZ":"00101","Ort":"Erlenbrück",
 "Telefon":"04921 7"},
{"type":"Kunde","JobID":"KUNDE-CODE","Eingangsdatum":"23.11.2026","Kundennummer":"90002","Bez1":"Segelhaus",
 "ZahlungsbedSchl":"QQ"},
{"type":"Kunde","JobID":"KUNDE-FREI","Eingangsdatum":"23.11.2026","Kundennummer":"90003","Bez1":"Bootsbau",
 "Kundengruppe":"NEU1"},
{"type":"Vertrag","JobID":"VERTRAG","Eingangsdatum":"23.11.2026","Kundennummer":"70074",
 "Vertragsnummer":"V90001","Vertragsbeginn":"01.12.2026","Vertragsende":"999999","Intervall":12,
 "Positionen":[{"ChildID":"V1","Artikelnummer":"W-SAEGE","Vertragsart":"WV","Menge":1,"Preis":240}]},
{"type":"Vertrag","JobID":"KUNDENVERTRAG","JobType":40,"Eingangsdatum":"23.11.2026","Kundennummer":"90001",
 "Vertragsnummer":"V90002","Artikelnummer":"M-WASCH","Vertragsart":"MV","Zustand":"A",
 "Vertragsbeginn":"01.12.2026","Vertragsende":"999999","Intervall":12,"Menge":1,"Preis":120},
{"type":"Auftrag","JobID":"AUFTRAG-NEUKUNDE","Eingangsdatum":"23.11.2026","Kundennummer":"90001",
 "Bez1":"Takelwerk Nord","Positionen":[
 {"ChildID":"N1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":2,"Mengeneinheit":"ST"},
 {"ChildID":"N2","Positionsnummer":2,"Artikelnummer":"HBU-014","Menge":3,"Mengeneinheit":"ST"}]},
{"type":"Auftrag","JobID":"AUFTRAG-FALSCH","Eingangsdatum":"23.11.2026","Kundennummer":"70181",
 "Bez1":"Ahlendorn Bauservice GmbH","Positionen":[
 {"ChildID":"F1","Positionsnummer":1,"Artikelnummer":"GIBTESNICHT","Menge":2,"Mengeneinheit":"ST"}]},
{"type":"Auftrag","JobID":"AUFTRAG","Eingangsdatum":"24.11.2026","Kundennummer":"70181",
 "Bez1":"Ahlendorn Bauservice GmbH","Positionen":[
 {"ChildID":"A1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1,"Mengeneinheit":"ST"},
 {"ChildID":"A2","Positionsnummer":2,"Artikelnummer":"HBU-014","Menge":1,"Mengeneinheit":"ST"}]}
])";

/// Replaces two of the sample's jobs, one with a position less, and adds one.
constexpr std::string_view furtherJobs = R"([
{"type":"Kunde","JobID":"KUNDE-NEU","Eingangsdatum":"23.11.2026","Kundennummer":"90001","Bez1":"Takelwerk Süd"},
{"type":"Auftrag","JobID":"AUFTRAG","Eingangsdatum":"24.11.2026","Kundennummer":"70181","Positionen":[
 {"ChildID":"A3","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":5,"Mengeneinheit":"ST"}]},
{"type":"Auftrag","JobID":"AUFTRAG-DAZU","Eingangsdatum":"24.11.2026","Kundennummer":"70181","Positionen":[
 {"ChildID":"D1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1,"Mengeneinheit":"ST"}]}
])";

/// What a command wrote, and what stood there before and would stand there without the fault.
struct Aftermath {
  const ProgramResult& result;
  const Rows& before;
  const Rows& found;
  const Rows& expected;
};

struct Command {
  std::string name;
  std::vector<std::string> arguments;
  std::string input = {};
  /// Judges the database right after the fault; empty when nothing is wrong.
  std::function<std::string(const Aftermath&)> judge = {};
};

std::string difference(const Rows& expected, const Rows& found) {
  std::string text;
  const auto list = [&](const char* sign, const Rows& some, const Rows& others) {
    std::vector<std::string> only;
    std::ranges::set_difference(some, others, std::back_inserter(only));
    for (const std::string& row : only) text.append("\n  ").append(sign).append(" ").append(row);
  };
  list("missing", expected, found);
  list("too much", found, expected);
  return text;
}

/// The objects of a JSON document that may have been cut off at any place.
std::vector<Json> printedJobs(const std::string& output) {
  std::vector<Json> jobs;
  constexpr std::string_view start = R"({"JobID")";
  for (auto at = output.find(start); at != std::string::npos; at = output.find(start, at + 1)) {
    const auto end = output.find('}', at);
    if (end != std::string::npos) jobs.push_back(Json::parse(output.substr(at, end - at + 1)));
  }
  return jobs;
}

/// Every row of every table without what differs from run to run: times, and the name of the day's protocol.
/// A run that dies before its first job leaves a protocol without lines.
Rows rowsOf(const fs::path& file) {
  Rows all;
  if (!fs::exists(file)) return all;
  const auto database = SqliteDatabase().open(file.string());
  const auto tables =
      database->open(sql("Select name From sqlite_master Where type = 'table' And name <> 'Protokolle'"_sql));
  for (; !tables->eof(); tables->moveNext()) {
    const std::string table = tables->text("name");
    for (const auto rows = database->open(sql("Select * From "_sql, name(table))); !rows->eof();
         rows->moveNext()) {
      std::string row = table;
      for (std::size_t i = 0; i < rows->fieldCount(); ++i) {
        const std::string_view column = rows->fieldName(i);
        const bool perRun = column == "ÄndDatum" || (table == "Protokollpositionen" && column == "ID");
        if (!perRun) row.append("|").append(rows->value(i).text());
      }
      if (!row.starts_with("Einstellungen|ImportJob2|ProtoID|")) all.insert(row);
    }
  }
  all.insert(database->open(sql("PRAGMA integrity_check"_sql))->value(0).text());
  return all;
}

std::string codes(const fs::path& file) {
  const auto database = SqliteDatabase().open(file.string());
  std::string text;
  for (const auto rows = database->open(sql("Select JobID, JobType From ImportKopf Order By JobID"_sql));
       !rows->eof(); rows->moveNext())
    text += rows->text("JobID") + " " + rows->text("JobType") + "\n";
  return text;
}

std::int64_t single(Connection& database, const Sql& statement) {
  return database.open(statement)->value(0).integer().value_or(-1);
}

class StorageFaults : public ::testing::Test {
protected:
  StorageFaults() {
    fs::create_directory(file.parent_path());
    must({"init", "--demo"});
    edit([](Connection& database) {
      database.execute(sql("Delete From ImportPos"_sql));
      database.execute(sql("Delete From ImportKopf"_sql));
    });
  }

  void stageSample() {
    must({"stage", "-"}, sampleJobs);
    edit([](Connection& database) {
      database.execute(
          sql("Update ImportKopf Set JobType = 12, Fehlertext = 'freigegeben', ProcessWarning = 1 "
              "Where JobID = 'KUNDE-FREI'"_sql));
    });
  }

  template <class Change>
  void edit(Change&& change) {
    const auto database = SqliteDatabase().open(file.string());
    WorkUnit unit(*database);
    change(*database);
    unit.commit();
  }

  /// Runs a command on the database; nothing when it hangs.
  std::optional<ProgramResult> run(const std::vector<std::string>& arguments, std::string_view input,
                                   const std::map<std::string, std::string>& fault = {}) const {
    std::map<std::string, std::string> variables{{"HOME", (folder.path() / "home").string()},
                                                 {"PATH", "/usr/bin:/bin"}};
    variables.insert(fault.begin(), fault.end());
    std::vector<std::string> all{"--db", file.string(), "--date", "24.11.2026"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return ProgramRun(folder, all, variables, input).waitAtMost(longestRun);
  }
  void must(const std::vector<std::string>& arguments, std::string_view input = {}) const {
    const auto result = run(arguments, input);
    ASSERT_TRUE(result && result->status == 0) << arguments.front() << (result ? result->messages : "hangs");
  }

  /// Every point of every kind with every effect, or as many as QX_FAULT_POINTS says.
  void expectRecovery(const Command& command) {
    before_ = rowsOf(file);
    if (fs::exists(file)) fs::copy_file(file, start_);
    const auto undisturbed = run(command.arguments, command.input, faultVariables());
    ASSERT_TRUE(undisturbed && undisturbed->status <= 1) << (undisturbed ? undisturbed->messages : "hangs");
    expected_ = rowsOf(file);
    ASSERT_NE(before_, expected_);
    std::istringstream counts(folder.read("report"));
    std::string kind;
    std::size_t calls = 0;
    std::size_t kinds = 0;
    while (counts >> kind >> calls) {
      ++kinds;
      for (std::size_t effect = 0; effect < faultEffects.size(); ++effect)
        tryPoints(command, kind, effect, calls);
    }
    EXPECT_EQ(kinds, callKinds.size()) << "the calls were not counted";
  }

  /// The points of a sample are spread evenly, for every effect at another place.
  void tryPoints(const Command& command, const std::string& kind, std::size_t effect, std::size_t calls) {
    const char* wanted = std::getenv("QX_FAULT_POINTS");
    constexpr std::size_t sample = 3;
    const std::size_t limit = wanted == nullptr ? sample : std::stoul(wanted);
    const std::size_t count = limit == 0 ? calls : std::min(limit, calls);
    std::size_t failed = 0;
    std::size_t reached = 0;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t shift = count < calls ? effect * calls / count / faultEffects.size() : 0;
      const std::size_t at = 1 + i * calls / count + shift;
      const std::string effectName(faultEffects[effect]);
      fs::remove(folder.path() / "report");
      const std::string problem = tryPoint(command, kind, effectName, at);
      if (fs::exists(folder.path() / "report")) ++reached;
      if (problem.empty()) continue;
      ++failed;
      ADD_FAILURE() << command.name << ", " << effectName << " at " << kind << " " << at << ": " << problem;
    }
    // How many jobs share a commit depends on the time they take, so the last points may be missed.
    EXPECT_GE(reached * 4, count * 3) << kind << ": the faults did not take place";
    std::cout << std::left << std::setw(9) << command.name << std::setw(9) << kind << std::setw(6)
              << faultEffects[effect] << std::right << std::setw(5) << count << " points " << std::setw(5)
              << count - failed << " passed " << std::setw(4) << failed << " failed" << std::endl;
  }

  /// What is wrong after a fault, or after the run that follows it; empty when nothing is.
  std::string tryPoint(const Command& command, const std::string& kind, const std::string& effect,
                       std::size_t at) {
    restore();
    auto variables = faultVariables();
    variables.merge(std::map<std::string, std::string>{
        {"FAULT_KIND", kind}, {"FAULT_EFFECT", effect}, {"FAULT_AT", std::to_string(at)}});
    const auto result = run(command.arguments, command.input, variables);
    if (!result) return "hangs";
    const bool reached = fs::exists(folder.path() / "report");
    const bool killed = result->status == killedStatus && effect == "kill" && reached;
    if (!killed && (result->status < 0 || (result->status > 1 && result->status != 4)))
      return "status " + std::to_string(result->status) + ": " + result->output + result->messages;
    Rows found = rowsOf(copyOfDatabase());
    // The run itself is complete then, and the next one takes the lock over.
    if (result->messages.find("The lock could not be released.") != std::string::npos)
      std::erase_if(found, [](const std::string& row) { return row.starts_with("LockControl|"); });
    if (result->status <= 1)
      if (const auto wrong = difference(expected_, found); !wrong.empty())
        return "status " + std::to_string(result->status) + " in spite of" + wrong + "\n" + result->messages;
    if (command.judge)
      if (const auto wrong = command.judge({*result, before_, found, expected_}); !wrong.empty())
        return "status " + std::to_string(result->status) + " and " + wrong;
    const auto again = run(command.arguments, command.input);
    if (!again) return "hangs when it is run again";
    if (again->status < 0 || again->status > 1)
      return "run again: status " + std::to_string(again->status) + ": " + again->output + again->messages;
    if (const auto wrong = difference(expected_, rowsOf(file)); !wrong.empty()) return "run again:" + wrong;
    return {};
  }

  std::map<std::string, std::string> faultVariables() const {
    return {{"LD_PRELOAD", FAILING_STORAGE},
            {"FAULT_NAME", "faulty"},
            {"FAULT_REPORT", (folder.path() / "report").string()},
            // The sanitizers want to be loaded first, and their findings must not look like those of a run.
            {"ASAN_OPTIONS", "verify_asan_link_order=0:exitcode=99"},
            {"UBSAN_OPTIONS", "exitcode=99"}};
  }

  void restore() const {
    for (const auto& entry : fs::directory_iterator(file.parent_path()))
      if (entry.path().filename().string().starts_with("faulty.db")) fs::remove(entry.path());
    if (fs::exists(start_)) fs::copy_file(start_, file);
  }

  /// Looking at the database would complete or clear away what the fault left beside it.
  fs::path copyOfDatabase() const {
    const fs::path look = folder.path() / "look.db";
    for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
      const fs::path from = file.string() + ending;
      const fs::path to = look.string() + ending;
      fs::remove(to);
      if (fs::exists(from) && std::string_view(ending) != "-shm") fs::copy_file(from, to);
    }
    return look;
  }

  static constexpr int killedStatus = 1000 + SIGKILL;

  TemporaryFolder folder;
  fs::path file = folder.path() / "faulty" / "faulty.db";

private:
  fs::path start_ = folder.path() / "start.db";
  Rows before_, expected_;
};

/// A job is processed, marked and logged, or it is none of these; what was printed is durable.
std::string judgeRun(const fs::path& look, const Aftermath& aftermath) {
  const auto database = SqliteDatabase().open(look.string());
  const auto marked = single(*database, sql("Select Count(*) From ImportKopf Where JobType % 10 <> 0 And "
                                            "Coalesce(Fehlertext, '') <> 'freigegeben'"_sql));
  const auto logged = single(*database, sql("Select Count(*) From Protokollpositionen"_sql));
  if (marked != logged)
    return std::to_string(marked) + " jobs are marked, but " + std::to_string(logged) + " logged";
  const auto orders = single(*database, sql("Select Count(*) From Auftragskopf"_sql));
  const auto done = single(*database, sql("Select Count(*) From ImportKopf Where JobType = 33"_sql));
  if (orders != done) return std::to_string(orders) + " orders for " + std::to_string(done) + " jobs";
  for (const Json& job : printedJobs(aftermath.result.output)) {
    const std::string jobId = job["JobID"];
    const auto stored =
        single(*database, sql("Select JobType From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql));
    if (stored != job["JobType"].get<std::int64_t>())
      return jobId + " is printed, but stands at " + std::to_string(stored);
  }
  return {};
}

std::string judgeWhole(const Aftermath& aftermath) {
  if (aftermath.found == aftermath.before || aftermath.found == aftermath.expected) return {};
  return "only a part is written:" + difference(aftermath.expected, aftermath.found);
}

TEST_F(StorageFaults, EveryJobIsProcessedOnceWhateverCallFails) {
  stageSample();
  expectRecovery({"process", {"process", "--json"}, {}, [this](const Aftermath& aftermath) {
                    return judgeRun(copyOfDatabase(), aftermath);
                  }});
  EXPECT_EQ(codes(file),
            "AUFTRAG 33\nAUFTRAG-FALSCH 32\nAUFTRAG-NEUKUNDE 33\nKUNDE-BEKANNT 13\nKUNDE-CODE 11\n"
            "KUNDE-FREI 13\nKUNDE-NEU 13\nKUNDENVERTRAG 43\nVERTRAG 23\n");
}

TEST_F(StorageFaults, ADatabaseIsCreatedByTheNextAttempt) {
  fs::remove(file);
  expectRecovery({"init", {"init", "--json"}});
}

TEST_F(StorageFaults, AFileIsStagedWhollyOrNotAtAll) {
  stageSample();
  expectRecovery({"stage", {"stage", "-", "--json"}, std::string(furtherJobs), judgeWhole});
}

TEST_F(StorageFaults, AJobFileThatIsReadInAgainIsComplete) {
  stageSample();
  const std::string jobs = (folder.path() / "jobs.edi").string();
  must({"export", jobs});
  edit([](Connection& database) {
    database.execute(sql("Delete From ImportPos"_sql));
    database.execute(sql("Delete From ImportKopf Where JobID <> 'AUFTRAG'"_sql));
  });
  expectRecovery({"import", {"import", jobs, "--json"}});
}

TEST_F(StorageFaults, JobsAreReleasedTogetherOrNotAtAll) {
  stageSample();
  edit([](Connection& database) {
    database.execute(sql("Update ImportKopf Set JobType = JobType + 1 Where JobType % 10 = 0"_sql));
  });
  expectRecovery({"release", {"release", "--all-warnings"}, {}, judgeWhole});
}

TEST_F(StorageFaults, APurgeThatIsRepeatedIsComplete) {
  stageSample();
  ASSERT_EQ(run({"process"}, {})->status, 1);
  expectRecovery({"purge", {"purge", "--json"}});
}

} // namespace
} // namespace qx
