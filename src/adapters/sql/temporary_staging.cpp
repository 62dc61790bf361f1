#include "adapters/sql/temporary_staging.h"

#include "adapters/sql/column_lists.h"
#include "adapters/sql/staging_conflicts.h"
#include "platform/database_error.h"
#include "platform/value.h"

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

namespace qx::relational {
namespace {

/// A statement may have some 2,000 values; more of them save little.
constexpr std::size_t valuesPerStatement = 2000;

std::vector<std::string> with(std::vector<std::string> names, std::initializer_list<const char*> further) {
  names.insert(names.end(), further.begin(), further.end());
  return names;
}

} // namespace

RowBatch::RowBatch(Connection& connection, std::string_view table, std::vector<std::string> columns)
    : connection_(connection), table_(table), columns_(std::move(columns)),
      rowsPerStatement_(std::max<std::size_t>(valuesPerStatement / columns_.size(), 1)) {}

void RowBatch::beginRow() { values_.resize(values_.size() + columns_.size()); }

void RowBatch::set(ColumnName column, Value value) {
  const auto found =
      std::ranges::find_if(columns_, [&](const std::string& name) { return ColumnName(name) == column; });
  if (found == columns_.end())
    throw StatementError("the table " + table_ + " has no column '" + std::string(column.text()) + "'", 0,
                         "42703");
  const auto place = static_cast<std::size_t>(found - columns_.begin());
  values_[values_.size() - columns_.size() + place] = std::move(value);
}

void RowBatch::endRow() {
  if (values_.size() >= rowsPerStatement_ * columns_.size()) flush();
}

void RowBatch::flush() {
  if (values_.empty()) return;
  Sql insert = sql("INSERT INTO "_sql, name(table_), " ("_sql);
  insert.append(joinedBy(columns_, nameAlone)).append(sql(") VALUES "_sql));
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const bool first = i % columns_.size() == 0;
    const SqlText content{std::move(values_[i])};
    insert.append(first && i > 0 ? sql("), ('"_sql, content, "'"_sql)
                  : first        ? sql("('"_sql, content, "'"_sql)
                                 : sql(", '"_sql, content, "'"_sql));
  }
  insert.append(sql(")"_sql));
  values_.clear();
  connection_.execute(insert);
}

std::size_t RowBatch::dropLast(std::size_t rows) {
  const std::size_t dropped = std::min(rows, values_.size() / columns_.size());
  values_.resize(values_.size() - dropped * columns_.size());
  return dropped;
}

TemporaryStaging::TemporaryStaging(Connection& connection)
    : connection_(connection), contents_(connection, "StageNummer", false) {}

TemporaryStaging::~TemporaryStaging() {
  if (filling_) connection_.rollbackWork();
}

void TemporaryStaging::begin() {
  headerColumns_ = fieldNames(connection_, sql("SELECT * FROM ImportKopf WHERE 0 = 1"_sql));
  positionColumns_ = fieldNames(connection_, sql("SELECT * FROM ImportPos WHERE 0 = 1"_sql));
  connection_.beginWork(nullptr);
  filling_ = true;
  // Those of an earlier file in the same session.
  connection_.execute(sql("DROP TABLE IF EXISTS StageKopf"_sql));
  connection_.execute(sql("DROP TABLE IF EXISTS StagePos"_sql));
  connection_.execute(
      sql("CREATE TEMPORARY TABLE StageKopf AS SELECT *, CAST(0 AS BIGINT) AS StageNummer, "
          "CAST(0 AS BIGINT) AS StageZeile, CAST(0 AS BIGINT) AS StageZiel, CAST(0 AS BIGINT) AS "
          "StageSperre, JobID AS StageInhalt FROM ImportKopf WHERE 0 = 1"_sql));
  connection_.execute(sql(
      "CREATE TEMPORARY TABLE StagePos AS SELECT *, CAST(0 AS BIGINT) AS StageNummer, "
      "CAST(0 AS BIGINT) AS StageZeile, CAST(0 AS BIGINT) AS StageVorgang FROM ImportPos WHERE 0 = 1"_sql));
  headers_.emplace(connection_, "StageKopf",
                   with(headerColumns_, {"StageNummer", "StageZeile", "StageInhalt"}));
  positions_.emplace(connection_, "StagePos",
                     with(positionColumns_, {"StageNummer", "StageZeile", "StageVorgang"}));
  contents_.begin();
}

RowValues& TemporaryStaging::newPosition() {
  positions_->beginRow();
  return *positions_;
}

