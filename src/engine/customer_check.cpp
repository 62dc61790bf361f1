#include "engine/customer_check.h"

#include "engine/code_rules.h"
#include "model/text.h"
#include "rules/address_fields.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

constexpr std::array codeRules{Rule::CustomerGroup,          Rule::CustomerSalesRep,
                               Rule::CustomerShippingMethod, Rule::CustomerPaymentMethod,
                               Rule::CustomerPaymentTerms,   Rule::CustomerBank};

/// In the order of `mainAddress`.
constexpr std::array mainAddressRules{Rule::CustomerName1,  Rule::CustomerName2,   Rule::CustomerName3,
                                      Rule::CustomerStreet, Rule::CustomerCountry, Rule::CustomerPostCode,
                                      Rule::CustomerCity};
static_assert(mainAddressRules.size() == mainAddress.size());

struct AddressRules {
  const AddressFields& fields;
  Rule differs;
  Rule unknown;
};
constexpr std::array addressRules{
    AddressRules{deliveryAddress, Rule::CustomerDelivery, Rule::CustomerDeliveryKey},
    AddressRules{invoiceAddress, Rule::CustomerInvoice, Rule::CustomerInvoiceKey}};

/// The streets of the two addresses are not compared.
bool isCompared(const AddressLine& line) { return line.part != &Adresse::Strasse; }

/// A field of which the job does not speak changes nothing in the master.
void compare(Findings& findings, Rule rule, ColumnName field, const Value& job, const std::string& stored) {
  if (!job.isNull() && job.text() != stored) findings.add(Finding(rule, job.text(), stored).of(field.text()));
}

} // namespace

CustomerCheck::CustomerCheck(Environment& environment, bool compareAddresses)
    : environment_(environment), compareAddresses_(compareAddresses), masterData_(environment),
      addresses_(environment) {}

Findings CustomerCheck::ProveCustomerJob(std::string_view JobID) const {
  Findings findings;
  const auto job =
      activeConnection(environment_)
          .open(sql(
              "SELECT * FROM ImportKopf Where (JobType = 10 or JobType = 11 or JobType = 12) And (JobID ='"_sql,
              value(JobID), "')"_sql));
  if (job->eof()) return findings;
  findings = check(fieldsOf(*job));
  findings.append(contracts(job->text("Kundennummer")));
  return findings;
}

Findings CustomerCheck::check(const JobFields& job) const {
  Findings findings;
  const std::string customer = job("Kundennummer").text();
  if (customer.empty()) findings.add(Finding(Rule::CustomerNumberMissing));
  for (const Rule rule : codeRules) findings.append(unknownCode(masterData_, job, rule));
  if (compareAddresses_ && !customer.empty()) compareWithMaster(job, findings);
  findings.append(unknownCode(masterData_, job, Rule::CustomerAccount));
  findings.append(addressKeys(job));
  return findings;
}

Findings mainAddressDifferences(const JobFields& job, const Adresse& stored) {
  Findings findings;
  for (std::size_t i = 0; i < mainAddress.size(); ++i) {
    const auto& [column, part] = mainAddress[i];
    compare(findings, mainAddressRules[i], column, job(column), stored.*part);
  }
  return findings;
}

void CustomerCheck::compareWithMaster(const JobFields& job, Findings& findings) const {
  const std::string customer = job("Kundennummer").text();
  const auto master =
      activeConnection(environment_)
          .open(sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(customer), "'"_sql));
  if (master->eof()) return;
  const JobFields stored = fieldsOf(*master);
  findings.append(mainAddressDifferences(
      job, addressOf(mainAddress, [&](ColumnName column) { return stored(column).text(); })));
  for (const auto& [fields, differs, unknown] : addressRules) {
    const auto isSpokenOf = [&](const AddressLine& line) {
      return isCompared(line) && !job(line.column).isEmpty();
    };
    if (std::ranges::none_of(fields.lines, isSpokenOf)) continue;
    const std::string number = job(fields.number).text();
    compare(findings, differs, fields.number, job(fields.number), stored(fields.number).text());
    std::string owner = job(fields.customer).text();
    if (owner.empty()) owner = customer;
    const Adresse address = addresses_.GetAdressDaten(owner, number).value_or(Adresse());
    for (const AddressLine& line : fields.lines)
      if (isCompared(line)) compare(findings, differs, line.column, job(line.column), address.*line.part);
  }
}

Findings CustomerCheck::addressKeys(const JobFields& job) const {
  Findings findings;
  for (const auto& [fields, differs, unknown] : addressRules) {
    const std::string owner = job(fields.customer).text();
    const std::string number = job(fields.number).text();
    // The customer's own number stands for the customer that this job creates, and with an address for the
    // one that it brings along.
    const bool brought = number.empty() || std::ranges::any_of(fields.lines, [&](const AddressLine& line) {
                           return !job(line.column).isEmpty();
                         });
    const bool own = brought && equalCodes(owner, job("Kundennummer").text());
    if (!owner.empty() && !own && !addresses_.KundeAngelegt(owner, number))
      findings.add(Finding(unknown, owner));
  }
  return findings;
}

Findings CustomerCheck::contracts(std::string_view customer) const {
  Findings findings;
  const auto staged =
      activeConnection(environment_)
          .open(sql(
              "Select JobType From ImportKopf where (JobType = 41 or JobType = 42) and  (Kundennummer = '"_sql,
              value(customer), "')"_sql));
  for (; !staged->eof(); staged->moveNext()) {
    const bool warning = staged->value("JobType").integer() == qxtJobKundenVerträgeWarning;
    findings.add(Finding(warning ? Rule::CustomerContractWarnings : Rule::CustomerContractErrors));
  }
  return findings;
}

} // namespace qx
