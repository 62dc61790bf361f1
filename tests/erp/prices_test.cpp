// Which sales and purchase price holds, and what staged discounts amount to.
#include "erp/prices.h"
#include "standalone_fixture.h"

namespace qx::erp {
namespace {

struct PriceRow {
  std::string list;
  std::string customer;
  double from = 0;
  std::string validFrom;
  double price = 0;
  std::string unit = "ST";
};

class SalesPriceTest : public StandaloneErpTest {
protected:
  SalesPriceTest() {
    file.execute("Insert Into Kundenstamm (Kundennummer, Preisliste) Values ('K', 'H'), ('L', 'H'), "
                 "('M', Null)"_sql);
    file.execute("Insert Into Umrechnungen (Mengeneinheit, Basiseinheit, Faktor) Values "
                 "('KT', 'ST', 12)"_sql);
    finder->Init(database());
  }
  void add(const PriceRow& row) {
    const auto rows = file.open("Select * From Verkaufspreise"_sql);
    rows->addNew();
    rows->set("Artikelnummer", "A");
    rows->set("Preisliste", row.list);
    rows->set("Kundennummer", row.customer);
    rows->set("Mengeneinheit", row.unit);
    rows->set("Menge", row.from);
    rows->set("GueltigAb", row.validFrom);
    rows->set("Preis", row.price);
    rows->update();
  }
  /// The price per requested unit; -1 when there is none.
  double price(std::string_view customer, double quantity = 1, std::string_view unit = "ST",
               std::optional<Date> date = makeDate(2026, 11, 24)) {
    SalesPrice found;
    return finder->GetVKPreis({customer, "a", quantity, unit, date}, found) == Preisfindung::notFound
               ? -1
               : found.price;
  }

