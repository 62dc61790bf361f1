#include "com/watched_job_view.h"

#include "com/failure.h"
#include "com/module_file.h"

#include <filesystem>
#include <utility>

namespace qx::com {
namespace {

constexpr UINT_PTR timerOfView = 1;
constexpr UINT interval = 250; ///< milliseconds

} // namespace

WatchedJobView::WatchedJobView(std::function<void()> look)
    : look_(std::move(look)), program_(std::filesystem::path(moduleFile()).parent_path()) {}

WatchedJobView::~WatchedJobView() {
  if (window_ == nullptr) return;
  // Its timer ends with it. Another thread than its own cannot destroy it; then the next tick does.
  SetWindowLongPtrW(window_, GWLP_USERDATA, 0);
  DestroyWindow(window_);
}

std::optional<int> WatchedJobView::start(Connection& connection) {
  const auto status = program_.start(connection);
  if (status) return status;
  window_ = CreateWindowExW(0, L"STATIC", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
  if (window_ == nullptr) require(HRESULT_FROM_WIN32(GetLastError()), "Das Fenster wird nicht beobachtet.");
  SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  if (SetTimer(window_, timerOfView, interval, &WatchedJobView::tick) == 0)
    require(HRESULT_FROM_WIN32(GetLastError()), "Das Fenster wird nicht beobachtet.");
  return std::nullopt;
}

void CALLBACK WatchedJobView::tick(HWND window, UINT /*message*/, UINT_PTR /*timer*/,
                                   DWORD /*time*/) noexcept {
  guarded([&] {
    const auto* const self =
        reinterpret_cast<const WatchedJobView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
      DestroyWindow(window);
      return S_OK;
    }
    const auto look = self->look_;
    look();
    return S_OK;
  });
}

} // namespace qx::com
