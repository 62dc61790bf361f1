#include "cli/protocol_command.h"

#include "cli/json_writer.h"
#include "cli/utf8.h"
#include "rules/dates.h"

#include <array>

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

/// The identity of the day's protocol, the last one when there are several; empty without one.
std::string protocolOf(Connection& connection, const Date& day) {
  constexpr std::size_t dayDigits = 8;
  const std::string from = dayStamp(day);
  const std::string to = from.substr(0, dayDigits) + "235959";
  const auto rows =
      connection.open(sql("Select ID From Protokolle Where Art = 'Import' And Datum >= '"_sql, value(from),
                          "' And Datum <= '"_sql, value(to), "' Order by Datum"_sql));
  std::string id;
  for (; !rows->eof(); rows->moveNext()) id = rows->text("ID");
  return id;
}

void writeJson(std::ostream& output, const std::string& id, Recordset& lines) {
  JsonWriter json(output);
  json.beginObject().key("protocol");
  if (id.empty())
    json.null();
  else
    json.text(id);
  json.key("lines").beginArray();
  for (; !lines.eof(); lines.moveNext()) {
    json.beginObject();
    for (const LineColumn& column : lineColumns) json.key(column.name).text(lines.text(column.column));
    json.key("Neukunde").boolean(lines.text("Text8") == "1");
    json.endObject();
  }
  json.endArray().endObject().finish();
}

void writeText(std::ostream& output, const std::string& id, Recordset& lines, const Date& day) {
  if (id.empty()) {
    output << "There is no protocol of " << germanDate(day) << ".\n";
    return;
  }
  constexpr std::size_t shortWidth = 8;
  constexpr std::size_t numberWidth = 10;
  constexpr std::size_t infoWidth = 80;
  for (; !lines.eof(); lines.moveNext()) {
    std::string line =
        fitted(lines.text("Text2"), shortWidth) + "  " + fitted(lines.text("Text0"), shortWidth) + "  " +
        fitted(lines.text("Text1"), numberWidth) + "  " + fitted(lines.text("Text3"), numberWidth) + "  " +
        fitted(lines.text("Memo0"), infoWidth);
    line.erase(line.find_last_not_of(' ') + 1);
    output << line << '\n';
  }
}

} // namespace

ExitCode ProtocolCommand::work(const Workplace& place) {
  const Date day = NowEx(place.environment);
  const std::string id = protocolOf(place.connection(), day);
  const auto lines = place.connection().openStream(
      sql("Select * From Protokollpositionen Where ID = '"_sql, value(id), "' Order by Zeile"_sql));
  if (place.output.json)
    writeJson(place.output.result, id, *lines);
  else
    writeText(place.output.result, id, *lines, day);
  return ExitCode::Success;
}

} // namespace qx::cli
