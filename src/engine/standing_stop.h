// A request to stop that comes from outside the program, at any moment.
#pragma once

#include "engine/import_job_object2.h"

#include <atomic>
#include <cstdint>
#include <string_view>

namespace qx {

/// Asks the run that is under way to stop, and every later one as soon as it has begun: the engine itself
/// forgets what no run was under way for. The engine outlives it.
class StandingStop final : private EngineEvents {
public:
  explicit StandingStop(ImportJobObject2& engine) : engine_(engine), subscription_(engine.subscribe(*this)) {}
  StandingStop(const StandingStop&) = delete;
  StandingStop& operator=(const StandingStop&) = delete;
  ~StandingStop() override = default;

  /// True when it was asked for before. May be called from a signal handler.
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
