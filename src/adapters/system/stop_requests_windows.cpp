// Requests to stop as control events, which come in a thread of the system.
#include "platform/stop_requests.h"

#include <windows.h>

#include <mutex>

namespace qx {
namespace {

struct Listener {
  std::mutex mutex; ///< held while the handler runs, so that what it needs is not destroyed meanwhile
  StopRequests::Handler handler = nullptr;
  void* context = nullptr;
};

/// Global because the system passes no argument.
Listener& listener() {
  static Listener only;
  return only;
}

BOOL WINAPI passStopOn(DWORD event) {
  {
    const std::lock_guard lock(listener().mutex);
    if (listener().handler == nullptr) return FALSE;
    listener().handler(listener().context);
  }
  // When a console is closed or the session ends, the system ends the program as soon as this returns,
  // otherwise some seconds later: time for the current job.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
  return TRUE;
}

} // namespace

StopRequests::StopRequests(Handler handler, void* context) {
  {
    const std::lock_guard lock(listener().mutex);
    listener().handler = handler;
    listener().context = context;
  }
  // A program that was started to ignore Ctrl+C does so no longer.
  SetConsoleCtrlHandler(nullptr, FALSE);
  SetConsoleCtrlHandler(passStopOn, TRUE);
}

StopRequests::~StopRequests() {
  SetConsoleCtrlHandler(passStopOn, FALSE);
  const std::lock_guard lock(listener().mutex);
  listener().handler = nullptr;
}

} // namespace qx
