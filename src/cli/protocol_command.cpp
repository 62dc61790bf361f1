#include "cli/commands.h"

#include "cli/json_writer.h"
#include "cli/terminal_text.h"
#include "engine/day_protocol.h"
#include "engine/findings.h"
#include "engine/hints.h"
#include "model/text.h"
#include "rules/dates.h"

#include <algorithm>
#include <array>
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

void writeJson(std::ostream& output, Connection& connection, const std::vector<std::string>& ids) {
  JsonWriter json(output);
  json.beginObject().key("protocol").textOrNull(ids.empty() ? std::string() : ids.back());
  json.key("protocols").texts(ids).key("lines").beginArray();
  forEachProtocolLine(connection, ids, [&](Recordset& line) {
    json.beginObject();
    for (const LineColumn& column : lineColumns) json.key(column.name).text(line.text(column.column));
    json.key("Neukunde").boolean(line.text("Text8") == "1");
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

void writeText(std::ostream& output, Connection& connection, const std::vector<std::string>& ids) {
  constexpr std::size_t shortWidth = 8;
  constexpr std::size_t numberWidth = 10;
  constexpr std::size_t infoWidth = 80;
  forEachProtocolLine(connection, ids, [&](Recordset& row) {
    output << tableLine({{row.text("Text2"), shortWidth},
                         {row.text("Text0"), shortWidth},
                         {row.text("Text1"), numberWidth},
                         {row.text("Text3"), numberWidth},
                         {row.text("Memo0"), infoWidth}})
           << '\n';
    writeHints(output, row.text("Memo0"));
  });
}

} // namespace

ExitCode ProtocolCommand::work(const CommandContext& context) {
  const Date day = NowEx(context.environment);
  const auto ids = protocolsOf(context.connection(), day);
  if (context.output.json)
    writeJson(context.output.result, context.connection(), ids);
  else if (ids.empty())
    context.output.result << "There is no protocol of " << germanDate(day) << ".\n";
  else
    writeText(context.output.result, context.connection(), ids);
  return ExitCode::Success;
}

} // namespace qx::cli
