#include "adapters/sql/staging_conflicts.h"

#include "platform/database_error.h"
#include "platform/value.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace qx::relational {

void appendConflicts(std::vector<KeyConflict>& conflicts, Connection& connection, const Sql& query,
                     KeyConflict::Kind kind, std::int64_t most) {
  const auto rows = connection.openStream(query);
  for (; !rows->eof() && static_cast<std::int64_t>(conflicts.size()) < most; rows->moveNext())
    conflicts.push_back(conflictOf(*rows, kind));
}

KeyConflict conflictOf(Recordset& row, KeyConflict::Kind kind) {
  using Kind = KeyConflict::Kind;
  const auto whole = [&](ColumnName column) { return row.value(column).integer().value_or(0); };
  KeyConflict conflict;
  conflict.kind = kind;
  conflict.key = row.text("Schluessel");
  conflict.job = whole("Vorgang");
  conflict.line = whole("Zeile");
  if (kind == Kind::JobTwice || kind == Kind::PositionTwice || kind == Kind::ContentTwice) {
    conflict.otherJob = whole("VorigerVorgang");
    conflict.otherLine = whole("VorigeZeile");
  }
  if (kind == Kind::OtherOwner || kind == Kind::OtherName || kind == Kind::ContentTwice)
    conflict.owner = row.text("Besitzer");
  if (kind == Kind::ContentTwice) conflict.since = row.text("Seit");
  return conflict;
}

void inNumberLists(const std::vector<std::int64_t>& numbers,
                   const std::function<void(const Sql& list)>& leave) {
  constexpr std::size_t portion = 500;
  for (std::size_t from = 0; from < numbers.size(); from += portion) {
    Sql list = sql("("_sql);
    for (std::size_t i = from; i < std::min(from + portion, numbers.size()); ++i) {
      if (i > from) list.append(sql(", "_sql));
      list.append(sql(number(numbers[i])));
    }
    leave(list.append(sql(")"_sql)));
  }
}

std::vector<BulkStaging::ChangedJob> changedJobs(Connection& connection) {
  std::vector<BulkStaging::ChangedJob> changed;
  const auto rows =
      connection.openStream(sql("SELECT s.JobID, s.JobType FROM StageKopf s LEFT JOIN ImportKopf k ON k."_sql,
                                name(connection.rowKey()),
                                " = s.StageZiel WHERE s.StageSperre = 0 AND s.JobType <> "
                                "coalesce(k.JobType, s.JobType - s.JobType % 10) ORDER BY s.StageZiel"_sql));
  for (; !rows->eof(); rows->moveNext())
    changed.push_back({rows->text("JobID"), jobCode(rows->value("JobType"))});
  return changed;
}

void visitStaged(Recordset& rows, const BulkStaging::Visitor& visit) {
  for (; !rows.eof(); rows.moveNext()) {
    const bool known = !rows.value("StageZiel").isNull();
    StagedJob job{rows.text("Schluessel"), jobCode(rows.value("Art")),
                  known ? StageResult::Replaced : StageResult::Added};
    if (rows.value("StageSperre").integer() == 1) {
      job.result = StageResult::Skipped;
      job.stored = &rows;
    }
    visit(job);
  }
}

void requireTaken(std::int64_t taken, std::int64_t expected, std::string_view what) {
  if (taken != expected)
    throw StatementError("the database has taken " + std::to_string(taken) + " of " +
                             std::to_string(expected) + " " + std::string(what) + "; nothing was staged",
                         0);
}

} // namespace qx::relational
