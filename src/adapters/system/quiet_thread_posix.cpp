#include "adapters/system/quiet_thread.h"

#include <csignal>
#include <utility>

namespace qx {

std::thread quietThread(std::function<void()> work) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread thread(std::move(work));
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return thread;
}

} // namespace qx
