#include "adapters/system/stream_diagnostics.h"

namespace qx {

void StreamDiagnostics::report(const Diagnostic& diagnostic) noexcept {
  ++count_;
  if (!verbose_) return;
  try {
    output_ << diagnostic.where << ": " << diagnostic.what;
    if (!diagnostic.job.empty()) output_ << " (Job " << diagnostic.job << ')';
    output_ << '\n' << std::flush;
  } catch (...) {
    // There is nowhere left to report it; the count still includes it.
    return;
  }
}

} // namespace qx
