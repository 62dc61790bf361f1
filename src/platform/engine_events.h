// The events of the engine object.
#pragma once

#include <cstdint>
#include <string_view>

namespace qx {

/// Events are raised synchronously, possibly inside an open unit of work: an observer only stores its
/// arguments and never runs a message loop.
class EngineEvents {
public:
  virtual ~EngineEvents() = default;
  virtual void JobViewUnload() {}
  virtual void ProcessProgress(std::int16_t /*percent*/) {}
  virtual void ProcessInfo(std::string_view /*info*/) {}
};

} // namespace qx
