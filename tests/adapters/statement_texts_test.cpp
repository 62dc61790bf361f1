// How statements are taken apart and written for each database.
#include "adapters/sql/dialect.h"
#include "adapters/sql/select_parts.h"
#include "adapters/sql/translation.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace qx::relational {
namespace {

TEST(StatementTexts, TheDialectRewritesItsFixedListOnly) {
  const auto rewritten = [](const Sql& statement) { return translate(statement, sqliteDialect); };
  EXPECT_EQ(rewritten(sql("Select JobID From ImportKopf Where Right(JobType,1) = '3' "_sql)),
            "Select JobID From ImportKopf Where substr(CAST(JobType AS TEXT),-1) = '3' ");
  EXPECT_EQ(rewritten(sql("Select Top 2000 JobID From [ImportKopf]Where JobType = '0' "_sql)),
            "Select JobID From [ImportKopf]Where JobType = '0'  LIMIT 2000");
  EXPECT_EQ(
      rewritten(sql("Select (isnull(Bez1,'') + ' ' + isnull(Bez2,'')) as Bezeichnung from Vertreter"_sql)),
      "Select (coalesce(Bez1,'') || ' ' || coalesce(Bez2,'')) as Bezeichnung from Vertreter");
  EXPECT_EQ(rewritten(sql("[ImportKopf]"_sql)), "SELECT * FROM [ImportKopf]");
  EXPECT_EQ(rewritten(sql("Select x From "_sql, name("a\"b"), " Where n = "_sql, number(7), " and t='"_sql,
                          value("v"), "' or u='"_sql, value("w"), "'"_sql)),
            "Select x From \"a\"\"b\" Where n = ? and t=? or u=?");
}

TEST(StatementTexts, SelectsAreSplitAtTheirTopLevelOnly) {
  const auto parts = splitSelect("Select JobID, (Select 1 From x Where y) From [ImportKopf]Where Bez "
                                         "= ' Where Order by' Order By a, b DESC");
  ASSERT_TRUE(parts.has_value());
  EXPECT_EQ(parts->table, "ImportKopf");
  EXPECT_EQ(parts->where, "Bez = ' Where Order by'");
  EXPECT_EQ(parts->orderBy, "a, b DESC");
  EXPECT_TRUE(parts->descending());
  EXPECT_FALSE(splitSelect("Select * From a, b").has_value());
  EXPECT_FALSE(splitSelect("Delete From a").has_value());
}

TEST(StatementTexts, ASelectThatIsNoneIsLeftToTheDatabase) {
  for (const std::string_view statement :
       {"Select a From [ImportKopf", "Select a From ImportKopf\"", "Selecta From t", "Select From t",
        "Select a From t Where", "Select a From t Order By", "Select a From t Order Bya",
        "Select a From t Order a", "Select Where From t", "Select Order By From t",
        "Select a From t Order By b Where c", "Select a Order By b From t"})
    EXPECT_FALSE(splitSelect(statement).has_value()) << statement;
  EXPECT_EQ(splitSelect("Select*From[t]Order By[a]")->orderBy, "[a]");
}

} // namespace
} // namespace qx::relational
