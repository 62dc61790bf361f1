#include "cli/stop_on_signal.h"

#include <atomic>

namespace qx::cli {
namespace {

/// The engine that a signal stops. A handler is handed nothing, so this one state is global.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<ImportJobObject2*> stoppable{nullptr};
static_assert(std::atomic<ImportJobObject2*>::is_always_lock_free);

extern "C" void askToStop(int /*signal*/) {
  ImportJobObject2* engine = stoppable.load();
  if (engine == nullptr) return;
  if (engine->stopRequested())
    engine->interruptStatement();
  else
    engine->requestStop();
}

} // namespace

StopOnSignal::StopOnSignal(ImportJobObject2& engine) {
  stoppable.store(&engine);
  struct sigaction stop {};
  stop.sa_handler = askToStop;
  stop.sa_flags = SA_RESTART;
  sigaction(SIGINT, &stop, &interrupt_);
  sigaction(SIGTERM, &stop, &terminate_);
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &pipe_);
}

StopOnSignal::~StopOnSignal() {
  sigaction(SIGINT, &interrupt_, nullptr);
  sigaction(SIGTERM, &terminate_, nullptr);
  sigaction(SIGPIPE, &pipe_, nullptr);
  stoppable.store(nullptr);
}

} // namespace qx::cli