void TemporaryStaging::addPosition(std::int64_t line) {
  positions_->set("StageNummer", ++positionCount_);
  positions_->set("StageZeile", line);
  positions_->set("StageVorgang", jobs_ + 1);
  positions_->endRow();
}

RowValues& TemporaryStaging::newJob() {
  headers_->beginRow();
  return *headers_;
}

void TemporaryStaging::addJob(std::int64_t line, std::string_view content) {
  if (!content.empty()) headers_->set("StageInhalt", content);
  headers_->set("StageNummer", ++jobs_);
  headers_->set("StageZeile", line);
  headers_->endRow();
  earlierPositions_ = positionCount_;
}

void TemporaryStaging::dropPositions() {
  const auto count = static_cast<std::size_t>(positionCount_ - earlierPositions_);
  positionCount_ = earlierPositions_;
  if (positions_->dropLast(count) < count)
    connection_.execute(sql("DELETE FROM StagePos WHERE StageNummer > "_sql, number(earlierPositions_)));
}

void TemporaryStaging::finish() {
  headers_->flush();
  positions_->flush();
  connection_.commitWork();
  filling_ = false;
}

std::vector<KeyConflict> TemporaryStaging::conflicts(std::int64_t most) {
  std::vector<KeyConflict> found;
  appendConflicts(
      found, connection_,
      sql("SELECT k.JobID AS Schluessel, k.StageNummer AS Vorgang, k.StageZeile AS Zeile, "
          "e.Nummer AS VorigerVorgang, e.Zeile AS VorigeZeile FROM (SELECT JobID, "
          "min(StageNummer) AS Nummer, min(StageZeile) AS Zeile FROM StageKopf GROUP BY JobID "
          "HAVING count(*) > 1) e JOIN StageKopf k ON k.JobID = e.JobID WHERE k.StageNummer > e.Nummer "
          "ORDER BY 2"_sql),
      KeyConflict::Kind::JobTwice, most);
  appendConflicts(found, connection_,
                  sql("SELECT p.ChildID AS Schluessel, p.StageVorgang AS Vorgang, p.StageZeile AS Zeile, "
                      "e.Vorgang AS VorigerVorgang, e.Zeile AS VorigeZeile FROM (SELECT ChildID, "
                      "min(StageNummer) AS Nummer, min(StageVorgang) AS Vorgang, min(StageZeile) AS Zeile "
                      "FROM StagePos GROUP BY ChildID HAVING count(*) > 1) e "
                      "JOIN StagePos p ON p.ChildID = e.ChildID WHERE p.StageNummer > e.Nummer "
                      "ORDER BY p.StageNummer"_sql),
                  KeyConflict::Kind::PositionTwice, most);
  appendConflicts(
      found, connection_,
      sql("SELECT s.ChildID AS Schluessel, s.StageVorgang AS Vorgang, s.StageZeile AS Zeile, "
          "s.JobID AS Besitzer FROM StagePos s JOIN StageKopf k ON k.StageNummer = s.StageVorgang "
          "WHERE s.JobID <> '' AND s.JobID <> k.JobID ORDER BY s.StageNummer"_sql),
      KeyConflict::Kind::OtherName, most);
  return found;
}

void TemporaryStaging::leaveOut(const std::vector<std::int64_t>& jobs) {
  inNumberLists(jobs, [&](const Sql& list) {
    connection_.execute(sql("DELETE FROM StagePos WHERE StageVorgang IN "_sql).append(list));
    connection_.execute(sql("DELETE FROM StageKopf WHERE StageNummer IN "_sql).append(list));
  });
}

std::vector<KeyConflict> TemporaryStaging::copy(BusyWait& wait, CopyOrder order, std::int64_t most) {
  WorkUnit unit(connection_, &wait, Join::IfOpen);
  if (!order.tryOnly) contents_.await();
  findExisting(order.again);
  std::vector<KeyConflict> owned;
  appendConflicts(
      owned, connection_,
      sql("SELECT s.ChildID AS Schluessel, s.StageVorgang AS Vorgang, s.StageZeile AS Zeile, p.JobID AS "
          "Besitzer FROM StagePos s JOIN StageKopf k ON k.StageNummer = s.StageVorgang JOIN ImportPos p "
          "ON p.ChildID = s.ChildID WHERE k.StageSperre = 0 AND p.JobID <> k.JobID "
          "ORDER BY s.StageNummer"_sql),
      KeyConflict::Kind::OtherOwner, most);
  if (owned.empty()) {
    contents_.find(true);
    if (order.unique) contents_.appendTo(owned, most);
  }
  if (!owned.empty()) return owned;
  const std::int64_t repeated = contents_.count();
  changed_ = changedJobs(connection_);
  if (!order.tryOnly) {
    report(0, jobs_ + positionCount_);
    copyHeaders();
    report(jobs_, jobs_ + positionCount_);
    copyPositions();
    contents_.enter(0, jobs_, order.now);
    contents_.finish(counted(sql("SELECT count(*) FROM StageKopf WHERE StageSperre = 0"_sql)), order.now);
  }
  const auto count = connection_.open(
      sql("SELECT count(*) AS Alle, coalesce(sum(StageSperre), 0) AS Uebergangen FROM StageKopf"_sql));
  unit.commit();
  counts_.skipped = count->value("Uebergangen").integer().value_or(0);
  counts_.staged = count->value("Alle").integer().value_or(0) - counts_.skipped;
  counts_.repeated = repeated;
  return {};
}

