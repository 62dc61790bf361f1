// How up to three staged discounts combine.
#pragma once

#include "platform/preisfindung.h"

#include <string_view>

namespace qx::erp {

/// How the discounts of a price combine (`KZRabattart`): "A" (the default) applies each to the remainder of
/// the one before; "S" adds them up and applies the sum to the whole.
inline constexpr std::string_view appliedInTurn = "A";
inline constexpr std::string_view addedUp = "S";

/// What a discount's value means (`KZRabatt1` to `3`): "P" (the default) is percent; "B" is an amount, which
/// takes the sign of its base.
inline constexpr std::string_view percentDiscount = "P";
inline constexpr std::string_view amountDiscount = "B";

/// The total discount on an amount.
double discountAmount(const StagedDiscounts& discounts, double amount);

/// The total discount in percent. Discounts that are amounts have no rate and are ignored.
double discountRate(const StagedDiscounts& discounts);

} // namespace qx::erp
