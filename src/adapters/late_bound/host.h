// What the host of late-bound components can do for them.
#pragma once

#include "automation/automation_object.h"
#include "platform/database.h"

#include <memory>
#include <string_view>

namespace qx {

/// Creates objects by their ProgID and carries connections over in both directions.
class AutomationHost {
public:
  virtual ~AutomationHost() = default;
  /// Raises `automation::AutomationError` 429 when there is no such component.
  virtual automation::ObjectPointer create(std::string_view progId) = 0;
  /// Null for `Nothing`.
  virtual std::shared_ptr<Connection> connectionOf(const automation::ObjectPointer& object) = 0;
  virtual automation::ObjectPointer objectOf(Connection& connection) = 0;
};

} // namespace qx
