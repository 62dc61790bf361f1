// The automation object of the engine, which raises events.
#pragma once

#include "automation/class_object.h"
#include "automation/classes/component.h"
#include "engine/import_job_object2.h"
#include "platform/engine_events.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace qx::automation {

/// Receives the events of an object. What it raises is reported and keeps no other sink from the event.
class EventSink {
public:
  virtual ~EventSink() = default;
  virtual void raise(DispatchId event, const std::vector<Variant>& arguments) = 0;
};

/// An object whose events can be received.
class EventProvider {
public:
  virtual ~EventProvider() = default;
  /// The number under which the sink is known from now on, never 0.
  virtual std::uint32_t advise(std::shared_ptr<EventSink> sink) = 0;
  /// False for a number that is not known.
  virtual bool unadvise(std::uint32_t cookie) = 0;
  virtual std::vector<std::pair<std::uint32_t, std::shared_ptr<EventSink>>> sinks() const = 0;
};

/// Sinks are called in the order in which they came. One may leave or come while it is called: one that has
/// left is not called any more, one that came receives the next event.
class EngineObject final : public ClassObject, public EventProvider, private EngineEvents {
public:
  static std::shared_ptr<EngineObject> create(std::shared_ptr<ObjectContext> context,
                                              const std::shared_ptr<ImportJobObject2>& engine,
                                              Diagnostics& diagnostics);
  EngineObject(std::shared_ptr<ObjectContext> context, const std::shared_ptr<ImportJobObject2>& engine,
               Diagnostics& diagnostics);
  EngineObject(const EngineObject&) = delete;
  EngineObject& operator=(const EngineObject&) = delete;
  ~EngineObject() override;

  /// `JobViewShow`. A window that is a program of its own takes the lock itself: where it is refused, and
  /// when the window is closed, the engine is unloaded.
  void showJobView();

  std::uint32_t advise(std::shared_ptr<EventSink> sink) override;
  bool unadvise(std::uint32_t cookie) override;
  std::vector<std::pair<std::uint32_t, std::shared_ptr<EventSink>>> sinks() const override { return sinks_; }

private:
  void JobViewUnload() override;
  void ProcessProgress(std::int16_t percent) override;
  void ProcessInfo(std::string_view info) override;
  void raise(DispatchId event, const std::vector<Variant>& arguments);
  bool isConnected(std::uint32_t cookie) const;
  void lookAtJobView();

  Diagnostics& diagnostics_;
  std::vector<std::pair<std::uint32_t, std::shared_ptr<EventSink>>> sinks_;
  std::uint32_t lastCookie_ = 0;
  std::unique_ptr<JobViewProgram> view_;     ///< null while it is not open
  std::optional<Subscription> subscription_; ///< ends before the engine does
};

} // namespace qx::automation
