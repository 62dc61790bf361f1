// The session identity of machine and process, and whether that process still runs.
#pragma once

#include "platform/system.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx::erp {

/// What identifies a machine.
struct MachineName {
  std::string hostName;
  std::string machineId;

  /// Reads this machine's; unreadable parts are empty.
  static MachineName read();
};

/// A process by its number and its start time, in ticks since the machine was booted.
struct ProcessStart {
  std::uint64_t number = 0;
  std::uint64_t startTime = 0;
};

/// Reads a line of the form of /proc/<number>/stat. Null for another form and for a zombie process.
std::optional<ProcessStart> parseProcessStat(std::string_view line);

/// The processes of this machine.
class ProcessTable {
public:
  virtual ~ProcessTable() = default;
  /// Null when the system has no such table.
  virtual std::optional<ProcessStart> self() const = 0;
  /// Null when no process of that number runs; a zombie does not run.
  virtual std::optional<ProcessStart> find(std::uint64_t number) const = 0;
};

/// Reads the process file system.
class ProcFileSystem final : public ProcessTable {
public:
  std::optional<ProcessStart> self() const override;
  std::optional<ProcessStart> find(std::uint64_t number) const override;
};

/// Creates the identity of this process and checks those of others. An identity has 15 characters in base 36:
/// 4 of the machine, 5 of the process number, 6 of its start time.
class ProcessIdentity final : public SessionLiveness {
public:
  static constexpr std::size_t length = 15;

  /// `processes` must outlive the object.
  ProcessIdentity(const MachineName& machine, const ProcessTable& processes);

  const std::string& sessionId() const { return sessionId_; }
  std::optional<bool> isAlive(std::string_view sessionId) override;

private:
  std::string machine_;
  const ProcessTable& processes_;
  bool processesKnown_ = false;
  std::string sessionId_;
};

} // namespace qx::erp
