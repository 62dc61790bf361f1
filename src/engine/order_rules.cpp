#include "engine/order_rules.h"

#include "engine/code_rules.h"
#include "model/german_text.h"
#include "model/text.h"
#include "rules/address_fields.h"
#include "rules/rounding.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>
#include <string>

namespace qx {
namespace {

using Broken = std::optional<Finding>;

Broken noteOfOrder(const OrderMaster& master, const JobFields& job) {
  const std::string remark = job("Bemerkung").text();
  if (!master.options.customerSpecific || remark.empty()) return {};
  return Finding(Rule::OrderNote, remark);
}

template <Rule rule>
Broken missingCode(const OrderMaster& master, const JobFields& job) {
  const Findings found = unknownCode(master.masterData, job, rule);
  return found.empty() ? Broken() : *found.begin();
}

/// A mark in an individual field that requires a certain payment or shipping method, if the setting names
/// one.
struct Demand {
  Rule rule;
  ColumnName field;
  std::string_view mark;
  ColumnName method;
  std::string OrderOptions::*demanded;
};
constexpr Demand markZB{Rule::OrderMarkZB, "IndFild1", "ZB", "Zahlungsart", &OrderOptions::ZAVSRG};
constexpr Demand markZA{Rule::OrderMarkZA, "IndFild3", "ZA", "Zahlungsart", &OrderOptions::ZAKunde};
constexpr Demand markMK{Rule::OrderMarkMK, "IndFild4", "MK", "Versandart", &OrderOptions::VAKunde};

template <const Demand& demand>
Broken otherMethod(const OrderMaster& master, const JobFields& job) {
  const std::string& demanded = master.options.*demand.demanded;
  if (!master.options.customerSpecific || demanded.empty() || job(demand.field).text() != demand.mark)
    return {};
  const std::string method = job(demand.method).text();
  if (equalCodes(method, demanded)) return {};
  return Finding(demand.rule, method, demanded);
}

/// An unknown address key breaks two rules: a run reports it as a warning and as an error.
template <Rule rule, const AddressFields& fields>
Broken unknownAddress(const OrderMaster& master, const JobFields& job) {
  const std::string given = job(fields.customer).text();
  const std::string address = job(fields.number).text();
  if (given.empty() && address.empty()) return {};
  if (master.addresses.KundeAngelegt(given.empty() ? job("Kundennummer").text() : given, address)) return {};
  return given.empty() ? Finding(rule, address).of(fields.number.text()) : Finding(rule, given);
}

/// An existing text raises the status but adds no text of its own.
Broken earlierReasons(const OrderMaster& /*master*/, const JobFields& job) {
  const std::string reasons = job("Fehlertext").text();
  if (reasons.empty()) return {};
  return Finding(Rule::EarlierReasons, reasons);
}

Broken unknownCustomer(const OrderMaster& master, const JobFields& job) {
  const std::string number = job("Kundennummer").text();
  if (master.addresses.KundeAngelegt(number)) return {};
  return Finding(Rule::OrderCustomer, number);
}

Broken reachedCreditLimit(const OrderMaster& master, const JobFields& job) {
  if (!master.options.checkCreditLimit) return {};
  const std::string customer = job("Kundennummer").text();
  switch (master.credit.query(customer)) {
  case CreditResult::Limit1Reached:
    return Finding(Rule::OrderCreditLimit1, customer);
  case CreditResult::Limit2Reached:
    return Finding(Rule::OrderCreditLimit2, customer);
  case CreditResult::WithinLimits:
    break;
  }
  return {};
}

Broken otherPrice(const OrderMaster& master, const JobFields& position, PositionFacts& facts) {
  const double staged = position("Preis").number().value_or(0);
  const FoundPrice& price = facts.price();
  if (price.failed()) return Finding(Rule::OrderPriceFailed, germanNumber(staged));
  if (!price.found()) return Finding(Rule::OrderPriceMissing, germanNumber(staged));
  // An order without a price is written with the found one.
  if (staged == 0 && !master.options.customerSpecific) return {};
  // Compared as stored, without tolerance or rounding, on purpose.
  if (staged == price.price.price) return {};
  return Finding(Rule::OrderPriceDiffers, germanNumber(staged), germanNumber(price.price.price));
}

/// For one unit of quantity.
struct UnitPrices {
  double staged = 0;
  double found = 0;
};

/// Null without both.
std::optional<UnitPrices> unitPrices(const JobFields& position, PositionFacts& facts) {
  const double staged = position("Preis").number().value_or(0);
  const FoundPrice& found = facts.price();
  if (staged == 0 || !found.found() || found.price.priceUnit == 0) return {};
  // A sender who names no unit means that of the ERP, as the comparison of prices does.
  const double priceUnit = position("Preiseinheit").number().value_or(0);
  return UnitPrices{staged / (priceUnit == 0 ? found.price.priceUnit : priceUnit),
                    found.price.price / found.price.priceUnit};
}

/// At least two decimals and at most four, as the ERP keeps them.
std::string priceText(double price) {
  std::string text = germanDecimals(price, 4);
  for (int i = 0; i < 2 && text.ends_with('0'); ++i) text.pop_back();
  return text;
}

Broken missingCostAssignment(const OrderMaster& master, const JobFields& position, PositionFacts& /*facts*/) {
  if (!master.options.costAssignment) return {};
  const Value staged = position("KostID");
  const auto number = staged.isEmpty() ? 0 : wholeAs<std::int32_t>(staged);
  if (number && master.costs.CheckKostzuord("AB", *number, false) == 0) return {};
  return Finding(Rule::OrderCostAssignment, staged.text(), position("Artikelnummer").text());
}

Broken stockTooSmall(const OrderMaster& master, const JobFields& position, PositionFacts& facts) {
  if (!master.options.warnOfStock) return {};
  const std::string article = position("Artikelnummer").text();
  try {
    const StockAnswer answer = facts.stock();
    const double quantity = throughDecimalText(position("Menge").number().value_or(0));
    if (answer.unit == noStockUnit || quantity <= throughDecimalText(answer.stock)) return {};
    return Finding(Rule::OrderStock, germanNumber(quantity), article);
  } catch (const std::exception&) {
    // A missing conversion is not the order's fault; stock just cannot be compared.
    const std::string reason = missingConversion();
    master.environment.diagnostics.report({"stock of article " + article, reason, position("JobID").text()});
    return {};
  }
}

Broken unknownArticle(const OrderMaster& master, const JobFields& position, PositionFacts& /*facts*/) {
  const std::string article = position("Artikelnummer").text();
  if (master.masterData.ArtikelAngelegt(article)) return {};
  return Finding(Rule::OrderArticle, article);
}

template <Rule... rules>
constexpr std::array<Rule, sizeof...(rules)> ruleArray{rules...};
constexpr bool withControl = true;

constexpr std::array ofHeader{
    HeaderRule{ruleArray<Rule::OrderNote>, noteOfOrder},
    HeaderRule{ruleArray<Rule::OrderSalesRep>, missingCode<Rule::OrderSalesRep>, withControl},
    HeaderRule{ruleArray<Rule::OrderShippingMethod>, missingCode<Rule::OrderShippingMethod>, withControl},
    HeaderRule{ruleArray<Rule::OrderPaymentMethod>, missingCode<Rule::OrderPaymentMethod>, withControl},
    HeaderRule{ruleArray<Rule::OrderMarkZB>, otherMethod<markZB>},
    HeaderRule{ruleArray<Rule::OrderMarkZA>, otherMethod<markZA>},
    HeaderRule{ruleArray<Rule::OrderMarkMK>, otherMethod<markMK>},
    HeaderRule{ruleArray<Rule::OrderPaymentTerms>, missingCode<Rule::OrderPaymentTerms>, withControl},
    HeaderRule{ruleArray<Rule::OrderBank>, missingCode<Rule::OrderBank>, withControl},
    HeaderRule{ruleArray<Rule::OrderDeliveryKey>, unknownAddress<Rule::OrderDeliveryKey, deliveryAddress>,
               withControl},
    HeaderRule{ruleArray<Rule::OrderInvoiceKey>, unknownAddress<Rule::OrderInvoiceKey, invoiceAddress>,
               withControl},
    HeaderRule{ruleArray<Rule::OrderAccount>, missingCode<Rule::OrderAccount>, withControl},
    HeaderRule{ruleArray<Rule::EarlierReasons>, earlierReasons, withControl},
    HeaderRule{ruleArray<Rule::OrderCustomer>, unknownCustomer, withControl},
    HeaderRule{ruleArray<Rule::OrderDelivery>, unknownAddress<Rule::OrderDelivery, deliveryAddress>,
               withControl},
    HeaderRule{ruleArray<Rule::OrderInvoice>, unknownAddress<Rule::OrderInvoice, invoiceAddress>,
               withControl},
    HeaderRule{ruleArray<Rule::OrderCreditLimit1, Rule::OrderCreditLimit2, Rule::OrderCreditLimitDoubtful>,
               reachedCreditLimit},
};

constexpr std::array ofPosition{
    PositionRule{ruleArray<Rule::OrderPriceFailed, Rule::OrderPriceMissing, Rule::OrderPriceDiffers>,
                 otherPrice},
    PositionRule{ruleArray<Rule::OrderCostAssignment>, missingCostAssignment},
    PositionRule{ruleArray<Rule::OrderStock>, stockTooSmall},
    PositionRule{ruleArray<Rule::OrderArticle>, unknownArticle},
};

} // namespace

bool exceedsDeviation(const OrderOptions& options, const JobFields& position, PositionFacts& facts) {
  constexpr double percent = 100;
  if (options.priceDeviation <= 0) return false;
  const auto prices = unitPrices(position, facts);
  return prices && std::abs(prices->found - prices->staged) * percent >=
                       options.priceDeviation * std::abs(prices->staged);
}

std::optional<Finding> replacedPrice(const JobFields& position, PositionFacts& facts) {
  constexpr double roundingError = 1e-9;
  const auto prices = unitPrices(position, facts);
  if (!prices || std::abs(prices->found - prices->staged) <= roundingError * std::abs(prices->staged))
    return {};
  const SalesPrice& price = facts.price().price;
  std::string found = priceText(price.price) + " je ";
  if (price.priceUnit != 1) found += germanNumber(price.priceUnit) + " ";
  found += facts.unit();
  if (!price.source.empty()) found += ", " + price.source;
  if (const FindingPosition place = positionOf(position); !place.number.empty())
    found += ", Position " + place.number;
  return Finding(Rule::OrderPriceReplaced, priceText(position("Preis").number().value_or(0)), found)
      .at(positionOf(position));
}

std::span<const HeaderRule> headerRules() { return ofHeader; }
std::span<const PositionRule> positionRules() { return ofPosition; }

const HeaderRule& headerRule(Rule rule) {
  return *std::ranges::find(ofHeader, rule, [](const HeaderRule& each) { return each.rules.front(); });
}

} // namespace qx
