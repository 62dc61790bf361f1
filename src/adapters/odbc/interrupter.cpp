#include "adapters/odbc/interrupter.h"

#include <sql.h>

#include <cerrno>
#include <csignal>

namespace qx::odbc {

Interrupter::Interrupter() {
  sem_init(&wakeUp_, 0, 0);
  // The program's signals are meant for its own thread.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  thread_ = std::thread([this] { watch(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Interrupter::~Interrupter() {
  ending_ = true;
  sem_post(&wakeUp_);
  thread_.join();
  sem_destroy(&wakeUp_);
}

void Interrupter::begin(void* statement) {
  const std::lock_guard lock(mutex_);
  requested_ = false;
  statement_ = statement;
  running_ = true;
}

void Interrupter::end() {
  const std::lock_guard lock(mutex_);
  running_ = false;
  statement_ = nullptr;
}

void Interrupter::interrupt() noexcept {
  if (!running_) return;
  requested_ = true;
  const int error = errno;
  sem_post(&wakeUp_);
  errno = error;
}

void Interrupter::watch() {
  while (true) {
    while (sem_wait(&wakeUp_) != 0 && errno == EINTR) {
    }
    if (ending_) return;
    const std::lock_guard lock(mutex_);
    if (statement_ != nullptr && requested_) SQLCancel(statement_);
  }
}

} // namespace qx::odbc
