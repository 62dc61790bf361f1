// The progress of a run on a terminal.
#pragma once

#include "platform/engine_events.h"

#include <cstdint>
#include <ostream>
#include <string>

namespace qx::cli {

/// Stores the reported progress and draws it on request, so that a slow terminal never holds up a unit of
/// work. Draws nothing when the stream is not a terminal.
class ProgressBar final : public EngineEvents {
public:
  ProgressBar(std::ostream& output, bool terminal) : output_(output), terminal_(terminal) {}

  void ProcessProgress(std::int16_t percent) override { percent_ = percent; }
  void ProcessInfo(std::string_view info) override {
    info_ = info;
    percent_ = 0;
  }

  /// Draws the bar when it has changed.
  void draw();
  /// Erases the bar before other output.
  void clear();

private:
  std::ostream& output_;
  bool terminal_;
  std::string info_;
  std::int16_t percent_ = 0;
  std::string drawn_;
};

} // namespace qx::cli
