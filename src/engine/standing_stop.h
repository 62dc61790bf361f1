// A request to stop from outside the program, at any time.
#pragma once

#include "engine/import_job_object2.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace qx {

/// Asks the current run to stop, and every later one as soon as it begins; the engine itself ignores requests
/// outside a run. The engine must outlive it.
class StandingStop final : private EngineEvents {
public:
  explicit StandingStop(ImportJobObject2& engine) : engine_(engine), subscription_(engine.subscribe(*this)) {}
  StandingStop(const StandingStop&) = delete;
  StandingStop& operator=(const StandingStop&) = delete;
  ~StandingStop() override = default;

  /// True when a stop was already requested. May be called from a signal handler.
  bool ask() noexcept {
    const bool before = asked_.exchange(true);
    engine_.requestStop();
    return before;
  }
  bool asked() const noexcept { return asked_.load(); }
  ImportJobObject2& engine() noexcept { return engine_; }

private:
  void ProcessProgress(std::int16_t /*percent*/) override { repeat(); }
  void ProcessInfo(std::string_view /*info*/) override { repeat(); }
  void repeat() noexcept {
    if (asked()) engine_.requestStop();
  }

  ImportJobObject2& engine_;
  Subscription subscription_;
  std::atomic<bool> asked_{false};
  static_assert(std::atomic<bool>::is_always_lock_free);
};

} // namespace qx
