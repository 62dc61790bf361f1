// The feed of results: every change of a job's state, in the order in which the changes became visible.
#pragma once

#include "model/date.h"
#include "platform/environment.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// What a job has become.
struct StateChange {
  std::string jobId;
  std::int16_t jobType = 0; ///< after the change; the state `Deleted` for a job that is gone
  std::string number;       ///< in the ERP, of a done job
  std::string reasons;      ///< `Fehlertext`
};

/// Writes the changes of units of work.
///
/// Whoever asks for the changes after a number must never see one before the changes of lower numbers. The
/// numbers therefore come from a row that a unit changes right before its commit and so keeps from others
/// until then: what a unit changes is noted, and written as its last part.
///
/// A database without the tables, or one that refuses them, has no feed; a refusal is reported to the
/// diagnostics once, and the work goes on without it. Any other failure is one of the unit.
class StateFeed {
public:
  explicit StateFeed(Environment& environment) : environment_(environment) {}

  /// Finds out once per connection whether it keeps a feed. On a server a missing right costs the unit in
  /// which it is noticed, so call this before the unit begins; `wait` as in `Connection::beginWork`. Raises
  /// what keeps any unit from beginning.
  bool prepare(BusyWait* wait = nullptr);
  bool isKept() const { return kept_; }
  /// Has `prepare` ask again after a refusal, for the next piece of work.
  void renew() {
    if (refused_) asked_.reset();
  }

  /// Notes a change, once `prepare` was called. One of a job of no known kind is left out.
  void note(StateChange change);
  /// Writes what was noted, in its order. Call it right before the commit.
  void write();
  /// Forgets what was noted.
  void drop() noexcept { noted_.clear(); }

private:
  std::int64_t takeNumbers(std::int64_t count);
  void insert(std::int64_t number, const StateChange& change, const std::string& moment);

  Environment& environment_;
  std::weak_ptr<Connection> asked_; ///< whether it keeps a feed
  bool kept_ = false;
  bool refused_ = false;
  std::vector<StateChange> noted_;
};

/// What to tell of a job that is about to be deleted; null when there is none.
std::optional<StateChange> deletionOf(Connection& connection, std::string_view jobId);

/// Tells one change, as the last part of the unit of work that is open.
void tellChange(Environment& environment, StateChange change);

/// Whether the database has the tables of the feed.
bool hasStateFeed(Connection& connection);

/// A change as it was told.
struct ToldChange {
  std::int64_t sequence = 0;
  StateChange change;
  std::string moment; ///< as in `timeStamp`
};

/// From a row of the table.
ToldChange toldChange(Recordset& row);

/// Deletes the changes before the first one of this day or later. Returns their number.
std::int64_t deleteChangesBefore(Connection& connection, const Date& day);

} // namespace qx
