#include "engine/customer_processor.h"

#include "engine/customer_columns.h"
#include "engine/hints.h"
#include "platform/failure.h"
#include "rules/address_fields.h"
#include "rules/dates.h"

#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>

namespace qx {
/// A code of a job: the rule that a missing one breaks, how it is found and created, and whether that is
/// allowed.
struct CustomerProcessor::Code {
  std::string code;
  Rule refused;
  std::string_view field;
  bool mayCreate;
  Sql lookup;
  ColumnName key;
  ColumnName text;
  std::string newText;
  bool hasSearchTerm = false;
};

CustomerProcessor::CustomerProcessor(RunContext& run)
    : environment_(run.environment), run_(run), addresses_(run.environment) {}

CustomerProcessor::Outcome CustomerProcessor::process(JobRow& job) {
  const std::string number = job.text("Kundennummer");
  if (number.empty()) return failed(job, {Finding(Rule::CustomerNumberMissing)});
  const auto customer = openCustomer(number);
  const bool isNew = customer->eof();
  Findings refused;
  checkCodes(job, refused);
  const std::string stamp = receiptStamp(job, refused);
  if (!refused.empty()) return failed(job, std::move(refused));
  run_.events.raiseProcessInfo("Kunden werden verarbeitet... (Kundennummer: " + number + ")");
  // Before the row is written: they compare with its old values.
  Findings hints = customerHints(fieldsOf(job.row()), isNew ? nullptr : customer.get(), run_.homeCurrency);
  save(job, *customer, isNew, stamp);
  return {isNew ? Result::Created : Result::Changed, std::move(hints)};
}

CustomerProcessor::Outcome CustomerProcessor::failed(JobRow& job, Findings refused) {
  for (const Finding& finding : refused) run_.marks.markJobError(job, runLine(finding));
  return {Result::Failed, std::move(refused)};
}

std::unique_ptr<Recordset> CustomerProcessor::openCustomer(const std::string& number) const {
  return environment_.connection->open(
      sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql));
}

void CustomerProcessor::foresee(const JobRow& job) const {
  const std::string number = job.text("Kundennummer");
  openCustomer(number);
  for (const Code& code : codesOf(job)) environment_.connection->open(code.lookup);
  for (const AddressFields& block : jobAddresses)
    if (const std::string address = job.text(block.number); !address.empty())
      addresses_.KundeAngelegt(job.firstOf(block.customer, "Kundennummer"), address);
}

/// In the order in which they are checked.
std::vector<CustomerProcessor::Code> CustomerProcessor::codesOf(const JobRow& job) const {
  std::vector<Code> codes;
  if (const std::string group = job.text("Kundengruppe"); !group.empty())
    codes.push_back({group, Rule::CustomerGroupRefused, "Kundengruppe", run_.options.createGroups,
                     sql("Select Kundengruppe, Langtext From Kundengruppen where Kundengruppe = '"_sql,
                         value(group), "'"_sql),
                     "Kundengruppe", "Langtext", "Kundengruppe " + group});
  for (const ColumnName field :
       {ColumnName("Vertreter1"), ColumnName("Vertreter2"), ColumnName("Vertreter3")})
    if (const std::string rep = job.text(field); !rep.empty())
      codes.push_back({rep, Rule::CustomerSalesRepRefused, field.text(), run_.options.createReps,
                       sql("Select VertreterNr, Suchbegriff, Bez1 From Vertreter where VertreterNr = '"_sql,
                           value(rep), "'"_sql),
                       "VertreterNr", "Bez1", "Vertreter " + rep, true});
  if (const std::string payment = job.text("Zahlungsart"); !payment.empty())
    codes.push_back({payment, Rule::CustomerPaymentMethodRefused, "Zahlungsart", run_.options.createPayments,
                     sql("Select Zahlungsart, Kurztext From Zahlungsarten  where Zahlungsart = '"_sql,
                         value(payment), "'"_sql),
                     "Zahlungsart", "Kurztext", "Zahlungsart " + payment});
  // Currencies are never created.
  if (const std::string currency = job.text("Währung"); !currency.empty())
    codes.push_back({currency,
                     Rule::CustomerCurrencyRefused,
                     "Währung",
                     false,
                     MasterData::codeLookup("Währung", currency),
                     "Währung",
                     "Langtext",
                     {}});
  if (const std::string bank = bankCode(fieldsOf(job)).text(); !bank.empty())
    codes.push_back(
        {bank, Rule::CustomerBankRefused, "Bankleitzahl", run_.options.createBanks,
         sql("Select Bankleitzahl, Kreditinstitut From Kreditinstitute where Bankleitzahl = '"_sql,
             value(bank), "'"_sql),
         "Bankleitzahl", "Kreditinstitut", job.text("Kreditinstitut")});
  return codes;
}

