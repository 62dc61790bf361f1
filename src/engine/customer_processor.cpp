#include "engine/customer_processor.h"

#include "engine/host_undo.h"
#include "rules/dates.h"

#include <array>
#include <exception>
#include <functional>
#include <stdexcept>

namespace qx {
namespace {

/// A column of the customer master and the job field that it is copied from.
struct CopiedField {
  ColumnName column;
  ColumnName jobField;
  /// An update with an empty text, too, leaves what the master holds.
  bool keptWhenEmpty = false;

  consteval CopiedField(ColumnName name) : column(name), jobField(name) {}
  consteval CopiedField(ColumnName name, ColumnName source) : column(name), jobField(source) {}
  consteval CopiedField kept() const {
    CopiedField field = *this;
    field.keptWhenEmpty = true;
    return field;
  }
};

// PLZ and Ort are written directly after Land as an addition of ours: an order takes them from the customer.
constexpr std::array copiedFields{CopiedField("Kundennummer"),
                                  CopiedField("Suchbegriff"),
                                  CopiedField("Bez1"),
                                  CopiedField("Bez2"),
                                  CopiedField("Bez3"),
                                  CopiedField("Strasse"),
                                  CopiedField("Land"),
                                  CopiedField("PLZ").kept(),
                                  CopiedField("Ort").kept(),
                                  CopiedField("Telefon"),
                                  CopiedField("Telefax"),
                                  CopiedField("EMail"),
                                  CopiedField("Versandart"),
                                  CopiedField("Kundengruppe"),
                                  CopiedField("VertreterNr1", "Vertreter1"),
                                  CopiedField("VertreterNr2", "Vertreter2"),
                                  CopiedField("VertreterNr3", "Vertreter3"),
                                  CopiedField("Zahlungsart"),
                                  CopiedField("Konto"),
                                  CopiedField("KontoNummer"),
                                  CopiedField("Bankleitzahl"),
                                  CopiedField("KundengruppenShop"),
                                  CopiedField("AendStatShop"),
                                  CopiedField("VS_KdNr"),
                                  CopiedField("VS_AdrNr"),
                                  CopiedField("RG_KdNr"),
                                  CopiedField("RG_AdrNr"),
                                  CopiedField("Hauptkonto"),
                                  CopiedField("Preisliste"),
                                  CopiedField("Preistyp"),
                                  CopiedField("KundeSeit").kept(),
                                  CopiedField("KundeVerlorenAm"),
                                  CopiedField("GrundVerloren"),
                                  CopiedField("GrundVerlorenSchl"),
                                  CopiedField("UstIdentNr")};

/// Null when the sender speaks of neither field.
const Value& bankCode(const JobRow& job) {
  const Value& own = job.value("Bankleitzahl");
  const Value& other = job.value("BLZ");
  return own.isEmpty() && !other.isNull() ? other : own;
}

/// The further addresses that a job may bring along.
struct AddressBlock {
  ColumnName customer, number, name1, name2, name3, street, country, postcode, town;
};
constexpr std::array addressBlocks{AddressBlock{"VS_KdNr", "VS_AdrNr", "VS_Bez1", "VS_Bez2", "VS_Bez3",
                                                "VS_Straße", "VS_Land", "VS_PLZ", "VS_Ort"},
                                   AddressBlock{"RG_KdNr", "RG_AdrNr", "RG_Bez1", "RG_Bez2", "RG_Bez3",
                                                "RG_Straße", "RG_Land", "RG_PLZ", "RG_Ort"}};

} // namespace

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
                                     EventSource& events)
    : environment_(environment), options_(options), marks_(marks), events_(events), masterData_(environment),
      addresses_(environment) {}

CustomerProcessor::Result CustomerProcessor::process(JobRow& job) {
  const std::string number = job.text("Kundennummer");
  if (number.empty()) {
    fail(job, "Die Kundennummer fehlt.");
    return Result::Failed;
  }
  const auto customer = environment_.connection->open(
      sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql));
  const bool isNew = customer->eof();
  std::string stamp;
  const bool codesFit = checkCodes(job);
  const bool dateFits = checkReceiptDate(job, stamp);
  if (!codesFit || !dateFits) return Result::Failed;
  events_.raiseProcessInfo("Kunden werden verarbeitet... (Kundennummer: " + number + ")");
  save(job, *customer, isNew, stamp);
  return isNew ? Result::Created : Result::Changed;
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
  if (const std::string bank = bankCode(job).text(); !bank.empty())
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
    stamp = DayStamp(NowEx(environment_));
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
  for (const CopiedField& field : copiedFields) {
    // The key of a found customer is the same and stays as the master spells it.
    if (!isNew && field.column == ColumnName("Kundennummer")) continue;
    const Value& staged =
        field.column == ColumnName("Bankleitzahl") ? bankCode(job) : job.value(field.jobField);
    // A column of which the sender does not speak is kept; an empty text empties it.
    if (staged.isNull()) continue;
    Value copied = emptyToNull(staged);
    // A new row leaves unset columns to the defaults of the table.
    if (copied.isNull() && (isNew || field.keptWhenEmpty)) continue;
    if (field.column == ColumnName("KundeSeit")) copied = Value(germanDay(copied));
    set(field.column, std::move(copied));
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
  for (const auto& [owner, address] : written.addresses)
    undo([&] {
      environment_.connection->execute(sql("Delete From Adressenstamm Where Kundennummer = '"_sql,
                                           value(owner), "' And Adressnummer = '"_sql, value(address),
                                           "'"_sql));
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
  for (const AddressBlock& block : addressBlocks) {
    const std::string number = job.text(block.number);
    if (number.empty()) continue;
    const Adresse address{job.text(block.name1),  job.text(block.name2),   job.text(block.name3),
                          job.text(block.street), job.text(block.country), job.text(block.postcode),
                          job.text(block.town)};
    if (address == Adresse()) continue;
    std::string owner = job.firstOf(block.customer, "Kundennummer");
    if (addresses_.AddAdressDaten(owner, number, address))
      written.addresses.emplace_back(std::move(owner), number);
  }
}

} // namespace qx
