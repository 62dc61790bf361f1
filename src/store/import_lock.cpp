#include "store/import_lock.h"

#include "model/text.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"

namespace qx {
namespace {

constexpr std::string_view title = "Datensatz gesperrt";
/// The length of the session column.
constexpr std::size_t storedSessionCharacters = 15;

Sql selectLock() { return sql("SELECT * FROM LockControl WHERE Dateiname='ImportJob' AND Satz='1'"_sql); }
Sql deleteLock() { return sql("Delete FROM LockControl WHERE Dateiname='ImportJob' AND Satz='1'"_sql); }
/// Keeps the row of this session as it is until the unit ends; it may have been replaced since it was read.
/// False when it is gone.
bool keepLockOf(Connection& connection, std::string_view session) {
  return connection.execute(
             sql("Update LockControl Set Satz = Satz Where Dateiname='ImportJob' AND Satz='1' AND "
                 "coalesce(SessionID,'') = '"_sql,
                 value(session), "'"_sql)) != 0;
}

LockHolder readHolder(Recordset& row) {
  return {row.text("Benutzer"), row.text("StationID"), row.text("SessionID"), std::nullopt};
}

} // namespace

/// Runs a step whose failure is skipped; false when it failed.
template <class Step>
bool ImportLock::skipping(Step&& step) {
  return !trapped(environment_.diagnostics, {"ImportLock"}, step);
}

LockOutcome ImportLock::take(BusyWait* wait) {
  LockOutcome outcome = activeConnection(environment_).ownsWork() ? takeOwn(wait) : takeOnHost();
  if (outcome.state == LockState::Taken) held_ = true;
  return outcome;
}

LockOutcome ImportLock::confirm(BusyWait* wait) {
  if (!held_ || !activeConnection(environment_).ownsWork()) return {LockState::Taken, {}, {}};
  std::optional<LockHolder> found;
  const auto read = [&] { found = holder(); };
  // A connection that was lost meanwhile is opened anew by the second attempt.
  if (!skipping(read) && !skipping(read))
    return {LockState::Unavailable, "the lock cannot be read", "Die Sperre kann nicht gelesen werden."};
  if (!found) return take(wait);
  return found->SessionID == session_ ? LockOutcome{LockState::Taken, {}, {}} : refuse(*found);
}

LockOutcome ImportLock::takeOwn(BusyWait* wait) {
  Attempt attempt;
  try {
    attempt = doneAgainOnConflict(environment_, "ImportLock", [&] { return lookAndWrite(wait); });
  } catch (const DatabaseError& failure) {
    return afterFailure(failure);
  }
  // Outside the unit: a box may stay open for a long time.
  if (attempt.heldBy) return refuse(*attempt.heldBy);
  if (attempt.takenFrom) showTakeOver(*attempt.takenFrom);
  return {LockState::Taken, {}, {}};
}

ImportLock::Attempt ImportLock::lookAndWrite(BusyWait* wait) {
  Connection& connection = activeConnection(environment_);
  WorkUnit unit(connection, wait);
  Attempt attempt;
  auto row = connection.open(selectLock());
  if (!row->eof()) {
    LockHolder holder = readHolder(*row);
    if (environment_.liveness.isAlive(holder.SessionID) != false) {
      attempt.heldBy = std::move(holder);
      return attempt;
    }
    attempt.takenFrom = std::move(holder);
    if (keepLockOf(connection, attempt.takenFrom->SessionID)) connection.execute(deleteLock());
    row = connection.open(selectLock());
  }
  // Of several programs that have seen no row, the unique key lets only one insert its own.
  row->addNew();
  setLockColumns(*row);
  row->update();
  unit.commit();
  return attempt;
}

/// The row may have been added between reading and writing, or the database was busy all the time: the lock
/// belongs to the session in the row.
LockOutcome ImportLock::afterFailure(const DatabaseError& failure) {
  const auto holder = holderIfReadable();
  // What was committed stands although the answer was lost.
  const bool answerLost = dynamic_cast<const ConnectionLostError*>(&failure) != nullptr;
  if (holder && answerLost && !session_.empty() && holder->SessionID == session_)
    return {LockState::Taken, {}, {}};
  if (holder && holder->alive != false) return refuse(*holder);
  environment_.diagnostics.report({"ImportLock", failure.what(), {}});
  return {LockState::Unavailable, failure.what(), germanCause(failure),
          dynamic_cast<const BusyError*>(&failure) != nullptr ||
              dynamic_cast<const RepeatedConflictError*>(&failure) != nullptr};
}

LockOutcome ImportLock::takeOnHost() {
  std::unique_ptr<Recordset> row;
  skipping([&] { row = activeConnection(environment_).open(selectLock()); });
  if (!row) return {LockState::Taken, {}, {}};
  if (!row->eof()) {
    LockHolder holder;
    skipping([&] { holder.Benutzer = row->text("Benutzer"); });
    skipping([&] { holder.StationID = row->text("StationID"); });
    return refuse(holder);
  }
  skipping([&] { row->addNew(); });
  setLockColumns(*row);
  if (!skipping([&] { row->update(); }))
    if (const auto holder = holderIfReadable()) return refuse(*holder);
  return {LockState::Taken, {}, {}};
}

void ImportLock::setLockColumns(Recordset& row) {
  skipping([&] { row.set("Dateiname", "ImportJob"); });
  skipping([&] { row.set("Satz", "1"); });
  // The misspelling is deliberate, and so is the missing name of the workstation.
  skipping([&] { row.set("StationID", "unbennant"); });
  // The row is written even without a session.
  session_.clear();
  const auto session = environment_.session;
  if (!session) return;
  skipping([&] {
    session_ = firstCharacters(session->SessionID(), storedSessionCharacters);
    row.set("SessionID", session_);
  });
  skipping([&] { row.set("Benutzer", session->UserName()); });
}

bool ImportLock::release(BusyWait* wait) { return remove(wait, std::nullopt); }

bool ImportLock::releaseIfHeld(BusyWait* wait) {
  if (!held_) return true;
  return remove(wait, activeConnection(environment_).ownsWork() ? std::optional(session_) : std::nullopt);
}

bool ImportLock::remove(BusyWait* wait, const std::optional<std::string>& session) {
  const auto work = [&] {
    Connection& connection = activeConnection(environment_);
    WorkUnit unit(connection, wait);
    if (session && !keepLockOf(connection, *session)) return;
    connection.execute(deleteLock());
    unit.commit();
  };
  const bool released = skipping([&] { doneAgainOnConflict(environment_, "ImportLock", work); });
  if (released) held_ = false;
  return released;
}

std::optional<LockHolder> ImportLock::holder() {
  const auto row = activeConnection(environment_).open(selectLock());
  if (row->eof()) return std::nullopt;
  LockHolder found = readHolder(*row);
  found.alive = environment_.liveness.isAlive(found.SessionID);
  return found;
}

std::optional<LockHolder> ImportLock::holderIfReadable() {
  std::optional<LockHolder> found;
  skipping([&] { found = holder(); });
  return found;
}

LockOutcome ImportLock::refuse(const LockHolder& holder) {
  showMessage(environment_, {"Der Import wird gerade von Benutzer '" + holder.Benutzer + "' auf Rechner '" +
                                 holder.StationID + "' bearbeitet.",
                             std::string(title), MessageIcon::None});
  return {LockState::Refused, {}, {}};
}

void ImportLock::showTakeOver(const LockHolder& holder) {
  showMessage(environment_, {"Die Sperre von Benutzer '" + holder.Benutzer +
                                 "' wurde übernommen, weil dessen Programm nicht mehr läuft.",
                             std::string(title), MessageIcon::Information});
}

} // namespace qx
