// The machine and its processes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace qx {

/// What identifies a machine. Unreadable parts are empty.
struct MachineName {
  std::string hostName;
  std::string machineId;
};

/// A process by its number and its start time, in hundredths of a second since a moment that is the same for
/// all.
struct ProcessStart {
  std::uint64_t number = 0;
  std::uint64_t startTime = 0;
};

/// What is known of the process of a number.
struct ProcessState {
  bool exists = false;
  /// Null when none exists, and when it may not be asked, as with a process of another user.
  std::optional<std::uint64_t> startTime;
};

/// The processes of this machine.
class ProcessTable {
public:
  virtual ~ProcessTable() = default;
  /// Null when the system has no such table.
  virtual std::optional<ProcessStart> self() const = 0;
  /// A process that has ended and was not collected yet does not exist.
  virtual ProcessState find(std::uint64_t number) const = 0;
};

} // namespace qx
