// The exit codes and errors of the programs.
#pragma once

#include "program/input_fault.h"

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace qx {

enum class ExitCode : int {
  Success = 0,
  Findings = 1, ///< the work was done, and some job ended in warning or error or has findings
  BadInput = 2, ///< wrong usage or bad input; nothing was changed
  Refused = 3,  ///< another program or user holds the lock
  Failure = 4,  ///< the database or the environment failed
  Stopped = 5,  ///< the run was stopped; completed jobs are kept, the rest is waiting
};

/// The location of an error in a file of jobs. Unknown parts are empty or 0.
struct SourceLocation {
  std::string file;
  std::int64_t line = 0;
  std::string field;
};

/// The cause of an error, for a program with texts of its own.
enum class ErrorCause : std::uint8_t {
  Call,
  NoDatabase,
  OlderDatabase,
  ReadOnlyDatabase,
  NoLock,
  BusyDatabase,
  Database
};

/// An error with its exit code, its location in the input and what to do next.
class ProgramError : public std::runtime_error {
public:
  ProgramError(ExitCode code, const std::string& message, std::string nextStep = {},
               SourceLocation location = {})
      : std::runtime_error(whole(message)), code_(code), nextStep_(std::move(nextStep)),
        location_(std::move(location)) {}

  /// The error with this cause instead of `Call`.
  ProgramError of(ErrorCause cause) && {
    cause_ = cause;
    return std::move(*this);
  }

  /// The error with all faults of the file; its message and its location are those of the first one.
  ProgramError with(std::vector<InputFault> faults) && {
    faults_ = std::move(faults);
    return std::move(*this);
  }

  ExitCode code() const { return code_; }
  ErrorCause cause() const { return cause_; }
  const std::string& nextStep() const { return nextStep_; }
  const SourceLocation& location() const { return location_; }
  /// Empty unless a file of jobs is at fault.
  const std::vector<InputFault>& faults() const { return faults_; }

private:
  /// A file name may hold NUL, at which `what()` would end.
  static std::string whole(std::string message) {
    for (auto at = message.find('\0'); at != std::string::npos; at = message.find('\0', at))
      message.replace(at, 1, "\\0");
    return message;
  }

  ExitCode code_;
  std::string nextStep_;
  SourceLocation location_;
  std::vector<InputFault> faults_;
  ErrorCause cause_ = ErrorCause::Call;
};

/// Runs a program's work and returns its exit code. An exception is passed to `report` as a `ProgramError`,
/// whose code is returned instead. Only `std::bad_alloc` is rethrown: reporting it takes memory.
ExitCode exitCodeOf(const std::function<ExitCode()>& work,
                    const std::function<void(const ProgramError&)>& report);

} // namespace qx
