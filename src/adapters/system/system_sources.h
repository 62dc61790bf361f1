// Time and keys from the operating system.
#pragma once

#include "platform/system.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>

namespace qx {

/// Local date and time of day, and a steady clock for spans.
class SystemClock final : public Clock {
public:
  /// Raises `std::runtime_error` when the system cannot convert its time to local time.
  DateTime now() override;
  std::chrono::milliseconds elapsed() override;
  void sleep(std::chrono::milliseconds span) override;
};

/// Fills the bytes with random ones; false when the system cannot provide them.
using RandomBytes = std::function<bool(std::span<std::uint8_t>)>;

/// The random bytes of the operating system. Never raises.
bool systemRandomBytes(std::span<std::uint8_t> bytes);

/// Random GUIDs of version 4.
class RandomGuidSource final : public GuidSource {
public:
  explicit RandomGuidSource(RandomBytes source = systemRandomBytes) : source_(std::move(source)) {}
  std::optional<GuidFields> create() override;

private:
  RandomBytes source_;
};

} // namespace qx
