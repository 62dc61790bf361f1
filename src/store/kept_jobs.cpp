#include "store/kept_jobs.h"

#include "platform/path_text.h"
#include "store/job_file_target.h"
#include "store/json_writer.h"

#include <sstream>

namespace qx {
namespace {

std::string keptLine(Connection& connection, Recordset& header) {
  std::ostringstream line;
  JsonWriter json(line);
  json.beginObject().key("type").text(keptType).columns(header, header.fieldCount());
  json.key("Positionen").beginArray();
  const auto positions = connection.open(
      sql("Select * From ImportPos Where JobID = '"_sql, value(header.text("JobID")), "'"_sql));
  for (; !positions->eof(); positions->moveNext())
    json.beginObject().columns(*positions, positions->fieldCount()).endObject();
  json.endArray().endObject();
  line << '\n';
  return line.str();
}

} // namespace

void writeKeptJobs(Connection& connection, const std::vector<std::string>& jobIds,
                   const std::function<void(const std::string& line)>& write) {
  for (const std::string& jobId : jobIds) {
    const auto header =
        connection.open(sql("Select * From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql));
    if (!header->eof()) write(keptLine(connection, *header));
  }
}

void keepJobs(Environment& environment, const std::vector<std::string>& jobIds, std::string_view file) {
  JobFileTarget target(pathOf(file), protectedFiles(environment), permissionsOfNewFile(environment));
  writeKeptJobs(activeConnection(environment), jobIds,
                [&target](const std::string& line) { target.write(line); });
  target.finish();
}

} // namespace qx
