// The book of the processing runs, which tells an administrator when which run came to what end.
#pragma once

#include "model/date.h"
#include "platform/environment.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One run. Stamps are those of timeStamp(); `end` and `outcome` are empty as long as the run goes on, and
/// for good when its program died.
struct RunEntry {
  std::string begin;
  std::string end;
  std::string outcome; ///< "completed", "stopped", "refused" or "broken"
  std::int64_t processed = 0;
  std::int64_t done = 0;
  std::int64_t warning = 0;
  std::int64_t error = 0;
  std::int64_t waiting = 0; ///< left by a run that was stopped
  std::string user;
  std::string program; ///< with its version
  std::string protocol;
};

/// Enters the runs of an engine, one after the other. Nothing here keeps a run from its work: a failure is
/// reported to the diagnostics, and a database without the table has no book.
class RunBook {
public:
  explicit RunBook(Environment& environment) : environment_(environment) {}

  /// `wait` decides how long to wait for a busy database.
  void begin(BusyWait* wait = nullptr);
  /// Completes the entry that `begin` has made or could not make; times, user and program are known.
  void end(const RunEntry& result, BusyWait* wait = nullptr);

private:
  bool isKept();
  template <class Step>
  void entering(Step&& step);

  Environment& environment_;
  std::weak_ptr<Connection> asked_; ///< whether it has a book
  bool kept_ = false;
  std::string key_; ///< of the current entry; empty without one
  RunEntry entry_;
};

/// Whether the database has a book.
bool hasRunBook(Connection& connection);
/// The last runs, the latest first. Raises database errors.
std::vector<RunEntry> lastRuns(Connection& connection, std::size_t count);
/// Takes out the runs that began before the day. Returns their number.
std::int64_t deleteRunsBefore(Connection& connection, const Date& day);

} // namespace qx
