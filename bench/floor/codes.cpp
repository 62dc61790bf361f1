#include "floor/codes.h"

#include "samples/contracts.h"
#include "samples/orders.h"

#include <string>

namespace qx::bench {
namespace {

void addContractObjects(Database& database) {
  Statement kind =
      database.prepare("INSERT INTO Vertragsarten (Vertragsart, Kurztext) VALUES (?, 'Wartung')");
  for (unsigned i = 0; i < contractKinds; ++i) kind.bind(1, contractKind(i)).run();
  Statement object =
      database.prepare("INSERT INTO \"Vertragsgegenstände\" (VertrGegenstandsNr, Bez) VALUES (?, ?)");
  Statement relation = database.prepare(
      "INSERT INTO \"VertragsGegenständePos\" (VertrGegenstandsNr, Vertragsart) VALUES (?, ?)");
  for (unsigned i = 0; i < contractObjects; ++i) {
    const std::string number = contractObject(i);
    const std::string kindOfObject = contractKind(i);
    object.bind(1, number).bind(2, "Presse " + number).run();
    relation.bind(1, number).bind(2, kindOfObject).run();
  }
}

double euros(int cents) { return cents / 100.0; }

/// Two steps of the basic price, and a price of a list that no sample customer has.
void addSalesPrices(Database& database, const SampleArticle& article) {
  Statement price = database.prepare("INSERT INTO Verkaufspreise (Artikelnummer, Mengeneinheit, Preisliste, "
                                     "Menge, Preis) VALUES (?, 'ST', ?, ?, ?)");
  const auto add = [&](std::string_view list, std::int64_t from, int cents) {
    price.bind(1, article.number).bind(2, list).bind(3, from).bind(4, euros(cents)).run();
  };
  add("", 1, article.cents);
  add("", 10, article.centsFromTen);
  add("A", 1, article.cents - 1);
}

void addArticles(Database& database) {
  Statement insert = database.prepare("INSERT INTO Artikelstamm (Artikelnummer, Bez, Mengeneinheit, MwSt_KZ, "
                                      "Gewicht, Hauptlieferant, WertJN, "
                                      "\"Rabattfähig\") VALUES (?, ?, 'ST', ?, ?, ?, 1, 1)");
  Statement purchase = database.prepare(
      "INSERT INTO Einkaufspreise (Lieferantennummer, Artikelnummer, EKPreis) VALUES (?, ?, ?)");
  for (std::uint32_t i = 0; i < articleCount; ++i) {
    const SampleArticle article = sampleArticle(i);
    insert.bind(1, article.number).bind(2, article.text).bind(3, article.taxMark);
    insert.bind(4, article.weight).bindOrNull(5, article.supplier).run();
    addSalesPrices(database, article);
    if (article.supplier.empty()) continue;
    purchase.bind(1, article.supplier).bind(2, article.number).bind(3, euros(article.purchaseCents)).run();
  }
}

} // namespace

void addCodes(Database& database) {
  database.execute("BEGIN IMMEDIATE");
  for (const SampleCode& code : sampleCodes()) {
    std::string text = "INSERT INTO \"";
    text.append(code.table).append("\" (\"").append(code.column).append("\", \"");
    text.append(code.textColumn).append("\") VALUES (?, ?) ON CONFLICT DO NOTHING");
    database.prepare(text).bind(1, code.value).bind(2, code.text).run();
  }
  addContractObjects(database);
  addArticles(database);
  database.execute("COMMIT");
}

void addCustomers(Database& database, std::uint32_t count, std::uint32_t step) {
  Statement insert = database.prepare("INSERT INTO Kundenstamm (Kundennummer, Suchbegriff, Bez1, Strasse, "
                                      "Land, PLZ, Ort) VALUES (?, ?, ?, ?, ?, ?, ?)");
  database.execute("BEGIN IMMEDIATE");
  for (std::uint32_t i = 0; i < count; i += step) {
    const SampleJob job = sampleCustomer(i);
    int place = 0;
    for (const std::string_view column :
         {"Kundennummer", "Suchbegriff", "Bez1", "Strasse", "Land", "PLZ", "Ort"})
      insert.bind(++place, valueOf(job, column));
    insert.run();
  }
  database.execute("COMMIT");
}

void addHalfOfContracts(Database& database, std::uint32_t count) {
  Statement insert = database.prepare("INSERT INTO \"Verträge\" (Kundennummer, Vertragsnummer, Vertragsart, "
                                      "VertrGegenstandsNr, Betrag) VALUES (?, ?, ?, ?, 1)");
  database.execute("BEGIN IMMEDIATE");
  for (std::uint32_t i = 0; i < count; i += 2) {
    const SampleJob job = sampleContract(i);
    int place = 0;
    for (const std::string_view column : {"Kundennummer", "Vertragsnummer", "Vertragsart", "Artikelnummer"})
      insert.bind(++place, valueOf(job, column));
    insert.run();
  }
  database.execute("COMMIT");
}

} // namespace qx::bench
