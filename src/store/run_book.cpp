#include "store/run_book.h"

#include "platform/failure.h"
#include "store/entry_objects.h"

#include <algorithm>

namespace qx {
namespace {

constexpr std::string_view bookName = "Importlaeufe";

std::int64_t whole(Recordset& row, ColumnName column) { return row.value(column).integer().value_or(0); }

} // namespace

template <class Write>
void RunBook::write(BusyWait* wait, Write&& statement) {
  trapped(environment_.diagnostics, {"book of runs", {}, &isOutOfMemory}, [&] {
    Connection& connection = activeConnection(environment_);
    WorkUnit unit(connection, wait);
    connection.execute(statement());
    unit.commit();
  });
}

void RunBook::begin(std::string_view program, BusyWait* wait) {
  trapped(environment_.diagnostics, {"book of runs", {}, &isOutOfMemory}, [&] {
    Connection& connection = activeConnection(environment_);
    if (connection.ownsWork() && hasRunBook(connection)) key_ = newJobKey(environment_);
  });
  if (key_.empty()) return;
  write(wait, [&] {
    return sql("Insert Into Importlaeufe (LaufID, Beginn, Benutzer, Programm) Values ('"_sql, value(key_),
               "', '"_sql, value(timeStamp(environment_.clock.now())), "', '"_sql,
               value(environment_.session ? environment_.session->UserName() : std::string()), "', '"_sql,
               value(program), "')"_sql);
  });
}

void RunBook::end(const RunEntry& result, BusyWait* wait) {
  if (key_.empty()) return;
  write(wait, [&] {
    return sql("Update Importlaeufe Set Ende = '"_sql, value(timeStamp(environment_.clock.now())),
               "', Ausgang = '"_sql, value(result.outcome), "', Verarbeitet = "_sql, number(result.processed),
               ", Erledigt = "_sql, number(result.done), ", Warnungen = "_sql, number(result.warning),
               ", Fehler = "_sql, number(result.error), ", Wartend = "_sql, number(result.waiting),
               ", Protokoll = '"_sql, value(result.protocol), "' Where LaufID = '"_sql, value(key_), "'"_sql);
  });
}

bool hasRunBook(Connection& connection) {
  return std::ranges::any_of(connection.tableNames(), [](const std::string& name) {
    return ColumnName(name) == ColumnName(bookName);
  });
}

std::vector<RunEntry> lastRuns(Connection& connection, std::size_t count) {
  // Two runs may begin in the same second.
  const auto rows = connection.openStream(
      sql("Select * From Importlaeufe Order By Beginn Desc, "_sql, name(connection.rowKey()), " Desc"_sql));
  std::vector<RunEntry> runs;
  for (; !rows->eof() && runs.size() < count; rows->moveNext())
    runs.push_back({rows->text("Beginn"), rows->text("Ende"), rows->text("Ausgang"),
                    whole(*rows, "Verarbeitet"), whole(*rows, "Erledigt"), whole(*rows, "Warnungen"),
                    whole(*rows, "Fehler"), whole(*rows, "Wartend"), rows->text("Benutzer"),
                    rows->text("Programm"), rows->text("Protokoll")});
  return runs;
}

std::int64_t deleteRunsBefore(Connection& connection, const Date& day) {
  return connection.execute(
      sql("Delete From Importlaeufe Where Beginn < '"_sql, value(dayStamp(day)), "'"_sql));
}

} // namespace qx
