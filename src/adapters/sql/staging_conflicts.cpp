#include "adapters/sql/staging_conflicts.h"

#include "platform/database_error.h"
#include "platform/value.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace qx::relational {

void appendConflicts(std::vector<KeyConflict>& conflicts, Connection& connection, const Sql& query,
                     KeyConflict::Kind kind, std::int64_t most) {
  const bool twice = kind == KeyConflict::Kind::JobTwice || kind == KeyConflict::Kind::PositionTwice;
  const auto rows = connection.openStream(query);
  const auto whole = [&](ColumnName column) { return rows->value(column).integer().value_or(0); };
  for (; !rows->eof() && static_cast<std::int64_t>(conflicts.size()) < most; rows->moveNext()) {
    KeyConflict& conflict = conflicts.emplace_back();
    conflict.kind = kind;
    conflict.key = rows->text("Schluessel");
    conflict.job = whole("Vorgang");
    conflict.line = whole("Zeile");
    if (twice) {
      conflict.otherJob = whole("VorigerVorgang");
      conflict.otherLine = whole("VorigeZeile");
    } else {
      conflict.owner = rows->text("Besitzer");
    }
  }
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
    StageResult result = rows.value("StageZiel").isNull() ? StageResult::Added : StageResult::Replaced;
    if (rows.value("StageSperre").integer() == 1) result = StageResult::Skipped;
    visit(rows.text("JobID"), jobCode(rows.value("JobType")), result);
  }
}

void requireTaken(std::int64_t taken, std::int64_t expected, std::string_view what) {
  if (taken != expected)
    throw StatementError("the database has taken " + std::to_string(taken) + " of " +
                             std::to_string(expected) + " " + std::string(what) + "; nothing was staged",
                         0);
}

} // namespace qx::relational
