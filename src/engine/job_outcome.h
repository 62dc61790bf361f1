// What a processing run tells about its jobs and about itself.
#pragma once

#include "engine/findings.h"
#include "model/job_codes.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace qx {

/// One job after its run, as durable in the database. `process`, `number` and `status` are those of the
/// protocol line.
struct JobOutcome {
  std::string jobId;
  std::string process;
  std::string number;
  std::string status;
  std::int16_t jobType = 0;
  std::string reasons; ///< `Fehlertext`
  Findings findings;   ///< why it was parked or refused; hints of a job that was written
};

enum class RunEnd : std::uint8_t {
  Completed, ///< came to its end
  Stopped,   ///< came to its end early because it was asked to
  Refused,   ///< another program is reading an order in; nothing was changed
  Broken,    ///< the store could not go on; `error` says why
};

/// The counts speak of what is durable.
struct RunReport {
  RunEnd end = RunEnd::Completed;
  std::size_t processed = 0;
  std::size_t done = 0;
  std::size_t warning = 0;
  std::size_t error = 0;
  std::size_t protocolErrors = 0; ///< protocol lines and index entries that could not be written
  std::size_t stillWaiting = 0;   ///< jobs left waiting when the run was stopped
  /// The jobs whose row the database refuses to change, by key, with its reason. They stand as before the
  /// run and the next one meets them again.
  std::map<std::string, std::string> left;
  std::string protocolId; ///< empty without a protocol
  std::string failure;
  std::string germanFailure; ///< of a broken run: the same for a box

  void count(const JobOutcome& outcome);
  /// Names a job that is left as it is; its first reason stays.
  void leave(std::string_view jobId, std::string_view reason);
};

} // namespace qx
