// Settable or recording fakes of clock, keys, settings, profile files, diagnostics and liveness.
#pragma once

#include "platform/system.h"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace qx {

/// The time is what the test says. `sleep` lets only `elapsed` pass, at once.
class FixedClock final : public Clock {
public:
  FixedClock() = default;
  explicit FixedClock(DateTime moment) : moment(moment) {}

  DateTime now() override { return moment; }
  std::chrono::milliseconds elapsed() override { return passed; }
  void sleep(std::chrono::milliseconds span) override { passed += span; }

  DateTime moment{makeDate(2026, 11, 24), 10, 30, 0};
  std::chrono::milliseconds passed{0};
};

/// Keys that count up: jobKey gives "00000001" followed by 24 zeros, then "00000002"...
class SequentialGuids final : public GuidSource {
public:
  std::optional<GuidFields> create() override;

  std::uint32_t last = 0; ///< the number of the key given last
  bool failing = false;   ///< the system cannot generate one
};

/// Local settings without a file.
class MemoryLocalSettings final : public LocalSettings {
public:
  std::string read(std::string_view application, std::string_view section, std::string_view key) override;
  void write(std::string_view application, std::string_view section, std::string_view key,
             std::string_view value) override;

  std::map<std::tuple<std::string, std::string, std::string>, std::string> values;
  bool failing = false; ///< every access raises `std::runtime_error`
};

/// One profile file whose name does not matter; the names asked for are kept.
class FixedIniFile final : public IniFile {
public:
  std::string read(std::string_view file, std::string_view section, std::string_view key) override;
  void set(std::string_view section, std::string_view key, std::string_view value) {
    values[{std::string(section), std::string(key)}] = value;
  }

  std::map<std::pair<std::string, std::string>, std::string> values;
  std::vector<std::string> files;
};

/// Keeps every trapped failure.
class RecordingDiagnostics final : public Diagnostics {
public:
  struct Entry {
    std::string where;
    std::string what;
    std::string job;
  };
  void report(const Diagnostic& diagnostic) noexcept override;
  /// All entries as "where | what | job", one a line.
  std::string text() const;

  std::vector<Entry> entries;
};

/// Gives the answer set by the test, null by default.
class FixedLiveness final : public SessionLiveness {
public:
  std::optional<bool> isAlive(std::string_view sessionId) override {
    asked.emplace_back(sessionId);
    return answer;
  }

  std::optional<bool> answer;
  std::vector<std::string> asked;
};

} // namespace qx
