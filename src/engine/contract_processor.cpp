#include "engine/contract_processor.h"

#include "engine/contract_texts.h"
#include "rules/dates.h"
#include "rules/german_text.h"

#include <string>

namespace qx {

bool ContractProcessor::process(JobRow& job) {
  const JobFields fields = fieldsOf(job);
  const ContractKey key = ContractKey::of(fields);
  const auto line = openContract(*environment_.connection, key);
  bool fits = checkCustomer(job, key);
  if (!skipsObjectChecks(contractState(fields))) fits &= checkObject(job, key);
  fits &= checkNumber(job, "Preis", contract_failures::price);
  fits &= checkNumber(job, "Menge", contract_failures::quantity);
  // Raised for a failing contract as well.
  events_.raiseProcessInfo("Verträge werden überprüft und verarbeitet... (Kunde: " + key.customer +
                           " Vertragsgegenstand: " + key.object + ")");
  if (fits) save(job, *line, fields);
  return fits;
}

bool ContractProcessor::any(const Sql& statement) { return !environment_.connection->open(statement)->eof(); }

bool ContractProcessor::checkCustomer(JobRow& job, const ContractKey& key) {
  if (any(sql("Select Kundennummer From Kundenstamm where Kundennummer  = '"_sql, value(key.customer),
              "'"_sql)))
    return true;
  marks_.markJobError(job, std::string(contract_failures::customer) + key.customer +
                               "' wurde noch nicht angelegt.");
  return false;
}

/// Every failed check is reported.
bool ContractProcessor::checkObject(JobRow& job, const ContractKey& key) {
  bool fits = true;
  const auto fail = [&](const std::string& text) {
    marks_.markJobError(job, text);
    fits = false;
  };
  if (!any(sql("Select Vertragsart From Vertragsarten where Vertragsart  = '"_sql, value(key.kind), "'"_sql)))
    fail(std::string(contract_failures::kind) + key.kind + "' wurde noch nicht angelegt.");
  if (!any(sql("Select VertrGegenstandsNr From [VertragsGegenständePos] where [VertrGegenstandsNr] = '"_sql,
               value(key.object), "' And Vertragsart ='"_sql, value(key.kind), "'"_sql)))
    // The quote after the object number stands without an opening one on purpose.
    fail(std::string(contract_failures::relation) + key.kind +
         "' und Vertragsgegenstandsnummer: " + key.object + "' ermittelt werden.");
  if (!any(sql("Select VertrGegenstandsNr From [Vertragsgegenstände] where [VertrGegenstandsNr]  = '"_sql,
               value(key.object), "'"_sql)))
    fail(std::string(contract_failures::object) + key.object + "' wurde noch nicht angelegt.");
  return fits;
}

bool ContractProcessor::checkNumber(JobRow& job, ColumnName field, std::string_view failure) {
  const Value& staged = job.value(field);
  const auto number = staged.number();
  if (staged.isEmpty() || (number && Money::fromDouble(*number))) return true;
  marks_.markJobError(job, std::string(failure) + (number ? germanNumber(*number) : staged.text()) +
                               (number ? "' ist zu groß." : "' ist keine Zahl."));
  return false;
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
