#include "erp/demo_staging.h"

#include "model/job_codes.h"

#include <initializer_list>
#include <string>
#include <vector>

namespace qx::erp::demo {
namespace {

struct OrderLine {
  std::string article;
  double quantity = 1;
  std::string unit = "ST";
  std::string longText = {};
  double price = 0;            ///< as shown in the shop; 0 for none
  std::int32_t costNumber = 0; ///< cost assignment; 0 for none
};

/// A price, and a quantity whose total, exceed every amount column.
constexpr double absurdPrice = 1e15;
constexpr double absurdQuantity = 9e14;

std::size_t indexOf(std::string_view customerNumber) {
  return static_cast<std::size_t>(std::stoi(std::string(customerNumber))) - 70001;
}

void addLines(Staging& staging, const std::vector<OrderLine>& lines) {
  std::size_t number = 0;
  for (const OrderLine& line : lines)
    staging.addPosition(qxtJobAuftragsPos, {{"Positionsnummer", std::to_string(++number)},
                                            {"Artikelnummer", line.article},
                                            {"Menge", line.quantity},
                                            {"Preis", line.price},
                                            {"KostID", line.costNumber},
                                            {"Mengeneinheit", line.unit},
                                            {"Artikellangtext", emptyToNull(Value(line.longText))},
                                            {"Auslieferungsmenge", line.quantity},
                                            {"Fakturiermenge", line.quantity},
                                            {"Lieferbereit", true},
                                            {"Fakturierbereit", true}});
}

void addOrder(Staging& staging, int daysAgo, std::size_t index, const std::vector<OrderLine>& lines,
              std::initializer_list<Cell> cells = {}, std::int16_t jobType = qxtJobAufträge) {
  staging.begin(jobType, daysAgo, {{"Betreff", "Webshop-Bestellung"}});
  staging.setCustomer(customer(index), false);
  staging.set(cells);
  staging.finish();
  addLines(staging, lines);
}

std::vector<OrderLine> usualLines(std::size_t seed) {
  constexpr std::size_t smallParts = 4; // the first products are sold by the dozen
  std::vector<OrderLine> lines;
  for (std::size_t i = 0; i <= seed % 4 + 1; ++i) {
    const std::size_t product = (seed + i * 3) % productCount;
    const std::size_t quantity = ((seed + i) % 9 + 1) * (product < smallParts ? 24 : 1);
    lines.push_back({articleNumber(product, (seed * 7 + i) % sizeCount), static_cast<double>(quantity)});
  }
  return lines;
}

/// The job itself has the name and address.
void addForOneTimeCustomer(Staging& staging, std::string_view number, std::size_t index,
                           std::initializer_list<Cell> cells) {
  staging.begin(qxtJobAufträge, 1, {});
  Customer passerBy = customer(index);
  passerBy.number = number;
  staging.setCustomer(passerBy, false);
  staging.set(cells);
  staging.finish();
  addLines(staging, usualLines(9));
}

void stageWrittenOrders(Staging& staging) {
  for (std::size_t i = 0; i < 12; ++i)
    addOrder(staging, static_cast<int>(11 - i % 11), 100 + i * 7, usualLines(i));
  addOrder(staging, 3, customerCount, usualLines(20), {{"Bemerkung", "Erster Auftrag eines neuen Kunden"}});
  addOrder(staging, 3, 0,
           {{articleNumber(0, 0), 250}, {articleNumber(1, 4), 2, "PK"}, {articleNumber(2, 4), 1, "KT"}});
  // The shop showed another price than the price list has.
  addOrder(staging, 2, 1,
           {{articleNumber(5, 3), 4, "ST", "", 24.9}, {std::string(serviceArticle), 1.5, "Std"}});
  addOrder(staging, 2, 2,
           {{articleNumber(6, 2), 1, "Stck", "Bitte ohne Heft liefern.\r\nHefte sind vorhanden."}});
  addOrder(staging, 2, indexOf(unionCustomer), usualLines(5));
  addOrder(staging, 1, 5, {{std::string(accessoryArticle), 3}, {articleNumber(8, 0), 10}});
  addOrder(staging, 1, 10, usualLines(6),
           {{"VS_KdNr", customer(10).number}, {"VS_AdrNr", "1"}, {"Liefertermin", staging.day(-21)}});
  addOrder(staging, 1, 90, {{articleNumber(4, 1), -1}}, {{"Betreff", "Rückgabe"}});
  addForOneTimeCustomer(staging, collectiveCustomer, customerCount + 40, {{"Betreff", "Barverkauf"}});
  addForOneTimeCustomer(staging, groupCustomer, customerCount + 41,
                        {{"IndFild1", "ZB"}, {"Vertreter1", "101"}});
  // Heavy, and paid to the carrier. Passes every check.
  addOrder(
      staging, 1, 45,
      {{articleNumber(5, 19), 12, "ST", "", 36.8, 1}, {std::string(accessoryArticle), 3, "ST", "", 12.5, 1}},
      {{"Zahlungsart", "NN"}});
  // These marks have a meaning in customer-specific mode only.
  addOrder(staging, 1, 93, usualLines(1), {{"IndFild1", "ZB"}, {"IndFild3", "ZA"}, {"IndFild4", "MK"}});
}

/// Parked as warnings or errors when the checks are on.
void stageParkedOrders(Staging& staging) {
  addOrder(staging, 6, 80, {{articleNumber(7, 0), 5000}});
  addOrder(staging, 6, 81, {{std::string(unpricedArticle), 1}});
  addOrder(staging, 6, 82, usualLines(3), {{"Versandart", "DROHNE"}, {"Vertreter1", "999"}});
  addOrder(staging, 5, indexOf(warnedCustomer), usualLines(4));
  addOrder(staging, 5, indexOf(overdrawnCustomer), usualLines(4));
  addOrder(staging, 5, 83, {{"GIBT-ES-NICHT", 1}});
  addOrder(staging, 4, 84, {{std::string(wrongPriceArticle), 1}});
  addOrder(staging, 4, 85, {});
  addOrder(staging, 4, 86, usualLines(2), {{"VS_KdNr", "79997"}, {"VS_AdrNr", "7"}});
  addOrder(staging, 4, 94, usualLines(2), {{"RG_KdNr", "79996"}, {"Hauptkonto", "79999"}});
  addOrder(staging, 4, 95, usualLines(2), {{"Zahlungsart", "MUSCHELN"}, {"BLZ", "99900098"}});
  addOrder(staging, 4, 96, usualLines(2), {{"ZahlungsbedSchl", "99"}});
  addOrder(staging, 3, customerCount + 60, usualLines(2));
}

/// These pass the check but fail when written.
void stageFailingOrders(Staging& staging) {
  addOrder(staging, 3, 87, {{std::string(blockedArticle), 1}});
  addOrder(staging, 3, indexOf(blockedCustomer), usualLines(1));
  addOrder(staging, 2, 88, usualLines(1), {{"Eingangsdatum", "demnächst"}});
  addOrder(staging, 2, 97, usualLines(1), {{"Vertreter2", "998"}});
  addOrder(staging, 2, indexOf(untaxedCustomer), usualLines(1));
  addOrder(staging, 2, 98, {{std::string(serviceArticle), absurdQuantity, "Std"}});
  addForOneTimeCustomer(staging, groupCustomer, customerCount + 42,
                        {{"IndFild1", "ZB"}, {"Vertreter1", "102"}});
}

void stageReleasedOrders(Staging& staging) {
  const Cell released{"ProcessWarning", 1};
  addOrder(staging, 9, 89, {{articleNumber(7, 1), 4000}},
           {released, {"Fehlertext", "Beim Verarbeiten wurden Warnungen festgestellt.\r\nLagerbestand\r\n"}},
           qxtJobAufträgeWarning);
  addOrder(staging, 9, 91, usualLines(8), {released, {"Versandart", "DROHNE"}}, qxtJobAufträgeWarning);
  addOrder(staging, 9, 99, {{std::string(unpricedArticle), 1, "ST", "", absurdPrice}}, {released},
           qxtJobAufträgeWarning);
  addOrder(staging, 13, 92, usualLines(7), {{"Bemerkung", " Auftrag: 199999"}, {"Erledigt", true}},
           qxtJobAufträgeDone);
}

} // namespace

void stageOrders(Staging& staging) {
  stageWrittenOrders(staging);
  stageParkedOrders(staging);
  stageFailingOrders(staging);
  stageReleasedOrders(staging);
}

} // namespace qx::erp::demo
