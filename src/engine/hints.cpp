#include "engine/hints.h"

#include "model/text.h"
#include "platform/sql.h"
#include "rules/address_fields.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

// The tax marks of domestic customers and of those in the EU.
constexpr std::string_view domesticMark = "IN";
constexpr std::string_view unionMark = "EU";

/// The spellings of the home country in addresses.
constexpr std::array<std::string_view, 5> homeCountries{"D", "DE", "DEU", "Deutschland", "Germany"};

/// A field of a customer job that is not written to the master, and the column with a similar meaning.
struct UnwrittenField {
  ColumnName field;
  ColumnName like; ///< "" for none
};
constexpr std::array unwrittenFields{UnwrittenField{"Währung", "Währung"},
                                     UnwrittenField{"WährungEingabe", "Währung"},
                                     UnwrittenField{"ZahlungsbedSchl", "ZahlungsbedSchl"},
                                     UnwrittenField{"Zahlungsweise", ""},
                                     UnwrittenField{"Provisionsgruppe", "Provisionsgruppe"},
                                     UnwrittenField{"Kreditinstitut", "Kreditinstitut"},
                                     UnwrittenField{"IndFild1", "Ind_Text1"},
                                     UnwrittenField{"IndFild2", "Ind_Text2"},
                                     UnwrittenField{"IndFild3", "Ind_Text3"},
                                     UnwrittenField{"IndFild4", "Ind_Text4"}};

const Value& masterValue(Recordset* master, ColumnName column) {
  static const Value none;
  return master != nullptr && master->hasField(column) ? master->value(column) : none;
}

std::string masterText(Recordset* master, ColumnName column) { return masterValue(master, column).text(); }

void addToList(std::string& list, std::string_view field, std::string_view content) {
  list += (list.empty() ? "" : ", ") + std::string(field) + " '" + std::string(content) + "'";
}

/// Whether the value is empty or 0.
bool holdsNothing(const Value& value) {
  return value.isEmpty() || (value.kind() != ValueKind::Text && value.number() == 0.0);
}

void addEmptiedFields(const JobFields& job, Recordset& master, Findings& hints) {
  std::string list;
  for (const CustomerColumn& field : writtenCustomerColumns()) {
    const Value& before = masterValue(&master, field.column);
    if (holdsNothing(before)) continue;
    const auto written = writtenBy(job, field, false);
    if (written && holdsNothing(*written)) addToList(list, field.column.text(), before.text());
  }
  if (!list.empty()) hints.add(Finding(Rule::CustomerEmptied, list));
}

void addUnwrittenFields(const JobFields& job, Recordset* master, std::string_view homeCurrency,
                        Findings& hints) {
  std::string list;
  for (const UnwrittenField& unwritten : unwrittenFields) {
    const std::string given = job(unwritten.field).text();
    if (given.empty()) continue;
    // With a bank code the bank's name comes from the list of banks.
    if (unwritten.field == ColumnName("Kreditinstitut") && !bankCode(job).isEmpty()) continue;
    std::string stored = masterText(master, unwritten.like);
    if (stored.empty() && unwritten.like == ColumnName("Währung")) stored = homeCurrency;
    if (!equalCodes(given, stored)) addToList(list, unwritten.field.text(), given);
  }
  if (!list.empty()) hints.add(Finding(Rule::CustomerUnwritten, list));
}

void addUnwrittenAddresses(const JobFields& job, Findings& hints) {
  for (const AddressFields& address : jobAddresses)
    if (job(address.number).isEmpty() && std::ranges::any_of(address.lines, [&](const AddressLine& line) {
          return !job(line.column).isEmpty();
        }))
      hints.add(Finding(Rule::CustomerAddressUnstored, address.name).of(address.number.text()));
}

void addTaxHints(std::string_view mark, std::string_view taxId, bool grossPrices, Findings& hints) {
  if (mark.empty() || equalCodes(mark, domesticMark)) return;
  if (equalCodes(mark, unionMark) && taxId.empty()) hints.add(Finding(Rule::TaxIdMissing, mark));
  if (grossPrices) hints.add(Finding(Rule::GrossPricesAbroad, mark));
}

bool isGross(const Value& priceType) { return priceType.integer() == std::int64_t{1}; }

/// Whether amounts in the currency can be compared with others.
bool hasRate(std::string_view currency, Connection& connection) {
  const auto rows =
      connection.open(sql("Select * From Währungen Where Währung = '"_sql, value(currency), "'"_sql));
  return !rows->eof() && rows->hasField("Wechselkurs") && rows->value("Wechselkurs").number().value_or(0) > 0;
}

} // namespace

Findings customerHints(const JobFields& job, Recordset* master, std::string_view homeCurrency) {
  Findings hints;
  if (master != nullptr) addEmptiedFields(job, *master, hints);
  addUnwrittenFields(job, master, homeCurrency, hints);
  addUnwrittenAddresses(job, hints);
  if (master == nullptr) {
    const std::string country = job("Land").text();
    const auto isHome = [&](std::string_view home) { return equalCodes(country, home); };
    if (!country.empty() && std::ranges::none_of(homeCountries, isHome))
      hints.add(Finding(Rule::CustomerAbroad, country, domesticMark));
    return hints;
  }
  // The value of the master after the job is written.
  const auto afterwards = [&](const CustomerColumn& field) {
    return writtenBy(job, field, false).value_or(masterValue(master, field.column));
  };
  addTaxHints(masterText(master, "MwSt_KZ"), afterwards(CustomerColumn("UstIdentNr")).text(),
              isGross(afterwards(CustomerColumn("Preistyp"))), hints);
  return hints;
}

Findings orderHints(const JobFields& job, Recordset& customer, Connection& connection,
                    std::string_view homeCurrency) {
  Findings hints;
  std::string currency = masterText(&customer, "Währung");
  if (currency.empty()) currency = homeCurrency;
  if (const std::string own = job("Währung").text(); !own.empty() && !equalCodes(own, currency))
    hints.add(Finding(Rule::OrderCurrency, own, currency));
  if (!equalCodes(currency, homeCurrency) && !hasRate(currency, connection))
    hints.add(Finding(Rule::OrderExchangeRate, "", currency));
  const auto jobOrMaster = [&](ColumnName column) {
    const Value own = job(column);
    return own.isEmpty() ? masterValue(&customer, column) : own;
  };
  addTaxHints(masterText(&customer, "MwSt_KZ"), jobOrMaster("UstIdentNr").text(),
              isGross(jobOrMaster("Preistyp")), hints);
  return hints;
}

Findings jobHints(Connection& connection, std::int16_t kind, const JobFields& job,
                  std::string_view homeCurrency) {
  const std::string number = job("Kundennummer").text();
  if (number.empty() || (kind != qxtjobkunden && kind != qxtJobAufträge)) return {};
  const auto customer =
      connection.open(sql("Select * From Kundenstamm Where Kundennummer = '"_sql, value(number), "'"_sql));
  const bool known = !customer->eof();
  if (kind == qxtjobkunden) return customerHints(job, known ? customer.get() : nullptr, homeCurrency);
  return known ? orderHints(job, *customer, connection, homeCurrency) : Findings();
}

} // namespace qx
