#include "engine/order_check.h"

#include "engine/order_texts.h"
#include "model/german_text.h"
#include "model/text.h"
#include "platform/whole_number.h"
#include "rules/rounding.h"

#include <exception>

namespace qx {
namespace {

std::string textOf(Recordset& row, ColumnName column) { return row.hasField(column) ? row.text(column) : ""; }

} // namespace

OrderCheck::OrderCheck(Environment& environment, const OrderOptions& options)
    : environment_(environment), options_(options), masterData_(environment), addresses_(environment),
      costs_(environment), stock_(environment), credit_(environment) {}

Findings OrderCheck::CheckAuftrag(std::string_view JobID, OrderPrices& prices, bool stagedText) const {
  Findings findings;
  prices.beginOrder();
  // Completed on purpose: the statement was handed down without its closing bracket.
  const auto job = environment_.connection->open(
      sql("SELECT * FROM ImportKopf Where (ImportKopf.JobType = 30 or ImportKopf.JobType = 31 or "
          "ImportKopf.JobType = 32) And (ImportKopf.JobID ='"_sql,
          value(JobID), "')"_sql));
  if (job->eof()) return findings;
  findings.append(note(textOf(*job, "Bemerkung")));
  checkSalesRep(*job, findings);
  checkMethods(*job, findings);
  findings.append(individualFields([&](ColumnName column) { return textOf(*job, column); }));
  checkPaymentTerms(*job, findings);
  checkBank(*job, findings);
  checkAddressKeys(*job, findings, Rule::OrderDeliveryKey, Rule::OrderInvoiceKey);
  checkAccount(*job, findings, stagedText);
  checkCustomer(*job, findings);
  findings.append(credit(textOf(*job, "Kundennummer")));
  checkPositions(*job, findings, prices);
  return findings;
}

Findings OrderCheck::note(std::string_view remark) const {
  Findings findings;
  if (options_.customerSpecific && !remark.empty()) findings.add(Finding(Rule::OrderNote, remark));
  return findings;
}

void OrderCheck::checkSalesRep(Recordset& job, Findings& findings) const {
  const std::string rep = textOf(job, "Vertreter1");
  if (!rep.empty() && !masterData_.codeExists("Vertreter", rep))
    findings.add(Finding(Rule::OrderSalesRep, rep));
}

void OrderCheck::checkMethods(Recordset& job, Findings& findings) const {
  const std::string shipping = textOf(job, "Versandart");
  if (!shipping.empty() && !masterData_.codeExists("Versandart", shipping))
    findings.add(Finding(Rule::OrderShippingMethod, shipping));
  const std::string payment = textOf(job, "Zahlungsart");
  if (!payment.empty() && !masterData_.codeExists("Zahlungsart", payment))
    findings.add(Finding(Rule::OrderPaymentMethod, payment));
}

/// Certain marks in the individual fields demand a certain payment or shipping method. A rule whose setting
/// is empty is off.
Findings OrderCheck::individualFields(const std::function<std::string(ColumnName)>& job) const {
  Findings findings;
  if (!options_.customerSpecific) return findings;
  struct Demand {
    ColumnName field;
    std::string_view mark;
    ColumnName method;
    const std::string& demanded;
    Rule rule;
  };
  const Demand demands[] = {{"IndFild1", "ZB", "Zahlungsart", options_.ZAVSRG, Rule::OrderMarkZB},
                            {"IndFild3", "ZA", "Zahlungsart", options_.ZAKunde, Rule::OrderMarkZA},
                            {"IndFild4", "MK", "Versandart", options_.VAKunde, Rule::OrderMarkMK}};
  for (const Demand& demand : demands)
    if (!demand.demanded.empty() && job(demand.field) == demand.mark &&
        !equalCodes(job(demand.method), demand.demanded))
      findings.add(Finding(demand.rule, job(demand.method), demand.demanded));
  return findings;
}

void OrderCheck::checkPaymentTerms(Recordset& job, Findings& findings) const {
  const std::string terms = textOf(job, "ZahlungsbedSchl");
  if (!terms.empty() && !masterData_.codeExists("ZahlungsbedSchl", terms))
    findings.add(Finding(Rule::OrderPaymentTerms, terms));
}

void OrderCheck::checkBank(Recordset& job, Findings& findings) const {
  std::string bank = textOf(job, "Bankleitzahl");
  if (bank.empty()) bank = textOf(job, "BLZ");
  if (!bank.empty() && !masterData_.codeExists("Bankleitzahl", bank))
    findings.add(Finding(Rule::OrderBank, bank));
}

void OrderCheck::checkAddressKeys(Recordset& job, Findings& findings, Rule delivery, Rule invoice) const {
  const auto check = [&](ColumnName customer, ColumnName number, Rule rule) {
    const std::string given = textOf(job, customer);
    const std::string address = textOf(job, number);
    if (given.empty() && address.empty()) return;
    if (!addresses_.KundeAngelegt(given.empty() ? textOf(job, "Kundennummer") : given, address))
      findings.add(given.empty() ? Finding(rule, address).of(number.text()) : Finding(rule, given));
  };
  check("VS_KdNr", "VS_AdrNr", delivery);
  check("RG_KdNr", "RG_AdrNr", invoice);
}

void OrderCheck::checkAccount(Recordset& job, Findings& findings, bool stagedText) const {
  const std::string account = textOf(job, "Hauptkonto");
  if (!account.empty() && !masterData_.codeExists("Hauptkonto", account))
    findings.add(Finding(Rule::OrderAccount, account));
  // A text that stands there already raises the status but has no token of its own.
  if (const std::string reasons = textOf(job, "Fehlertext"); stagedText && !reasons.empty())
    findings.add(Finding(Rule::EarlierReasons, reasons));
}

/// An address key that does not resolve was a warning above and is an error here.
void OrderCheck::checkCustomer(Recordset& job, Findings& findings) const {
  if (const std::string number = textOf(job, "Kundennummer"); !addresses_.KundeAngelegt(number))
    findings.add(Finding(Rule::OrderCustomer, number));
  checkAddressKeys(job, findings, Rule::OrderDelivery, Rule::OrderInvoice);
}

Findings OrderCheck::credit(std::string_view customer) const {
  Findings findings;
  if (!options_.checkCreditLimit) return findings;
  switch (credit_.query(customer)) {
  case CreditResult::Limit1Reached:
    findings.add(Finding(Rule::OrderCreditLimit1, customer));
    break;
  case CreditResult::Limit2Reached:
    findings.add(Finding(Rule::OrderCreditLimit2, customer));
    break;
  case CreditResult::WithinLimits:
    break;
  }
  return findings;
}

void OrderCheck::checkPositions(Recordset& job, Findings& findings, OrderPrices& prices) const {
  const auto positions = environment_.connection->open(
      sql("SELECT * FROM ImportPos Where ImportPos.JobID ='"_sql, value(job.text("JobID")), "'"_sql));
  if (positions->eof()) findings.add(Finding(Rule::OrderNoPositions));
  const auto date = parseGermanDate(textOf(job, "Eingangsdatum"));
  const std::string customer = textOf(job, "Kundennummer");
  for (; !positions->eof(); positions->moveNext()) {
    const FoundPrice& price = prices.of(*positions, customer, date);
    checkPrice(*positions, price, findings);
    if (options_.costAssignment) checkCostAssignment(*positions, findings);
    if (options_.warnOfStock) checkStock(*positions, price, findings);
    checkArticle(*positions, findings);
  }
}

void OrderCheck::checkPrice(Recordset& position, const FoundPrice& price, Findings& findings) const {
  const double staged = position.value("Preis").number().value_or(0);
  const auto add = [&](Rule rule, const std::string& found) {
    findings.add(Finding(rule, germanNumber(staged), found).at(positionOf(position)));
  };
  if (price.failed()) add(Rule::OrderPriceFailed, "");
  if (price.result == Preisfindung::notFound) add(Rule::OrderPriceMissing, "");
  // Compared as stored, without tolerance or rounding, on purpose.
  if (options_.customerSpecific && price.found() && staged != price.price.price)
    add(Rule::OrderPriceDiffers, germanNumber(price.price.price));
}

void OrderCheck::checkCostAssignment(Recordset& position, Findings& findings) const {
  const Value& staged = position.value("KostID");
  const auto number = staged.isEmpty() ? 0 : wholeAs<std::int32_t>(staged);
  if (!number || costs_.CheckKostzuord("AB", *number, false) != 0)
    findings.add(Finding(Rule::OrderCostAssignment, staged.text(), position.text("Artikelnummer"))
                     .at(positionOf(position)));
}

void OrderCheck::checkStock(Recordset& position, const FoundPrice& price, Findings& findings) const {
  const std::string article = position.text("Artikelnummer");
  try {
    const bool convert = !equalCodes(price.unit, price.baseUnit);
    const StockAnswer answer = stock_.GetLagerbestand(article, price.unit, convert);
    const double quantity = throughDecimalText(position.value("Menge").number().value_or(0));
    if (answer.unit != noStockUnit && quantity > throughDecimalText(answer.stock))
      findings.add(Finding(Rule::OrderStock, germanNumber(quantity), article).at(positionOf(position)));
  } catch (const std::exception&) {
    // A missing conversion is no finding of the order; it only makes the warning impossible.
    const std::string reason = missingConversion();
    environment_.diagnostics.report({"stock of article " + article, reason, position.text("JobID")});
  }
}

void OrderCheck::checkArticle(Recordset& position, Findings& findings) const {
  const std::string article = position.text("Artikelnummer");
  if (!masterData_.ArtikelAngelegt(article))
    findings.add(Finding(Rule::OrderArticle, article).at(positionOf(position)));
}

} // namespace qx