/// All missing codes are reported, so that the clerk sees them at once.
void CustomerProcessor::checkCodes(const JobRow& job, Findings& refused) {
  for (const Code& code : codesOf(job)) checkCode(code, refused);
}

void CustomerProcessor::checkCode(const Code& code, Findings& refused) {
  const auto rows = environment_.connection->open(code.lookup);
  if (!rows->eof()) return;
  if (!code.mayCreate) {
    refused.add(Finding(code.refused, code.code).of(code.field));
    return;
  }
  Savepoint part(*environment_.connection);
  rows->addNew();
  rows->set(code.key, Value(code.code));
  rows->set(code.text, emptyToNull(Value(code.newText)));
  if (code.hasSearchTerm) rows->set("Suchbegriff", Value(code.newText));
  rows->update();
  part.release();
}

std::string CustomerProcessor::receiptStamp(const JobRow& job, Findings& refused) const {
  const Value& received = job.value("Eingangsdatum");
  if (received.isEmpty()) return dayStamp(NowEx(environment_));
  try {
    return intdat(received);
  } catch (const std::invalid_argument&) {
    refused.add(Finding(Rule::CustomerReceiptDate, received.text()));
    return {};
  }
}

void CustomerProcessor::save(JobRow& job, Recordset& customer, bool isNew, const std::string& stamp) {
  Written written;
  try {
    Savepoint part(*environment_.connection);
    writeCustomer(job, customer, isNew, stamp, written);
    addAddresses(job, written);
    job.set("JobType", Value(std::int16_t{qxtJobKundenDone}));
    job.update();
    part.release();
  } catch (const std::exception&) {
    if (!environment_.connection->ownsWork()) undoOnHost(customer, job.text("Kundennummer"), written);
    throw;
  }
}

void CustomerProcessor::writeCustomer(const JobRow& job, Recordset& customer, bool isNew,
                                      const std::string& stamp, Written& written) {
  std::vector<std::pair<ColumnName, Value>> before;
  const auto set = [&](ColumnName column, Value content) {
    if (!isNew) before.emplace_back(column, customer.value(column));
    customer.set(column, std::move(content));
  };
  if (isNew) customer.addNew();
  set("ÄndUser", Value("Import"));
  set("ÄndDatum", Value(stamp));
  const JobFields fields = fieldsOf(job);
  for (const CustomerColumn& field : writtenCustomerColumns()) {
    // The key of an existing customer keeps the master's spelling.
    if (!isNew && field.column == ColumnName("Kundennummer")) continue;
    std::optional<Value> content = writtenBy(fields, field, isNew);
    if (!content) continue;
    if (field.column == ColumnName("KundeSeit")) content = Value(germanDay(*content));
    set(field.column, std::move(*content));
  }
  customer.update();
  written.added = isNew;
  written.before = std::move(before);
}

/// Undoes on a host's connection what was written, the latest first.
void CustomerProcessor::undoOnHost(Recordset& customer, const std::string& number, const Written& written) {
  const auto undo = [&](const std::function<void()>& step) {
    trapped(environment_.diagnostics, {"undoing a customer"}, step);
  };
  for (const auto& address : written.addresses)
    undo([&] {
      environment_.connection->execute(sql("Delete From Adressenstamm Where Kundennummer = '"_sql,
                                           value(address.first), "' And Adressnummer = '"_sql,
                                           value(address.second), "'"_sql));
    });
  if (written.added)
    undo([&] {
      environment_.connection->execute(
          sql("Delete From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql));
    });
  if (!written.before.empty())
    undo([&] {
      for (const auto& [column, content] : written.before) customer.set(column, content);
      customer.update();
    });
}

void CustomerProcessor::addAddresses(const JobRow& job, Written& written) {
  for (const AddressFields& block : jobAddresses) {
    const std::string number = job.text(block.number);
    if (number.empty()) continue;
    const Adresse address = addressOf(block.lines, [&](ColumnName column) { return job.text(column); });
    if (address == Adresse()) continue;
    std::string owner = job.firstOf(block.customer, "Kundennummer");
    if (addresses_.AddAdressDaten(owner, number, address))
      written.addresses.emplace_back(std::move(owner), number);
  }
}

} // namespace qx
