#include "engine/customer_proof.h"

#include "model/text.h"
#include "rules/active_connection.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

/// A field of the job and the master table that must know its code.
struct CodeField {
  ColumnName field;
  std::string_view master;
  Rule rule;
};
constexpr std::array codeFields{CodeField{"Kundengruppe", "Kundengruppe", Rule::CustomerGroup},
                                CodeField{"Vertreter1", "Vertreter", Rule::CustomerSalesRep},
                                CodeField{"Versandart", "Versandart", Rule::CustomerShippingMethod},
                                CodeField{"Zahlungsart", "Zahlungsart", Rule::CustomerPaymentMethod},
                                CodeField{"ZahlungsbedSchl", "ZahlungsbedSchl", Rule::CustomerPaymentTerms}};

using AddressPart = std::string Adresse::*;

struct ComparedField {
  ColumnName field;
  AddressPart stored = nullptr;
};
struct MainField {
  ColumnName field;
  Rule rule;
};
constexpr std::array mainAddressFields{
    MainField{"Bez1", Rule::CustomerName1},   MainField{"Bez2", Rule::CustomerName2},
    MainField{"Bez3", Rule::CustomerName3},   MainField{"Strasse", Rule::CustomerStreet},
    MainField{"Land", Rule::CustomerCountry}, MainField{"PLZ", Rule::CustomerPostCode},
    MainField{"Ort", Rule::CustomerCity}};

// The streets of these two blocks are not compared.
struct AddressBlock {
  ColumnName customer;
  ColumnName number;
  ColumnName street;
  std::array<ComparedField, 6> fields;
  Rule differs;
  Rule unknown;
};
constexpr std::array addressBlocks{
    AddressBlock{"VS_KdNr",
                 "VS_AdrNr",
                 "VS_Straße",
                 {ComparedField{"VS_Bez1", &Adresse::Bez1}, ComparedField{"VS_Bez2", &Adresse::Bez2},
                  ComparedField{"VS_Bez3", &Adresse::Bez3}, ComparedField{"VS_PLZ", &Adresse::PLZ},
                  ComparedField{"VS_Ort", &Adresse::Ort}, ComparedField{"VS_Land", &Adresse::Land}},
                 Rule::CustomerDelivery,
                 Rule::CustomerDeliveryKey},
    AddressBlock{"RG_KdNr",
                 "RG_AdrNr",
                 "RG_Straße",
                 {ComparedField{"RG_Bez1", &Adresse::Bez1}, ComparedField{"RG_Bez2", &Adresse::Bez2},
                  ComparedField{"RG_Bez3", &Adresse::Bez3}, ComparedField{"RG_PLZ", &Adresse::PLZ},
                  ComparedField{"RG_Ort", &Adresse::Ort}, ComparedField{"RG_Land", &Adresse::Land}},
                 Rule::CustomerInvoice,
                 Rule::CustomerInvoiceKey}};

/// The values of a row by column; null for a column that it does not have.
CustomerFields fieldsOf(Recordset& row) {
  return [&row](ColumnName column) { return row.hasField(column) ? row.value(column) : Value::null(); };
}

/// A field of which the job does not speak changes nothing in the master.
void compare(Findings& findings, Rule rule, ColumnName field, const Value& job, const std::string& stored) {
  if (!job.isNull() && job.text() != stored) findings.add(Finding(rule, job.text(), stored).of(field.text()));
}

bool blockIsEmpty(const CustomerFields& job, const AddressBlock& block) {
  return std::ranges::all_of(block.fields,
                             [&](const ComparedField& field) { return job(field.field).isEmpty(); });
}

} // namespace

CustomerProof::CustomerProof(Environment& environment, bool compareAddresses)
    : environment_(environment), compareAddresses_(compareAddresses), masterData_(environment),
      addresses_(environment) {}

Findings CustomerProof::prove(std::string_view jobId) const {
  Findings findings;
  const auto job =
      activeConnection(environment_)
          .open(sql(
              "SELECT * FROM ImportKopf Where (JobType = 10 or JobType = 11 or JobType = 12) And (JobID ='"_sql,
              value(jobId), "')"_sql));
  if (job->eof()) return findings;
  findings = prove(fieldsOf(*job));
  findings.append(contracts(job->text("Kundennummer")));
  return findings;
}

Findings CustomerProof::prove(const CustomerFields& job) const {
  Findings findings;
  const std::string customer = job("Kundennummer").text();
  if (customer.empty()) findings.add(Finding(Rule::CustomerNumberMissing));
  proveCodes(job, findings);
  if (compareAddresses_ && !customer.empty()) compareWithMaster(job, findings);
  proveReferences(job, findings);
  return findings;
}

void CustomerProof::proveCodes(const CustomerFields& job, Findings& findings) const {
  for (const CodeField& code : codeFields) {
    const std::string wanted = job(code.field).text();
    if (!wanted.empty() && !masterData_.codeExists(code.master, wanted))
      findings.add(Finding(code.rule, wanted));
  }
  std::string bank = job("Bankleitzahl").text();
  if (bank.empty()) bank = job("BLZ").text();
  if (!bank.empty() && !masterData_.codeExists("Bankleitzahl", bank))
    findings.add(Finding(Rule::CustomerBank, bank));
}

void CustomerProof::compareWithMaster(const CustomerFields& job, Findings& findings) const {
  const std::string customer = job("Kundennummer").text();
  const auto master =
      activeConnection(environment_)
          .open(sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(customer), "'"_sql));
  if (master->eof()) return;
  const CustomerFields stored = fieldsOf(*master);
  for (const MainField& field : mainAddressFields)
    compare(findings, field.rule, field.field, job(field.field), stored(field.field).text());
  for (const AddressBlock& block : addressBlocks) {
    if (blockIsEmpty(job, block)) continue;
    const std::string number = job(block.number).text();
    compare(findings, block.differs, block.number, job(block.number), stored(block.number).text());
    std::string owner = job(block.customer).text();
    if (owner.empty()) owner = customer;
    const Adresse address = addresses_.GetAdressDaten(owner, number).value_or(Adresse());
    for (const ComparedField& field : block.fields)
      compare(findings, block.differs, field.field, job(field.field), address.*field.stored);
  }
}

void CustomerProof::proveReferences(const CustomerFields& job, Findings& findings) const {
  const std::string account = job("Hauptkonto").text();
  if (!account.empty() && !masterData_.codeExists("Hauptkonto", account))
    findings.add(Finding(Rule::CustomerAccount, account));
  for (const AddressBlock& block : addressBlocks) {
    const std::string owner = job(block.customer).text();
    const std::string number = job(block.number).text();
    // The customer's own number stands for the customer that this job creates, and with an address for the
    // one that it brings along.
    const bool brought = number.empty() || !blockIsEmpty(job, block) || !job(block.street).isEmpty();
    const bool own = brought && equalCodes(owner, job("Kundennummer").text());
    if (!owner.empty() && !own && !addresses_.KundeAngelegt(owner, number))
      findings.add(Finding(block.unknown, owner));
  }
}

Findings CustomerProof::contracts(std::string_view customer) const {
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