  std::unique_ptr<Preisfindung> finder = erpOf({}).createPreisfindung();
};

TEST_F(SalesPriceTest, TheCustomersOwnPriceGoesBeforeTheListAndTheListBeforeTheGeneralPrice) {
  add({"", "", 0, "", 10});
  EXPECT_EQ(price("K"), 10);
  add({"H", "", 0, "", 9});
  EXPECT_EQ(price("K"), 9);
  add({"", "K", 0, "", 11});
  EXPECT_EQ(price("K"), 11) << "although it is the dearest";
  EXPECT_EQ(price("L"), 9);
  EXPECT_EQ(price("M"), 10) << "without a price list";
  EXPECT_EQ(price("unbekannt"), 10);
}

TEST_F(SalesPriceTest, TheHighestStepReachedCountsAndOfEqualStepsTheLatestInForce) {
  add({"", "", 1, "20250101000000", 10});
  add({"", "", 1, "20261124000000", 12});
  add({"", "", 1, "20261125", 13});
  add({"", "", 100, "", 8});
  EXPECT_EQ(price("K", 0.5), -1) << "below the lowest step";
  EXPECT_EQ(price("K", 1), 12) << "in force from this very day";
  EXPECT_EQ(price("K", 1, "ST", makeDate(2026, 11, 23)), 10);
  EXPECT_EQ(price("K", 1, "ST", makeDate(2024, 12, 31)), -1) << "not yet in force";
  EXPECT_EQ(price("K", 1, "ST", std::nullopt), 13) << "without a date the latest";
  EXPECT_EQ(price("K", 99), 12);
  EXPECT_EQ(price("K", 100), 8);
  EXPECT_EQ(price("K", -100), 8) << "a return is priced like a sale";
}

TEST_F(SalesPriceTest, APriceOfAnotherUnitIsConvertedWithItsSteps) {
  add({"", "", 1, "", 10});
  add({"", "", 24, "", 9});
  EXPECT_EQ(price("K", 1, "KT"), 120);
  EXPECT_EQ(price("K", 2, "KT"), 108) << "two boxes are 24 pieces";
  add({"", "", 1, "", 100, "KT"});
  EXPECT_EQ(price("K", 1, "KT"), 100) << "a price of the unit itself needs no conversion";
  EXPECT_EQ(price("K", 1, "PAL"), -1);
  EXPECT_EQ(price("K", 1, ""), 10) << "without a unit the prices stand as they are";
}

TEST_F(SalesPriceTest, AConvertedPriceIsAnAmountWithoutABinaryRemainder) {
  add({"", "", 1, "", 8.4});
  EXPECT_EQ(price("K", 1, "KT"), 100.8) << "8.4 * 12 is not 100.8 in binary numbers";
}

TEST_F(SalesPriceTest, NothingIsCutWhereAPriceOfALargeUnitIsAskedForInASmallOne) {
  file.execute("Insert Into Umrechnungen (Artikelnummer, Mengeneinheit, Basiseinheit, Faktor) Values "
               "('A', 'BOX', 'ST', 1000), ('A', 'G', 'KG', 0.001), ('A', 'ROL', 'M', 2.5)"_sql);
  const auto shown = [&](double quantity, std::string_view unit) {
    SalesPrice found;
    if (finder->GetVKPreis({"K", "A", quantity, unit, {}}, found) != SalesPrices::GeneralPrice)
      return std::string("none");
    return plainNumber(found.price) + " / " + plainNumber(found.calculatedPrice) + " per " +
           plainNumber(found.priceUnit);
  };
  add({"", "", 0, "", 4.44, "BOX"});
  EXPECT_EQ(shown(1000, "ST"), "4.44 / 0 per 1000");
  file.execute("Update Verkaufspreise Set Preis = 4000"_sql);
  EXPECT_EQ(shown(1000, "ST"), "4000 / 0 per 1000") << "also where an amount comes out";
  file.execute("Update Verkaufspreise Set Mengeneinheit = 'KG', Preis = 12.34, KalkPreis = 7, "
               "Preiseinheit = 5"_sql);
  EXPECT_EQ(shown(25000, "G"), "12.34 / 7 per 5000");
  file.execute("Update Verkaufspreise Set Mengeneinheit = 'M', Preis = 1.2345, KalkPreis = 0.5, "
               "Preiseinheit = 10"_sql);
  EXPECT_EQ(shown(1, "ROL"), "1.2345 / 0.5 per 4") << "1.2345 * 2.5 has five decimals";
  file.execute("Update Verkaufspreise Set Preis = 1.2344"_sql);
  EXPECT_EQ(shown(1, "ROL"), "3.086 / 1.25 per 10");
}

TEST_F(SalesPriceTest, OfStepsInSeveralOtherUnitsTheHighestWinsWhateverTheirOrder) {
  file.execute("Insert Into Umrechnungen (Mengeneinheit, Basiseinheit, Faktor) Values "
               "('PAL', 'ST', 480)"_sql);
  const PriceRow box{"", "", 1, "", 60, "KT"};
  const PriceRow pallet{"", "", 1, "", 1920, "PAL"};
  const PriceRow dearBox{"", "", 40, "", 61, "KT"};
  const PriceRow newBox{"", "", 40, "20260101000000", 62, "KT"};
  const auto perThousand = [&](std::vector<PriceRow> rows) {
    file.execute("Delete From Verkaufspreise"_sql);
    for (const PriceRow& row : rows) add(row);
    SalesPrice found;
    finder->GetVKPreis({"K", "A", 960, "ST", makeDate(2026, 11, 24)}, found);
    return found.price / found.priceUnit * 1000;
  };
  EXPECT_DOUBLE_EQ(perThousand({box, pallet}), 4000) << "480 pieces are more than 12";
  EXPECT_DOUBLE_EQ(perThousand({pallet, box}), 4000);
  EXPECT_DOUBLE_EQ(perThousand({dearBox, pallet}), 4000) << "the cheapest of two for 480 pieces";
  EXPECT_DOUBLE_EQ(perThousand({pallet, dearBox}), 4000);
  EXPECT_DOUBLE_EQ(perThousand({newBox, pallet}), 62000.0 / 12) << "the latest goes before the cheapest";
  EXPECT_DOUBLE_EQ(perThousand({pallet, newBox}), 62000.0 / 12);
}

TEST_F(SalesPriceTest, ARowWhoseDateIsNoTimeStampIsNamedAndNotTaken) {
  add({"", "", 0, "20260101", 10});
  add({"", "", 0, "01.01.2026", 7});
  add({"", "", 0, "01.01.2027", 8});
  add({"", "", 0, "20260231000000", 9});
  EXPECT_EQ(price("K"), 10);
  EXPECT_EQ(price("K"), 10);
  EXPECT_EQ(
      file.diagnostics.text(),
      "price of article a | a price row has the date '01.01.2026', which is not a time stamp, and is not "
      "used | \n"
      "price of article a | a price row has the date '01.01.2027', which is not a time stamp, and is not "
      "used | \n"
      "price of article a | a price row has the date '20260231000000', which is not a time stamp, and is "
      "not used | \n")
      << "each of them once";
}

TEST_F(SalesPriceTest, APriceUnitOfZeroFailsAndAMissingOneIsOne) {
  add({"", "", 0, "", 10});
  SalesPrice found;
  EXPECT_EQ(finder->GetVKPreis({"K", "A", 1, "ST", {}}, found), SalesPrices::GeneralPrice);
  EXPECT_EQ(found.priceUnit, 1);
  file.execute("Update Verkaufspreise Set Preiseinheit = 0"_sql);
  EXPECT_EQ(finder->GetVKPreis({"K", "A", 1, "ST", {}}, found), Preisfindung::failed);
  EXPECT_EQ(found.price, 10) << "untouched by the failure";
}

TEST_F(SalesPriceTest, DiscountsOfThePriceComeWithTheirTotalRate) {
  add({"", "", 0, "", 10});
  file.execute("Update Verkaufspreise Set KZRabattart = 'A', KZRabatt1 = 'P', Rabatt1 = 10, "
               "KZRabatt2 = 'P', Rabatt2 = 5"_sql);
  SalesPrice found;
  ASSERT_EQ(finder->GetVKPreis({"K", "A", 1, "ST", {}}, found), SalesPrices::GeneralPrice);
  EXPECT_DOUBLE_EQ(found.discount, 14.5);
  EXPECT_EQ(found.discounts.values[1], 5);
  EXPECT_THROW(SalesPrices(file.diagnostics).Init(), std::logic_error) << "no connection";
}

TEST(StagedDiscountsTest, ApplyInTurnOrAddedUpInPercentOrAmount) {
  const auto of = [](std::string kind, std::array<std::string, 3> marks, std::array<double, 3> values) {
    return StagedDiscounts{std::move(kind), std::move(marks), values};
  };
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"P", "P", "P"}, {10, 5, 2}), 200), 200 - 200 * 0.9 * 0.95 * 0.98);
  EXPECT_DOUBLE_EQ(discountAmount(of("S", {"P", "P", "P"}, {10, 5, 2}), 200), 34);
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"B", "P", ""}, {20, 10, 0}), 200), 38);
  EXPECT_DOUBLE_EQ(discountAmount(of("S", {"B", "P", ""}, {20, 10, 0}), 200), 40);
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"B", "P", ""}, {20, 10, 0}), -200), -38)
      << "a return gives it back";
  EXPECT_DOUBLE_EQ(discountAmount(of("", {"", "", ""}, {10, 10, 0}), 100), 19)
      << "percent in turn is the default";
  EXPECT_DOUBLE_EQ(discountRate(of("S", {"P", "B", "P"}, {10, 500, 5})), 15) << "an amount has no rate";
}