/// `StageZiel` becomes the row of an existing job, `StageSperre` 1 when that must not be changed. The rows
/// are locked first: a run beside this program may be about to finish one of them.
void TemporaryStaging::findExisting(bool again) {
  const std::string_view rowKey = connection_.rowKey();
  connection_.open(
      sql("SELECT 1 AS Eins FROM ImportKopf k WITH (UPDLOCK) WHERE EXISTS (SELECT 1 FROM StageKopf s "
          "WHERE s.JobID = k.JobID)"_sql));
  connection_.execute(sql("UPDATE StageKopf SET StageSperre = 0, StageZiel = (SELECT k."_sql, name(rowKey),
                          " FROM ImportKopf k WHERE k.JobID = StageKopf.JobID)"_sql));
  if (again) return;
  connection_.execute(sql("UPDATE StageKopf SET StageSperre = 1 WHERE StageZiel IS NOT NULL AND EXISTS "
                          "(SELECT 1 FROM ImportKopf k WHERE k."_sql,
                          name(rowKey), " = StageZiel AND k.JobType IN (13, 23, 33, 43, 44))"_sql));
}

/// A replaced job keeps its row and so its place; columns that the file does not give become null.
void TemporaryStaging::copyHeaders() {
  Sql replace = sql("UPDATE ImportKopf SET "_sql);
  replace.append(joinedBy(headerColumns_, [](const std::string& column) {
    return sql(name(column), " = s."_sql, name(column));
  }));
  replace.append(sql(" FROM StageKopf s WHERE ImportKopf."_sql, name(connection_.rowKey()),
                     " = s.StageZiel AND s.StageSperre = 0"_sql));
  std::int64_t taken = connection_.execute(replace);

  Sql insert = sql("INSERT INTO ImportKopf ("_sql);
  insert.append(joinedBy(headerColumns_, nameAlone)).append(sql(") SELECT "_sql));
  insert.append(joinedBy(headerColumns_, nameAlone));
  insert.append(sql(" FROM StageKopf WHERE StageZiel IS NULL ORDER BY StageNummer"_sql));
  taken += connection_.execute(insert);
  requireTaken(taken, counted(sql("SELECT count(*) FROM StageKopf WHERE StageSperre = 0"_sql)), "jobs");
}

void TemporaryStaging::copyPositions() {
  connection_.execute(sql("DELETE FROM ImportPos WHERE JobID IN (SELECT JobID FROM StageKopf WHERE "
                          "StageZiel IS NOT NULL AND StageSperre = 0)"_sql));
  Sql insert = sql("INSERT INTO ImportPos ("_sql);
  insert.append(joinedBy(positionColumns_, nameAlone)).append(sql(") SELECT "_sql));
  // The position takes the key of its header, which may have been made after the position was read.
  insert.append(joinedBy(positionColumns_, [](const std::string& column) {
    return column == "JobID" ? sql("k.JobID"_sql) : sql("p."_sql, name(column));
  }));
  insert.append(sql(" FROM StagePos p JOIN StageKopf k ON k.StageNummer = p.StageVorgang WHERE "
                    "k.StageSperre = 0 ORDER BY p.StageNummer"_sql));
  const std::int64_t taken = connection_.execute(insert);
  requireTaken(
      taken,
      counted(sql("SELECT count(*) FROM StagePos p JOIN StageKopf k ON k.StageNummer = p.StageVorgang WHERE "
                  "k.StageSperre = 0"_sql)),
      "positions");
}

std::int64_t TemporaryStaging::counted(const Sql& count) {
  return connection_.open(count)->value(0).integer().value_or(0);
}

void TemporaryStaging::forEach(const Visitor& visit) {
  const auto rows = connection_.openStream(contents_.stagedRows(counts_.skipped > 0));
  visitStaged(*rows, visit);
}

} // namespace qx::relational
