// GUIDs from random bytes.
#pragma once

#include "platform/system.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <utility>

namespace qx {

/// Fills the bytes with random ones; false when there are none.
using RandomBytes = std::function<bool(std::span<std::uint8_t>)>;

/// Random GUIDs of version 4.
class RandomGuidSource final : public GuidSource {
public:
  explicit RandomGuidSource(RandomBytes source) : source_(std::move(source)) {}
  std::optional<GuidFields> create() override;

private:
  RandomBytes source_;
};

} // namespace qx