TEST(StagedDiscountsTest, AmountsTakeNothingOffNothingAndNeverMoreThanIsLeft) {
  const auto of = [](std::string kind, std::array<std::string, 3> marks, std::array<double, 3> values) {
    return StagedDiscounts{std::move(kind), std::move(marks), values};
  };
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"B", "", ""}, {1, 0, 0}), 0), 0);
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"B", "", ""}, {1, 0, 0}), 0.5), 0.5);
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"B", "B", "P"}, {5, 3, 50}), 6), 6);
  EXPECT_DOUBLE_EQ(discountAmount(of("S", {"P", "B", ""}, {50, 8, 0}), -10), -10);
  EXPECT_DOUBLE_EQ(discountAmount(of("A", {"B", "", ""}, {-2, 0, 0}), 10), -2) << "a charge";
}

TEST_F(SalesPriceTest, RowsWithoutListAndCustomerAreForEverybodyAndOwnPricesHoldWhateverTheirList) {
  // As in the tables of a host, which may hold null there.
  file.execute("Drop Table Verkaufspreise"_sql);
  file.execute(
      "Create Table Verkaufspreise (Preisliste Text Collate Nocase, Kundennummer Text Collate Nocase, "
      "Artikelnummer Text Collate Nocase, Mengeneinheit Text, Menge Real, GueltigAb Text, Preis Real, "
      "KalkPreis Real, Preiseinheit Real, KZRabattart Text, KZRabatt1 Text, KZRabatt2 Text, "
      "KZRabatt3 Text, Rabatt1 Real, Rabatt2 Real, Rabatt3 Real)"_sql);
  file.execute("Insert Into Verkaufspreise (Artikelnummer, Mengeneinheit, Menge, Preis) Values "
               "('A', 'ST', 1, 10)"_sql);
  EXPECT_EQ(price("K"), 10);
  EXPECT_EQ(price("unbekannt"), 10);
  file.execute("Insert Into Verkaufspreise (Preisliste, Artikelnummer, Mengeneinheit, Menge, Preis) "
               "Values ('h', 'A', 'ST', 1, 9), ('X', 'A', 'ST', 1, 8)"_sql);
  EXPECT_EQ(price("K"), 9);
  file.execute("Insert Into Verkaufspreise (Preisliste, Kundennummer, Artikelnummer, Mengeneinheit, "
               "Menge, Preis) Values ('X', 'k', 'A', 'ST', 1, 7)"_sql);
  EXPECT_EQ(price("K"), 7);
  EXPECT_EQ(price("L"), 9);
}

