#include "adapters/odbc/interrupter.h"

#include "adapters/odbc/odbc_call.h"
#include "adapters/system/quiet_thread.h"

#include <cerrno>

namespace qx::odbc {

Interrupter::Interrupter() {
  sem_init(&wakeUp_, 0, 0);
  thread_ = quietThread([this] { watch(); });
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
