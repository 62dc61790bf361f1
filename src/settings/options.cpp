#include "settings/options.h"

#include "model/text.h"
#include "platform/value.h"

#include <algorithm>
#include <array>
#include <limits>

namespace qx {
namespace {

using namespace option;

constexpr auto table = std::to_array<const OptionSpec*>({&mayDelete,
                                                         &mayChange,
                                                         &keepPosition,
                                                         &keepSize,
                                                         &deletedContracts,
                                                         &checkStaged,
                                                         &automatic,
                                                         &warnOfStock,
                                                         &createGroups,
                                                         &createReps,
                                                         &createPayments,
                                                         &createBanks,
                                                         &compareAddresses,
                                                         &purgeCustomers,
                                                         &purgeContracts,
                                                         &changedContracts,
                                                         &purgeOrders,
                                                         &costAssignment,
                                                         &createCosts,
                                                         &readyForDelivery,
                                                         &readyForInvoice,
                                                         &checkCreditLimit,
                                                         &ZAVSRG,
                                                         &ZAVS,
                                                         &VAZA,
                                                         &abGewicht,
                                                         &VSabGewicht,
                                                         &FrachtTransport,
                                                         &FrachtGebuehr,
                                                         &VAKunde,
                                                         &ZAKunde,
                                                         &linesReadyForDelivery,
                                                         &linesReadyForInvoice,
                                                         &NeukundenRabatt,
                                                         &MinGebuehr,
                                                         &priceDeviation,
                                                         &confirmed,
                                                         &runUnderWay,
                                                         &orderBeingReadIn,
                                                         &protocolId,
                                                         &protocolDate,
                                                         &processMark,
                                                         &mainWidth,
                                                         &mainHeight,
                                                         &mainState,
                                                         &mainLeft,
                                                         &mainTop,
                                                         &option::customerSpecific,
                                                         &homeCurrency,
                                                         &taxChangeDay,
                                                         &costsOfQuotes,
                                                         &costsOfOrders,
                                                         &costsOfPurchases,
                                                         &costsOfInquiries,
                                                         &costCentreLabel,
                                                         &costUnitLabel,
                                                         &circlePerOrder,
                                                         &creditLimit1,
                                                         &creditLimit2});

constexpr bool keysAreUnique() {
  for (std::size_t i = 0; i < table.size(); ++i)
    for (std::size_t j = i + 1; j < table.size(); ++j)
      if (table[i]->section == table[j]->section && table[i]->key == table[j]->key) return false;
  return true;
}
static_assert(keysAreUnique());

/// A word, or a number of any size with a comma or a point.
std::optional<bool> truthOf(std::string_view text) {
  if (equalCodes(text, "true") || equalCodes(text, "wahr")) return true;
  if (equalCodes(text, "false") || equalCodes(text, "falsch")) return false;
  std::string digits(text);
  std::ranges::replace(digits, ',', '.');
  const auto number = Value(digits).number();
  return number ? std::optional(*number != 0) : std::nullopt;
}

} // namespace

std::span<const OptionSpec* const> allOptions() { return table; }

std::optional<bool> checkState(const OptionSpec& option, std::string_view text) {
  if (option.rule == OptionRule::Truth) return truthOf(text);
  if (option.rule == OptionRule::CustomerSpecific) return text == "VLK";
  if (option.rule == OptionRule::One && text != "0" && text != "1") return std::nullopt;
  const auto number = settingToInt16(text);
  if (!number || (option.rule == OptionRule::AtLeastOne && *number < 0)) return std::nullopt;
  return *number != 0;
}

std::optional<std::int16_t> settingToInt16(std::string_view text) {
  const auto whole = Value(text).integer();
  using Limits = std::numeric_limits<std::int16_t>;
  if (!whole || *whole < Limits::min() || *whole > Limits::max()) return std::nullopt;
  return static_cast<std::int16_t>(*whole);
}

const OptionSpec* findOption(std::string_view section, std::string_view key) {
  const auto* const found = std::ranges::find_if(
      table, [&](const OptionSpec* option) { return option->section == section && option->key == key; });
  return found == table.end() ? nullptr : *found;
}

} // namespace qx
