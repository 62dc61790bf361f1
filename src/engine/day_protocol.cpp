#include "engine/day_protocol.h"

#include "model/text.h"
#include "rules/dates.h"

namespace qx {

std::vector<std::string> protocolsOf(Connection& connection, const Date& day) {
  constexpr std::size_t dayDigits = 8;
  const std::string from = dayStamp(day);
  const std::string to = from.substr(0, dayDigits) + "235959";
  const auto rows =
      connection.open(sql("Select ID From Protokolle Where Art = 'Import' And Datum >= '"_sql, value(from),
                          "' And Datum <= '"_sql, value(to), "' Order by Datum, ID"_sql));
  std::vector<std::string> ids;
  for (; !rows->eof(); rows->moveNext()) ids.push_back(rows->text("ID"));
  return ids;
}

void forEachProtocolLine(Connection& connection, const std::vector<std::string>& ids,
                         const std::function<void(Recordset&)>& take) {
  for (const std::string& id : ids) {
    const auto lines = connection.openStream(
        sql("Select * From Protokollpositionen Where ID = '"_sql, value(id), "' Order by Zeile"_sql));
    for (; !lines->eof(); lines->moveNext()) take(*lines);
  }
}

std::string dayProtocolText(Connection& connection, const Date& day) {
  std::string text;
  forEachProtocolLine(connection, protocolsOf(connection, day), [&](Recordset& line) {
    text += oneLine(line.text("Text2") + "  " + line.text("Text0") + " " + line.text("Text1"));
    const std::string date = line.text("Text3");
    if (!date.empty()) text += "  " + oneLine(date);
    text += "\r\n";
    const std::string info = line.text("Memo0");
    for (std::string_view rest = info; !rest.empty();)
      if (const std::string_view each = trimBlanks(takeLine(rest)); !each.empty())
        text += "    " + oneLine(each) + "\r\n";
  });
  return text;
}

} // namespace qx
