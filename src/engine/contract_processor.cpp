#include "engine/contract_processor.h"

#include "model/german_text.h"
#include "rules/dates.h"

namespace qx {

Findings ContractProcessor::process(JobRow& job) {
  const JobFields fields = fieldsOf(job);
  const ContractKey key = ContractKey::of(fields);
  const auto line = openContract(*environment_.connection, key);
  Findings refused;
  checkCustomer(key, refused);
  if (!skipsObjectChecks(contractState(fields))) checkObject(key, refused);
  checkNumber(job.value("Preis"), Rule::ContractPriceTooLarge, Rule::ContractPriceNoNumber, refused);
  checkNumber(job.value("Menge"), Rule::ContractQuantityTooLarge, Rule::ContractQuantityNoNumber, refused);
  for (const Finding& finding : refused) marks_.markJobError(job, runLine(finding));
  // Raised for a failing contract as well.
  events_.raiseProcessInfo("Verträge werden überprüft und verarbeitet... (Kunde: " + key.customer +
                           " Vertragsgegenstand: " + key.object + ")");
  if (refused.empty()) save(job, *line, fields);
  return refused;
}

void ContractProcessor::foresee(const JobRow& job) {
  const JobFields fields = fieldsOf(job);
  const ContractKey key = ContractKey::of(fields);
  openContract(*environment_.connection, key);
  Findings ignored;
  checkCustomer(key, ignored);
  if (!skipsObjectChecks(contractState(fields))) checkObject(key, ignored);
  contractColumns(*environment_.connection, fields);
}

bool ContractProcessor::any(const Sql& statement) { return !environment_.connection->open(statement)->eof(); }

void ContractProcessor::checkCustomer(const ContractKey& key, Findings& refused) {
  if (!any(sql("Select Kundennummer From Kundenstamm where Kundennummer  = '"_sql, value(key.customer),
               "'"_sql)))
    refused.add(Finding(Rule::ContractCustomerRefused, key.customer));
}

/// Every failed check is reported.
void ContractProcessor::checkObject(const ContractKey& key, Findings& refused) {
  if (!any(sql("Select Vertragsart From Vertragsarten where Vertragsart  = '"_sql, value(key.kind), "'"_sql)))
    refused.add(Finding(Rule::ContractKindRefused, key.kind));
  if (!any(sql("Select VertrGegenstandsNr From [VertragsGegenständePos] where [VertrGegenstandsNr] = '"_sql,
               value(key.object), "' And Vertragsart ='"_sql, value(key.kind), "'"_sql)))
    refused.add(Finding(Rule::ContractRelationRefused, key.kind, key.object));
  if (!any(sql("Select VertrGegenstandsNr From [Vertragsgegenstände] where [VertrGegenstandsNr]  = '"_sql,
               value(key.object), "'"_sql)))
    refused.add(Finding(Rule::ContractObjectRefused, key.object));
}

void ContractProcessor::checkNumber(const Value& staged, Rule tooLarge, Rule noNumber, Findings& refused) {
  const auto number = staged.number();
  if (staged.isEmpty() || (number && Money::fromDouble(*number))) return;
  refused.add(number ? Finding(tooLarge, germanNumber(*number)) : Finding(noNumber, staged.text()));
}

void ContractProcessor::save(JobRow& job, Recordset& line, const JobFields& fields) {
  const auto columns = contractColumns(*environment_.connection, fields);
  Savepoint part(*environment_.connection);
  const bool isNew = line.eof();
  if (isNew) line.addNew();
  for (const ContractColumn& each : columns)
    if (isNew || !each.isKey) line.set(each.column, each.content);
  DateTime changed = environment_.clock.now();
  changed.date = NowEx(environment_);
  line.set("ÄndUser", Value("Import"));
  line.set("ÄndDatum", Value(timeStamp(changed)));
  line.update();
  job.set("JobType", Value(withState(job.jobType(), JobState::Done)));
  job.update();
  part.release();
}

} // namespace qx
