#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/terminal_text.h"
#include "engine/erp_number.h"
#include "model/german_text.h"
#include "model/text.h"
#include "platform/value.h"
#include "store/json_writer.h"

#include <array>
#include <charconv>
#include <cstdint>
#include <memory>
#include <string>

namespace qx::cli {
namespace {

struct ShownJob {
  Recordset& header;
  Recordset& positions;
  Findings findings;
  Recordset* order = nullptr; ///< what the job became; null for none
  Recordset* lines = nullptr;
};

constexpr std::array<ColumnName, 6> orderSumColumns{"Auftragsnummer", "Währung",    "Preistyp",
                                                    "Gesamtnetto",    "GesamtMwSt", "Gesamtbrutto"};
constexpr std::array<ColumnName, 7> orderLineColumns{
    "Positionsnummer", "Artikelnummer", "Menge", "Mengeneinheit", "Preis", "Preiseinheit", "Rabatt"};

/// Prices and sums as the ERP has them.
void writeOrder(JsonWriter& json, Recordset& order, Recordset& lines) {
  json.key("order").beginObject();
  for (const ColumnName column : orderSumColumns) json.key(column.text()).value(order.value(column));
  json.key("lines").beginArray();
  for (; !lines.eof(); lines.moveNext()) {
    json.beginObject();
    for (const ColumnName column : orderLineColumns) json.key(column.text()).value(lines.value(column));
    json.endObject();
  }
  json.endArray().endObject();
}

/// The last column of the positions only sorts them.
std::size_t shownColumns(const Recordset& positions) { return positions.fieldCount() - 1; }

void writeJson(std::ostream& output, const ShownJob& job) {
  JsonWriter json(output);
  writeColumns(json.beginObject(), job.header, job.header.fieldCount());
  json.key("Positionen").beginArray();
  for (; !job.positions.eof(); job.positions.moveNext()) {
    writeColumns(json.beginObject(), job.positions, shownColumns(job.positions));
    json.endObject();
  }
  json.endArray();
  writeOutcome(json, job.header);
  if (job.order) writeOrder(json, *job.order, *job.lines);
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

/// 0 for a job that has not become an order.
std::int64_t orderNumber(const std::string& number) {
  std::int64_t whole = 0;
  std::from_chars(number.data(), number.data() + number.size(), whole);
  return whole;
}

} // namespace

ExitCode ShowCommand::work(const CommandContext& context) {
  const JobBrief job = findJobs(context.connection(), {jobId}).front();
  const auto header = context.connection().openStream(
      sql("SELECT * From ImportKopf where JobID = '"_sql, value(job.jobId), "'"_sql));
  const auto positions = context.connection().openStream(
      sql("SELECT *, Cast(Positionsnummer as int) as intPos From ImportPos where JobID = '"_sql,
          value(job.jobId), "' Order By intPos"_sql));
  std::unique_ptr<Recordset> order;
  std::unique_ptr<Recordset> lines;
  if (const auto number = kindOf(job.jobType) == qxtJobAufträge ? orderNumber(erpNumber(*header)) : 0;
      number != 0) {
    order = context.connection().open(
        sql("Select * From Auftragskopf Where Auftragsnummer = "_sql, qx::number(number)));
    lines = context.connection().open(
        sql("Select * From Auftragspos Where Zeilentyp = 'K' And Auftragsnummer = "_sql, qx::number(number),
            " Order By Positionsnummer"_sql));
  }
  const bool written = order && !order->eof();
  const ShownJob shown{*header, *positions, context.engine.checkJob(job.jobId),
                       written ? order.get() : nullptr, written ? lines.get() : nullptr};
  if (context.output.json)
    writeJson(context.output.result, shown);
  else
    writeText(context.output.result, shown);
  return ExitCode::Success;
}

} // namespace qx::cli
