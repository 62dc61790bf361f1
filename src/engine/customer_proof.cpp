#include "engine/customer_proof.h"

#include "rules/active_connection.h"
#include "rules/german_text.h"

#include <array>

namespace qx {
namespace {

/// A field of the job and the master table that must know its code.
struct CodeField {
  ColumnName field;
  std::string_view master;
};
constexpr std::array codeFields{CodeField{"Kundengruppe", "Kundengruppe"},
                                CodeField{"Vertreter1", "Vertreter"}, CodeField{"Versandart", "Versandart"},
                                CodeField{"Zahlungsart", "Zahlungsart"},
                                CodeField{"ZahlungsbedSchl", "ZahlungsbedSchl"}};

using AddressPart = std::string Adresse::*;

struct ComparedField {
  ColumnName field;
  AddressPart stored = nullptr;
};
constexpr std::array mainAddressFields{
    ComparedField{"Bez1", &Adresse::Bez1}, ComparedField{"Bez2", &Adresse::Bez2},
    ComparedField{"Bez3", &Adresse::Bez3}, ComparedField{"Strasse", &Adresse::Strasse},
    ComparedField{"Land", &Adresse::Land}, ComparedField{"PLZ", &Adresse::PLZ},
    ComparedField{"Ort", &Adresse::Ort}};

// The streets of these two blocks are not compared.
struct AddressBlock {
  ColumnName customer;
  ColumnName number;
  ColumnName street;
  std::array<ComparedField, 6> fields;
};
constexpr std::array addressBlocks{
    AddressBlock{"VS_KdNr",
                 "VS_AdrNr",
                 "VS_Straße",
                 {ComparedField{"VS_Bez1", &Adresse::Bez1}, ComparedField{"VS_Bez2", &Adresse::Bez2},
                  ComparedField{"VS_Bez3", &Adresse::Bez3}, ComparedField{"VS_PLZ", &Adresse::PLZ},
                  ComparedField{"VS_Ort", &Adresse::Ort}, ComparedField{"VS_Land", &Adresse::Land}}},
    AddressBlock{"RG_KdNr",
                 "RG_AdrNr",
                 "RG_Straße",
                 {ComparedField{"RG_Bez1", &Adresse::Bez1}, ComparedField{"RG_Bez2", &Adresse::Bez2},
                  ComparedField{"RG_Bez3", &Adresse::Bez3}, ComparedField{"RG_PLZ", &Adresse::PLZ},
                  ComparedField{"RG_Ort", &Adresse::Ort}, ComparedField{"RG_Land", &Adresse::Land}}}};

const Value& fieldOf(Recordset& job, ColumnName field) {
  static const Value none;
  return job.hasField(field) ? job.value(field) : none;
}

std::string textOf(Recordset& job, ColumnName field) { return fieldOf(job, field).text(); }

void addMissing(Findings& findings, std::string_view field, std::string_view code) {
  findings.add(CheckStatus::Warning,
               std::string(field) + ": '" + std::string(code) + "' ist nicht angelegt.");
}

/// A field of which the job does not speak changes nothing in the master.
void compare(Findings& findings, std::string_view field, const Value& job, const std::string& stored) {
  if (!job.isNull() && job.text() != stored)
    findings.add(CheckStatus::Warning,
                 std::string(field) + " ist nicht identisch: '" + job.text() + "' / '" + stored + "'");
}

bool blockIsEmpty(Recordset& job, const AddressBlock& block) {
  for (const ComparedField& field : block.fields)
    if (!fieldOf(job, field.field).isEmpty()) return false;
  return true;
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
  const std::string customer = job->text("Kundennummer");
  if (customer.empty()) findings.add(CheckStatus::Error, "Die Kundennummer fehlt.");
  proveCodes(*job, findings);
  if (compareAddresses_ && !customer.empty()) compareWithMaster(*job, findings);
  proveReferences(*job, findings);
  proveContracts(customer, findings);
  return findings;
}

void CustomerProof::proveCodes(Recordset& job, Findings& findings) const {
  for (const CodeField& code : codeFields) {
    const std::string wanted = textOf(job, code.field);
    if (!wanted.empty() && !masterData_.codeExists(code.master, wanted))
      addMissing(findings, code.field.text(), wanted);
  }
  std::string bank = textOf(job, "Bankleitzahl");
  if (bank.empty()) bank = textOf(job, "BLZ");
  if (!bank.empty() && !masterData_.codeExists("Bankleitzahl", bank))
    addMissing(findings, "Bankleitzahl", bank);
}

void CustomerProof::compareWithMaster(Recordset& job, Findings& findings) const {
  const std::string customer = textOf(job, "Kundennummer");
  const auto master =
      activeConnection(environment_)
          .open(sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(customer), "'"_sql));
  if (master->eof()) return;
  for (const ComparedField& field : mainAddressFields)
    compare(findings, field.field.text(), fieldOf(job, field.field), textOf(*master, field.field));
  for (const AddressBlock& block : addressBlocks) {
    if (blockIsEmpty(job, block)) continue;
    const std::string number = textOf(job, block.number);
    compare(findings, block.number.text(), fieldOf(job, block.number), textOf(*master, block.number));
    std::string owner = textOf(job, block.customer);
    if (owner.empty()) owner = customer;
    const Adresse stored = addresses_.GetAdressDaten(owner, number).value_or(Adresse());
    for (const ComparedField& field : block.fields)
      compare(findings, field.field.text(), fieldOf(job, field.field), stored.*field.stored);
  }
}

void CustomerProof::proveReferences(Recordset& job, Findings& findings) const {
  const std::string account = textOf(job, "Hauptkonto");
  if (!account.empty() && !masterData_.codeExists("Hauptkonto", account))
    findings.add(CheckStatus::Warning, "Hauptkonto ist nicht angelegt");
  for (const AddressBlock& block : addressBlocks) {
    const std::string owner = textOf(job, block.customer);
    const std::string number = textOf(job, block.number);
    // The customer's own number stands for the customer that this job creates, and with an address for the
    // one that it brings along.
    const bool brought = number.empty() || !blockIsEmpty(job, block) || !fieldOf(job, block.street).isEmpty();
    const bool own = brought && equalCodes(owner, textOf(job, "Kundennummer"));
    if (!owner.empty() && !own && !addresses_.KundeAngelegt(owner, number))
      findings.add(CheckStatus::Error, std::string(block.customer.text()) + " ist nicht angelegt");
  }
}

void CustomerProof::proveContracts(std::string_view customer, Findings& findings) const {
  const auto contracts =
      activeConnection(environment_)
          .open(sql(
              "Select JobType From ImportKopf where (JobType = 41 or JobType = 42) and  (Kundennummer = '"_sql,
              value(customer), "')"_sql));
  for (; !contracts->eof(); contracts->moveNext()) {
    if (contracts->value("JobType").integer() == qxtJobKundenVerträgeWarning)
      findings.add(CheckStatus::Warning, "Im Kundenvertrag wurden ''Warnungen'' festgestellt.");
    else
      findings.add(CheckStatus::Error, "Im Kundenvertrag wurden ''Fehler'' festgestellt.");
  }
}

} // namespace qx
