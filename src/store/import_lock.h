// The row that keeps all users but one out of the import.
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
  Unavailable, ///< the database did not let us look or write; `reason` says why
};

struct LockOutcome {
  LockState state = LockState::Unavailable;
  std::string reason;       ///< of `Unavailable` only, for the caller to tell
  std::string germanReason; ///< the same for a box
};

/// Who stands in the lock row.
struct LockHolder {
  std::string Benutzer;
  std::string StationID;
  std::string SessionID;
  std::optional<bool> alive; ///< null when it cannot be told
};

/// Takes and releases the lock row. Called outside units of work.
///
/// On a connection of our own looking and writing are one unit, and a lock that a dead program of this
/// machine left behind is taken over with a notice. On a host's connection the steps run one by one, each
/// failing one is skipped, and nothing is taken over.
class ImportLock {
public:
  explicit ImportLock(Environment& environment) : environment_(environment) {}

  LockOutcome take(BusyWait* wait = nullptr);
  /// Looks whether the lock that was taken is still ours. A row that is gone is written again; when another
  /// user stands in it, the message is shown. Does not look on a host's connection.
  LockOutcome confirm(BusyWait* wait = nullptr);
  /// Deletes the row, whoever owns it. False, with a diagnostics entry, when the database did not let us.
  bool release(BusyWait* wait = nullptr);
  /// Releases the lock only when this object took it; on a connection of our own a row that is another
  /// user's by now stays.
  bool releaseIfHeld(BusyWait* wait = nullptr);
  /// The same for the last time: a row that cannot be deleted stays, and this object no longer holds it.
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
  /// Deletes the row; of a session only when it stands there.
  bool remove(BusyWait* wait, const std::optional<std::string>& session);
  LockOutcome refuse(const LockHolder& holder);
  void tellTakeOver(const LockHolder& holder);

  Environment& environment_;
  bool held_ = false;
  std::string session_; ///< as it stands in the row that was taken
};

} // namespace qx
