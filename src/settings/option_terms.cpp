#include "settings/option_terms.h"

#include "model/date.h"
#include "model/german_text.h"

#include <algorithm>
#include <array>
#include <optional>

namespace qx {
namespace {

using namespace option;

/// Sets of readers, as bits.
using Readers = std::uint8_t;
constexpr Readers nobody = 0;
constexpr Readers processing = 1;
constexpr Readers checking = 2;
constexpr Readers staging = 4;
constexpr Readers windows = 8;
constexpr Readers rules = processing | checking | windows;

constexpr std::array readerNames{std::pair<Readers, std::string_view>{processing, "process"},
                                 std::pair<Readers, std::string_view>{checking, "check"},
                                 std::pair<Readers, std::string_view>{staging, "stage"},
                                 std::pair<Readers, std::string_view>{staging, "import"},
                                 std::pair<Readers, std::string_view>{windows, "window"}};

struct ReadOption {
  const OptionSpec* option;
  Readers readers;
};

constexpr auto readOptions = std::to_array<ReadOption>({{&mayDelete, windows},
                                                        {&mayChange, nobody},
                                                        {&keepPosition, windows},
                                                        {&keepSize, windows},
                                                        {&deletedContracts, nobody},
                                                        {&checkStaged, nobody},
                                                        {&automatic, processing},
                                                        {&warnOfStock, rules},
                                                        {&createGroups, processing},
                                                        {&createReps, processing},
                                                        {&createPayments, processing},
                                                        {&createBanks, processing},
                                                        {&compareAddresses, rules},
                                                        {&purgeCustomers, processing},
                                                        {&purgeContracts, processing},
                                                        {&changedContracts, nobody},
                                                        {&purgeOrders, processing},
                                                        {&costAssignment, rules},
                                                        {&createCosts, processing},
                                                        {&readyForDelivery, staging | windows},
                                                        {&readyForInvoice, staging | windows},
                                                        {&checkCreditLimit, rules},
                                                        {&ZAVSRG, rules},
                                                        {&ZAVS, nobody},
                                                        {&VAZA, nobody},
                                                        {&abGewicht, processing},
                                                        {&VSabGewicht, processing},
                                                        {&FrachtTransport, processing},
                                                        {&FrachtGebuehr, processing},
                                                        {&VAKunde, processing},
                                                        {&ZAKunde, processing},
                                                        {&linesReadyForDelivery, processing},
                                                        {&linesReadyForInvoice, processing},
                                                        {&NeukundenRabatt, nobody},
                                                        {&MinGebuehr, processing},
                                                        {&priceDeviation, rules},
                                                        {&confirmed, windows},
                                                        {&runUnderWay, nobody},
                                                        {&orderBeingReadIn, processing | windows},
                                                        {&protocolId, processing},
                                                        {&protocolDate, processing},
                                                        {&processMark, nobody},
                                                        {&mainWidth, windows},
                                                        {&mainHeight, windows},
                                                        {&mainState, windows},
                                                        {&mainLeft, windows},
                                                        {&mainTop, windows},
                                                        {&option::customerSpecific, rules},
                                                        {&homeCurrency, rules},
                                                        {&taxChangeDay, rules},
                                                        {&costsOfQuotes, nobody},
                                                        {&costsOfOrders, rules},
                                                        {&costsOfPurchases, nobody},
                                                        {&costsOfInquiries, nobody},
                                                        {&costCentreLabel, rules},
                                                        {&costUnitLabel, rules},
                                                        {&circlePerOrder, processing},
                                                        {&creditLimit1, rules},
                                                        {&creditLimit2, rules}});

/// What the programs themselves write down.
constexpr std::array stateOptions{
    static_cast<const OptionSpec*>(&confirmed),        static_cast<const OptionSpec*>(&runUnderWay),
    static_cast<const OptionSpec*>(&orderBeingReadIn), static_cast<const OptionSpec*>(&protocolId),
    static_cast<const OptionSpec*>(&protocolDate),     static_cast<const OptionSpec*>(&processMark)};

bool isSame(const OptionSpec& a, const OptionSpec& b) { return a.section == b.section && a.key == b.key; }

/// The stamp of a day typed as a stamp or as dd.mm.yyyy; null for anything else.
std::optional<std::string> typedStamp(std::string_view text) {
  auto moment = parseTimeStamp(text);
  if (!moment) moment = parseGermanDateTime(text);
  if (!moment) return std::nullopt;
  return timeStamp(*moment);
}

std::string wrongNumber(std::string_view text) {
  if (readingsOf(text)) return "this " + doubtAbout(text) + "; type one of them";
  return parseTypedNumber(text) ? "" : "the option is a number";
}

} // namespace

std::string_view allowedValues(const OptionSpec& option) {
  switch (option.rule) {
  case OptionRule::NonZero:
  case OptionRule::AtLeastOne:
  case OptionRule::One:
  case OptionRule::Truth:
    return option.threeStates ? "0 or 1, or unset" : "0 or 1";
  case OptionRule::CustomerSpecific:
  case OptionRule::Text:
    return "text";
  case OptionRule::Number:
    return "number";
  case OptionRule::Integer:
    return "whole number";
  case OptionRule::ArticleNumber:
    return "article";
  case OptionRule::Day:
    return "day";
  }
  return {};
}

std::string refusalOf(const OptionSpec& option, std::string_view text) {
  if (text.empty()) return {};
  switch (option.rule) {
  case OptionRule::NonZero:
  case OptionRule::AtLeastOne:
  case OptionRule::One:
  case OptionRule::Truth:
    return checkState(option, text) ? "" : "the option is 0 or 1";
  case OptionRule::Integer:
    return settingToInt16(text) ? "" : "the option is a whole number from -32768 to 32767";
  case OptionRule::Number:
    return wrongNumber(text);
  case OptionRule::Day:
    return typedStamp(text) ? "" : "the option is a day, dd.mm.yyyy or a time stamp yyyymmdd";
  case OptionRule::CustomerSpecific:
  case OptionRule::Text:
  case OptionRule::ArticleNumber:
    break;
  }
  return {};
}

std::string storedForm(const OptionSpec& option, std::string_view text) {
  if (option.rule != OptionRule::Day) return std::string(text);
  return typedStamp(text).value_or(std::string(text));
}

std::string defaultOf(const OptionSpec& option) {
  if (option.isCheck()) return option.threeStates ? "" : "0";
  return std::string(option.fallback);
}

std::string effectiveValue(const OptionSpec& option, std::string_view stored) {
  if (option.isCheck()) {
    const auto state = checkState(option, stored);
    return state ? (*state ? "1" : "0") : defaultOf(option);
  }
  const bool usable = !stored.empty() && refusalOf(option, stored).empty() &&
                      (option.rule != OptionRule::CustomerSpecific || stored == "VLK");
  return usable ? std::string(stored) : defaultOf(option);
}

std::vector<std::string_view> readersOf(const OptionSpec& option) {
  const auto* const row =
      std::ranges::find_if(readOptions, [&](const ReadOption& read) { return isSame(*read.option, option); });
  std::vector<std::string_view> names;
  if (row == readOptions.end()) return names;
  for (const auto& [reader, name] : readerNames)
    if ((row->readers & reader) != 0) names.push_back(name);
  return names;
}

bool isConfiguration(const OptionSpec& option) {
  return !option.isLocal() &&
         std::ranges::none_of(stateOptions, [&](const OptionSpec* state) { return isSame(*state, option); });
}

} // namespace qx
