// The window program, watched by the message loop of the host.
#pragma once

#include "adapters/hosted/started_job_view.h"
#include "com/windows_headers.h"

#include <functional>
#include <optional>

namespace qx::com {

/// Looks four times a second, on the thread that has started it, as long as that thread's message loop runs.
class WatchedJobView final : public automation::JobViewProgram {
public:
  explicit WatchedJobView(std::function<void()> look);
  WatchedJobView(const WatchedJobView&) = delete;
  WatchedJobView& operator=(const WatchedJobView&) = delete;
  ~WatchedJobView() override;

  std::optional<int> start(Connection& connection) override;
  std::optional<int> ended() override { return program_.ended(); }

private:
  static void CALLBACK tick(HWND window, UINT message, UINT_PTR timer, DWORD time) noexcept;

  std::function<void()> look_; ///< may end this object
  StartedJobView program_;
  HWND window_ = nullptr; ///< receives messages only; null before the start
};

} // namespace qx::com
