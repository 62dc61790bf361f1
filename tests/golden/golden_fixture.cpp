#include "golden_fixture.h"

#include "cli/stage_reader.h"
#include "support/server_texts.h"

#include <sstream>

namespace qx {
namespace {

/// Nobody else holds the database of a test.
class NoWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds /*waited*/) override { return false; }
};

std::string replaced(std::string text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

/// The notation's lines without indent and without empty ones; " | " joins lines.
std::vector<std::string> linesOf(std::string_view notation) {
  std::vector<std::string> lines;
  std::istringstream text{replaced(std::string(notation), " | ", "\n")};
  for (std::string line; std::getline(text, line);)
    if (const auto start = line.find_first_not_of(' '); start != std::string::npos)
      lines.push_back(line.substr(start));
  return lines;
}

std::string jsonObject(std::string_view notation, std::string object) {
  std::map<std::string, std::string> properties;
  for (const std::string& line : linesOf(notation)) {
    if (const auto at = line.find_first_of("=:"); at != std::string::npos) {
      const std::string value = line.substr(at + 1);
      properties[line.substr(0, at)] = line[at] == ':' ? value : "\"" + value + "\"";
      continue;
    }
    std::istringstream names(line);
    for (std::string name; names >> name;) properties[name] = "\"" + name + "\"";
  }
  for (const auto& [name, value] : properties)
    object += (object.size() > 1 ? ",\"" : "\"") + name + "\":" + value;
  return object;
}

} // namespace

GoldenTest::GoldenTest() : subscription(engine.subscribe(events)) {}

Environment& GoldenTest::environmentWithClerk() {
  fill("Benutzer", "UserName=pruefer\nPersonalNr=P7\nBuchungskreis=3");
  fill("Personalstamm", "PersonalNr=P7\nKurzzeichen\nAnrede=Frau\nTitel Vorname Nachname", "P_");
  fill("Nummernkreise", "NSchl=AB\nBuchungskreis=3\nAktiviert=1\naktuellerWert=500");
  return erp.environment;
}

void GoldenTest::overlay(Row& row, const std::string& line, std::string_view prefix) {
  if (const auto at = line.find_first_of("=:"); at != std::string::npos) {
    row[line.substr(0, at)] = replaced(line.substr(at + 1), " / ", "\r\n");
    return;
  }
  std::istringstream names(line);
  char mark = ' ';
  for (std::string name; names >> name;)
    if (name == "-" || name == "~")
      mark = name.front();
    else if (mark == '~')
      row.erase(name);
    else
      row[name] = mark == '-' ? "" : std::string(prefix) + name;
}

std::vector<GoldenTest::Row> GoldenTest::parsed(std::string_view notation, std::string_view prefix) {
  std::vector<Row> rows;
  bool begins = true;
  for (const std::string& line : linesOf(notation)) {
    if (std::exchange(begins, false)) rows.emplace_back();
    if (line == "--")
      begins = true;
    else
      overlay(rows.back(), line, prefix);
  }
  return rows;
}

void GoldenTest::fill(std::string_view table, std::string_view notation, std::string_view prefix) {
  const auto target = connection().open(sql("Select * From "_sql, name(table)));
  for (const Row& row : parsed(notation, prefix)) {
    target->addNew();
    for (const auto& [column, text] : row) target->set(ColumnName(column), Value(text));
    target->update();
  }
}

void GoldenTest::stage(std::string_view type, std::string_view notation,
                       const std::vector<std::string_view>& positions) {
  std::string json = jsonObject(notation, R"({"type":")" + std::string(type) + '"');
  std::string list;
  for (const std::string_view position : positions)
    list += (list.empty() ? "" : ",") + jsonObject(position, "{") + "}";
  if (!list.empty()) json += ",\"Positionen\":[" + list + "]";
  erp.folder.write("jobs.json", json + "}");

  // A connection of its own, as the program has one; it keeps tables of the file's jobs.
  const auto ownConnection = withServerTexts(erp.secondConnection());
  cli::TextFile source((erp.folder.path() / "jobs.json").string());
  const auto jobs = ownConnection->bulkStaging();
  cli::StageFaults faults(1);
  cli::JobAssembler assembler(erp.environment, *jobs, faults, cli::Completeness::Any);
  jobs->begin();
  cli::readJobs(source, assembler);
  ASSERT_TRUE(faults.empty()) << sentenceOf(faults.all().front());
  jobs->finish();
  ASSERT_TRUE(jobs->conflicts(1).empty());
  NoWait wait;
  ASSERT_TRUE(jobs->copy(wait, {}, 1).empty());
}

void GoldenTest::setStaged(std::string_view notation) {
  const auto job = connection().open(sql("Select * From ImportKopf"_sql));
  const auto described = parsed(notation, "");
  for (const auto& [column, text] : described.front()) job->set(ColumnName(column), Value(text));
  job->update();
}

std::string GoldenTest::text(const std::vector<Row>& rows) {
  std::string text;
  for (const Row& row : rows) {
    if (!text.empty()) text += "--\n";
    for (const auto& [column, value] : row) text += column + "=" + replaced(value, "\r\n", " / ") + "\n";
  }
  return text;
}

std::string GoldenTest::rows(std::string_view table) {
  std::vector<Row> all;
  for (const auto found = connection().open(sql("Select * From "_sql, name(table))); !found->eof();
       found->moveNext()) {
    Row& row = all.emplace_back();
    for (std::size_t i = 0; i < found->fieldCount(); ++i)
      if (!found->value(i).isNull() && found->fieldName(i) != "ID")
        row.emplace(found->fieldName(i), found->value(i).text());
  }
  return text(all);
}

std::string GoldenTest::expected(std::string_view notation, std::string_view prefix,
                                 std::string_view changes) {
  std::vector<Row> rows = parsed(notation, prefix);
  for (const std::string& line : linesOf(changes)) overlay(rows.back(), line, "");
  return text(rows);
}

} // namespace qx
