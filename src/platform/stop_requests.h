// The system's requests to end the program.
#pragma once

namespace qx {

/// While it exists, a request to end the program (Ctrl+C; SIGTERM; on Windows also the closing of the
/// console, end of session) calls the handler in place of ending it, and a closed pipe is an error of the
/// stream. The handler may run at any time, in a signal handler or in a thread of its own: it may do only
/// what both allow. Once the destructor has returned it is not called any more. Only one object may exist.
class StopRequests {
public:
  using Handler = void (*)(void* context);

  StopRequests(Handler handler, void* context);
  StopRequests(const StopRequests&) = delete;
  StopRequests& operator=(const StopRequests&) = delete;
  ~StopRequests();
};

} // namespace qx
