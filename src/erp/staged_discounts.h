// How up to three staged discounts combine.
#pragma once

#include "platform/preisfindung.h"

#include <string_view>

namespace qx::erp {

/// How the discounts of a price combine (`KZRabattart`): "A", also when nothing is stated, applies one after
/// the other to what the one before left; "S" adds them up and applies them to the whole.
inline constexpr std::string_view appliedInTurn = "A";
inline constexpr std::string_view addedUp = "S";

/// What a discount's value means (`KZRabatt1` to `3`): "P", also when nothing is stated, is percent; "B" is
/// an amount, which has the sign of what it is taken from.
inline constexpr std::string_view percentDiscount = "P";
inline constexpr std::string_view amountDiscount = "B";

/// The total discount on an amount.
double discountAmount(const StagedDiscounts& discounts, double amount);

/// The total discount in percent. Discounts that are amounts have no rate and are left out.
double discountRate(const StagedDiscounts& discounts);

} // namespace qx::erp
