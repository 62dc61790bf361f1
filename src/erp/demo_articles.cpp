#include "erp/base_data.h"
#include "erp/demo_company.h"
#include "erp/table_filler.h"

#include <array>
#include <tuple>
#include <utility>

namespace qx::erp::demo {
namespace {

struct Product {
  std::string_view code;
  std::string_view text;
  std::string_view taxMark;
  std::int64_t price; ///< price of the smallest size, in ten-thousandths
  double weight;      ///< weight of the smallest size, in kilograms
  std::string_view supplier;
};

constexpr std::array<Product, productCount> products{
    Product{"SKS", "Sechskantschraube verzinkt", fullTaxArticle, 800, 0.01, "80001"},
    Product{"HSP", "Holzschraube Senkkopf", fullTaxArticle, 300, 0.005, "80001"},
    Product{"MUT", "Sechskantmutter", fullTaxArticle, 400, 0.004, "80001"},
    Product{"USC", "Unterlegscheibe", fullTaxArticle, 200, 0.002, "80001"},
    Product{"BOH", "Metallbohrer", fullTaxArticle, 19000, 0.03, "80002"},
    Product{"MSL", "Maulschlüssel", fullTaxArticle, 64000, 0.12, "80002"},
    Product{"FEI", "Werkstattfeile", fullTaxArticle, 92500, 0.2, "80002"},
    Product{"KLB", "Montagekleber", fullTaxArticle, 59000, 0.31, "80003"},
    Product{"SCH", "Schleifbogen", fullTaxArticle, 6500, 0.02, "80003"},
    Product{"HBU", "Handbuch Befestigungstechnik, Band", reducedTaxArticle, 149000, 0.6, "80002"}};

std::int64_t basePrice(const Product& product, std::size_t size) {
  return product.price + product.price * static_cast<std::int64_t>(size) / 4;
}

struct ArticleTables {
  explicit ArticleTables(Connection& connection)
      : articles(connection, "Artikelstamm"), stock(connection, "Artikellager"),
        sales(connection, "Verkaufspreise"), purchase(connection, "Einkaufspreise") {}

  void addPrice(std::string_view article, std::int64_t price, std::string_view list = "", double from = 0,
                std::string_view validFrom = "") {
    sales.add({{"Artikelnummer", article},
               {"Preisliste", list},
               {"Mengeneinheit", "ST"},
               {"Menge", from},
               {"GueltigAb", validFrom},
               {"Preis", Money::ofTenThousandths(price)},
               {"KalkPreis", Money::ofTenThousandths(price / 2)},
               {"Preiseinheit", 1.0}});
  }

