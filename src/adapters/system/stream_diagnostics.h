// Trapped failures as lines of a stream.
#pragma once

#include "platform/system.h"

#include <cstddef>
#include <ostream>

namespace qx {

/// Counts every trapped failure and, when verbose, writes it as one line. A failing stream loses the line,
/// never the run.
class StreamDiagnostics final : public Diagnostics {
public:
  /// `output` must outlive the diagnostics.
  StreamDiagnostics(std::ostream& output, bool verbose) : output_(output), verbose_(verbose) {}

  void report(const Diagnostic& diagnostic) noexcept override;
  std::size_t count() const { return count_; }

private:
  std::ostream& output_;
  bool verbose_;
  std::size_t count_ = 0;
};

} // namespace qx
