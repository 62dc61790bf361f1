#include "erp/open_items.h"

#include "model/text.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <vector>

namespace qx::erp {
namespace {

struct CurrencySum {
  std::string currency;
  Money amount;
};

std::vector<CurrencySum> sumsByCurrency(Recordset& items) {
  std::vector<CurrencySum> sums;
  for (; !items.eof(); items.moveNext()) {
    const std::string currency = items.text("Währung");
    auto sum = std::ranges::find_if(
        sums, [&](const CurrencySum& candidate) { return equalCodes(candidate.currency, currency); });
    if (sum == sums.end()) sum = sums.insert(sums.end(), {currency, Money()});
    sum->amount += items.value("Betrag").money().value_or(Money());
  }
  return sums;
}

} // namespace

OpenItemsBalance OpenItems::GetOPSaldo(std::string_view customer) {
  const auto items = database().open(
      sql("Select Betrag, Währung From OffenePosten Where Kundennummer = '"_sql, value(customer), "'"_sql));
  const auto sums = sumsByCurrency(*items);
  if (sums.empty()) return {};
  if (sums.size() == 1) return {sums.front().amount.toDouble(), sums.front().currency};
  Money balance;
  for (const CurrencySum& sum : sums) {
    const auto converted = Money::fromDouble(convert(sum.amount.toDouble(), sum.currency, ""));
    if (!converted) throw std::overflow_error("Die Summe der offenen Posten ist zu groß.");
    balance += *converted;
  }
  return {balance.toDouble(), ""};
}

double OpenItems::convert(double amount, std::string_view from, std::string_view to) {
  if (equalCodes(from, to)) return amount;
  return amount / rateOf(from) * rateOf(to);
}

double OpenItems::rateOf(std::string_view currency) {
  if (currency.empty()) return 1;
  const auto rows = database().open(
      sql("Select Wechselkurs From Währungen Where Währung = '"_sql, value(currency), "'"_sql));
  const std::optional<double> rate = rows->eof() ? std::nullopt : rows->value("Wechselkurs").number();
  if (!rate || !(*rate > 0))
    throw std::runtime_error("Die Währung '" + std::string(currency) + "' hat keinen Wechselkurs.");
  return *rate;
}

Connection& OpenItems::database() {
  if (connection_ == nullptr) throw std::logic_error("Die offenen Posten haben keine Datenbankverbindung.");
  return *connection_;
}

} // namespace qx::erp