  TableFiller articles, stock, sales, purchase;
};

void addArticle(ArticleTables& to, const Product& product, std::size_t kind, std::size_t size) {
  const std::string number = articleNumber(kind, size);
  const std::int64_t price = basePrice(product, size);
  to.articles.add({{"Artikelnummer", number},
                   {"Bez", std::string(product.text) + " " + std::to_string(size + 1)},
                   {"Mengeneinheit", "ST"},
                   {"MwSt_KZ", product.taxMark},
                   {"Gewicht", product.weight * static_cast<double>(size + 1)},
                   {"DurchschnittEK", Money::ofTenThousandths(price / 2)},
                   {"Hauptlager", "HL"},
                   {"MengeneinheitEinkauf", "PK"},
                   {"MEEinkauf", "PK"},
                   {"Hauptlieferant", product.supplier},
                   {"Einkaufsgruppe", "1"},
                   {"PreisfindungEinkauf", 0},
                   {"WertJN", true},
                   {"Rabattfähig", true},
                   {"Preis", Money::ofTenThousandths(price)},
                   {"KalkPreis", Money::ofTenThousandths(price / 2)}});
  for (const auto& [store, share] : {std::pair<std::string_view, std::size_t>{"HL", 400}, {"AL", 30}})
    to.stock.add({{"Artikelnummer", number},
                  {"Lagernummer", store},
                  {"Lagerbestand", static_cast<double>(share * (size % 5 + 1))},
                  {"MitBestand", true}});
  to.addPrice(number, price - price / 20, "", 0, "20200101000000");
  to.addPrice(number, price, "", 0, "20260101000000");
  to.addPrice(number, price - price / 10, "", 100, "20260101000000");
  to.addPrice(number, price - price * 3 / 20, "H", 0, "20260101000000");
  to.addPrice(number, price - price / 5, "G", 0, "20260101000000");
  to.purchase.add({{"Lieferantennummer", product.supplier},
                   {"Artikelnummer", number},
                   {"Mengeneinheit", "PK"},
                   {"Menge", 0.0},
                   {"EKPreis", Money::ofTenThousandths(price * 50)},
                   {"EKPreiseinheit", 1.0},
                   {"EKRabattart", "A"},
                   {"EKRabatt1", size % 2 == 0 ? 5.0 : 0.0}});
}

void beginSpecial(ArticleTables& to, std::string_view number, std::string_view text) {
  to.articles.begin({{"Artikelnummer", number},
                     {"Bez", text},
                     {"Mengeneinheit", "ST"},
                     {"MwSt_KZ", fullTaxArticle},
                     {"Gewicht", 0.5},
                     {"WertJN", true},
                     {"Rabattfähig", true}});
}

/// Articles for the less common cases of orders.
void addSpecials(ArticleTables& to) {
  beginSpecial(to, blockedArticle, "Auslaufartikel");
  to.articles.set({{"ArtikelGesperrt", true}});
  to.articles.finish();
  to.addPrice(blockedArticle, 100000);

  beginSpecial(to, unpricedArticle, "Ansichtsmuster");
  to.articles.finish();

  beginSpecial(to, wrongPriceArticle, "Artikel mit fehlerhafter Preiseinheit");
  to.articles.finish();
  to.sales.add({{"Artikelnummer", wrongPriceArticle},
                {"Mengeneinheit", "ST"},
                {"Menge", 0.0},
                {"Preis", Money::ofTenThousandths(100000)},
                {"Preiseinheit", 0.0}});

  beginSpecial(to, accessoryArticle, "Aufsteller für Kleinteile");
  to.articles.set({{"Erfassungsschema", "Zubehoer"}, {"Ind_Zahl4", 12.5}});
  to.articles.finish();
  to.addPrice(accessoryArticle, 125000);

  beginSpecial(to, serviceArticle, "Montagestunde");
  to.articles.set({{"Mengeneinheit", "H"},
                   {"Gewicht", 0.0},
                   {"Artikellangtext", "Abgerechnet wird je angefangene Viertelstunde."}});
  to.articles.finish();
  to.stock.add({{"Artikelnummer", serviceArticle}, {"Lagernummer", "HL"}, {"MitBestand", false}});
  to.sales.add({{"Artikelnummer", serviceArticle},
                {"Mengeneinheit", "H"},
                {"Menge", 0.0},
                {"Preis", Money::ofTenThousandths(680000)},
                {"Preiseinheit", 1.0}});

  for (const auto& [number, text, price] :
       {std::tuple<std::string_view, std::string_view, std::int64_t>{"FRACHT", "Frachtkosten", 69000},
        {"GEBUEHR", "Bearbeitungsgebühr", 50000}}) {
    beginSpecial(to, number, text);
    to.articles.set({{"Gewicht", 0.0}, {"Rabattfähig", false}, {"Preis", Money::ofTenThousandths(price)}});
    to.articles.finish();
    to.addPrice(number, price);
  }
}

/// Agreements with single customers: special prices and staged discounts.
void addCustomerPrices(TableFiller& sales) {
  sales.add({{"Artikelnummer", articleNumber(0, 0)},
             {"Kundennummer", customer(0).number},
             {"Mengeneinheit", "ST"},
             {"Menge", 0.0},
             {"Preis", Money::ofTenThousandths(650)},
             {"Preiseinheit", 1.0}});
  sales.add({{"Artikelnummer", articleNumber(5, 3)},
             {"Kundennummer", customer(1).number},
             {"Mengeneinheit", "ST"},
             {"Menge", 0.0},
             {"Preis", Money::ofTenThousandths(100000)},
             {"Preiseinheit", 1.0},
             {"KZRabattart", "A"},
             {"KZRabatt1", "P"},
             {"KZRabatt2", "P"},
             {"Rabatt1", 10.0},
             {"Rabatt2", 5.0}});
}

} // namespace

std::string articleNumber(std::size_t product, std::size_t size) {
  return std::string(products[product].code) + "-" + padded(size + 1, 3);
}

void fillArticles(Connection& connection) {
  ArticleTables tables(connection);
  for (std::size_t kind = 0; kind < productCount; ++kind)
    for (std::size_t size = 0; size < sizeCount; ++size) addArticle(tables, products[kind], kind, size);
  addSpecials(tables);
  addCustomerPrices(tables.sales);
}

} // namespace qx::erp::demo
