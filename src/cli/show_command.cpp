#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/terminal_text.h"
#include "cli/written_order.h"
#include "engine/erp_number.h"
#include "model/german_text.h"
#include "model/text.h"
#include "platform/value.h"
#include "store/json_writer.h"

#include <cstddef>
#include <string>

namespace qx::cli {
namespace {

struct ShownJob {
  Recordset& header;
  Recordset& positions;
  Findings findings;
  WrittenOrder order;
};

/// The last column of the positions only sorts them.
std::size_t shownColumns(const Recordset& positions) { return positions.fieldCount() - 1; }

void writeJson(std::ostream& output, ShownJob& job) {
  JsonWriter json(output);
  writeColumns(json.beginObject(), job.header, job.header.fieldCount());
  json.key("Positionen").beginArray();
  for (; !job.positions.eof(); job.positions.moveNext()) {
    writeColumns(json.beginObject(), job.positions, shownColumns(job.positions));
    json.endObject();
  }
  json.endArray();
  writeOutcome(json, job.header);
  job.order.write(json);
  writeCheck(json, job.findings);
  json.endObject().finish();
}

std::string readable(const Value& value) {
  if (value.kind() == ValueKind::Boolean) return std::string(germanBoolean(value.truth().value_or(false)));
  if (value.kind() == ValueKind::Double) return germanNumber(value.number().value_or(0));
  return value.text();
}

/// Prints every non-empty column, further lines of a text below the first.
void writeSheet(std::ostream& output, Recordset& row, std::size_t count, std::string_view indent) {
  constexpr std::size_t nameWidth = 22;
  for (std::size_t i = 0; i < count; ++i) {
    std::string text = readable(row.value(i));
    if (text.empty()) continue;
    output << indent << fitted(row.fieldName(i), nameWidth) << "  ";
    const std::string margin = "\n" + std::string(indent) + std::string(nameWidth + 2, ' ');
    for (const char c : text) {
      if (c == '\n')
        output << margin;
      else if (c != '\r')
        output << c;
    }
    output << '\n';
  }
}

void writeText(std::ostream& output, const ShownJob& job) {
  const auto jobType = jobCode(job.header.value("JobType"));
  output << kindText(jobType) << ", " << stateText(jobType) << "\n\n";
  writeSheet(output, job.header, job.header.fieldCount(), "");
  for (int number = 1; !job.positions.eof(); job.positions.moveNext(), ++number) {
    output << "\nPosition " << number << "\n";
    writeSheet(output, job.positions, shownColumns(job.positions), "  ");
  }
  output << "\nPrüfung: " << (job.findings.texts().empty() ? "keine Befunde" : "") << '\n';
  for (const std::string& line : job.findings.lines()) output << "  " << line << '\n';
}

} // namespace

ExitCode ShowCommand::work(const CommandContext& context) {
  const JobBrief job = findJobs(context.connection(), {jobId}).front();
  const auto header = context.connection().openStream(
      sql("SELECT * From ImportKopf where JobID = '"_sql, value(job.jobId), "'"_sql));
  const auto positions = context.connection().openStream(
      sql("SELECT *, Cast(Positionsnummer as int) as intPos From ImportPos where JobID = '"_sql,
          value(job.jobId), "' Order By intPos"_sql));
  const std::string order = kindOf(job.jobType) == qxtJobAufträge ? erpNumber(*header) : std::string();
  ShownJob shown{*header, *positions, context.engine.checkJob(job.jobId), {context.connection(), order}};
  if (context.output.json)
    writeJson(context.output.result, shown);
  else
    writeText(context.output.result, shown);
  return ExitCode::Success;
}

} // namespace qx::cli
