// The same commands leave the same rows and print the same, whatever database the jobs lie on.
#include "cli/program_fixture.h"

#include "adapters/odbc/odbc_database.h"
#include "adapters/sqlite/sqlite_database.h"
#include "erp/schema.h"
#include "support/temporary_folder.h"
#include "support/test_server.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <utility>
#include <vector>

namespace qx {
namespace {

void replaceEach(std::string& text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

/// Without what differs from run to run: how long it took, and the time of day behind the session's date.
std::string lasting(std::string text) {
  constexpr std::string_view day = "20261124";
  constexpr std::size_t timeLength = 6;
  for (auto at = text.find(day); at != std::string::npos; at = text.find(day, at + 1)) {
    auto end = at + day.size();
    while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) ++end;
    if (end - at == day.size() + timeLength) text.erase(at + day.size(), timeLength);
  }
  for (const std::string_view clock : {", in ", "\"seconds\":"})
    if (const auto at = text.find(clock); at != std::string::npos) {
      const auto first = at + clock.size();
      text.erase(first, text.find_first_not_of("0123456789.e-", first) - first);
    }
  return text;
}

/// The program on one database, with its home in a folder of its own.
class Installation {
public:
  explicit Installation(std::string target) : target_(std::move(target)) {}

  void run(std::vector<std::string> arguments, std::string_view input = {}) {
    arguments.insert(arguments.begin(), {"--db", target_, "--user", "pruefer", "--date", "24.11.2026"});
    const ProgramResult result = ProgramRun(folder_, arguments, variables_, input).wait();
    std::string text = "exit " + std::to_string(result.status) + "\n" + result.output + result.messages;
    replaceEach(text, folder_.path().string(), "FOLDER");
    outputs.push_back(lasting(std::move(text)));
  }
  std::string file(const std::string& name) const { return (folder_.path() / name).string(); }
  const TemporaryFolder& folder() const { return folder_; }

  std::vector<std::string> outputs;

private:
  TemporaryFolder folder_;
  std::string target_;
  std::map<std::string, std::string> variables_{{"HOME", folder_.path().string()}, {"PATH", "/usr/bin:/bin"}};
};

/// All rows of a table in the order of their insertion, with the kinds of their values.
std::vector<std::string> rowsOf(Connection& connection, std::string_view table) {
  std::vector<std::string> rows;
  const auto found = connection.openStream(sql("Select * From "_sql, name(table)));
  for (; !found->eof(); found->moveNext()) {
    std::string& row = rows.emplace_back();
    for (std::size_t i = 0; i < found->fieldCount(); ++i) {
      const Value& content = found->value(i);
      row += std::string(found->fieldName(i)) + "/" + std::to_string(static_cast<int>(content.kind())) + "=" +
             content.text() + "; ";
    }
    row = lasting(std::move(row));
  }
  return rows;
}

constexpr std::string_view furtherJobs = R"([
  {"type":"Kunde","JobID":"K-1","Kundennummer":"91001","Suchbegriff":"O'Brien","Bez1":"Öl & \"Fett\" {?}","Land":"DE",
   "PLZ":"26721","Ort":"Emden","Kundengruppe":"hw","VS_AdrNr":"2","VS_Bez1":"Lager","VS_Ort":"Leer"},
  {"type":"Vertrag","JobID":"V-1","JobType":40,"Kundennummer":"91001","Vertragsnummer":"N-1","Artikelnummer":"M-WASCH",
   "Vertragsart":"MV","Zustand":"A","Vertragsdatum":"24.11.2026","Vertragsbeginn":"01.01.2027","Intervall":12,
   "Menge":1.5,"Preis":0.1},
  {"type":"Auftrag","JobID":"A-1","Kundennummer":"91001","Bez1":"Öl","Eingangsdatum":"1.2.26","Positionen":[
    {"ChildID":"P-1","Positionsnummer":10,"Artikelnummer":"FEI-013","Menge":2,"Mengeneinheit":"ST"},
    {"ChildID":"P-2","Positionsnummer":9,"Artikelnummer":"hbu-014","Menge":0.333,"Mengeneinheit":"ST","Rabatt":7.5}]},
  {"type":"Auftrag","JobID":"A-2","Kundennummer":"none","Positionen":[
    {"ChildID":"P-3","Positionsnummer":1,"Artikelnummer":"no such","Menge":1}]}])";

constexpr std::string_view replacedJobs = R"([
  {"type":"Auftrag","JobID":"a-2","Kundennummer":"91001","Bez1":"Neu","Positionen":[
    {"ChildID":"P-4","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1}]},
  {"type":"Kunde","JobID":"K-1","Kundennummer":"91001","Bez1":"Anders"}])";

constexpr std::string_view sameJobTwice = R"([
  {"type":"Kunde","JobID":"X-1","Kundennummer":"1","Bez1":"x"},{"type":"Kunde","Bez1":"N","JobID":"x-1","Kundennummer":"1"}])";

constexpr std::string_view positionOfAnother = R"([
  {"type":"Auftrag","JobID":"X-2","Kundennummer":"91001","Positionen":[
    {"ChildID":"p-1","Positionsnummer":1,"Artikelnummer":"FEI-013","Menge":1}]}])";

