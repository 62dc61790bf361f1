#include "engine/customer_proof.h"

#include "rules/active_connection.h"
#include "rules/german_text.h"

#include <algorithm>
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

bool blockIsEmpty(const JobFields& job, const AddressBlock& block) {
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

Findings CustomerProof::prove(const JobFields& job) const {
  Findings findings;
  const std::string customer = job("Kundennummer").text();
  if (customer.empty()) findings.add(CheckStatus::Error, "Die Kundennummer fehlt.");
  proveCodes(job, findings);
  if (compareAddresses_ && !customer.empty()) compareWithMaster(job, findings);
  proveReferences(job, findings);
  return findings;
}

void CustomerProof::proveCodes(const JobFields& job, Findings& findings) const {
  for (const CodeField& code : codeFields) {
    const std::string wanted = job(code.field).text();
    if (!wanted.empty() && !masterData_.codeExists(code.master, wanted))
      addMissing(findings, code.field.text(), wanted);
  }
  const std::string bank = bankCode(job).text();
  if (!bank.empty() && !masterData_.codeExists("Bankleitzahl", bank))
    addMissing(findings, "Bankleitzahl", bank);
}

void CustomerProof::compareWithMaster(const JobFields& job, Findings& findings) const {
  const std::string customer = job("Kundennummer").text();
  const auto master =
      activeConnection(environment_)
          .open(sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(customer), "'"_sql));
  if (master->eof()) return;
  const JobFields stored = fieldsOf(*master);
  for (const ComparedField& field : mainAddressFields)
    compare(findings, field.field.text(), job(field.field), stored(field.field).text());
  for (const AddressBlock& block : addressBlocks) {
    if (blockIsEmpty(job, block)) continue;
    const std::string number = job(block.number).text();
    compare(findings, block.number.text(), job(block.number), stored(block.number).text());
    std::string owner = job(block.customer).text();
    if (owner.empty()) owner = customer;
    const Adresse address = addresses_.GetAdressDaten(owner, number).value_or(Adresse());
    for (const ComparedField& field : block.fields)
      compare(findings, field.field.text(), job(field.field), address.*field.stored);
  }
}

void CustomerProof::proveReferences(const JobFields& job, Findings& findings) const {
  const std::string account = job("Hauptkonto").text();
  if (!account.empty() && !masterData_.codeExists("Hauptkonto", account))
    findings.add(CheckStatus::Warning, "Hauptkonto ist nicht angelegt");
  for (const AddressBlock& block : addressBlocks) {
    const std::string owner = job(block.customer).text();
    const std::string number = job(block.number).text();
    // The customer's own number stands for the customer that this job creates, and with an address for the
    // one that it brings along.
    const bool brought = number.empty() || !blockIsEmpty(job, block) || !job(block.street).isEmpty();
    const bool own = brought && equalCodes(owner, job("Kundennummer").text());
    if (!owner.empty() && !own && !addresses_.KundeAngelegt(owner, number))
      findings.add(CheckStatus::Error, std::string(block.customer.text()) + " ist nicht angelegt");
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
    if (staged->value("JobType").integer() == qxtJobKundenVerträgeWarning)
      findings.add(CheckStatus::Warning, contractWarnings);
    else
      findings.add(CheckStatus::Error, contractErrors);
  }
  return findings;
}

} // namespace qx
