#include "faults/fault_fixture.h"

#include <algorithm>
#include <chrono>
#include <iterator>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds longestRun{60};

} // namespace

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

Rows rowsOf(const fs::path& file) {
  Rows all;
  if (!fs::exists(file)) return all;
  const auto database = SqliteDatabase().open(file.string());
  const auto tables = database->open(sql(
      "Select name From sqlite_master Where type = 'table' And name Not In ('Protokolle', 'Importlaeufe')"_sql));
  for (; !tables->eof(); tables->moveNext()) {
    const std::string table = tables->text("name");
    for (const auto rows = database->open(sql("Select * From "_sql, name(table))); !rows->eof();
         rows->moveNext()) {
      std::string row = table;
      for (std::size_t i = 0; i < rows->fieldCount(); ++i) {
        const std::string_view column = rows->fieldName(i);
        const bool perRun = column == "ÄndDatum" || column == "Zeitpunkt" ||
                            (table == "Protokollpositionen" && column == "ID") ||
                            (table == "Zustandswechsel" && column == "Folge") ||
                            (table == "Zaehlerstaende" && column == "Kennung");
        if (!perRun) row.append("|").append(rows->value(i).text());
      }
      if (!row.starts_with("Einstellungen|ImportJob2|ProtoID|")) all.insert(row);
    }
  }
  all.insert(database->open(sql("PRAGMA integrity_check"_sql))->value(0).text());
  return all;
}

FaultTest::FaultTest() {
  fs::create_directory(file.parent_path());
  must({"init", "--demo"});
  edit([](Connection& database) {
    database.execute(sql("Delete From ImportPos"_sql));
    database.execute(sql("Delete From ImportKopf"_sql));
  });
}

void FaultTest::stageSample() {
  must({"stage", "-"}, sampleJobs);
  edit([](Connection& database) {
    database.execute(sql("Update ImportKopf Set JobType = 12, Fehlertext = 'freigegeben', ProcessWarning = 1 "
                         "Where JobID = 'KUNDE-FREI'"_sql));
  });
}

std::optional<ProgramResult> FaultTest::run(const std::vector<std::string>& arguments, std::string_view input,
                                            const std::map<std::string, std::string>& fault) const {
  std::map<std::string, std::string> variables{{"HOME", (folder.path() / "home").string()},
                                               {"PATH", "/usr/bin:/bin"}};
  variables.insert(fault.begin(), fault.end());
  std::vector<std::string> all{"--db", file.string(), "--date", "24.11.2026"};
  all.insert(all.end(), arguments.begin(), arguments.end());
  return ProgramRun(folder, all, variables, input).waitAtMost(longestRun);
}

void FaultTest::must(const std::vector<std::string>& arguments, std::string_view input) const {
  const auto result = run(arguments, input);
  ASSERT_TRUE(result && result->status == 0) << arguments.front() << (result ? result->messages : "hangs");
}

void FaultTest::keepStart() {
  if (fs::exists(file)) fs::copy_file(file, start_, fs::copy_options::overwrite_existing);
}

void FaultTest::restore() const {
  for (const auto& entry : fs::directory_iterator(file.parent_path()))
    if (entry.path().filename().string().starts_with("faulty.db")) fs::remove(entry.path());
  if (fs::exists(start_)) fs::copy_file(start_, file);
}

fs::path FaultTest::copyOfDatabase() const {
  const fs::path look = folder.path() / "look.db";
  for (const char* ending : {"", "-wal", "-shm", "-journal"}) {
    const fs::path from = file.string() + ending;
    const fs::path to = look.string() + ending;
    fs::remove(to);
    if (fs::exists(from) && std::string_view(ending) != "-shm") fs::copy_file(from, to);
  }
  return look;
}

} // namespace qx
