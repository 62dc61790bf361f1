// The workstation's clock.
#pragma once

#include "platform/system.h"

namespace qx {

/// Local date and time of day, and a steady clock for spans.
class SystemClock final : public Clock {
public:
  /// Raises `std::runtime_error` when the system cannot convert its time to local time.
  DateTime now() override;
  std::chrono::milliseconds elapsed() override;
  void sleep(std::chrono::milliseconds span) override;
};

} // namespace qx
