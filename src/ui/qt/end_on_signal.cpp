#include "ui/qt/end_on_signal.h"

#include <QCoreApplication>

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace qx {
namespace {

/// The pipe for the signal handler. Global because a handler has no argument.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<int> wakeUp{-1};
static_assert(std::atomic<int>::is_always_lock_free);

extern "C" void notifyLoop(int /*signal*/) {
  const int before = errno;
  // A full pipe already contains a signal.
  [[maybe_unused]] const ssize_t written = write(wakeUp.load(), "", 1);
  errno = before;
}

} // namespace

EndOnSignal::EndOnSignal(ImportJobObject2& engine) : stop_(engine) {
  if (pipe2(ends_, O_CLOEXEC | O_NONBLOCK) != 0) throw std::runtime_error("the system gives no pipe");
  notifier_ = std::make_unique<QSocketNotifier>(ends_[0], QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, [this] {
    notifier_->setEnabled(false);
    stop_.ask();
    QCoreApplication::exit(0);
  });
  wakeUp.store(ends_[1]);
  struct sigaction action {};
  action.sa_handler = notifyLoop;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, &interrupt_);
  sigaction(SIGTERM, &action, &terminate_);
}

EndOnSignal::~EndOnSignal() {
  sigaction(SIGINT, &interrupt_, nullptr);
  sigaction(SIGTERM, &terminate_, nullptr);
  wakeUp.store(-1);
  notifier_.reset();
  close(ends_[0]);
  close(ends_[1]);
}

} // namespace qx
