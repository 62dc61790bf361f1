// Time and keys from the operating system.
#pragma once

#include "platform/system.h"

#include <optional>

namespace qx {

/// Local date and time of day, and a steady clock for spans.
class SystemClock final : public Clock {
public:
  /// Raises `std::runtime_error` when the system cannot convert its time to local time.
  DateTime now() override;
  std::chrono::milliseconds elapsed() override;
  void sleep(std::chrono::milliseconds span) override;
};

/// The operating system's GUIDs of version 4. Null when it cannot provide one.
class SystemGuidSource final : public GuidSource {
public:
  std::optional<GuidFields> create() override;
};

} // namespace qx
