#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/table.h"
#include "engine/day_protocol.h"
#include "engine/findings.h"
#include "engine/hints.h"
#include "model/text.h"
#include "platform/conflict_retry.h"
#include "program/busy_notice.h"
#include "program/common_options.h"
#include "rules/dates.h"
#include "store/handed_contents.h"
#include "store/json_writer.h"
#include "store/run_book.h"
#include "store/state_feed.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

struct LineColumn {
  std::string_view name;
  ColumnName column;
};
constexpr std::array lineColumns{
    LineColumn{"Vorgang", "Text0"}, LineColumn{"Nummer", "Text1"}, LineColumn{"Status", "Text2"},
    LineColumn{"VADatum", "Text3"}, LineColumn{"Info", "Memo0"},   LineColumn{"Artikelnummern", "Text4"},
    LineColumn{"Bez", "Text5"},     LineColumn{"Menge", "Text6"},  LineColumn{"Preis", "Text7"}};

/// The code of the job as far as its line has it: both kinds of contract are one transaction.
std::int16_t jobTypeOf(Recordset& line) {
  const auto kind = kindFromText(line.text("Text0"));
  const auto state = stateFromText(line.text("Text2"));
  return kind && state ? withState(*kind, *state) : std::int16_t{0};
}

void writeJson(std::ostream& output, Connection& connection, const std::vector<std::string>& ids) {
  JsonWriter json(output);
  json.beginObject().key("protocol").textOrNull(ids.empty() ? std::string() : ids.back());
  json.key("protocols").texts(ids).key("lines").beginArray();
  forEachProtocolLine(connection, ids, [&](Recordset& line) {
    json.beginObject();
    for (const LineColumn& column : lineColumns) json.key(column.name).text(line.text(column.column));
    json.key("Neukunde").boolean(line.text("Text8") == "1");
    writeOutcome(json, jobTypeOf(line), line.text("Text1"));
    json.endObject();
  });
  json.endArray().endObject().finish();
}

/// The hints among the lines of an information text, of which only the first has a column.
void writeHints(std::ostream& output, std::string_view info) {
  while (!info.empty()) {
    const std::string_view line = takeLine(info);
    if (line.starts_with(hintMark)) output << "  " << oneLine(line) << '\n';
  }
}

/// Of a written job it says first what was done.
std::string information(std::string_view status, const std::string& info) {
  std::string brief = statusStyle(status) == Style::Good ? std::string() : briefReasons(info);
  return brief.empty() ? info : brief;
}

void writeText(const Output& output, Connection& connection, const std::vector<std::string>& ids) {
  Table table(
      output,
      {{"Status", 8, 8}, {"Vorgang", 8, 8}, {"Nummer", 10, 6}, {"VADatum", 10, 10}, {"Info", 80, 10}});
  forEachProtocolLine(connection, ids, [&](Recordset& row) {
    const std::string status = row.text("Text2");
    table.row({{status, statusStyle(status)},
               {row.text("Text0")},
               {row.text("Text1")},
               {row.text("Text3")},
               {information(status, row.text("Memo0"))}});
    writeHints(output.result, row.text("Memo0"));
  });
}

} // namespace

void ProtocolPurgeCommand::prepare() { day_ = typedDate(before); }

ExitCode ProtocolPurgeCommand::work(const CommandContext& context) {
  Connection& connection = context.connection();
  BusyNotice wait(context.output.messages);
  std::int64_t protocols = 0;
  std::int64_t runs = 0;
  std::int64_t contents = 0;
  std::int64_t changes = 0;
  doneAgainOnConflict(context.environment, "protocol purge", [&] {
    WorkUnit unit(connection, &wait);
    const std::string day = dayStamp(day_);
    connection.execute(
        sql("Delete From Protokollpositionen Where ID In (Select ID From Protokolle Where Art = "
            "'Import' And Datum < '"_sql,
            value(day), "')"_sql));
    protocols = connection.execute(
        sql("Delete From Protokolle Where Art = 'Import' And Datum < '"_sql, value(day), "'"_sql));
    runs = hasRunBook(connection) ? deleteRunsBefore(connection, day_) : 0;
    contents = forgetContentsBefore(connection, day_);
    changes = hasStateFeed(connection) ? deleteChangesBefore(connection, day_) : 0;
    unit.commit();
    return true;
  });
  if (context.output.json)
    JsonWriter(context.output.result)
        .beginObject()
        .key("protocols")
        .number(protocols)
        .key("runs")
        .number(runs)
        .key("changes")
        .number(changes)
        .key("contents")
        .number(contents)
        .endObject()
        .finish();
  else
    context.output.result << protocols << " protocols, " << runs << " entries of runs and " << changes
                          << " changes of states deleted, " << contents << " contents forgotten\n";
  return ExitCode::Success;
}

ExitCode ProtocolCommand::work(const CommandContext& context) {
  const Date day = NowEx(context.environment);
  const auto ids = protocolsOf(context.connection(), day);
  if (context.output.json)
    writeJson(context.output.result, context.connection(), ids);
  else if (ids.empty())
    context.output.result << "There is no protocol of " << germanDate(day) << ".\n";
  else
    writeText(context.output, context.connection(), ids);
  return ExitCode::Success;
}

} // namespace qx::cli
