#include "engine/event_source.h"

#include "platform/failure.h"

#include <algorithm>
#include <utility>

namespace qx {

Subscription::Subscription(EventSource& source, EngineEvents& observer)
    : source_(&source), observer_(&observer) {
  source.observers_.push_back(&observer);
}

Subscription::Subscription(Subscription&& other) noexcept
    : source_(std::exchange(other.source_, nullptr)), observer_(other.observer_) {}

Subscription::~Subscription() {
  if (source_ == nullptr) return;
  auto& observers = source_->observers_;
  observers.erase(std::remove(observers.begin(), observers.end(), observer_), observers.end());
}

void EventSource::raise(const std::function<void(EngineEvents&)>& event) {
  // A copy, since observers may end subscriptions, even their own, while they are called.
  const auto observers = observers_;
  for (EngineEvents* observer : observers) {
    if (std::ranges::find(observers_, observer) == observers_.end()) continue;
    try {
      trapped(diagnostics_, {"event observer"}, [&] { event(*observer); });
    } catch (...) {
      diagnostics_.report({"event observer", "raised something of an unknown kind", ""});
    }
  }
}

void EventSource::raiseJobViewUnload() {
  raise([](EngineEvents& observer) { observer.JobViewUnload(); });
}

void EventSource::raiseProcessProgress(std::int16_t percent) {
  raise([percent](EngineEvents& observer) { observer.ProcessProgress(percent); });
}

void EventSource::raiseProcessInfo(std::string_view info) {
  raise([info](EngineEvents& observer) { observer.ProcessInfo(info); });
}

} // namespace qx
