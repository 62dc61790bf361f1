#include "engine/customer_processor.h"

#include "engine/customer_columns.h"
#include "engine/host_undo.h"
#include "rules/address_fields.h"
#include "rules/dates.h"

#include <exception>
#include <functional>
#include <optional>
#include <stdexcept>

namespace qx {
/// One kind of code: how its messages name it, how a missing one is found and created, and whether it may be.
struct CustomerProcessor::Code {
  std::string_view subject; ///< as in "Die Kundengruppe"
  std::string_view object;  ///< as in "die Kundengruppe"
  bool mayCreate;
  Sql lookup;
  ColumnName key;
  ColumnName text;
  std::string newText;
  bool hasSearchTerm = false;
};

CustomerProcessor::CustomerProcessor(Environment& environment, const RunOptions& options, JobMarks& marks,
                                     EventSource& events, std::string homeCurrency)
    : environment_(environment), options_(options), marks_(marks), events_(events),
      homeCurrency_(std::move(homeCurrency)), masterData_(environment), addresses_(environment) {}

CustomerProcessor::Outcome CustomerProcessor::process(JobRow& job) {
  const std::string number = job.text("Kundennummer");
  if (number.empty()) {
    fail(job, "Die Kundennummer fehlt.");
    return {Result::Failed, {}};
  }
  const auto customer = environment_.connection->open(
      sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql));
  const bool isNew = customer->eof();
  std::string stamp;
  const bool codesFit = checkCodes(job);
  const bool dateFits = checkReceiptDate(job, stamp);
  if (!codesFit || !dateFits) return {Result::Failed, {}};
  events_.raiseProcessInfo("Kunden werden verarbeitet... (Kundennummer: " + number + ")");
  // Before the row is written: they name what it held.
  Hints hints = customerHints(fieldsOf(job.row()), isNew ? nullptr : customer.get(), homeCurrency_);
  save(job, *customer, isNew, stamp);
  return {isNew ? Result::Created : Result::Changed, std::move(hints)};
}

bool CustomerProcessor::fail(JobRow& job, std::string_view text) {
  marks_.markJobError(job, text);
  return false;
}

/// All missing codes are reported, so that the clerk sees them at once.
bool CustomerProcessor::checkCodes(JobRow& job) {
  bool fits = true;
  if (const std::string group = job.text("Kundengruppe"); !group.empty())
    fits &= checkCode(job,
                      {"Die Kundengruppe", "die Kundengruppe", options_.createGroups,
                       sql("Select Kundengruppe, Langtext From Kundengruppen where Kundengruppe = '"_sql,
                           value(group), "'"_sql),
                       "Kundengruppe", "Langtext", "Kundengruppe " + group},
                      group);
  for (const ColumnName field :
       {ColumnName("Vertreter1"), ColumnName("Vertreter2"), ColumnName("Vertreter3")})
    if (const std::string rep = job.text(field); !rep.empty())
      fits &= checkCode(job,
                        {"Der Vertreter", "den Vertreter", options_.createReps,
                         sql("Select VertreterNr, Suchbegriff, Bez1 From Vertreter where VertreterNr = '"_sql,
                             value(rep), "'"_sql),
                         "VertreterNr", "Bez1", "Vertreter " + rep, true},
                        rep);
  if (const std::string payment = job.text("Zahlungsart"); !payment.empty())
    fits &= checkCode(job,
                      {"Die Zahlungsart", "die Zahlungsart", options_.createPayments,
                       sql("Select Zahlungsart, Kurztext From Zahlungsarten  where Zahlungsart = '"_sql,
                           value(payment), "'"_sql),
                       "Zahlungsart", "Kurztext", "Zahlungsart " + payment},
                      payment);
  fits &= checkCurrency(job);
  if (const std::string bank = bankCode(fieldsOf(job)).text(); !bank.empty())
    fits &=
        checkCode(job,
                  {"Die Bankleitzahl", "die Bankleitzahl", options_.createBanks,
                   sql("Select Bankleitzahl, Kreditinstitut From Kreditinstitute where Bankleitzahl = '"_sql,
                       value(bank), "'"_sql),
                   "Bankleitzahl", "Kreditinstitut", job.text("Kreditinstitut")},
                  bank);
  return fits;
}

bool CustomerProcessor::checkCode(JobRow& job, const Code& code, std::string_view wanted) {
  const auto rows = environment_.connection->open(code.lookup);
  if (!rows->eof()) return true;
  if (!code.mayCreate) {
    std::string text(code.subject);
    text += ": '";
    text += wanted;
    text += "' wurde noch nicht angelegt.";
    appendLine(text, "Um automatisch ");
    text += code.object;
    text += " anzulegen, stellen Sie dies bitte in den Optionen ein.";
    return fail(job, text);
  }
  Savepoint part(*environment_.connection);
  rows->addNew();
  rows->set(code.key, Value(wanted));
  rows->set(code.text, emptyToNull(Value(code.newText)));
  if (code.hasSearchTerm) rows->set("Suchbegriff", Value(code.newText));
  rows->update();
  part.release();
  return true;
}

/// Currencies are never created.
bool CustomerProcessor::checkCurrency(JobRow& job) {
  const std::string currency = job.text("Währung");
  if (currency.empty() || masterData_.codeExists("Währung", currency)) return true;
  return fail(job, "Die Währung: '" + currency + "' ist nicht angelegt.");
}

bool CustomerProcessor::checkReceiptDate(JobRow& job, std::string& stamp) {
  const Value& received = job.value("Eingangsdatum");
  if (received.isEmpty()) {
    stamp = dayStamp(NowEx(environment_));
    return true;
  }
  try {
    stamp = intdat(received);
    return true;
  } catch (const std::invalid_argument&) {
    return fail(job, "Das Eingangsdatum: '" + received.text() + "' ist kein Datum.");
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
    // The key of a found customer is the same and stays as the master spells it.
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

/// What the host's transaction does not undo for us, the latest first.
void CustomerProcessor::undoOnHost(Recordset& customer, const std::string& number, const Written& written) {
  const auto undo = [&](const std::function<void()>& step) {
    undoStep(environment_.diagnostics, "undoing a customer", step);
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
