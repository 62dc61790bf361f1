#include "engine/order_header.h"

#include "engine/job_fields.h"
#include "engine/order_failure.h"
#include "model/text.h"

#include <array>
#include <initializer_list>

namespace qx {
namespace {

constexpr std::array customerColumns{ColumnName("Klassifizierung"), ColumnName("Auftragsrabatt"),
                                     ColumnName("FremdLiefNr"),     ColumnName("Valutabehandlung"),
                                     ColumnName("Valutatage"),      ColumnName("MwSt_KZ"),
                                     ColumnName("Ind_Text1"),       ColumnName("Ind_Text2"),
                                     ColumnName("Ind_Text3"),       ColumnName("Ind_Text4"),
                                     ColumnName("Ind_Zahl1"),       ColumnName("Ind_Zahl2"),
                                     ColumnName("Ind_Zahl3"),       ColumnName("Ind_Zahl4"),
                                     ColumnName("Ind_Memo1"),       ColumnName("Ind_Memo2"),
                                     ColumnName("SprachKZ"),        ColumnName("AnzAN"),
                                     ColumnName("AnzAB"),           ColumnName("AnzLS"),
                                     ColumnName("AnzVE"),           ColumnName("AnzRG"),
                                     ColumnName("AnzGS"),           ColumnName("KopftextAN"),
                                     ColumnName("KopftextAB"),      ColumnName("KopftextLS"),
                                     ColumnName("KopftextRG"),      ColumnName("KopftextGS")};

/// The two texts of an order that its customer keeps until the next one.
struct StampedText {
  ColumnName jobField, column;
};
constexpr std::array stampedTexts{StampedText{"IndFild2", "Ind_Text2"}, StampedText{"IndFild3", "Ind_Text3"}};

Value jobOrCustomer(const JobRow& job, ColumnName jobField, Recordset& customer, ColumnName column) {
  const Value& own = job.value(jobField);
  return emptyToNull(own.isEmpty() ? customer.value(column) : own);
}

Value jobOrCustomer(const JobRow& job, Recordset& customer, ColumnName column) {
  return jobOrCustomer(job, column, customer, column);
}

/// A code that the master must know.
struct CodeColumn {
  ColumnName column;
  Rule refused;
  Sql (*row)(std::string_view code); ///< the select of its spelling
};

constexpr CodeColumn shippingMethod{
    "Versandart", Rule::OrderShippingMethodRefused, [](std::string_view code) {
      return sql("Select Versandart From Versandtexte where Versandart  = '"_sql, value(code), "'"_sql);
    }};
constexpr std::array codes{
    shippingMethod,
    CodeColumn{"Zahlungsart", Rule::OrderPaymentMethodRefused,
               [](std::string_view code) {
                 return sql("Select Zahlungsart From Zahlungsarten  where Zahlungsart = '"_sql, value(code),
                            "'"_sql);
               }},
    CodeColumn{"ZahlungsbedSchl", Rule::OrderPaymentTermsRefused, [](std::string_view code) {
                 return sql("Select ZahlbedSchl From Zahlungsbedingungen where ZahlbedSchl = '"_sql,
                            value(code), "'"_sql);
               }}};

struct SalesRepColumns {
  ColumnName jobField, column, share;
};
constexpr std::array reps{SalesRepColumns{"Vertreter1", "VertreterNr1", "AnteilVertreter1"},
                          SalesRepColumns{"Vertreter2", "VertreterNr2", "AnteilVertreter2"},
                          SalesRepColumns{"Vertreter3", "VertreterNr3", "AnteilVertreter3"}};

std::string requireCode(Connection& connection, const CodeColumn& kind, std::string_view code) {
  const auto rows = connection.open(kind.row(code));
  if (rows->eof()) throw OrderFailure(kind.refused, code);
  return rows->value(std::size_t{0}).text();
}

void fillFields(RowValues& header, const JobRow& job, Recordset& customer,
                std::initializer_list<ColumnName> columns) {
  for (const ColumnName column : columns) header.set(column, jobOrCustomer(job, customer, column));
}

void fillCode(Connection& connection, RowValues& header, const JobRow& job, Recordset& customer,
              const CodeColumn& kind) {
  const Value code = jobOrCustomer(job, customer, kind.column);
  header.set(kind.column, code.isNull() ? code : Value(requireCode(connection, kind, code.text())));
}

/// The number "14000" means no particular representative.
void fillSalesRep(Connection& connection, RowValues& header, const JobRow& job, Recordset& customer,
                  const SalesRepColumns& rep) {
  const Value number = jobOrCustomer(job, rep.jobField, customer, rep.column);
  header.set(rep.column, number);
  if (number.isNull()) return;
  const auto stored = connection.open(
      sql("Select * From Vertreter where VertreterNr = '"_sql, value(number.text()), "'"_sql));
  if (stored->eof())
    throw OrderFailure(Finding(Rule::OrderSalesRepRefused, number.text()).of(rep.jobField.text()));
  header.set(rep.column, stored->value("VertreterNr"));
  // The customer's share applies to the customer's representative; any other has a share of their own.
  const bool ofCustomer = equalCodes(number.text(), customer.text(rep.column));
  const Value share = ofCustomer ? customer.value(rep.share) : Value::null();
  const bool own = share.isNull() && stored->hasField("AnteilVertreter");
  header.set(rep.share, own ? stored->value("AnteilVertreter") : share);
}

struct BankData {
  std::string account, accountNumber, code, name;
  friend bool operator==(const BankData&, const BankData&) = default;
};

} // namespace

bool isDiversNumber(std::string_view customer) {
  const auto prefix = firstCharacters(customer, 5);
  return prefix == "14888" || prefix == "14999";
}

OrderHeader::OrderHeader(const RunContext& run)
    : environment_(run.environment), run_(run), masterData_(run.environment), addresses_(run.environment) {}

/// Every step by itself, since each may raise `OrderFailure`.
template <class Take>
void OrderHeader::forEachStep(RowValues& header, const JobRow& job, Recordset& customer,
                              const std::string& dateStamp, Take&& take) {
  take([&] { fillMasterData(header, job, customer); });
  for (const AddressFields& fields : jobAddresses) take([&] { fillAddress(header, job, customer, fields); });
  take([&] { fillFields(header, job, customer, {"Telefon", "Telefax", "Hauptkonto"}); });
  Connection& connection = *environment_.connection;
  for (const CodeColumn& code : codes) take([&] { fillCode(connection, header, job, customer, code); });
  for (const SalesRepColumns& rep : reps) take([&] { fillSalesRep(connection, header, job, customer, rep); });
  take([&] { fillFields(header, job, customer, {"Provisionsgruppe", "UstIdentNr"}); });
  take([&] { fillBank(header, job, customer); });
  take([&] { fillCurrency(header, customer); });
  take([&] { fillBookkeeping(header, job, dateStamp); });
  take([&] { fillClerk(header); });
}

void OrderHeader::fill(RowValues& header, const JobRow& job, Recordset& customer, const OrderNumber& number,
                       const std::string& dateStamp) {
  header.set("Auftragsnummer", Value(number.number));
  header.set("Buchungskreis", Value(number.circle));
  forEachStep(header, job, customer, dateStamp, [](const auto& step) { step(); });
}

void OrderHeader::foresee(RowValues& header, const JobRow& job, Recordset& customer) {
  forEachStep(header, job, customer, {}, [](const auto& step) {
    try {
      step();
    } catch (const OrderFailure&) {
      // Comes again when the order is written.
    }
  });
}

void OrderHeader::fillMasterData(RowValues& header, const JobRow& job, Recordset& customer) const {
  const std::string customerNumber = job.text("Kundennummer");
  const bool divers = isDiversNumber(customerNumber);
  const bool marked = divers || customer.value("KZDivers").truth().value_or(false);
  header.set("Kundennummer", Value(customerNumber));
  header.set("Suchbegriff", emptyToNull(divers ? job.value("Bez1") : customer.value("Suchbegriff")));
  header.set("Bez1", divers ? jobOrCustomer(job, customer, "Bez1") : emptyToNull(customer.value("Bez1")));
  header.set("KZDivers", Value(marked));
  header.set("KundeDivers", Value(marked));
  header.set("Preisliste", jobOrCustomer(job, customer, "Preisliste"));
  const Value priceType = jobOrCustomer(job, customer, "Preistyp");
  header.set("Preistyp", priceType.isNull() ? Value(std::int16_t{0}) : priceType);
  if (run_.orderOptions.costAssignment) {
    std::int32_t assigned = orderCost(job.value("KostID"));
    if (assigned == 0) assigned = orderCost(customer.value("KostID"));
    header.set("KostID", assigned == 0 ? Value::null() : Value(assigned));
  }
  for (const ColumnName column : customerColumns) header.set(column, emptyToNull(customer.value(column)));
  // A one-time customer is shared by many people: what earlier orders recorded belongs to someone else.
  for (const auto& [jobField, column] : stampedTexts) {
    const Value own = emptyToNull(job.value(jobField));
    if (divers || !own.isNull()) header.set(column, own);
  }
}

/// A block comes as a whole from one source: the job's own lines, the address that its key names, or the main
/// address. Mixing two addresses line by line would misdirect parcels. The key is only written with its own
/// address: one that names nothing, or a different address, is omitted.
void OrderHeader::fillAddress(RowValues& header, const JobRow& job, Recordset& customer,
                              const AddressFields& fields) {
  const auto ofJob = [&](ColumnName column) { return job.text(column); };
  std::string owner = job.text(fields.customer);
  const std::string number = job.text(fields.number);
  const bool keyGiven = !owner.empty() || !number.empty();
  if (owner.empty()) owner = job.text("Kundennummer");
  const Adresse none;
  Adresse block = addressOf(fields.lines, ofJob);
  bool keyFits = true;
  if (keyGiven) {
    const auto stored = addresses_.GetAdressDaten(owner, number);
    keyFits = stored.has_value();
    if (block == none && stored) {
      block = *stored;
      keyFits = block != none;
    }
  }
  if (block == none && isDiversNumber(job.text("Kundennummer"))) block = addressOf(mainAddress, ofJob);
  if (block == none) block = addressOf(mainAddress, [&](ColumnName column) { return customer.text(column); });
  header.set(fields.customer, keyFits ? Value(owner) : Value::null());
  header.set(fields.number, keyFits ? emptyToNull(Value(number)) : Value::null());
  for (const AddressLine& line : fields.lines) header.set(line.column, emptyToNull(Value(block.*line.part)));
}

std::string OrderHeader::requireShippingMethod(std::string_view code) const {
  return requireCode(*environment_.connection, shippingMethod, code);
}

/// Bank data are those of one account, the job's or the customer's, never a mixture. The bank's name is that
/// of its code if the code is known.
void OrderHeader::fillBank(RowValues& header, const JobRow& job, Recordset& customer) {
  BankData bank{job.text("Konto"), job.text("KontoNummer"), bankCode(fieldsOf(job)).text(),
                job.text("Kreditinstitut")};
  if (bank == BankData())
    bank = {customer.text("Konto"), customer.text("KontoNummer"), customer.text("Bankleitzahl"),
            customer.text("Kreditinstitut")};
  if (!bank.code.empty())
    if (std::string known = masterData_.GetBankverbindung(bank.code); !known.empty())
      bank.name = std::move(known);
  header.set("Konto", emptyToNull(Value(bank.account)));
  header.set("KontoNummer", emptyToNull(Value(bank.accountNumber)));
  header.set("Bankleitzahl", emptyToNull(Value(bank.code)));
  header.set("Kreditinstitut", emptyToNull(Value(bank.name)));
}

void OrderHeader::fillCurrency(RowValues& header, Recordset& customer) {
  std::string currency = customer.text("Währung");
  if (currency.empty()) currency = run_.homeCurrency;
  header.set("Währung", emptyToNull(Value(currency)));
  const auto rate = environment_.connection->open(
      sql("Select * From Währungen Where Währung = '"_sql, value(currency), "'"_sql));
  if (rate->eof()) return;
  if (rate->hasField("Wechselkurs")) header.set("Wechselkurs", rate->value("Wechselkurs"));
  if (rate->hasField("Kursbehandlung")) header.set("Kursbehandlung", rate->value("Kursbehandlung"));
}

void OrderHeader::fillBookkeeping(RowValues& header, const JobRow& job, const std::string& dateStamp) {
  header.set("Bemerkung", emptyToNull(job.value("Bemerkung")));
  header.set("Auftragsart", Value("AB"));
  header.set("Auftragsdatum", Value(dateStamp));
  header.set("Zustand", Value("0"));
  header.set("Import", Value(true));
  header.set("Betreff", emptyToNull(job.value("Betreff")));
  // Only some installations have the customer's own reference in their staging table.
  if (job.has("IhreBestellung")) header.set("IhreBestellung", emptyToNull(job.value("IhreBestellung")));
  header.set("PrgVersion", Value(run_.programVersion));
  header.set("ÄndUser", Value("Import"));
}

void OrderHeader::fillClerk(RowValues& header) {
  const auto person = environment_.connection->open(
      sql("Select * From Personalstamm where PersonalNr  = '"_sql, value(run_.personnelNumber), "'"_sql));
  if (person->eof()) return;
  header.set("UnsereZeichen", emptyToNull(person->value("Kurzzeichen")));
  std::string clerk;
  for (const ColumnName part :
       {ColumnName("Anrede"), ColumnName("Titel"), ColumnName("Vorname"), ColumnName("Nachname")}) {
    const std::string text = person->text(part);
    if (!clerk.empty() && !text.empty()) clerk += ' ';
    clerk += text;
  }
  header.set("Sachbearbeiter", emptyToNull(Value(clerk)));
}

} // namespace qx
