// A small company to take orders with: one customer, its codes, a few articles and their prices.
#pragma once

#include "engine_fixture.h"

#include "erp/table_filler.h"

#include <string>

namespace qx {

class OrderTest : public EngineTest {
protected:
  OrderTest() {
    WorkUnit unit(connection());
    fillCodes();
    fillArticles();
    fillPrices();
    add("Kundenstamm", {{"Kundennummer", "20001"},
                        {"Suchbegriff", "HAFENBAU"},
                        {"Bez1", "Hafenbau GmbH"},
                        {"Strasse", "Am Kai 1"},
                        {"Land", "DE"},
                        {"PLZ", "20457"},
                        {"Ort", "Hamburg"},
                        {"Versandart", "PO"},
                        {"Zahlungsart", "RE"},
                        {"ZahlungsbedSchl", "30"},
                        {"VertreterNr1", "01"},
                        {"AnteilVertreter1", 80.0},
                        {"Bankleitzahl", "90000001"},
                        {"Kreditinstitut", "Musterbank"},
                        {"Konto", "4711"},
                        {"Preisliste", "A"},
                        {"Auftragsrabatt", 5.0}});
    unit.commit();
  }

  void fillCodes() {
    add("Versandtexte", {{"Versandart", "PO"}, {"Kurztext", "Paket"}});
    add("Versandtexte", {{"Versandart", "SP"}, {"Kurztext", "Spedition"}});
    add("Zahlungsarten", {{"Zahlungsart", "RE"}, {"Kurztext", "Rechnung"}});
    add("Zahlungsarten", {{"Zahlungsart", "NN"}, {"Kurztext", "Per NACHNAHME"}});
    add("Zahlungsbedingungen", {{"ZahlbedSchl", "30"}, {"NettoTage", 30}});
    add("Vertreter", {{"VertreterNr", "01"}, {"Bez1", "Berg"}});
    add("Vertreter", {{"VertreterNr", "02"}, {"Bez1", "Tal"}, {"AnteilVertreter", 50.0}});
    add("Kreditinstitute", {{"Bankleitzahl", "90000001"}, {"Kreditinstitut", "Musterbank"}});
    add("Kreditinstitute", {{"Bankleitzahl", "90000002"}, {"Kreditinstitut", "Andere Bank"}});
  }

  void fillArticles() {
    erp::TableFiller articles(connection(), "Artikelstamm");
    const auto add = [&](const char* number, const char* tax, double weight, bool discountable) {
      articles.begin({{"Artikelnummer", number},
                      {"Bez", std::string("Artikel ") + number},
                      {"Mengeneinheit", "ST"},
                      {"MwSt_KZ", tax},
                      {"Gewicht", weight},
                      {"WertJN", true},
                      {"Rabattfähig", discountable}});
      articles.finish();
    };
    add("A100", "V", 2.5, true);
    add("B200", "E", 0.3, false);
    add("FRACHT", "V", 0, false);
    add("GEBUEHR", "V", 0, false);
    execute("Update Artikelstamm Set Preis = 6.9 Where Artikelnummer = 'FRACHT'"_sql);
    execute("Update Artikelstamm Set Ind_Zahl4 = 2.5 Where Artikelnummer = 'GEBUEHR'"_sql);
    articles.add({{"Artikelnummer", "Z300"},
                  {"Bez", "Zubehör"},
                  {"Mengeneinheit", "ST"},
                  {"MwSt_KZ", "V"},
                  {"Erfassungsschema", "Zubehoer"},
                  {"Ind_Zahl4", 20.0},
                  {"WertJN", true},
                  {"Rabattfähig", false}});
    articles.add(
        {{"Artikelnummer", "G400"}, {"Bez", "Gesperrt"}, {"MwSt_KZ", "V"}, {"ArtikelGesperrt", true}});
  }

  void fillPrices() {
    erp::TableFiller prices(connection(), "Verkaufspreise");
    const auto price = [&](const char* article, double from, double amount) {
      prices.begin({{"Preisliste", "A"},
                    {"Kundennummer", ""},
                    {"Artikelnummer", article},
                    {"Mengeneinheit", "ST"},
                    {"Menge", from},
                    {"GueltigAb", ""},
                    {"Preis", *Money::fromDouble(amount)},
                    {"KalkPreis", *Money::fromDouble(amount)},
                    {"Preiseinheit", 1.0}});
    };
    price("A100", 1, 10.0);
    prices.finish();
    price("A100", 10, 9.0);
    prices.set(
        {{"KZRabattart", "A"}, {"KZRabatt1", "P"}, {"Rabatt1", 10.0}, {"KZRabatt2", "P"}, {"Rabatt2", 5.0}});
    prices.finish();
    price("B200", 1, 4.99);
    prices.finish();
    price("Z300", 1, 15.0);
    prices.finish();
    // A price unit of 0 makes the price finding fail.
    price("G400", 1, 1.0);
    prices.set({{"Preiseinheit", 0.0}});
    prices.finish();
  }

  void stageOrder(std::string_view jobId, const Properties& given = {}) {
    Auftrag job(erp.environment);
    give<AuftragFields>(job, auftragFields,
                        Properties{{"JobID", jobId},
                                   {"Kundennummer", "20001"},
                                   {"Bez1", "Hafenbau GmbH"},
                                   {"Eingangsdatum", "20.11.2026"}} +
                            given);
    writeStaged(connection(), static_cast<const AuftragFields&>(job));
  }
  void stagePosition(std::string_view jobId, std::int32_t number, std::string_view article, double quantity,
                     const Properties& given = {}) {
    AuftragsPos position(erp.environment);
    give<AuftragsPosFields>(
        position, auftragsPosFields,
        Properties{
            {"JobID", jobId}, {"Positionsnummer", number}, {"Artikelnummer", article}, {"Menge", quantity}} +
            given);
    writeStaged(connection(), static_cast<const AuftragsPosFields&>(position));
  }
  void stageContract(std::string_view jobId, const Properties& given = {}) {
    Vertrag job(erp.environment);
    give<VertragFields>(job, vertragFields, Properties{{"JobID", jobId}} + usualContract + given);
    writeStaged(connection(), static_cast<const VertragFields&>(job));
  }
  /// An order of one position.
  void stageOrderOf(std::string_view jobId, std::string_view article = "A100", double quantity = 1) {
    stageOrder(jobId);
    stagePosition(jobId, 1, article, quantity);
  }
  void customerSpecific() { erp.setSetting("Allgemein", "Individual", "VLK"); }
  /// In that mode, orders by parcel have a freight line and a fee line.
  void takeFreight() {
    customerSpecific();
    erp.setOption("VAKunde", "PO");
    erp.setOption("FrachtTransport", "FRACHT");
    erp.setOption("FrachtGebuehr", "GEBUEHR");
  }
  std::unique_ptr<Recordset> order() { return open("Select * From Auftragskopf"_sql); }
  std::unique_ptr<Recordset> lines() { return open("Select * From Auftragspos"_sql); }
  std::int64_t orders() { return count("Select Count(*) From Auftragskopf"_sql); }
  Money money(const char* text) { return *Money::parse(text); }

  Properties usualContract{
      {"Kundennummer", "20001"}, {"Vertragsnummer", "V1"}, {"Artikelnummer", "G1"}, {"Vertragsart", "W"}};
};

} // namespace qx
