#include "samples/contracts.h"

#include "samples/parts.h"

namespace qx::bench {

std::string contractKind(unsigned i) { return formatted("K%u", i % contractKinds + 1); }
std::string contractObject(unsigned i) { return formatted("M%04u", i % contractObjects + 1); }
std::string contractNumber(std::uint32_t number) { return formatted("V%08u", number); }

SampleJob sampleContract(std::uint32_t number) {
  return {{"JobID", "JobID", sampleKey(number, 1)},
          {"JobType", "JobType", "40", true},
          {"Eingangsdatum", "Eingangsdatum", dayIn2026(number)},
          {"Kundennummer", "Kundennummer", customerNumber(number)},
          {"Vertragsnummer", "Vertragsnummer", contractNumber(number)},
          {"Vertragsdatum", "Vertragsdatum", dayIn2026(number + 5)},
          {"Vertragsbeginn", "Vertragsbeginn", dayIn2026(number + 9)},
          {"Vertragsart", "Vertragsart", contractKind(number)},
          {"Artikelnummer", "Artikelnummer", contractObject(number)},
          {"Intervall", "Intervall", "12", true},
          {"Menge", "Menge", std::to_string(number % 9 + 1), true},
          {"Preis", "Preis", std::to_string(number % 900 + 20) + ".5", true},
          {"Bemerkung", "Bemerkung", "Wartung " + formatted("%u", number)}};
}

} // namespace qx::bench
