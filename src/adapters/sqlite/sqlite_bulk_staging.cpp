#include "adapters/sqlite/sqlite_bulk_staging.h"

#include "adapters/sql/column_lists.h"
#include "adapters/sql/staging_conflicts.h"
#include "platform/value.h"

#include <algorithm>
#include <utility>

namespace qx::sqlite {

using relational::fieldNames;
using relational::joinedBy;
using relational::nameAlone;

SqliteBulkStaging::SqliteBulkStaging(Connection& connection, relational::Driver& driver)
    : connection_(connection), driver_(driver), contents_(connection, connection.rowKey(), true) {
  // After a failure the temporary tables are not read again; their journal would only take memory.
  connection_.open(sql("PRAGMA temp.journal_mode = OFF"_sql));
  // What is read of every row stands in front.
  connection_.execute(sql("CREATE TEMP TABLE StageKopf AS SELECT JobID AS StageInhalt, CAST(0 AS INTEGER) AS "
                          "StageZeile, CAST(0 AS INTEGER) AS StageZiel, CAST(0 AS INTEGER) AS StageSperre, * "
                          "FROM main.ImportKopf WHERE 0 = 1"_sql));
  connection_.execute(sql("CREATE TEMP TABLE StagePos AS SELECT *, CAST(0 AS INTEGER) AS StageZeile, "
                          "CAST(0 AS INTEGER) AS StageVorgang FROM main.ImportPos WHERE 0 = 1"_sql));
}

void SqliteBulkStaging::begin() {
  headers_.emplace(driver_, "StageKopf");
  positions_.emplace(driver_, "StagePos");
  contents_.begin();
  // A transaction without a lock on the database: until the copy only temporary tables are written.
  connection_.execute(sql("BEGIN DEFERRED"_sql));
}

RowValues& SqliteBulkStaging::newPosition() { return *positions_; }

/// The header's row number is its position in the file, because rows are only appended.
void SqliteBulkStaging::addPosition(std::int64_t line) {
  positions_->set("StageZeile", line);
  positions_->set("StageVorgang", jobs_ + 1);
  positionKeys_.add(positions_->value("ChildID").textView());
  if (const auto job = positions_->value("JobID").textView(); !job.empty()) {
    othersNamed_ = othersNamed_ || (!namedJob_.empty() && namedJob_ != job);
    namedJob_ = job;
  }
  positions_->add();
  ++positionCount_;
}

RowValues& SqliteBulkStaging::newJob() { return *headers_; }

void SqliteBulkStaging::addJob(std::int64_t line, std::string_view content) {
  if (!content.empty()) {
    headers_->set("StageInhalt", content);
    contentKeys_.add(content);
  }
  headers_->set("StageZeile", line);
  headers_->set("StageSperre", 0);
  const std::string_view key = headers_->value("JobID").textView();
  jobKeys_.add(key);
  othersNamed_ = othersNamed_ || (!namedJob_.empty() && namedJob_ != key);
  namedJob_.clear();
  headers_->add();
  ++jobs_;
  earlierPositions_ = positionCount_;
}

void SqliteBulkStaging::dropPositions() {
  namedJob_.clear();
  if (positionCount_ == earlierPositions_) return;
  connection_.execute(sql("DELETE FROM StagePos WHERE rowid > "_sql, number(earlierPositions_)));
  positionKeys_.keepFirst(earlierPositions_);
  positionCount_ = earlierPositions_;
}

void SqliteBulkStaging::finish() {
  headers_.reset();
  positions_.reset();
  connection_.execute(sql("COMMIT"_sql));
}

std::vector<KeyConflict> SqliteBulkStaging::conflicts(std::int64_t most) {
  std::vector<KeyConflict> found;
  if (jobKeys_.possible())
    relational::appendConflicts(
        found, connection_,
        sql("SELECT k.JobID AS Schluessel, k.rowid AS Vorgang, k.StageZeile AS Zeile, "
            "e.Nummer AS VorigerVorgang, e.Zeile AS VorigeZeile FROM (SELECT JobID, min(rowid) AS Nummer, "
            "min(StageZeile) AS Zeile FROM StageKopf GROUP BY JobID COLLATE NOCASE HAVING count(*) > 1) e "
            "JOIN StageKopf k ON k.JobID = e.JobID COLLATE NOCASE WHERE k.rowid > e.Nummer ORDER BY 2"_sql),
        KeyConflict::Kind::JobTwice, most);
  if (positionKeys_.possible())
    relational::appendConflicts(
        found, connection_,
        sql("SELECT p.ChildID AS Schluessel, p.StageVorgang AS Vorgang, p.StageZeile AS Zeile, "
            "e.Vorgang AS VorigerVorgang, e.Zeile AS VorigeZeile FROM (SELECT ChildID, min(rowid) AS Nummer, "
            "min(StageVorgang) AS Vorgang, min(StageZeile) AS Zeile FROM StagePos "
            "GROUP BY ChildID COLLATE NOCASE HAVING count(*) > 1) e "
            "JOIN StagePos p ON p.ChildID = e.ChildID COLLATE NOCASE WHERE p.rowid > e.Nummer "
            "ORDER BY p.rowid"_sql),
        KeyConflict::Kind::PositionTwice, most);
  if (othersNamed_)
    relational::appendConflicts(
        found, connection_,
        sql("SELECT s.ChildID AS Schluessel, s.StageVorgang AS Vorgang, s.StageZeile AS Zeile, "
            "s.JobID AS Besitzer FROM StagePos s JOIN StageKopf k ON k.rowid = s.StageVorgang "
            "WHERE s.JobID <> '' AND s.JobID <> k.JobID COLLATE NOCASE ORDER BY s.rowid"_sql),
        KeyConflict::Kind::OtherName, most);
  return found;
}

void SqliteBulkStaging::leaveOut(const std::vector<std::int64_t>& jobs) {
  leftOut_ = leftOut_ || !jobs.empty();
  relational::inNumberLists(jobs, [&](const Sql& list) {
    connection_.execute(sql("DELETE FROM StagePos WHERE StageVorgang IN "_sql).append(list));
    connection_.execute(sql("DELETE FROM StageKopf WHERE rowid IN "_sql).append(list));
  });
}

/// What ends without copying is committed, too: after a rollback the temporary tables could not be read.
std::vector<KeyConflict> SqliteBulkStaging::copy(BusyWait& wait, CopyOrder order, std::int64_t most) {
  WorkUnit unit(connection_, &wait, Join::IfOpen);
  if (!order.tryOnly) contents_.await();
  findExisting(order.again);
  // In this order of tables: few positions of a file exist already, and a job is a wide row.
  std::vector<KeyConflict> owned;
  relational::appendConflicts(
      owned, connection_,
      sql("SELECT s.ChildID AS Schluessel, s.StageVorgang AS Vorgang, s.StageZeile AS Zeile, p.JobID AS "
          "Besitzer FROM StagePos s CROSS JOIN main.ImportPos p CROSS JOIN StageKopf k "
          "WHERE p.ChildID = s.ChildID AND k.rowid = s.StageVorgang AND k.StageSperre = 0 "
          "AND p.JobID <> k.JobID ORDER BY s.rowid"_sql),
      KeyConflict::Kind::OtherOwner, most);
  if (owned.empty()) {
    contents_.find(contentKeys_.possible());
    if (order.unique) contents_.appendTo(owned, most);
  }
  if (!owned.empty()) {
    unit.commit();
    return owned;
  }
  const auto count = connection_.open(
      sql("SELECT count(*) AS Alle, coalesce(sum(StageSperre), 0) AS Uebergangen FROM StageKopf"_sql));
  StageCounts counts;
  counts.skipped = count->value("Uebergangen").integer().value_or(0);
  counts.staged = count->value("Alle").integer().value_or(0) - counts.skipped;
  counts.repeated = contents_.count();
  changed_ = relational::changedJobs(connection_);
  if (!order.tryOnly) {
    report(0, jobs_ + positionCount_);
    copyHeaders(counts.staged);
    copyPositions(counts.skipped == 0 && !leftOut_);
    inPortions(jobs_, [&](std::int64_t from, std::int64_t to) { contents_.enter(from, to, order.now); });
    contents_.finish(counts.staged, order.now);
  }
  unit.commit();
  counts_ = counts;
  return {};
}

/// `StageZiel` becomes the row of an existing job, `StageSperre` 1 when that must not be changed.
void SqliteBulkStaging::findExisting(bool again) {
  const std::int64_t existing = connection_.execute(
      sql("UPDATE StageKopf SET StageSperre = 0, StageZiel = (SELECT k.rowid FROM main.ImportKopf k WHERE "
          "k.JobID = StageKopf.JobID) WHERE StageZiel IS NOT NULL OR EXISTS (SELECT 1 FROM main.ImportKopf k "
          "WHERE k.JobID = StageKopf.JobID)"_sql));
  if (again || existing == 0) return;
  connection_.execute(sql("UPDATE StageKopf SET StageSperre = 1 WHERE StageZiel IS NOT NULL AND EXISTS "
                          "(SELECT 1 FROM main.ImportKopf k WHERE k.rowid = StageZiel AND k.JobType IN "
                          "(13, 23, 33, 43, 44))"_sql));
}

/// A replaced job keeps its row and so its position; columns that the file does not give become null.
void SqliteBulkStaging::copyHeaders(std::int64_t expected) {
  const auto names = fieldNames(connection_, sql("SELECT * FROM ImportKopf WHERE 0 = 1"_sql));
  std::int64_t taken = 0;
  Sql replace = sql("UPDATE main.ImportKopf SET "_sql);
  replace.append(joinedBy(
      names, [](const std::string& column) { return sql(name(column), " = s."_sql, name(column)); }));
  replace.append(sql(" FROM StageKopf s WHERE ImportKopf.rowid = s.StageZiel AND s.StageSperre = 0"_sql));
  taken += connection_.execute(replace);

  inPortions(jobs_, [&](std::int64_t from, std::int64_t to) {
    Sql insert = sql("INSERT INTO main.ImportKopf ("_sql);
    insert.append(joinedBy(names, nameAlone)).append(sql(") SELECT "_sql));
    insert.append(joinedBy(names, nameAlone));
    insert.append(sql(" FROM StageKopf WHERE StageZiel IS NULL AND rowid > "_sql, number(from),
                      " AND rowid <= "_sql, number(to), " ORDER BY rowid"_sql));
    taken += connection_.execute(insert);
    report(std::min(to, jobs_), jobs_ + positionCount_);
  });
  relational::requireTaken(taken, expected, "jobs");
}

/// A statement keeps a copy of every changed page until it ends.
void SqliteBulkStaging::inPortions(std::int64_t rows,
                                   const std::function<void(std::int64_t, std::int64_t)>& copy) {
  constexpr std::int64_t portion = 5000;
  for (std::int64_t from = 0; from < rows; from += portion) copy(from, from + portion);
}

/// `all`: none of them belongs to a job that is skipped.
void SqliteBulkStaging::copyPositions(bool all) {
  connection_.execute(sql("DELETE FROM main.ImportPos WHERE JobID IN (SELECT JobID FROM StageKopf WHERE "
                          "StageZiel IS NOT NULL AND StageSperre = 0)"_sql));
  const auto names = fieldNames(connection_, sql("SELECT * FROM ImportPos WHERE 0 = 1"_sql));
  std::int64_t taken = 0;
  inPortions(positionCount_, [&](std::int64_t from, std::int64_t to) {
    Sql insert = sql("INSERT INTO main.ImportPos ("_sql);
    insert.append(joinedBy(names, nameAlone)).append(sql(") SELECT "_sql));
    // The position takes the key of its header, which may have been made after the position was read.
    insert.append(joinedBy(names, [](const std::string& column) {
      return column == "JobID" ? sql("k.JobID"_sql) : sql("p."_sql, name(column));
    }));
    insert.append(sql(" FROM StagePos p JOIN StageKopf k ON k.rowid = p.StageVorgang WHERE p.rowid > "_sql,
                      number(from), " AND p.rowid <= "_sql, number(to)));
    if (!all) insert.append(sql(" AND k.StageSperre = 0"_sql));
    insert.append(sql(" ORDER BY p.rowid"_sql));
    taken += connection_.execute(insert);
    report(jobs_ + std::min(to, positionCount_), jobs_ + positionCount_);
  });
  const auto counted = [&] {
    return connection_
        .open(sql("SELECT count(*) FROM StagePos p JOIN StageKopf k ON k.rowid = p.StageVorgang WHERE "
                  "k.StageSperre = 0"_sql))
        ->value(0)
        .integer()
        .value_or(0);
  };
  relational::requireTaken(taken, all ? positionCount_ : counted(), "positions");
}

void SqliteBulkStaging::forEach(const Visitor& visit) {
  const auto rows = connection_.openStream(contents_.stagedRows(counts_.skipped > 0));
  relational::visitStaged(*rows, visit);
}

} // namespace qx::sqlite
