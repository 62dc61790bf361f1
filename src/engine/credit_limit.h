// The credit limits of a customer against the open items.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <string_view>

namespace qx {

enum class CreditResult : std::int16_t { WithinLimits = 0, Limit1Reached = 1, Limit2Reached = 2 };

/// Compares the balance of a customer's open items with the two limits. The order at hand is not added.
class CreditLimit {
public:
  explicit CreditLimit(Environment& environment) : environment_(environment) {}

  /// Reaching a limit counts; a limit of 0 is none. An unknown customer is within the limits. What the
  /// accounting component raises reaches the caller.
  CreditResult query(std::string_view customer) const;

private:
  Environment& environment_;
};

} // namespace qx
