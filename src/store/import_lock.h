// The lock row that limits the import to one user.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

enum class LockState : std::uint8_t {
  Taken,
  Refused,     ///< another user holds the lock; the message was shown
  Unavailable, ///< the database refused reading or writing; `reason` says why
};

struct LockOutcome {
  LockState state = LockState::Unavailable;
  std::string reason;       ///< of `Unavailable` only, for the caller to report
  std::string germanReason; ///< the same for a box
  bool busy = false;        ///< another program holds the database: a later attempt may succeed
};

/// The session in the lock row.
struct LockHolder {
  std::string Benutzer;
  std::string StationID;
  std::string SessionID;
  std::optional<bool> alive; ///< null when unknown
};

/// Takes and releases the lock row. Called outside units of work.
///
/// On a connection of our own the insertion of the row decides: its key lets only one program succeed. A lock
/// left behind by a dead program of this machine is taken over with a notice. On a host's connection each
/// step runs by itself and is skipped when it fails, and nothing is taken over.
class ImportLock {
public:
  explicit ImportLock(Environment& environment) : environment_(environment) {}

  LockOutcome take(BusyWait* wait = nullptr);
  /// Checks that the lock is still ours. Writes a missing row again; shows the message when the row is
  /// another user's. Always true on a host's connection.
  LockOutcome confirm(BusyWait* wait = nullptr);
  /// Deletes the row, whoever owns it. False, with a diagnostics entry, when the database refuses.
  bool release(BusyWait* wait = nullptr);
  /// Releases the lock only when this object took it; on a connection of our own a row that now belongs to
  /// another user stays.
  bool releaseIfHeld(BusyWait* wait = nullptr);
  /// The same, but the object gives up the lock even when the row cannot be deleted.
  void giveUp() {
    releaseIfHeld();
    held_ = false;
  }
  /// True from a successful `take` to the release that deletes the row.
  bool held() const { return held_; }
  /// The current holder; null when nobody holds the lock. Database errors reach the caller.
  std::optional<LockHolder> holder();

private:
  struct Attempt {
    std::optional<LockHolder> heldBy;    ///< a living holder, who keeps the lock
    std::optional<LockHolder> takenFrom; ///< a dead one, whose lock is now ours
  };

  LockOutcome takeOwn(BusyWait* wait);
  Attempt lookAndWrite(BusyWait* wait);
  LockOutcome takeOnHost();
  LockOutcome afterFailure(const DatabaseError& failure);
  std::optional<LockHolder> holderIfReadable();
  void setLockColumns(Recordset& row);
  template <class Step>
  bool skipping(Step&& step);
  /// Deletes the row; given a session, only when the row is that session's.
  bool remove(BusyWait* wait, const std::optional<std::string>& session);
  LockOutcome refuse(const LockHolder& holder);
  void showTakeOver(const LockHolder& holder);

  Environment& environment_;
  bool held_ = false;
  std::string session_; ///< as in the row that was written
};

} // namespace qx
