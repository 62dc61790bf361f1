#include "rules/cost_assignment.h"

#include "support/erp_file.h"

#include <gtest/gtest.h>

using namespace qx;

namespace {

class CostAssignmentTest : public ::testing::Test {
protected:
  ErpFile erp;
  CostAssignment costs{erp.environment};
};

} // namespace

TEST_F(CostAssignmentTest, APairGetsOneNumberWhateverItsBlanks) {
  const auto both = costs.findOrCreate({"100", "P7"});
  EXPECT_EQ(costs.findOrCreate({" 100 ", "P7"}), both);
  const auto centreOnly = costs.findOrCreate({"100", "  "});
  const auto none = costs.findOrCreate({"", ""});
  EXPECT_NE(centreOnly, both);
  EXPECT_NE(none, centreOnly);
  EXPECT_EQ(costs.findOrCreate({"", ""}), none);
  EXPECT_EQ(costs.find({"100", ""}), centreOnly);
  EXPECT_EQ(costs.find({"100", "P8"}), std::nullopt);
  EXPECT_EQ(erp.count("Select Count(*) From Kostenzuordnung"_sql), 3);
  EXPECT_EQ(erp.count("Select Count(*) From Kostenzuordnung Where Kostentraeger is null"_sql), 2);
  EXPECT_EQ(costs.read(both).Kostentraeger, "P7");
}

TEST_F(CostAssignmentTest, EveryDocumentKindHasItsOwnRule) {
  const std::pair<std::string_view, std::string_view> kinds[] = {
      {"AN", "Angebot"}, {"AB", "Kundenauftrag"}, {"BS", "Bestellung"}, {"AF", "Anfrage"}};
  for (const auto& [ruled, key] : kinds) {
    erp.set(key, "1", "Kostenzuordnung");
    for (const auto& [asked, unused] : kinds)
      EXPECT_EQ(costs.CheckKostzuord(asked, 0, false), asked == ruled ? -1 : 0) << key << " " << asked;
    erp.set(key, "0", "Kostenzuordnung");
  }
}

TEST_F(CostAssignmentTest, TheRuleOfTheDocumentKindSaysWhatIsMissing) {
  erp.execute("Insert Into Kostenzuordnung (KostID, Kostenstelle, Kostentraeger) Values "
              "(1,'100',null), (2,null,'P7'), (3,'  ','P7')"_sql);
  erp.set("Kost2", "Projekt", "Kostenzuordnung");
  const struct {
    std::string_view rule, kind;
    std::int32_t id, expected;
    std::string_view missing;
  } cases[] = {
      {"0", "AB", 0, 0, ""},
      {"1", "AB", 1, 0, ""},
      {"1", "AB", 2, -1, "Fehlende Zuordnung für Kostenstelle!"},
      {"1", "ab", 3, -1, "Fehlende Zuordnung für Kostenstelle!"},
      {"2", "AB", 1, -1, "Fehlende Zuordnung für Projekt!"},
      {"3", "AB", 0, -1, "Fehlende Zuordnung für Kostenstelle!"},
      {"3", "AB", 1, -1, "Fehlende Zuordnung für Projekt!"},
      {"3", "BS", 0, 0, ""},
      {"3", "??", 0, 0, ""},
      {"viel", "AB", 0, 0, ""},
  };
  for (const auto& c : cases) {
    erp.set("Kundenauftrag", c.rule, "Kostenzuordnung");
    erp.desktop.shown.clear();
    EXPECT_EQ(costs.CheckKostzuord(c.kind, c.id, true), c.expected) << c.rule << " " << c.kind << " " << c.id;
    ASSERT_EQ(erp.desktop.shown.size(), c.missing.empty() ? 0U : 1U);
    if (c.missing.empty()) continue;
    EXPECT_EQ(erp.desktop.shown[0].text, c.missing);
    EXPECT_EQ(erp.desktop.shown[0].title, "Kostenzuordnung fehlt!");
    EXPECT_EQ(erp.desktop.shown[0].icon, MessageIcon::Exclamation);
  }
}
