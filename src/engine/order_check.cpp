#include "engine/order_check.h"

#include "engine/order_texts.h"
#include "model/text.h"
#include "platform/whole_number.h"
#include "rules/rounding.h"

#include <exception>

namespace qx {
namespace {

std::string textOf(Recordset& row, ColumnName column) { return row.hasField(column) ? row.text(column) : ""; }

/// Whether both fields of an address key are empty.
bool noKey(Recordset& job, ColumnName customer, ColumnName number) {
  return textOf(job, customer).empty() && textOf(job, number).empty();
}

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
  checkAddressKeys(*job, findings);
  checkAccount(*job, findings, stagedText);
  checkCustomer(*job, findings);
  findings.append(credit(textOf(*job, "Kundennummer")));
  checkPositions(*job, findings, prices);
  return findings;
}

Findings OrderCheck::note(std::string_view remark) const {
  Findings findings;
  if (options_.customerSpecific && !remark.empty()) findings.add(CheckStatus::Warning, order_tokens::note);
  return findings;
}

void OrderCheck::checkSalesRep(Recordset& job, Findings& findings) const {
  const std::string rep = textOf(job, "Vertreter1");
  if (!rep.empty() && !masterData_.codeExists("Vertreter", rep))
    findings.add(CheckStatus::Warning, order_tokens::salesRep);
}

void OrderCheck::checkMethods(Recordset& job, Findings& findings) const {
  const std::string shipping = textOf(job, "Versandart");
  if (!shipping.empty() && !masterData_.codeExists("Versandart", shipping))
    findings.add(CheckStatus::Warning, order_tokens::shippingMethod);
  const std::string payment = textOf(job, "Zahlungsart");
  if (!payment.empty() && !masterData_.codeExists("Zahlungsart", payment))
    findings.add(CheckStatus::Warning, order_tokens::paymentMethod);
}

/// Certain marks in the individual fields demand a certain payment or shipping method. A rule whose setting
/// is empty is off.
Findings OrderCheck::individualFields(const std::function<std::string(ColumnName)>& job) const {
  Findings findings;
  if (!options_.customerSpecific) return findings;
  struct Rule {
    ColumnName field;
    std::string_view mark;
    ColumnName method;
    const std::string& demanded;
    std::string_view token;
  };
  const Rule rules[] = {{"IndFild1", "ZB", "Zahlungsart", options_.ZAVSRG, order_tokens::fieldZB},
                        {"IndFild3", "ZA", "Zahlungsart", options_.ZAKunde, order_tokens::fieldZA},
                        {"IndFild4", "MK", "Versandart", options_.VAKunde, order_tokens::fieldMK}};
  for (const Rule& rule : rules)
    if (!rule.demanded.empty() && job(rule.field) == rule.mark &&
        !equalCodes(job(rule.method), rule.demanded))
      findings.add(CheckStatus::Warning, rule.token);
  return findings;
}

void OrderCheck::checkPaymentTerms(Recordset& job, Findings& findings) const {
  const std::string terms = textOf(job, "ZahlungsbedSchl");
  if (!terms.empty() && !masterData_.codeExists("ZahlungsbedSchl", terms))
    findings.add(CheckStatus::Warning, order_tokens::paymentTerms);
}

void OrderCheck::checkBank(Recordset& job, Findings& findings) const {
  std::string bank = textOf(job, "Bankleitzahl");
  if (bank.empty()) bank = textOf(job, "BLZ");
  if (!bank.empty() && !masterData_.codeExists("Bankleitzahl", bank))
    findings.add(CheckStatus::Warning, order_tokens::bank);
}

bool OrderCheck::addressResolves(Recordset& job, ColumnName customer, ColumnName number) const {
  std::string owner = textOf(job, customer);
  if (owner.empty()) owner = textOf(job, "Kundennummer");
  return addresses_.KundeAngelegt(owner, textOf(job, number));
}

void OrderCheck::checkAddressKeys(Recordset& job, Findings& findings) const {
  if (!noKey(job, "VS_KdNr", "VS_AdrNr") && !addressResolves(job, "VS_KdNr", "VS_AdrNr"))
    findings.add(CheckStatus::Warning, order_tokens::shippingKey);
  if (!noKey(job, "RG_KdNr", "RG_AdrNr") && !addressResolves(job, "RG_KdNr", "RG_AdrNr"))
    findings.add(CheckStatus::Warning, order_tokens::invoiceKey);
}

void OrderCheck::checkAccount(Recordset& job, Findings& findings, bool stagedText) const {
  const std::string account = textOf(job, "Hauptkonto");
  if (!account.empty() && !masterData_.codeExists("Hauptkonto", account))
    findings.add(CheckStatus::Warning, order_tokens::account);
  // A text that stands there already raises the status but has no token of its own.
  if (stagedText && !textOf(job, "Fehlertext").empty())
    findings.status = worse(findings.status, CheckStatus::Warning);
}

/// An address key that does not resolve was a warning above and is an error here.
void OrderCheck::checkCustomer(Recordset& job, Findings& findings) const {
  if (!addresses_.KundeAngelegt(textOf(job, "Kundennummer")))
    findings.add(CheckStatus::Error, order_tokens::customer);
  if (!noKey(job, "VS_KdNr", "VS_AdrNr") && !addressResolves(job, "VS_KdNr", "VS_AdrNr"))
    findings.add(CheckStatus::Error, order_tokens::shippingAddress);
  if (!noKey(job, "RG_KdNr", "RG_AdrNr") && !addressResolves(job, "RG_KdNr", "RG_AdrNr"))
    findings.add(CheckStatus::Error, order_tokens::invoiceAddress);
}

Findings OrderCheck::credit(std::string_view customer) const {
  Findings findings;
  if (!options_.checkCreditLimit) return findings;
  switch (credit_.query(customer)) {
  case CreditResult::Limit1Reached:
    findings.add(CheckStatus::Warning, order_tokens::creditLimit1);
    break;
  case CreditResult::Limit2Reached:
    findings.add(CheckStatus::Error, order_tokens::creditLimit2);
    break;
  case CreditResult::WithinLimits:
    break;
  }
  return findings;
}

void OrderCheck::checkPositions(Recordset& job, Findings& findings, OrderPrices& prices) const {
  const auto positions = environment_.connection->open(
      sql("SELECT * FROM ImportPos Where ImportPos.JobID ='"_sql, value(job.text("JobID")), "'"_sql));
  if (positions->eof()) findings.add(CheckStatus::Error, order_tokens::noPositions);
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
  if (price.failed()) findings.add(CheckStatus::Error, order_tokens::priceFailed);
  if (price.result == Preisfindung::notFound) findings.add(CheckStatus::Warning, order_tokens::priceNotFound);
  // Compared as stored, without tolerance or rounding, on purpose.
  if (options_.customerSpecific && price.found() &&
      position.value("Preis").number().value_or(0) != price.price.price)
    findings.add(CheckStatus::Warning, order_tokens::priceDiffers);
}

void OrderCheck::checkCostAssignment(Recordset& position, Findings& findings) const {
  const Value& staged = position.value("KostID");
  const auto number = staged.isEmpty() ? 0 : wholeAs<std::int32_t>(staged);
  if (!number || costs_.CheckKostzuord("AB", *number, false) != 0)
    findings.add(CheckStatus::Warning, order_tokens::costAssignment);
}

void OrderCheck::checkStock(Recordset& position, const FoundPrice& price, Findings& findings) const {
  const std::string article = position.text("Artikelnummer");
  try {
    const bool convert = !equalCodes(price.unit, price.baseUnit);
    const StockAnswer answer = stock_.GetLagerbestand(article, price.unit, convert);
    if (answer.unit != noStockUnit &&
        throughDecimalText(position.value("Menge").number().value_or(0)) > throughDecimalText(answer.stock))
      findings.add(CheckStatus::Warning, order_tokens::stock);
  } catch (const std::exception&) {
    // A missing conversion is no finding of the order; it only makes the warning impossible.
    const std::string reason = missingConversion();
    environment_.diagnostics.report({"stock of article " + article, reason, position.text("JobID")});
  }
}

void OrderCheck::checkArticle(Recordset& position, Findings& findings) const {
  if (!masterData_.ArtikelAngelegt(position.text("Artikelnummer")))
    findings.add(CheckStatus::Error, order_tokens::article);
}

} // namespace qx
