#include "cli/job_table.h"

#include "cli/job_terms.h"
#include "cli/new_file.h"
#include "model/text.h"
#include "store/json_writer.h"
#include "store/kept_jobs.h"

#include <cstdint>
#include <memory>
#include <ostream>
#include <string_view>
#include <utility>

namespace qx::cli {
namespace {

std::unique_ptr<Recordset> headerOf(Connection& connection, const std::string& key) {
  return connection.open(sql("Select * From ImportKopf Where JobID = '"_sql, value(key), "'"_sql));
}

} // namespace

std::vector<TableColumn> jobColumns() {
  return {{"Stand", 8, 8},   {"Vorgang", 13, 7},     {"Eingang", 10, 10, true},      {"Kunde", 10, 6},
          {"JobID", 32, 32}, {"Name", 24, 16, true}, {"Betreff, Fehlertext", 48, 12}};
}

std::vector<TableCell> jobCells(Recordset& row) {
  const auto jobType = jobCode(row.value("JobType"));
  std::string remark = briefReasons(row.text("Fehlertext"));
  if (remark.empty()) remark = row.text("Betreff");
  return {{std::string(stateText(jobType)), stateStyle(jobType)},
          {std::string(kindText(jobType))},
          {row.text("Eingangsdatum")},
          {row.text("Kundennummer")},
          {row.text("JobID")},
          {row.text("Bez1")},
          {std::move(remark)}};
}

void showWhatWould(const Output& output, Connection& connection, const std::vector<std::string>& keys,
                   const std::string& verb) {
  const auto count = static_cast<std::int64_t>(keys.size());
  if (output.json) {
    JsonWriter json(output.result);
    json.beginObject().key("jobs").texts(keys).key("would" + verb).number(count).endObject().finish();
    return;
  }
  Table table(output, jobColumns());
  if (!keys.empty()) table.head();
  for (const std::string& key : keys)
    if (const auto row = headerOf(connection, key); !row->eof()) table.row(jobCells(*row));
  output.result << count << " would be " << asciiLower(verb) << "d; nothing was changed\n";
}

void keepJobs(Connection& connection, const std::vector<std::string>& keys, const std::string& file) {
  writeNewFile(file, [&](std::ostream& stream) {
    writeKeptJobs(connection, keys, [&](const std::string& line) { stream << line; });
  });
}

} // namespace qx::cli
