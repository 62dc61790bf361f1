// Ends running statements from outside.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <semaphore.h>
#include <thread>

namespace qx::odbc {

/// Cancels the statement that runs, from a thread of its own: what ODBC does for that is not allowed in a
/// signal handler.
class Interrupter {
public:
  Interrupter();
  Interrupter(const Interrupter&) = delete;
  Interrupter& operator=(const Interrupter&) = delete;
  ~Interrupter();

  /// A statement begins or ends to run.
  void begin(void* statement);
  void end();
  /// Whether the last statement was asked to end. Read after `end`.
  bool requested() const { return requested_; }
  /// Does nothing when no statement runs. Safe in a signal handler.
  void interrupt() noexcept;

private:
  void watch();

  sem_t wakeUp_{};
  std::atomic<bool> ending_ = false;
  std::atomic<bool> running_ = false;
  std::atomic<bool> requested_ = false;
  std::mutex mutex_; ///< held while the statement is cancelled, so that it is not freed meanwhile
  void* statement_ = nullptr;
  std::thread thread_;
};

} // namespace qx::odbc
