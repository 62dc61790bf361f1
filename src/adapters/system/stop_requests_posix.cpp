// Requests to stop as signals.
#include "platform/stop_requests.h"

#include <atomic>
#include <csignal>

namespace qx {
namespace {

/// Global because a signal handler has no argument.
// NOLINTBEGIN(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<StopRequests::Handler> asked{nullptr};
std::atomic<void*> askedContext{nullptr};
struct sigaction interruptBefore {};
struct sigaction terminateBefore {};
struct sigaction pipeBefore {};
// NOLINTEND(cppcoreguidelines-avoid-non-const-global-variables)
static_assert(std::atomic<void*>::is_always_lock_free);

extern "C" void passStopOn(int /*signal*/) {
  if (const auto handler = asked.load()) handler(askedContext.load());
}

} // namespace

StopRequests::StopRequests(Handler handler, void* context) {
  askedContext.store(context);
  asked.store(handler);
  struct sigaction stop {};
  stop.sa_handler = passStopOn;
  stop.sa_flags = SA_RESTART;
  sigaction(SIGINT, &stop, &interruptBefore);
  sigaction(SIGTERM, &stop, &terminateBefore);
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &pipeBefore);
}

StopRequests::~StopRequests() {
  sigaction(SIGINT, &interruptBefore, nullptr);
  sigaction(SIGTERM, &terminateBefore, nullptr);
  sigaction(SIGPIPE, &pipeBefore, nullptr);
  asked.store(nullptr);
}

} // namespace qx
