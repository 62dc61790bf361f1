#include "store/state_feed.h"

#include "model/job_codes.h"
#include "model/text.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view feedTable = "Zustandswechsel";
constexpr std::string_view counterTable = "Zaehlerstaende";

bool isRefusal(const std::exception& failure) {
  return dynamic_cast<const StatementError*>(&failure) != nullptr ||
         dynamic_cast<const MissingRightError*>(&failure) != nullptr;
}

bool hasCounter(Connection& connection) {
  return !connection.open(sql("Select Stand From Zaehlerstaende Where Zaehler = 'Zustandswechsel'"_sql))
              ->eof();
}

std::int64_t highestNumber(Connection& connection) {
  const auto last =
      connection.open(sql("Select Folge From Zustandswechsel Where Folge > 0 Order By Folge Desc"_sql));
  return last->eof() ? 0 : last->value("Folge").integer().value_or(0);
}

/// What tells this feed from that of another database.
std::string identityOf(Environment& environment) {
  constexpr std::string_view digits = "0123456789abcdef";
  constexpr std::size_t length = 8;
  std::uint64_t hash =
      textHash(environment.connection->connectionString() + '|' + timeStamp(environment.clock.now()));
  std::string identity;
  for (; identity.size() < length; hash >>= 4U) identity += digits[hash % digits.size()];
  return identity;
}

/// False when it is there. Two programs may do this at once: the row of the one that was first counts.
bool makeCounter(Environment& environment) {
  Connection& connection = *environment.connection;
  if (hasCounter(connection)) return false;
  try {
    Savepoint part(connection);
    connection.insert(
        counterTable,
        sql("Insert Into Zaehlerstaende (Zaehler, Stand, Kennung) Values ('Zustandswechsel', "_sql,
            number(highestNumber(connection)), ", '"_sql, value(identityOf(environment)), "')"_sql));
    part.release();
    return true;
  } catch (const StatementError&) {
    if (!hasCounter(connection)) throw;
    return false;
  }
}

/// Change nothing, but need all rights.
void proveRights(Connection& connection) {
  connection.execute(sql("Update Zaehlerstaende Set Stand = Stand Where Zaehler = ''"_sql));
  connection.execute(
      sql("Insert Into Zustandswechsel (Folge, JobID, JobType, Nummer, Fehlertext, Zeitpunkt) "
          "Select Stand, Zaehler, 0, Zaehler, Zaehler, Zaehler From Zaehlerstaende Where Zaehler = ''"_sql));
}

} // namespace

bool StateFeed::prepare(BusyWait* wait) {
  if (asked_.lock() == environment_.connection) return kept_;
  kept_ = refused_ = false;
  noted_.clear();
  refused_ = trapped(
      environment_.diagnostics,
      {"feed of results", {}, [](const std::exception& failure) { return !isRefusal(failure); }}, [&] {
        Connection& connection = activeConnection(environment_);
        if (!hasStateFeed(connection)) return;
        doneAgainOnConflict(environment_, "feed of results", [&] {
          WorkUnit unit(connection, wait, Join::IfOpen);
          const bool made = makeCounter(environment_);
          proveRights(connection);
          if (made) unit.commit();
        });
        kept_ = true;
      });
  asked_ = environment_.connection;
  return kept_;
}

void StateFeed::note(StateChange change) {
  if (kept_ && isWaitingHeader(kindOf(change.jobType))) noted_.push_back(std::move(change));
}

void StateFeed::write() {
  if (noted_.empty()) return;
  const std::vector<StateChange> changes = std::exchange(noted_, {});
  Connection& connection = *environment_.connection;
  try {
    Savepoint part(connection);
    std::int64_t number = takeNumbers(static_cast<std::int64_t>(changes.size()));
    // Not before: the moments then follow each other like the numbers.
    const std::string moment = timeStamp(environment_.clock.now());
    for (const StateChange& change : changes) insert(++number, change, moment);
    part.release();
  } catch (const StatementError& refusal) {
    environment_.diagnostics.report({"feed of results", refusal.what(), changes.front().jobId});
    kept_ = false;
    refused_ = true;
  }
}

/// The number before those that were taken.
std::int64_t StateFeed::takeNumbers(std::int64_t count) {
  Connection& connection = *environment_.connection;
  connection.execute(sql("Update Zaehlerstaende Set Stand = Stand + "_sql, number(count),
                         " Where Zaehler = 'Zustandswechsel'"_sql));
  const auto row =
      connection.open(sql("Select Stand From Zaehlerstaende Where Zaehler = 'Zustandswechsel'"_sql));
  if (row->eof()) throw StatementError("the counter of the changes has been deleted", 0);
  return row->value("Stand").integer().value_or(0) - count;
}

void StateFeed::insert(std::int64_t number, const StateChange& change, const std::string& moment) {
  environment_.connection->insert(
      feedTable,
      sql("Insert Into Zustandswechsel (Folge, JobID, JobType, Nummer, Fehlertext, Zeitpunkt) Values ("_sql,
          qx::number(number), ", '"_sql, value(change.jobId), "', "_sql, qx::number(change.jobType),
          ", '"_sql, nullable(change.number), "', '"_sql, nullable(change.reasons), "', '"_sql, value(moment),
          "')"_sql));
}

std::optional<StateChange> deletionOf(Connection& connection, std::string_view jobId) {
  const auto row = connection.open(
      sql("Select JobID, JobType From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql));
  if (row->eof()) return std::nullopt;
  return StateChange{
      row->text("JobID"), withState(jobCode(row->value("JobType")), JobState::Deleted), {}, {}};
}

void tellChange(Environment& environment, StateChange change) {
  StateFeed feed(environment);
  if (!feed.prepare()) return;
  feed.note(std::move(change));
  feed.write();
}

bool hasStateFeed(Connection& connection) {
  const std::vector<std::string> tables = connection.tableNames();
  return std::ranges::all_of(std::array{feedTable, counterTable}, [&](std::string_view wanted) {
    return std::ranges::any_of(
        tables, [&](const std::string& table) { return ColumnName(table) == ColumnName(wanted); });
  });
}

ToldChange toldChange(Recordset& row) {
  return {row.value("Folge").integer().value_or(0),
          {row.text("JobID"), jobCode(row.value("JobType")), row.text("Nummer"), row.text("Fehlertext")},
          row.text("Zeitpunkt")};
}

/// Only from the front on, so that what is kept has no gap: the clocks of two programs may differ.
std::int64_t deleteChangesBefore(Connection& connection, const Date& day) {
  const auto kept =
      connection.open(sql("Select Min(Folge) As Folge From Zustandswechsel Where Zeitpunkt >= '"_sql,
                          value(dayStamp(day)), "'"_sql));
  const auto first = kept->value("Folge").integer();
  if (!first) return connection.execute(sql("Delete From Zustandswechsel"_sql));
  return connection.execute(sql("Delete From Zustandswechsel Where Folge < "_sql, number(*first)));
}

} // namespace qx
