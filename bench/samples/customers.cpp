#include "samples/customers.h"

#include "samples/parts.h"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace qx::bench {
namespace {

constexpr std::array<std::string_view, 8> firms{"Bäckerei",   "Gärtnerei", "Schlosserei", "Druckerei",
                                                "Tischlerei", "Spedition", "Brauerei",    "Weberei"};
constexpr std::array<std::string_view, 8> families{"Müller", "Schröder", "Weiß",   "Krüger",
                                                   "Hübner", "Jäger",    "Lorenz", "Albrecht"};
constexpr std::array<std::string_view, 6> streets{"Hauptstraße", "Am Markt",    "Lindenweg",
                                                  "Bahnhofstr.", "Mühlengasse", "Ringallee"};
constexpr std::array<std::string_view, 6> towns{"Lübeck", "Görlitz", "Celle", "Fürth", "Soest", "Aalen"};

template <class List>
std::string pick(const List& list, unsigned i) {
  return std::string(list[i % list.size()]);
}

SampleField empty(std::string_view name) { return {name, name, {}}; }

void appendPerson(SampleJob& job, unsigned i) {
  job.push_back({"Suchbegriff", "Suchbegriff", pick(families, i / 8) + " " + pick(towns, i)});
  job.push_back({"Bez1", "Bez1", customerName(i)});
  job.push_back({"Bez2", "Bez2", "Inhaber " + pick(families, i / 5)});
  job.push_back(empty("Bez3"));
  job.push_back({"Strasse", "Strasse", pick(streets, i) + formatted(" %u", i % 199 + 1)});
  job.push_back({"Land", "Land", "D"});
  job.push_back({"PLZ", "PLZ", formatted("%05u", 10000 + i * 37 % 89999)});
  job.push_back({"Ort", "Ort", pick(towns, i)});
  job.push_back({"Telefon", "Telefon", formatted("0451 %06u", i % 1000000)});
  job.push_back({"Telefax", "Telefax", formatted("0451 %06u", (i + 1) % 1000000)});
  job.push_back({"EMail", "EMail", formatted("post%u@example.org", i)});
}

void appendCodes(SampleJob& job, unsigned i) {
  job.push_back({"Kundengruppe", "Kundengruppe", groupCode(i)});
  job.push_back({"Vertreter1", "Vertreter1", repCode(i)});
  job.push_back({"Vertreter2", "Vertreter2", i % 4 == 0 ? repCode(i + 7) : std::string()});
  job.push_back(empty("Vertreter3"));
  job.push_back({"Zahlungsart", "Zahlungsart", paymentCode(i)});
  job.push_back({"Konto", "Konto", formatted("%010u", i * 31 % 1000000000)});
  job.push_back({"BLZ", "BLZ", bankCode(i)});
  job.push_back({"Kreditinstitut", "Kreditinstitut", "Bank " + bankCode(i)});
  for (const std::string_view name : {"Bemerkung", "Vertragsnummer", "Zahlungsweise"})
    job.push_back(empty(name));
  job.push_back({"Währung", "Währung", "EUR"});
  for (const std::string_view name : {"WährungEingabe", "Fehlertext", "Betreff"}) job.push_back(empty(name));
  job.push_back({"Versandart", "Versandart", shippingCode(i)});
  for (const std::string_view name :
       {"ZahlungsbedSchl", "Provisionsgruppe", "UstIdentNr", "IndFild1", "IndFild2", "IndFild3", "IndFild4"})
    job.push_back(empty(name));
}

void appendAddresses(SampleJob& job, unsigned i) {
  const bool shipped = i % 3 == 0;
  const auto given = [&](std::string_view property, std::string_view column, const std::string& value) {
    job.push_back({property, column, shipped ? value : std::string()});
  };
  job.push_back(empty("VS_KdNr"));
  given("VS_AdrNr", "VS_AdrNr", "1");
  for (const std::string_view name : {"RG_KdNr", "RG_AdrNr", "Hauptkonto"}) job.push_back(empty(name));
  given("VS_Bez1", "VS_Bez1", "Lager " + pick(families, i / 8));
  for (const std::string_view name : {"VS_Bez2", "VS_Bez3"}) job.push_back(empty(name));
  given("VS_Strasse", "VS_Straße", pick(streets, i + 1) + formatted(" %u", i % 99 + 1));
  given("VS_Land", "VS_Land", "D");
  given("VS_PLZ", "VS_PLZ", formatted("%05u", 10000 + i * 41 % 89999));
  given("VS_Ort", "VS_Ort", pick(towns, i + 1));
  for (const std::string_view name : {"RG_Bez1", "RG_Bez2", "RG_Bez3"}) job.push_back(empty(name));
  job.push_back({"RG_Strasse", "RG_Straße", {}});
  for (const std::string_view name : {"RG_Land", "RG_PLZ", "RG_Ort"}) job.push_back(empty(name));
}

} // namespace

std::string customerNumber(std::uint32_t number, Numbering numbering) {
  // An odd factor only reorders the numbers of 24 bits.
  const std::uint32_t factor = numbering == Numbering::Scattered ? 10368889U : 1U;
  return std::to_string(20000000U + (number * factor) % (1U << 24U));
}

std::string customerName(std::uint32_t number) {
  return pick(firms, number) + " " + pick(families, number / 8);
}

SampleJob sampleCustomer(std::uint32_t number, Numbering numbering) {
  constexpr std::size_t fieldCount = 64;
  SampleJob job;
  job.reserve(fieldCount);
  job.push_back({"JobID", "JobID", sampleKey(number)});
  job.push_back({"JobType", "JobType", "10", true});
  job.push_back({"Status", "Status", "10", true});
  job.push_back({"Eingangsdatum", "Eingangsdatum", dayIn2026(number)});
  job.push_back({"Kundennummer", "Kundennummer", customerNumber(number, numbering)});
  appendPerson(job, number);
  appendCodes(job, number);
  appendAddresses(job, number);
  job.push_back(empty("Preisliste"));
  job.push_back({"Preistyp", "Preistyp", "0", true});
  for (const std::string_view name : {"KundeSeit", "KundeVerlorenAm", "GrundVerloren", "GrundVerlorenSchl"})
    job.push_back(empty(name));
  return job;
}

const std::string& valueOf(const SampleJob& job, std::string_view column) {
  const auto found = std::ranges::find(job, column, &SampleField::column);
  if (found == job.end()) throw std::out_of_range("the sample job has no column " + std::string(column));
  return found->value;
}

std::vector<SampleCode> sampleCodes() {
  std::vector<SampleCode> codes;
  const auto add = [&](int count, std::string (*code)(unsigned), std::string_view table,
                       std::string_view column, std::string_view textColumn) {
    for (int i = 0; i < count; ++i) {
      const std::string value = code(static_cast<unsigned>(i));
      codes.push_back({table, column, textColumn, value, std::string(column) + " " + value});
    }
  };
  add(groups, groupCode, "Kundengruppen", "Kundengruppe", "Langtext");
  add(reps, repCode, "Vertreter", "VertreterNr", "Bez1");
  add(payments, paymentCode, "Zahlungsarten", "Zahlungsart", "Kurztext");
  add(banks, bankCode, "Kreditinstitute", "Bankleitzahl", "Kreditinstitut");
  add(shippings, shippingCode, "Versandtexte", "Versandart", "Kurztext");
  codes.push_back({"Währungen", "Währung", "Langtext", "EUR", "Euro"});
  return codes;
}

} // namespace qx::bench
