// The total of up to three staged discounts.
#pragma once

#include "platform/environment.h"

namespace qx {

/// The total discount as the pricing component combines it: the amount off `Betrag` when `Param` is 1, else
/// the rate in percent. A pricing component is created for the call; what it raises reaches the caller, as
/// does `std::invalid_argument` for a `Param` that is no number (null and "" count as 0).
double GetGRabatt(Environment& environment, const StagedDiscounts& discounts, const Value& Param,
                  double Betrag);

/// The same with a pricing component that is already initialised, for whoever asks line by line.
double GetGRabatt(Preisfindung& pricing, const StagedDiscounts& discounts, const Value& Param, double Betrag);

} // namespace qx
