#include "erp/demo_staging.h"

#include "model/job_codes.h"

#include <initializer_list>
#include <string>

namespace qx::erp::demo {
namespace {

constexpr std::size_t newCustomer(std::size_t nth) { return customerCount + nth; }

void addCustomer(Staging& staging, int daysAgo, std::size_t index, std::initializer_list<Cell> cells,
                 std::int16_t jobType = qxtjobkunden) {
  staging.begin(jobType, daysAgo, {{"Betreff", "Kundenmeldung"}});
  staging.setCustomer(customer(index), true);
  staging.set(cells);
  staging.finish();
}

/// Written at once: new customers and customers with changed contact data.
void stageClean(Staging& staging) {
  for (std::size_t i = 0; i < 6; ++i)
    addCustomer(staging, static_cast<int>(12 - i), newCustomer(i),
                {{"KundeSeit", staging.day(12)}, {"Bemerkung", "Über den Webshop angemeldet"}});
  for (std::size_t i = 0; i < 5; ++i)
    addCustomer(staging, static_cast<int>(9 - i), 50 + i,
                {{"Telefax", "00000/99" + std::to_string(i)}, {"Bemerkung", "Neue Faxnummer"}});
  addCustomer(staging, 6, newCustomer(6),
              {{"VS_AdrNr", "1"},
               {"VS_Bez1", "Wareneingang"},
               {"VS_Straße", "Rampe 3"},
               {"VS_Land", "DE"},
               {"VS_PLZ", "00117"},
               {"VS_Ort", "Hohenlauter"}});
  // The same customer twice: created by the first job, changed by the second.
  addCustomer(staging, 5, newCustomer(7), {});
  addCustomer(staging, 4, newCustomer(7), {{"Telefon", "00000/771100"}});
}

/// Parked by the check: an unknown code, a different address, a missing main account.
void stageWarnings(Staging& staging) {
  addCustomer(staging, 8, newCustomer(10), {{"Kundengruppe", "NEU"}});
  addCustomer(staging, 8, newCustomer(11), {{"Vertreter1", "999"}, {"Versandart", "DROHNE"}});
  addCustomer(staging, 7, 60, {{"Strasse", "Umzugsweg 7"}, {"PLZ", "00133"}, {"Ort", "Lindenfurt"}});
  addCustomer(staging, 7, 61, {{"Hauptkonto", "79999"}});
}

/// Not written: dangling references, an invalid date, no customer number, a contract in error.
void stageErrors(Staging& staging) {
  addCustomer(staging, 6, 62, {{"VS_KdNr", "79998"}});
  addCustomer(staging, 6, newCustomer(12), {{"Eingangsdatum", "31.02.2025"}});
  addCustomer(staging, 5, newCustomer(13), {{"Währung", "XXX"}});
  addCustomer(staging, 5, newCustomer(14), {{"Kundennummer", ""}});
  addCustomer(staging, 4, 63, {});
  staging.add(qxtJobKundenVerträgeError, 4,
              {{"Kundennummer", customer(63).number},
               {"Bez1", customer(63).name},
               {"Vertragsnummer", "V90001"},
               {"Vertragsart", "XX"},
               {"Artikelnummer", "W-PRESSE"},
               {"Fehlertext", "Die Vertragsart: 'XX' wurde noch nicht angelegt."}});
}

/// Released by the clerk, so that the next run writes them without a check: it creates groups and banks, but
/// no reps and payment methods.
void stageReleasedCustomers(Staging& staging) {
  const Cell released{"ProcessWarning", 1};
  const Cell warned{"Fehlertext", "Beim Verarbeiten wurden Warnungen festgestellt."};
  addCustomer(staging, 10, newCustomer(20), {released, warned, {"Kundengruppe", "START"}},
              qxtJobKundenWarning);
  addCustomer(staging, 10, newCustomer(21),
              {released, warned, {"BLZ", "99900099"}, {"Kreditinstitut", "Musterbank Übersee"}},
              qxtJobKundenWarning);
  addCustomer(staging, 9, newCustomer(22), {released, warned, {"Vertreter1", "998"}}, qxtJobKundenWarning);
  addCustomer(staging, 9, newCustomer(23),
              {released, warned, {"Vertreter1", "997"}, {"Vertreter2", "996"}, {"Zahlungsart", "MUSCHELN"}},
              qxtJobKundenError);
  addCustomer(staging, 8, 64, {released, {"Strasse", "Neue Straße 12"}}, qxtJobKundenError);
}

/// Left by earlier runs: not processed until released.
void stageEarlierCustomers(Staging& staging) {
  addCustomer(
      staging, 14, newCustomer(30),
      {{"Fehlertext", "Beim Verarbeiten wurden Warnungen festgestellt.\r\nKundengruppe: 'ALT' ist nicht "
                      "angelegt.\r\n"},
       {"Kundengruppe", "ALT"}},
      qxtJobKundenWarning);
  addCustomer(
      staging, 14, newCustomer(31),
      {{"Fehlertext", "Der Vertreter: '995' wurde noch nicht angelegt.\r\nUm automatisch den Vertreter "
                      "anzulegen, stellen Sie dies bitte in den Optionen ein."},
       {"Vertreter1", "995"}},
      qxtJobKundenError);
  addCustomer(staging, 14, 65, {}, qxtJobKundenDone);
}

} // namespace

void stageCustomers(Staging& staging) {
  stageClean(staging);
  stageWarnings(staging);
  stageErrors(staging);
  stageReleasedCustomers(staging);
  stageEarlierCustomers(staging);
}

} // namespace qx::erp::demo
