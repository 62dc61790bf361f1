// Statements keep fixed text and values apart; column names fold as the ERP's databases do.
#include "platform/column_name.h"
#include "platform/sql.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(Sql, TextIsThePlainConcatenation) {
  const std::string_view customer = "K'1";
  const Sql statement = sql("Select * From "_sql, name("ImportKopf"), "  where Kundennummer = '"_sql,
                            value(customer), "' And JobType = "_sql, number(-11), " Order by x"_sql);
  EXPECT_EQ(statement.text(),
            "Select * From ImportKopf  where Kundennummer = 'K'1' And JobType = -11 Order by x");
}

TEST(Sql, BindsValuesApartFromTheText) {
  const std::string_view attack = "O'Brien'; DROP TABLE ImportKopf; --";
  const Sql statement = sql("Select 1 From Kundenstamm where Kundennummer = '"_sql, value(attack),
                            "' and Typ = "_sql, number(3), " and Art = '"_sql, nullable(""), "'"_sql);
  ASSERT_EQ(statement.values().size(), 3U);
  EXPECT_EQ(statement.values()[0], Value(attack));
  EXPECT_EQ(statement.values()[1], Value(std::int64_t{3}));
  EXPECT_TRUE(statement.values()[2].isNull()) << "an empty nullable text is null";
  EXPECT_TRUE(statement.text().ends_with("Art = ''")) << "and printed as the empty text";
  for (const SqlShape* shape : statement.shapes())
    for (const SqlPiece& piece : shape->pieces) EXPECT_EQ(piece.text.find("DROP"), std::string_view::npos);
}

TEST(Sql, OfOneShapeIsRecognisedWhateverItsValues) {
  const auto byKey = [](std::string_view key) {
    return sql("SELECT * From ImportPos where JobID = '"_sql, value(key), "'"_sql);
  };
  const Sql first = byKey("A");
  const Sql second = byKey("B");
  EXPECT_EQ(first.shapes()[0], second.shapes()[0]);
  const Sql other = sql("SELECT * From ImportPos where ChildID = '"_sql, value("A"), "'"_sql);
  EXPECT_NE(first.shapes()[0], other.shapes()[0]);
}

TEST(Sql, JoinsPartsInTheirOrder) {
  Sql statement = sql("Select * From ImportKopf Where "_sql);
  statement.append(sql("Ort = '"_sql, value("Köln"), "'"_sql)).append(Sql());
  statement.append(sql(" And "_sql, name("Preis"), " = "_sql, number(0)));
  EXPECT_EQ(statement.text(), "Select * From ImportKopf Where Ort = 'Köln' And Preis = 0");
  EXPECT_EQ(statement.values().size(), 2U);
  EXPECT_EQ(statement.names().size(), 1U);
  EXPECT_EQ(Sql().text(), "");
}

template <class... Parts>
constexpr bool fit(const Parts&...) {
  return detail::ShapeOf<Parts...>::quotesFit();
}

TEST(Sql, RefusesValuesWhereTheyDoNotBelong) {
  const SqlText text = value("x");
  EXPECT_TRUE(fit("a = '"_sql, text, "'"_sql));
  EXPECT_TRUE(fit("a = "_sql, number(1)));
  EXPECT_FALSE(fit("a = "_sql, text)) << "a text without quotes";
  EXPECT_FALSE(fit("a = '"_sql, text)) << "a quote that is not closed";
  EXPECT_FALSE(fit("a = '"_sql, number(1), "'"_sql)) << "a number between quotes";
  EXPECT_FALSE(fit("a = '"_sql, text, text, "'"_sql)) << "two texts in one pair of quotes";
}

TEST(ColumnNames, AreEqualWithoutRegardToCaseAndSharpS) {
  struct Case {
    std::string_view a, b;
    bool same;
  };
  for (const Case& c : {Case{"VS_Straße", "vs_strasse", true}, Case{"Währung", "WÄHRUNG", true},
                        Case{"KundenNummer", "Kundennummer", true}, Case{"STRASSE", "straße", true},
                        Case{"Ind_Zahl4", "IND_Zahl4", true}, Case{"Währung", "Wahrung", false},
                        Case{"ä", "ö", false}, Case{"×", "÷", false}, Case{"Bez1", "Bez2", false},
                        Case{"Bez", "Bez1", false}, Case{"", "", true}, Case{"Stra\xC3", "Stra", false}})
    EXPECT_EQ(ColumnName(c.a) == ColumnName(c.b), c.same) << c.a << " and " << c.b;
  static_assert(ColumnName("VS_Straße") == ColumnName("VS_STRASSE"), "known when the program is compiled");
}

} // namespace
} // namespace qx
