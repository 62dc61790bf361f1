// Clock, key generator, local settings, profile files and diagnostics.
#pragma once

#include "model/date.h"
#include "model/job_key.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

class Clock {
public:
  virtual ~Clock() = default;
  /// The workstation's date and time.
  virtual DateTime now() = 0;
  /// Monotonic, for measuring durations.
  virtual std::chrono::milliseconds elapsed() = 0;
  virtual void sleep(std::chrono::milliseconds span) = 0;
};

class GuidSource {
public:
  virtual ~GuidSource() = default;
  /// Null when the system could not generate one.
  virtual std::optional<GuidFields> create() = 0;
};

/// The settings of the current user. Raises `std::runtime_error` when the store cannot be read or written.
class LocalSettings {
public:
  virtual ~LocalSettings() = default;
  /// "" for a value that was never written.
  virtual std::string read(std::string_view application, std::string_view section, std::string_view key) = 0;
  virtual void write(std::string_view application, std::string_view section, std::string_view key,
                     std::string_view value) = 0;
};

/// Values of a profile file ("[section]", "key=value").
class IniFile {
public:
  virtual ~IniFile() = default;
  /// "" for a missing file, section or key.
  virtual std::string read(std::string_view file, std::string_view section, std::string_view key) = 0;
};

/// Determines whether the program behind a stored session identity still runs.
class SessionLiveness {
public:
  virtual ~SessionLiveness() = default;
  /// Null when unknown: the identity is of another machine or of an unknown form.
  virtual std::optional<bool> isAlive(std::string_view sessionId) = 0;
};

/// A failure that was trapped: where, what, and which job it concerned.
struct Diagnostic {
  std::string_view where;
  std::string_view what;
  std::string_view job;
};

/// Receives every trapped failure. Never raises.
class Diagnostics {
public:
  virtual ~Diagnostics() = default;
  virtual void report(const Diagnostic& diagnostic) noexcept = 0;
};

/// Drops what is reported: for what is only tried and will be done again.
class SilentDiagnostics final : public Diagnostics {
public:
  void report(const Diagnostic& /*diagnostic*/) noexcept override {}
};

} // namespace qx
