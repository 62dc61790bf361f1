// Raises the events of the engine object.
#pragma once

#include "platform/engine_events.h"
#include "platform/system.h"

#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace qx {

class EventSource;

/// Ends the subscription when it goes out of scope. Must not outlive the source.
class Subscription {
public:
  Subscription(EventSource& source, EngineEvents& observer);
  Subscription(Subscription&& other) noexcept;
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  Subscription& operator=(Subscription&&) = delete;
  ~Subscription();

private:
  EventSource* source_;
  EngineEvents* observer_;
};

/// Calls the observers in the order in which they subscribed, on the caller's thread. An exception of an
/// observer is reported to the diagnostics; the others are still called.
class EventSource {
public:
  explicit EventSource(Diagnostics& diagnostics) : diagnostics_(diagnostics) {}

  [[nodiscard]] Subscription subscribe(EngineEvents& observer) { return {*this, observer}; }
  void raiseJobViewUnload();
  void raiseProcessProgress(std::int16_t percent);
  void raiseProcessInfo(std::string_view info);

private:
  friend class Subscription;
  void raise(const std::function<void(EngineEvents&)>& event);

  Diagnostics& diagnostics_;
  std::vector<EngineEvents*> observers_;
};

} // namespace qx
