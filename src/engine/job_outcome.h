// The results of a processing run and of its jobs.
#pragma once

#include "engine/findings.h"
#include "model/job_codes.h"
#include "store/run_book.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace qx {

/// One job after its run, as durable in the database. `transaction`, `number` and `status` are those of the
/// protocol line.
struct JobOutcome {
  std::string jobId;
  std::string transaction;
  std::string number;
  std::string status;
  std::int16_t jobType = 0;
  std::string reasons; ///< `Fehlertext`
  Findings findings;   ///< why it was parked or refused; hints of a written job
};

enum class RunEnd : std::uint8_t {
  Completed, ///< ended normally
  Stopped,   ///< stopped early on request
  Refused,   ///< another program is importing an order; nothing was changed
  Broken,    ///< the database failed; `failure` says why
};

/// Counts include only what is durable.
struct RunReport {
  RunEnd end = RunEnd::Completed;
  std::size_t processed = 0;
  std::size_t done = 0;
  std::size_t warning = 0;
  std::size_t error = 0;
  std::size_t protocolErrors = 0; ///< protocol lines and index entries that could not be written
  std::size_t stillWaiting = 0;   ///< jobs left waiting when the run was stopped
  /// The jobs whose row the database refuses to change, by key, with the reason. They are unchanged, and the
  /// next run meets them again.
  std::map<std::string, std::string> left;
  std::string protocolId; ///< empty without a protocol
  std::string failure;
  std::string germanFailure; ///< of a failed run: the same for a box

  void count(const JobOutcome& outcome);
  /// Records an unchanged job; its first reason is kept.
  void leave(std::string_view jobId, std::string_view reason);
};

/// The run as the book of runs keeps it, without its moments.
RunEntry entryOf(const RunReport& report);

} // namespace qx
