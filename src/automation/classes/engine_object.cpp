#include "automation/classes/engine_object.h"

#include "automation/automation_error.h"
#include "automation/classes/class_tables.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace qx::automation {

std::shared_ptr<EngineObject> EngineObject::create(std::shared_ptr<ObjectContext> context,
                                                   const std::shared_ptr<ImportJobObject2>& engine,
                                                   Diagnostics& diagnostics) {
  return std::make_shared<EngineObject>(std::move(context), engine, diagnostics);
}

EngineObject::EngineObject(std::shared_ptr<ObjectContext> context,
                           const std::shared_ptr<ImportJobObject2>& engine, Diagnostics& diagnostics)
    : ClassObject(std::move(context), ClassOf<ImportJobObject2>::table(), engine), diagnostics_(diagnostics) {
  subscription_.emplace(engine->subscribe(*this));
}

EngineObject::~EngineObject() = default;

void EngineObject::showJobView() {
  const auto engine = target<ImportJobObject2>();
  const auto connection = engine->ActiveConnection();
  if (view_ && !view_->ended()) return;
  view_.reset();
  // Without a connection the engine says so.
  if (connection && !connection->connectionString().empty())
    view_ = componentOf(context()).hostObjects().jobViewProgram([this] { lookAtJobView(); });
  if (!view_) {
    engine->JobViewShow();
    return;
  }
  try {
    if (!view_->start(*connection)) {
      engine->ViewFormLoad = qxtViewJobForm_Load;
      return;
    }
  } catch (const std::runtime_error& failure) {
    diagnostics_.report({"JobViewShow", failure.what(), ""});
    showMessage(componentOf(context()).environment(),
                {.text = failure.what(), .icon = MessageIcon::Critical});
  }
  view_.reset();
  engine->Unload();
}

void EngineObject::lookAtJobView() {
  if (!view_ || !view_->ended()) return;
  const ObjectPointer self = shared_from_this();
  view_.reset();
  const auto engine = target<ImportJobObject2>();
  // Unless the host has unloaded it meanwhile.
  if (engine->ViewFormLoad == qxtViewJobForm_Load) engine->Unload();
}

std::uint32_t EngineObject::advise(std::shared_ptr<EventSink> sink) {
  sinks_.emplace_back(++lastCookie_, std::move(sink));
  return lastCookie_;
}

bool EngineObject::unadvise(std::uint32_t cookie) {
  const auto found = std::ranges::find_if(sinks_, [&](const auto& each) { return each.first == cookie; });
  if (found == sinks_.end()) return false;
  // Its release may call back: by then it is gone.
  const auto leaving = std::move(found->second);
  sinks_.erase(found);
  return true;
}

bool EngineObject::isConnected(std::uint32_t cookie) const {
  return std::ranges::any_of(sinks_, [&](const auto& each) { return each.first == cookie; });
}

void EngineObject::raise(DispatchId event, const std::vector<Variant>& arguments) {
  const ObjectPointer self = shared_from_this();
  const auto connected = sinks_;
  for (const auto& [cookie, sink] : connected) {
    if (!isConnected(cookie)) continue;
    try {
      sink->raise(event, arguments);
    } catch (...) {
      const Failure failure = failureOf(std::current_exception());
      diagnostics_.report({"event sink", failure.description, ""});
    }
  }
}

void EngineObject::JobViewUnload() { raise(static_cast<DispatchId>(EventId::JobViewUnload), {}); }

void EngineObject::ProcessProgress(std::int16_t percent) {
  raise(static_cast<DispatchId>(EventId::ProcessProgress), {percent});
}

void EngineObject::ProcessInfo(std::string_view info) {
  raise(static_cast<DispatchId>(EventId::ProcessInfo), {info});
}

} // namespace qx::automation