TEST_F(SalesPriceTest, PurchasePricesAreTheSuppliersOwn) {
  file.execute("Insert Into Einkaufspreise (Lieferantennummer, Artikelnummer, Mengeneinheit, Menge, EKPreis, "
               "EKRabatt1) Values ('L1', 'A', 'ST', 0, 5, 10), ('L1', 'A', 'ST', 50, 4, 0), "
               "('L2', 'A', 'ST', 0, 1, 0)"_sql);
  const auto prices = erpOf({}).createEinkaufspreisfindung(database());
  const auto found = prices->find({"L1", "A", 2, "KT", "", 0, {}});
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(found->price, 60);
  EXPECT_EQ(found->discount, 10);
  EXPECT_EQ(prices->find({"L1", "A", 5, "KT", "", 0, {}})->price, 48);
  EXPECT_FALSE(prices->find({"L3", "A", 1, "ST", "", 0, {}}).has_value());
  file.execute("Insert Into Einkaufspreise (Lieferantennummer, Artikelnummer, Mengeneinheit, Menge, EKPreis, "
               "EKPreiseinheit) Values ('L1', 'A', 'ST', 55, 1, 0), ('L4', 'A', 'KT', 1, 0.05, 1)"_sql);
  EXPECT_EQ(prices->find({"L1", "A", 5, "KT", "", 0, {}})->price, 48) << "a price unit of 0 is no price";
  const auto piece = prices->find({"L4", "A", 12, "ST", "", 0, {}});
  ASSERT_TRUE(piece.has_value());
  EXPECT_EQ(piece->price, 0.05);
  EXPECT_EQ(piece->priceUnit, 12);
}

} // namespace
} // namespace qx::erp
