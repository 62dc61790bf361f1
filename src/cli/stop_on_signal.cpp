#include "cli/stop_on_signal.h"

#include <atomic>

namespace qx::cli {
namespace {

/// The object that a signal stops. Global because a signal handler has no argument.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<StandingStop*> stoppable{nullptr};
static_assert(std::atomic<StandingStop*>::is_always_lock_free);

extern "C" void askToStop(int /*signal*/) {
  StandingStop* stop = stoppable.load();
  if (stop != nullptr && stop->ask()) stop->engine().interruptStatement();
}

} // namespace

StopOnSignal::StopOnSignal(ImportJobObject2& engine) : stop_(engine) {
  stoppable.store(&stop_);
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
