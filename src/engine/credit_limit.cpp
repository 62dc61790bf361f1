#include "engine/credit_limit.h"

#include "model/german_text.h"
#include "model/text.h"
#include "settings/settings.h"

#include <string>

namespace qx {
namespace {

/// "1.000" may mean 1000 or 1, so it must not decide.
void refuseAmbiguous(std::string_view text) {
  if (const auto readings = readingsOf(text)) throw AmbiguousLimit(text, *readings);
}

Finding doubtful(std::string_view limit, const NumberReadings& readings) {
  return Finding(Rule::OrderCreditLimitDoubtful, std::string(limit),
                 germanNumber(readings.thousands) + " oder " + germanNumber(readings.decimals));
}

/// Truncated to the decimals of an amount; unchanged when too large for one.
double asAmount(double number) {
  const auto amount = Money::fromDouble(number);
  return amount ? amount->toDouble() : number;
}

/// A limit with its currency; "" is the home currency.
struct Limit {
  double amount = 0;
  std::string currency;
};

} // namespace

AmbiguousLimit::AmbiguousLimit(std::string_view limit, const NumberReadings& readings)
    : std::runtime_error(runText(doubtful(limit, readings))), finding_(doubtful(limit, readings)) {}

CreditResult CreditLimit::query(std::string_view customer) const {
  const auto row = environment_.connection->open(
      sql("Select Kreditlimit1, Kreditlimit2, Währung from Kundenstamm WHERE Kundennummer='"_sql,
          value(customer), "'"_sql));
  if (row->eof()) return CreditResult::WithinLimits;
  const Settings settings(environment_, SettingTrap::Refusals);
  // A customer without limits has those of the ERP, which are in the home currency.
  const auto limit = [&](ColumnName column, const TextOption& option) -> Limit {
    const Value own = row->value(column);
    if (own.kind() == ValueKind::Text) refuseAmbiguous(own.textView());
    if (const auto amount = own.number()) return {asAmount(*amount), row->text("Währung")};
    const std::string common = settings[option];
    refuseAmbiguous(common);
    return {asAmount(parseTypedNumber(common).value_or(0)), ""};
  };
  const Limit first = limit("Kreditlimit1", option::creditLimit1);
  const Limit second = limit("Kreditlimit2", option::creditLimit2);

  const auto accounting = environment_.components.createFibuUebergabe();
  accounting->setConnection(*environment_.connection);
  const OpenItemsBalance balance = accounting->GetOPSaldo(customer);
  const auto reached = [&](const Limit& each) {
    if (each.amount == 0) return false;
    const double inBalance = equalCodes(each.currency, balance.currency)
                                 ? each.amount
                                 : accounting->convert(each.amount, each.currency, balance.currency);
    return asAmount(balance.amount) >= asAmount(inBalance);
  };
  CreditResult result = reached(first) ? CreditResult::Limit1Reached : CreditResult::WithinLimits;
  if (reached(second)) result = CreditResult::Limit2Reached;
  return result;
}

} // namespace qx
