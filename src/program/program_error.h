// How the program ends, and the errors that it tells its user.
#pragma once

#include <cstdint>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

namespace qx {

enum class ExitCode : int {
  Success = 0,
  Findings = 1, ///< the work was done, and some job ended in warning or error or has findings
  BadInput = 2, ///< wrong usage or bad input; nothing was changed
  Refused = 3,  ///< somebody else is at work
  Failure = 4,  ///< the database or the environment failed
  Stopped = 5,  ///< the run was stopped before its end; what it had done is kept, the rest is waiting
};

/// Where in a file of jobs something is wrong. Unknown parts are empty or 0.
struct SourceLocation {
  std::string file;
  std::int64_t line = 0;
  std::string field;
};

/// What lies behind an error, for a program that says it in words of its own.
enum class ErrorCause : std::uint8_t { Call, NoDatabase, ReadOnlyDatabase, NoLock, BusyDatabase, Database };

/// An error with its exit code, its location in the input and what to do next.
class ProgramError : public std::runtime_error {
public:
  ProgramError(ExitCode code, const std::string& message, std::string nextStep = {},
               SourceLocation location = {})
      : std::runtime_error(whole(message)), code_(code), nextStep_(std::move(nextStep)),
        location_(std::move(location)) {}

  /// The error with the cause given instead of `Call`.
  ProgramError of(ErrorCause cause) && {
    cause_ = cause;
    return std::move(*this);
  }

  ExitCode code() const { return code_; }
  ErrorCause cause() const { return cause_; }
  const std::string& nextStep() const { return nextStep_; }
  const SourceLocation& location() const { return location_; }

private:
  /// What `what()` gives ends at a NUL, which a name in a file may hold.
  static std::string whole(std::string message) {
    for (auto at = message.find('\0'); at != std::string::npos; at = message.find('\0', at))
      message.replace(at, 1, "\\0");
    return message;
  }

  ExitCode code_;
  std::string nextStep_;
  SourceLocation location_;
  ErrorCause cause_ = ErrorCause::Call;
};

/// Does the work of a program and gives its exit code. What the work throws is told as a `ProgramError` whose
/// code is given instead. Only `std::bad_alloc` goes on: to tell it takes memory.
ExitCode exitCodeOf(const std::function<ExitCode()>& work,
                    const std::function<void(const ProgramError&)>& tell);

} // namespace qx
