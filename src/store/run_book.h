// The book of the processing runs, which tells an administrator when which run came to what end.
#pragma once

#include "model/date.h"
#include "platform/environment.h"

#include <cstddef>
#include <cstdint>
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
  std::string program; ///< its version
  std::string protocol;
};

/// Enters one run. Nothing here keeps a run from its work: a failure is reported to the diagnostics. A host's
/// connection and a database without the table have no book.
class RunBook {
public:
  explicit RunBook(Environment& environment) : environment_(environment) {}

  void begin(std::string_view program, BusyWait* wait = nullptr);
  /// Completes the entry that `begin` has made; times and user are known.
  void end(const RunEntry& result, BusyWait* wait = nullptr);

private:
  template <class Write>
  void write(BusyWait* wait, Write&& statement);

  Environment& environment_;
  std::string key_; ///< empty without an entry
};

/// Whether the database has a book.
bool hasRunBook(Connection& connection);
/// The last runs, the latest first. Raises database errors.
std::vector<RunEntry> lastRuns(Connection& connection, std::size_t count);
/// Takes out the runs that began before the day. Returns their number.
std::int64_t deleteRunsBefore(Connection& connection, const Date& day);

} // namespace qx
