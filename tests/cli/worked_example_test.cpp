// The orders that docs/standalone-erp.md works out by hand, staged and written by the program. Master data,
// job and expected figures are read from that page, so that it cannot drift from what the program does.
#include "program_fixture.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <sqlite3.h>
#include <sstream>
#include <vector>

namespace qx {
namespace {

using ::testing::HasSubstr;

/// The columns that hold something, with their text in each row. Whatever is missing is null.
using Columns = std::map<std::string, std::string>;

/// A line for each column, so that a difference shows as one.
std::string asText(const Columns& columns, std::size_t rows) {
  std::string text = std::to_string(rows) + " rows\n";
  for (const auto& [column, values] : columns)
    if (values.find_first_not_of("| ") != std::string::npos) text += column + values + "\n";
  return text;
}

/// One section of the page.
class Example {
public:
  explicit Example(const std::string& title) {
    std::ifstream file(QXIMPORTJOB_DOCS "/standalone-erp.md");
    std::stringstream page;
    page << file.rdbuf();
    text_ = between(page.str(), "\n## " + title + "\n", "\n## ");
  }

  /// The box of this language.
  std::string box(const std::string& language) const {
    return between(text_, "\n```" + language + "\n", "\n```");
  }

  /// What a table is to hold: a column of values for each row, under its number or "value".
  std::string table(const std::string& name) const {
    std::istringstream lines(between(text_, "\n`" + name + "`", "\n\n`"));
    Columns columns;
    std::size_t rows = 0;
    for (std::string line; std::getline(lines, line);) {
      const auto cells = cellsOf(line);
      if (cells.empty()) continue;
      if (cells[0] == "column") rows = static_cast<std::size_t>(std::ranges::count_if(cells, isRowTitle));
      if (!cells[0].starts_with('`')) continue;
      std::string& values = columns[cells[0].substr(1, cells[0].size() - 2)];
      for (std::size_t i = 0; i < rows; ++i) values += " | " + cells.at(i + 1);
    }
    return asText(columns, rows);
  }

private:
  static std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const auto from = text.find(begin);
    if (from == std::string::npos) throw std::runtime_error("the page has no" + begin);
    const auto start = from + begin.size();
    return text.substr(start, text.find(end, start) - start);
  }
  static bool isRowTitle(const std::string& cell) {
    return cell == "value" || (!cell.empty() && cell.find_first_not_of("0123456789") == std::string::npos);
  }
  static std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    if (!line.starts_with('|')) return cells;
    std::istringstream parts(line.substr(1));
    for (std::string cell; std::getline(parts, cell, '|');) {
      const auto first = cell.find_first_not_of(' ');
      cells.push_back(first == std::string::npos
                          ? std::string()
                          : cell.substr(first, cell.find_last_not_of(' ') - first + 1));
    }
    return cells;
  }

  std::string text_;
};

/// As the page writes it: nothing for null, visible line breaks and leading blanks.
std::string onPage(const Value& value) {
  if (value.isNull()) return "";
  std::string text = value.text();
  for (auto at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n"))
    text.replace(at, 2, "<br>");
  if (text.starts_with(' ')) text.replace(0, 1, "␣");
  return text.empty() ? "(empty text)" : text;
}

class WorkedExample : public ProgramTest {
protected:
  /// As somebody would type it into a database shell.
  void runScript(const std::string& statements) const {
    sqlite3* opened = nullptr;
    ASSERT_EQ(sqlite3_open(erp.file.c_str(), &opened), SQLITE_OK);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> shell(opened, &sqlite3_close);
    char* error = nullptr;
    sqlite3_exec(opened, statements.c_str(), nullptr, nullptr, &error);
    const std::unique_ptr<char, decltype(&sqlite3_free)> message(error, &sqlite3_free);
    ASSERT_EQ(error, nullptr) << error;
  }

  /// Stages the page's order and writes it; returns the output of the run.
  ProgramResult write(const Example& example, const std::vector<std::string>& options) {
    runScript(example.box("sql"));
    mustStage(example.box("json"));
    std::vector<std::string> arguments = options;
    arguments.emplace_back("process");
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.status, 0) << result.output << result.messages;
    EXPECT_EQ(erp.text("Select Fehlertext From ImportKopf"_sql), "");
    EXPECT_EQ(erp.count("Select JobType From ImportKopf"_sql), 33);
    return result;
  }

  void expectTable(const Example& example, const std::string& name, const Sql& query) {
    Columns columns;
    const auto found = erp.connection().open(query);
    for (; !found->eof(); found->moveNext())
      for (std::size_t i = 0; i < found->fieldCount(); ++i)
        columns[std::string(found->fieldName(i))] += " | " + onPage(found->value(i));
    EXPECT_EQ(asText(columns, found->recordCount()), example.table(name)) << name;
  }

  /// Every column of every table that an order writes.
  void expectOrder(const Example& example) {
    expectTable(example, "Auftragskopf", sql("Select * From Auftragskopf"_sql));
    expectTable(example, "Auftragspos", sql("Select * From Auftragspos"_sql));
    expectTable(example, "Belegindex", sql("Select * From Belegindex"_sql));
    expectTable(example, "Kundenstamm", sql("Select * From Kundenstamm"_sql));
    expectTable(example, "Nummernkreise", sql("Select * From Nummernkreise"_sql));
    expectTable(example, "Protokollpositionen",
                sql("Select Zeile, Text0, Text1, Text2, Text3, Text4, Text5, Text6, Text7, Text8, Memo0 From "
                    "Protokollpositionen"_sql));
    EXPECT_EQ(erp.text("Select ID From Protokollpositionen"_sql), erp.text("Select ID From Protokolle"_sql));
  }
};

TEST_F(WorkedExample, IsWrittenAsThePageSays) {
  const Example example("Worked example");
  erp.folder.write("Zubehoer.ini", example.box("ini"));
  const ProgramResult result = write(example, {"--user", "weber"});
  EXPECT_THAT(result.messages,
              HasSubstr("Folgende Aufträge enthalten Zahlungsart Nachnahme und wiegen mehr als 28 KG: 5001"));
  EXPECT_EQ(erp.text("Select Bemerkung From ImportKopf"_sql), " Auftrag: 5001");
  expectOrder(example);
  expectTable(example, "Kostenzuordnung", sql("Select * From Kostenzuordnung"_sql));
}

TEST_F(WorkedExample, APlainOrderIsWrittenAsThePageSays) {
  const Example example("Plain example");
  write(example, {"--user", "niemand"});
  expectOrder(example);
}

} // namespace
} // namespace qx
