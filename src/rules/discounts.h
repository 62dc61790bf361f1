// The total of up to three staged discounts.
#pragma once

#include "platform/environment.h"

namespace qx {

/// The total discount as combined by the pricing component: the amount off `Betrag` when `Param` is 1, else
/// the rate in percent. Creates a pricing component for the call; its exceptions reach the caller. Raises
/// `std::invalid_argument` for a `Param` that is not a number (null and "" count as 0).
double GetGRabatt(Environment& environment, const StagedDiscounts& discounts, const Value& Param,
                  double Betrag);

/// The same with an initialised pricing component; use this one in loops.
double GetGRabatt(Preisfindung& pricing, const StagedDiscounts& discounts, const Value& Param, double Betrag);

} // namespace qx