/// Sound objects between faulty ones: the first has more positions than one statement adds, then the fault.
std::string mixedJobs() {
  std::string positions;
  for (int i = 1; i <= 45; ++i)
    positions += R"({"ChildID":"M-)" + std::to_string(i) + R"(","Artikelnummer":"FEI-013","Menge":1},)";
  return R"([{"type":"Auftrag","JobID":"M","Kundennummer":"91001","Positionen":[)" + positions +
         R"({"Artikelnummer":"FEI-013"}]},
    {"type":"Auftrag","JobID":"S-1","Kundennummer":"91001","Positionen":[{"ChildID":"M-1","Artikelnummer":"FEI-013","Menge":1}]},
    {"type":"Auftrag","JobID":"S-2","Kundennummer":"91001","Positionen":[{"ChildID":"m-1","Artikelnummer":"FEI-013","Menge":1}]},
    {"type":"Auftrag","JobID":"S-3","Kundennummer":"91001","Positionen":[{"ChildID":"P-1","Artikelnummer":"FEI-013","Menge":1}]},
    {"type":"Kunde","JobID":"s-1","Kundennummer":"1","Bez1":"x"},
    {"type":"Kunde","JobID":"S-4","Kundennummer":"91003","Bez1":"Gut"}])";
}

/// A day's work with jobs of every kind and outcome.
void work(Installation& installation) {
  installation.run({"init", "--demo"});
  installation.run({"init"});
  installation.run({"check", "--json"});
  installation.run({"stage", "-"}, furtherJobs);
  installation.run({"stage", "-"}, sameJobTwice);
  installation.run({"stage", "-"}, positionOfAnother);
  installation.run({"stage", "-", "--partial", "--dry-run"}, mixedJobs());
  installation.run({"stage", "-", "--partial", "--json"}, mixedJobs());
  installation.run({"list"});
  installation.run({"list", "--json", "--state", "warning", "--kind", "kunde", "--limit", "3"});
  installation.run({"show", "A-1", "--json"});
  installation.run({"process", "--json"});
  installation.run({"stage", "-"}, replacedJobs);
  installation.run({"stage", "-", "--again"}, replacedJobs);
  installation.run({"settings", "set", "ImportJob2", "AutomatischVerarbeiten", "1"});
  installation.run({"release", "--all-warnings"});
  installation.run({"process"});
  installation.run({"show", "a-2"});
  installation.run({"export", installation.file("jobs.txt")});
  installation.run({"delete", "K-1"});
  installation.run({"purge"});
  installation.run({"import", installation.file("jobs.txt")});
  installation.run({"lock", "show", "--json"});
  installation.run({"list", "--json"});
}

TEST(Server, ADaysWorkLeavesTheSameRowsAsOnTheEmbeddedDatabase) {
  const TestSchema schema;
  Installation onServer("odbc:" + schema.connectionString());
  const TemporaryFolder folder;
  const std::string file = (folder.path() / "erp.db").string();
  Installation onFile(file);
  work(onServer);
  work(onFile);

  ASSERT_EQ(onServer.outputs.size(), onFile.outputs.size());
  const std::unique_ptr<Connection> server = OdbcDatabase(erp::schemaNames()).open(schema.connectionString());
  const std::unique_ptr<Connection> embedded = SqliteDatabase().open(file);
  // The protocol's key is drawn at random.
  const auto withoutKey = [](Connection& connection, std::string text) {
    const auto rows = connection.open(sql("Select ID From Protokolle"_sql));
    for (; !rows->eof(); rows->moveNext()) replaceEach(text, lasting(rows->text("ID")), "PROTOCOL");
    // So is that of a run, whose moments are those of the clock.
    const auto runs = connection.open(sql("Select LaufID, Beginn, Ende From Importlaeufe"_sql));
    for (; !runs->eof(); runs->moveNext()) {
      replaceEach(text, runs->text("LaufID"), "RUN");
      for (const ColumnName moment : {ColumnName("Beginn"), ColumnName("Ende")})
        if (const std::string at = runs->text(moment); !at.empty()) replaceEach(text, at, "MOMENT");
    }
    const auto contents = connection.open(sql("Select Zeitpunkt From Vorgangsinhalte"_sql));
    for (; !contents->eof(); contents->moveNext()) replaceEach(text, contents->text("Zeitpunkt"), "MOMENT");
    // And what tells one feed of results from another.
    replaceEach(
        text,
        connection.open(sql("Select Kennung From Zaehlerstaende Where Zaehler = 'Zustandswechsel'"_sql))
            ->text("Kennung"),
        "FEED");
    const auto changes = connection.open(sql("Select Distinct Zeitpunkt From Zustandswechsel"_sql));
    for (; !changes->eof(); changes->moveNext()) replaceEach(text, changes->text("Zeitpunkt"), "MOMENT");
    return std::regex_replace(text, std::regex("since [0-9.]{10} [0-9:]{8}"), "since MOMENT");
  };
  for (std::size_t i = 0; i < onFile.outputs.size(); ++i)
    EXPECT_EQ(withoutKey(*server, onServer.outputs[i]), withoutKey(*embedded, onFile.outputs[i])) << i;
  EXPECT_EQ(onServer.folder().read("jobs.txt"), onFile.folder().read("jobs.txt"));

  for (const erp::SchemaTable& table : erp::schemaTables()) {
    const auto served = rowsOf(*server, table.name);
    const auto stored = rowsOf(*embedded, table.name);
    EXPECT_EQ(served.size(), stored.size()) << table.name;
    for (std::size_t i = 0; i < std::min(served.size(), stored.size()); ++i)
      EXPECT_EQ(withoutKey(*server, served[i]), withoutKey(*embedded, stored[i])) << table.name << " " << i;
  }
}

} // namespace
} // namespace qx
