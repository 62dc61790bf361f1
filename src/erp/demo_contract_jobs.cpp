#include "erp/demo_staging.h"

#include "model/job_codes.h"

#include <initializer_list>
#include <string>

namespace qx::erp::demo {
namespace {

struct ContractLine {
  std::string_view number;
  std::string_view kind;
  std::string_view object;
  double price = 0;
};

void addContract(Staging& staging, std::int16_t jobType, int daysAgo, std::size_t index,
                 const ContractLine& line, std::initializer_list<Cell> cells = {}) {
  staging.begin(jobType, daysAgo,
                {{"Kundennummer", customer(index).number},
                 {"Bez1", customer(index).name},
                 {"Betreff", "Vertrag " + std::string(line.number)},
                 {"Vertragsnummer", line.number},
                 {"Vertragsart", line.kind},
                 {"Artikelnummer", line.object},
                 {"Vertragsdatum", staging.day(10)},
                 {"Vertragsbeginn", staging.day(-7)},
                 {"Intervall", 12},
                 {"Menge", 1.0},
                 {"Preis", line.price},
                 {"Zustand", "A"}});
  staging.set(cells);
  staging.finish();
}

void stageWrittenContracts(Staging& staging) {
  addContract(staging, qxtjobverträge, 7, 70, {"V20001", "WV", "W-PRESSE", 52.9});
  addContract(staging, qxtjobverträge, 7, 0, {"V01000", "WV", "W-PRESSE", 54.9},
              {{"Bemerkung", "Preisanpassung eines bestehenden Vertrags"}});
  addContract(staging, qxtjobverträge, 6, 71, {"V20002", "MV", "M-REGAL", 12},
              {{"Vertragsende", staging.day(-737)}, {"Vertragsbeginn", "12:00:00 AM"}});
  // A contract that has ended needs neither kind nor object.
  addContract(staging, qxtjobverträge, 6, 72, {"V20003", "XX", "ALTGERAET", 0},
              {{"Zustand", "E"}, {"GekuendigtAm", staging.day(25)}, {"Kündigungsgrund", "Geschäftsaufgabe"}});
  addContract(staging, qxtjobkundenverträge, 5, customerCount, {"V20004", "MV", "M-WASCH", 35});
  // The check complains about these; the run writes them unchanged.
  addContract(staging, qxtjobverträge, 5, 66, {"V20013", "WV", "W-SAEGE", 29.5}, {{"Zustand", "Q"}});
  addContract(staging, qxtjobverträge, 5, 67, {"V20014", "WV", "W-SAEGE", 29.5}, {{"Vertragsdatum", ""}});
  addContract(staging, qxtjobkundenverträge, 5, 68, {"V20015", "MV", "M-REGAL", 12}, {{"Menge", 0.0}});

  // The values of this one are in its position.
  staging.add(qxtjobverträge, 5,
              {{"Kundennummer", customer(73).number},
               {"Bez1", customer(73).name},
               {"Betreff", "Vertrag V20005"},
               {"Vertragsnummer", "V20005"},
               {"Vertragsdatum", staging.day(10)},
               {"Vertragsbeginn", staging.day(-7)}});
  staging.addPosition(qxtJobTypeSubItem, {{"Positionsnummer", "1"},
                                          {"Vertragsart", "WV"},
                                          {"Artikelnummer", "W-SAEGE"},
                                          {"Menge", 2.0},
                                          {"Preis", 29.5}});
}

void stageFailingContracts(Staging& staging) {
  addContract(staging, qxtjobverträge, 4, 74, {"V20006", "XX", "W-PRESSE", 50});
  addContract(staging, qxtjobverträge, 4, 75, {"V20007", "MV", "W-PRESSE", 50});
  addContract(staging, qxtjobverträge, 4, 76, {"V20008", "WV", "W-KRAN", 50});
  addContract(staging, qxtjobverträge, 3, customerCount + 50, {"V20009", "WV", "W-PRESSE", 50});
  addContract(staging, qxtjobkundenverträge, 3, 77, {"V20010", "MV", "M-UNBEKANNT", 5});
}

void stageEarlierContracts(Staging& staging) {
  addContract(staging, qxtJobVerträgeWarning, 13, 78, {"V20011", "WV", "W-SAEGE", 0},
              {{"Menge", 0.0}, {"Fehlertext", "Menge ist faslch"}, {"ProcessWarning", 1}});
  addContract(staging, qxtJobVerträgeDone, 14, 79, {"V20012", "WV", "W-SAEGE", 29.5});
}

} // namespace

void stageContracts(Staging& staging) {
  stageWrittenContracts(staging);
  stageFailingContracts(staging);
  stageEarlierContracts(staging);
}

} // namespace qx::erp::demo
