#include "samples/orders.h"

#include "samples/parts.h"

namespace qx::bench {
namespace {

SampleField text(std::string_view name, std::string value = {}) { return {name, name, std::move(value)}; }
SampleField number(std::string_view name, std::string value) { return {name, name, std::move(value), true}; }

std::string articleNumber(std::uint32_t i) { return formatted("A%04u", i % articleCount); }

int articleCents(std::uint32_t i) { return static_cast<int>(100 + i * 37 % 9000); }
int centsFromTen(int cents) { return cents * 9 / 10; }

std::string amount(int cents) {
  return std::to_string(cents / 100) + "." + std::to_string(cents / 10 % 10) + std::to_string(cents % 10);
}

void appendEmpty(SampleJob& job, std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) job.push_back(text(name));
}

SampleJob headOf(std::uint32_t i, std::uint32_t customers) {
  constexpr std::uint32_t spread = 7919;
  const std::uint32_t customer = i * spread % customers;
  SampleJob job{text("JobID", sampleKey(i, 2)),
                number("JobType", "30"),
                number("Status", "10"),
                text("Eingangsdatum", dayIn2026(i)),
                text("Kundennummer", customerNumber(customer)),
                text("Suchbegriff"),
                text("Bez1", customerName(customer))};
  appendEmpty(
      job, {"Bez2", "Bez3", "Strasse", "Land", "PLZ", "Ort", "Telefon", "Telefax", "EMail", "Kundengruppe"});
  job.push_back(text("Vertreter1", repCode(i)));
  appendEmpty(job, {"Vertreter2", "Vertreter3"});
  job.push_back(text("Zahlungsart", paymentCode(i)));
  job.push_back(text("Konto", formatted("%010u", i * 31 % 1000000000)));
  job.push_back(text("BLZ", bankCode(i)));
  appendEmpty(job, {"Kreditinstitut", "Bemerkung", "Vertragsnummer", "Zahlungsweise", "Währung",
                    "WährungEingabe", "Fehlertext"});
  job.push_back(text("Betreff", formatted("Bestellung %u", i)));
  job.push_back(text("Versandart", shippingCode(i)));
  appendEmpty(job, {"ZahlungsbedSchl", "Provisionsgruppe", "UstIdentNr", "VS_KdNr", "VS_AdrNr", "RG_KdNr",
                    "RG_AdrNr", "Hauptkonto", "VS_Bez1", "VS_Bez2", "VS_Bez3"});
  job.push_back({"VS_Strasse", "VS_Straße", {}});
  appendEmpty(job, {"VS_Land", "VS_PLZ", "VS_Ort", "RG_Bez1", "RG_Bez2", "RG_Bez3"});
  job.push_back({"RG_Strasse", "RG_Straße", {}});
  appendEmpty(job, {"RG_Land", "RG_PLZ", "RG_Ort", "IndFild1", "IndFild2", "IndFild3"});
  job.push_back(text("Liefertermin", dayIn2026(i + 14)));
  job.push_back(number("KostID", "0"));
  return job;
}

SampleJob positionOf(std::uint32_t order, int place) {
  const std::uint32_t i = order * positionsAnOrder + static_cast<std::uint32_t>(place);
  const std::uint32_t article = i * 13 % articleCount;
  const std::uint32_t quantity = i % 15 + 1;
  // The price that the ERP finds: another one would be told in the protocol.
  const int cents = quantity < 10 ? articleCents(article) : centsFromTen(articleCents(article));
  return {text("JobID", sampleKey(order, 2)),
          text("ChildID", sampleKey(i, 3)),
          number("JobType", "50"),
          number("Positionsnummer", std::to_string(place + 1)),
          text("Artikelnummer", articleNumber(article)),
          number("Menge", std::to_string(quantity)),
          number("Preis", amount(cents)),
          text("Artikellangtext"),
          number("Auslieferungsmenge", "0"),
          number("Fakturiermenge", "0"),
          text("Mengeneinheit", i % 2 == 0 ? "ST" : ""),
          text("Liefertermin"),
          number("KostID", "0"),
          number("Rabatt", "0"),
          number("Preiseinheit", "0")};
}

} // namespace

SampleOrder sampleOrder(std::uint32_t number, std::uint32_t customers) {
  SampleOrder order{headOf(number, customers), {}};
  order.positions.reserve(positionsAnOrder);
  for (int place = 0; place < positionsAnOrder; ++place) order.positions.push_back(positionOf(number, place));
  return order;
}

SampleArticle sampleArticle(std::uint32_t number) {
  SampleArticle article;
  article.number = articleNumber(number);
  article.text = formatted("Klemmleiste, Größe %u", number);
  article.taxMark = number % 4 == 0 ? "E" : "V";
  if (number % 2 == 0) article.supplier = formatted("L%02u", number / 2 % 40);
  article.weight = (number % 8 + 1) * 0.25;
  article.cents = articleCents(number);
  article.centsFromTen = centsFromTen(article.cents);
  article.purchaseCents = article.cents / 2;
  return article;
}

} // namespace qx::bench
