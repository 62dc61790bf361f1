// The progress of a command on a terminal.
#pragma once

#include "cli/command.h"
#include "platform/engine_events.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx::cli {

/// What the bar counts.
enum class ProgressUnit : std::uint8_t { Items, Bytes };

/// Stores what is reported and draws it on request, at most ten times a second and never longer than a line
/// of the terminal, so that neither a slow terminal nor many jobs hold up the work. As long as it lives,
/// lines of the result that go to the same terminal wait for the next drawing, and any message erases the
/// bar. Draws nothing when standard error is not a terminal.
class ProgressBar final : public EngineEvents, private LiveLine {
public:
  explicit ProgressBar(const Output& output, ProgressUnit unit = ProgressUnit::Items);
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() override { end(); }

  void ProcessInfo(std::string_view info) override { info_ = info; }
  /// `total` is 0 when it is unknown.
  void report(std::uintmax_t done, std::uintmax_t total) {
    done_ = done;
    total_ = total;
  }

  /// Draws the bar when it is due.
  void draw();
  /// Erases the bar for good.
  void end();

private:
  using Clock = std::chrono::steady_clock;

  void erase() override;
  std::string line(std::size_t width, Clock::duration span) const;

  const Output& output_;
  ProgressUnit unit_;
  bool shown_;
  bool drawn_ = false;
  std::string info_;
  std::uintmax_t done_ = 0;
  std::uintmax_t total_ = 0;
  Clock::time_point begin_ = Clock::now();
  Clock::time_point due_ = begin_;
};

} // namespace qx::cli
