
#include "erp/lookups/lookup_sources.h"
#include "standalone_fixture.h"

#include <gmock/gmock.h>

#include <array>

namespace qx::erp {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LookupSourcesTest : public StandaloneErpTest {
protected:
  void customer(std::string_view number, std::string_view term, std::string_view name) {
    file.execute("Insert Into Kundenstamm (Kundennummer, Suchbegriff, Bez1) Values ('"_sql, value(number),
                 "', '"_sql, value(term), "', '"_sql, value(name), "')"_sql);
  }
  void address(const Sql& customer, std::string_view number, std::string_view name) {
    database().execute(sql("Insert Into Adressenstamm (Kundennummer, Adressnummer, Bez1) Values ("_sql)
                           .append(customer)
                           .append(sql(", '"_sql, value(number), "', '"_sql, value(name), "')"_sql)));
  }
  LookupPages pages(std::string_view source, Sql criteria = {}) {
    return {database(), *findLookupSource(source), std::move(criteria)};
  }
  /// A column of all rows, read in pages of `limit` rows.
  static std::vector<std::string> all(const LookupPages& pages, std::string_view search,
                                      std::size_t limit = 100, std::size_t column = 0) {
    std::vector<std::string> found;
    std::optional<LookupPosition> position = LookupPosition();
    while (position) {
      const LookupPage page = pages.page(search, *position, limit);
      EXPECT_LE(page.rows.size(), limit);
      for (const LookupRow& row : page.rows) found.push_back(row[column]);
      position = page.next;
    }
    return found;
  }
  std::string planOf(const Sql& statement) {
    const auto rows = file.connection().open(sql("EXPLAIN QUERY PLAN "_sql).append(statement));
    std::string plan;
    for (; !rows->eof(); rows->moveNext()) plan += rows->text("detail") + "\n";
    return plan;
  }
};

TEST_F(LookupSourcesTest, AreFoundWithoutRegardToCaseAndReadTheirTables) {
  for (const std::string_view name :
       {"AUSK_Kundenauskunft", "AUSK_Adressauskunft", "ausk_LIEFERANTENAUSKUNFT",
        "AUSK_Kreditinstitutauskunft", "AUSK_Artikelauskunft", "AUSK_Vertragsgegenstandsauskunft",
        "AUSK_Textbausteinauskunft", "AUSK_Lieferscheinauskunft", "AUSK_Gutschriftsauskunft",
        "AUSK_Rechnungsauskunft"}) {
    ASSERT_NE(findLookupSource(name), nullptr) << name;
    EXPECT_THAT(all(pages(name), ""), IsEmpty()) << name;
    EXPECT_THAT(all(pages(name), "5"), IsEmpty()) << name;
  }
  EXPECT_EQ(findLookupSource("AUSK_Bestellauskunft"), nullptr);
  const std::array<std::string, 2> fields{"SprachKZ", "Textnummer"};
  EXPECT_THAT(resultColumns(*findLookupSource("AUSK_Textbausteinauskunft"), fields), ElementsAre(2, 0));
  EXPECT_THROW(resultColumns(*findLookupSource("AUSK_Kundenauskunft"), fields), std::runtime_error);
}

TEST_F(LookupSourcesTest, EachKindOfDocumentIsListedByItself) {
  file.execute(
      "Insert Into Belegindex (Belegart, Belegnummer) Values ('LS', 1), ('GS', 2), ('RG', 3), ('AB', 4)"_sql);
  EXPECT_THAT(all(pages("AUSK_Lieferscheinauskunft"), ""), ElementsAre("1"));
  EXPECT_THAT(all(pages("AUSK_Gutschriftsauskunft"), ""), ElementsAre("2"));
  EXPECT_THAT(all(pages("AUSK_Rechnungsauskunft"), ""), ElementsAre("3"));
}

TEST_F(LookupSourcesTest, HitsInTheNumberComeFirstAndNoRowComesTwice) {
  customer("10", "SCHMIDT", "Schmidt & Co");
  customer("S1", "Schulz", "Schulz GmbH");
  customer("20", "ABEL", "Sägewerk Abel");
  customer("30", "SAND", "Kies und Sand");
  const LookupPages customers = pages("AUSK_KUNDENAUSKUNFT");
  EXPECT_THAT(all(customers, ""), ElementsAre("10", "20", "30", "S1"));
  for (const std::size_t limit : {1U, 2U, 3U, 100U})
    EXPECT_THAT(all(customers, "s", limit), ElementsAre("S1", "30", "10", "20")) << limit;
  EXPECT_THAT(all(customers, " schmidt "), ElementsAre("10"));
  EXPECT_THAT(all(customers, "X"), IsEmpty());
}

TEST_F(LookupSourcesTest, EqualNamesArePagedWithoutGapsOrRepeats) {
  std::vector<std::string> numbers;
  for (int i = 100; i < 150; ++i) {
    numbers.push_back(std::to_string(i));
    customer(numbers.back(), "MEIER", "Meier");
  }
  customer("200", "MEIER", "");
  file.execute("Insert Into Kundenstamm (Kundennummer, Bez1) Values ('300', 'Meier')"_sql);
  numbers.insert(numbers.end(), {"200", "300"});
  EXPECT_EQ(all(pages("AUSK_KUNDENAUSKUNFT"), "mei", 7), numbers);
  EXPECT_EQ(all(pages("AUSK_KUNDENAUSKUNFT"), "", 13), numbers);
}

TEST_F(LookupSourcesTest, UmlautsAreFoundInEitherCase) {
  customer("1", "MÜLLER", "Müller");
  customer("2", "", "ÄRZTEHAUS");
  customer("3", "", "Übergröße");
  // Where accents rank behind letters, these lie between "mü" and what begins with it.
  for (const char* name : {"Muster", "Muck", "Mulde"}) customer(name, "", name);
  EXPECT_THAT(all(pages("AUSK_KUNDENAUSKUNFT"), "mü"), ElementsAre("1"));
  EXPECT_THAT(all(pages("AUSK_KUNDENAUSKUNFT"), "MÜLLER"), ElementsAre("1"));
  EXPECT_THAT(all(pages("AUSK_KUNDENAUSKUNFT"), "ärzte"), ElementsAre("2"));
  EXPECT_THAT(all(pages("AUSK_KUNDENAUSKUNFT"), "übergrö"), ElementsAre("3"));
}

TEST_F(LookupSourcesTest, NoCharacterOfTheSearchHasAMeaningOfItsOwn) {
  customer("1", "", "O'Brien");
  customer("2", "", "50% und mehr");
  customer("3", "", "50 und mehr");
  customer("4", "", "A_B");
  customer("5", "", "AXB");
  customer("6", "", "[neu]");
  customer("7", "", "@home");
  const LookupPages customers = pages("AUSK_KUNDENAUSKUNFT");
  EXPECT_THAT(all(customers, "o'b"), ElementsAre("1"));
  EXPECT_THAT(all(customers, "50%"), ElementsAre("2"));
  EXPECT_THAT(all(customers, "a_"), ElementsAre("4"));
  EXPECT_THAT(all(customers, "%"), IsEmpty());
  EXPECT_THAT(all(customers, "@"), ElementsAre("7"));
  EXPECT_THAT(all(customers, "' or 1=1 --"), IsEmpty());
}

TEST_F(LookupSourcesTest, ACustomersAddressesComeBeforeTheCommonOnes) {
  const Sql nobody = sql("Null"_sql);
  const Sql other = sql("'9'"_sql);
  const Sql own = sql("'"_sql, value("O'Hara"), "'"_sql);
  for (const std::string_view number : {"1", "1", "2"}) address(nobody, number, "Messe");
  address(other, "4", "Messe fremd");
  address(own, "3", "Lager");
  address(own, "5", "Messestand");
  const LookupPages addresses = pages(
      "AUSK_Adressauskunft", sql("Kundennummer='"_sql, value("O'Hara"), "' or Kundennummer is null"_sql));
  for (const std::size_t limit : {1U, 2U, 100U}) {
    EXPECT_THAT(all(addresses, "", limit, 1), ElementsAre("3", "5", "1", "1", "2")) << limit;
    EXPECT_THAT(all(addresses, "messe", limit, 1), ElementsAre("5", "1", "1", "2")) << limit;
  }
  if (file.where.onServer()) return;
  const std::string plan = planOf(addresses.statement("", {1, {}}, 100));
  EXPECT_EQ(plan.find("SCAN"), std::string::npos) << plan;
}

TEST_F(LookupSourcesTest, DocumentsOfACustomerAreFoundByTheDigitsOfTheirNumber) {
  for (const std::int64_t document : {9, 120, 1200, 3120})
    file.execute("Insert Into Belegindex (Belegart, Belegnummer, Kundennummer, Datum) Values ('LS', "_sql,
                 number(document), ", '7', '20261124000000')"_sql);
  file.execute("Insert Into Belegindex (Belegart, Belegnummer, Kundennummer) Values ('RG', 121, '7')"_sql);
  const LookupPages notes =
      pages("AUSK_Lieferscheinauskunft", sql("Kundennummer='"_sql, value("7"), "'"_sql));
  EXPECT_THAT(all(notes, "", 2), ElementsAre("9", "120", "1200", "3120"));
  EXPECT_THAT(all(notes, "12", 1), ElementsAre("120", "1200"));
  EXPECT_THAT(all(notes, "9", 1, 1), ElementsAre("24.11.2026"));
}

// A million customers are searched while the clerk types.
TEST_F(LookupSourcesTest, APageOfCustomersOrArticlesReadsAnIndexInItsOrder) {
  for (const std::string_view source : {"AUSK_KUNDENAUSKUNFT", "AUSK_ARTIKELAUSKUNFT"})
    for (const std::string_view search : {"", "m"})
      for (std::size_t section = 0;
           section < (search.empty() ? 1 : findLookupSource(source)->searched.size()); ++section) {
        const LookupPages lookup = pages(source);
        const bool byKey = section == 0;
        const std::vector<Value> last = byKey ? std::vector<Value>{"m1"} : std::vector<Value>{"m1", "10"};
        for (const LookupPosition& position : {LookupPosition{section, {}}, LookupPosition{section, last}}) {
          const std::string plan = planOf(lookup.statement(search, position, 100));
          EXPECT_EQ(plan.find("TEMP B-TREE"), std::string::npos) << plan;
          EXPECT_TRUE(plan.starts_with("SEARCH") || search.empty()) << plan;
          if (!position.after.empty()) {
            EXPECT_NE(plan.find(byKey ? "nummer>?" : "nummer)>(?,?)"), std::string::npos) << plan;
          }
        }
      }
}

} // namespace
} // namespace qx::erp
