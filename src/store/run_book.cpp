#include "store/run_book.h"

#include "platform/failure.h"
#include "store/entry_objects.h"

#include <algorithm>

namespace qx {
namespace {

constexpr std::string_view bookName = "Importlaeufe";

std::int64_t whole(Recordset& row, ColumnName column) { return row.value(column).integer().value_or(0); }

} // namespace

/// One look per connection: a host may begin a run for every job.
bool RunBook::isKept() {
  if (asked_.lock() != environment_.connection) {
    kept_ = hasRunBook(*environment_.connection);
    asked_ = environment_.connection;
  }
  return kept_;
}

template <class Step>
void RunBook::entering(Step&& step) {
  if (!environment_.connection) return;
  trapped(environment_.diagnostics, {"book of runs"}, [&] { step(*environment_.connection); });
}

void RunBook::begin(BusyWait* wait) {
  key_.clear();
  entering([&](Connection& connection) {
    if (!isKept()) return;
    key_ = newJobKey(environment_);
    entry_ = {};
    entry_.begin = timeStamp(environment_.clock.now());
    entry_.program = environment_.program;
    if (environment_.session) entry_.user = environment_.session->UserName();
    WorkUnit unit(connection, wait);
    connection.execute(sql("Insert Into Importlaeufe (LaufID, Beginn, Benutzer, Programm) Values ('"_sql,
                           value(key_), "', '"_sql, value(entry_.begin), "', '"_sql, value(entry_.user),
                           "', '"_sql, value(entry_.program), "')"_sql));
    unit.commit();
  });
}

void RunBook::end(const RunEntry& result, BusyWait* wait) {
  if (key_.empty()) return;
  entering([&](Connection& connection) {
    const std::string end = timeStamp(environment_.clock.now());
    WorkUnit unit(connection, wait);
    const auto changed = connection.execute(
        sql("Update Importlaeufe Set Ende = '"_sql, value(end), "', Ausgang = '"_sql, value(result.outcome),
            "', Verarbeitet = "_sql, number(result.processed), ", Erledigt = "_sql, number(result.done),
            ", Warnungen = "_sql, number(result.warning), ", Fehler = "_sql, number(result.error),
            ", Wartend = "_sql, number(result.waiting), ", Protokoll = '"_sql, value(result.protocol),
            "' Where LaufID = '"_sql, value(key_), "'"_sql));
    // The database was busy when the run began, or the answer was lost.
    if (changed == 0)
      connection.execute(
          sql("Insert Into Importlaeufe (LaufID, Beginn, Benutzer, Programm, Ende, Ausgang, Verarbeitet, "
              "Erledigt, Warnungen, Fehler, Wartend, Protokoll) Values ('"_sql,
              value(key_), "', '"_sql, value(entry_.begin), "', '"_sql, value(entry_.user), "', '"_sql,
              value(entry_.program), "', '"_sql, value(end), "', '"_sql, value(result.outcome), "', "_sql,
              number(result.processed), ", "_sql, number(result.done), ", "_sql, number(result.warning),
              ", "_sql, number(result.error), ", "_sql, number(result.waiting), ", '"_sql,
              value(result.protocol), "')"_sql));
    unit.commit();
  });
  key_.clear();
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
