// The ERP's components called late-bound: the demo data come out as with the typed ports.
#include "automation_erp.h"

#include "adapters/late_bound/late_bound_erp.h"
#include "adapters/late_bound/late_bound_session.h"
#include "erp/base_data.h"
#include "erp/demo_data.h"

#include <map>
#include <set>

namespace qx::automation {
namespace {

/// An ERP with the demo data, typed or late-bound.
class DemoWorld : public DatabaseAccess {
public:
  DemoWorld() {
    WorkUnit unit(*erp.database);
    erp::fillDemoData(*erp.database);
    erp::stageDemoJobs(*erp.database, makeDate(2026, 11, 24));
    // What late-bound components cannot tell: purchase prices, and the marks of single discounts.
    execute("Delete From Einkaufspreise"_sql);
    execute(
        "Update Verkaufspreise Set KZRabattart = Null, KZRabatt1 = Null, KZRabatt2 = Null, KZRabatt3 = Null, "
        "Rabatt1 = Null, Rabatt2 = Null, Rabatt3 = Null"_sql);
    unit.commit();
  }
  Connection& connection() override { return *erp.database; }
  /// Every value of every table, with its table, column and row.
  std::map<std::string, std::string> everything() {
    std::map<std::string, std::string> all;
    for (const std::string& table : connection().tableNames()) {
      const auto found = open("Select * From "_sql, name(table));
      for (int row = 1; !found->eof(); found->moveNext(), ++row)
        for (std::size_t i = 0; i < found->fieldCount(); ++i)
          all[table + "." + std::string(found->fieldName(i)) + " " + std::to_string(row)] =
              found->value(i).text();
    }
    return all;
  }

  TestErp erp;
  SqliteDatabase database;
  TestHost host{erp};
  std::shared_ptr<Component> component = Component::create(erp.environment, database, host);
  AutomationErp parts{erp, *component};
  LateBoundErp lateBound{parts};
  Environment lateEnvironment{lateBound,    erp.desktop,       erp.jobView, erp.clock,
                              erp.guids,    erp.localSettings, erp.iniFile, erp.diagnostics,
                              erp.liveness, nullptr,           nullptr,     ""};
};

void enableEverything(TestErp& erp) {
  erp.setOption("KreditlimitAuftrag", "1");
  erp.setOption("WarnungLagerbestand", "1");
  erp.setOption("AutomatischVerarbeiten", "1");
}

} // namespace

TEST(LateBoundErp, ProcessesTheDemoJobsAsTheTypedOneDoes) {
  DemoWorld typed;
  enableEverything(typed.erp);
  ImportJobObject2 engine(typed.erp.environment);
  ASSERT_TRUE(engine.ProcessJobs());

  DemoWorld late;
  enableEverything(late.erp);
  ImportJobObject2 lateEngine(late.lateEnvironment);
  ASSERT_TRUE(lateEngine.WWSSession()) << late.erp.desktop.texts();
  ASSERT_TRUE(lateEngine.ProcessJobs()) << late.erp.desktop.texts();

  // Where both differ, as "Table.Column row: late-bound / typed".
  std::string differences;
  const auto lateValues = late.everything();
  const auto typedValues = typed.everything();
  EXPECT_EQ(lateValues.size(), typedValues.size());
  for (const auto& [place, value] : typedValues)
    if (const auto found = lateValues.find(place); found == lateValues.end() || found->second != value)
      differences +=
          place + ": " + (found == lateValues.end() ? "missing" : found->second) + " / " + value + "\n";
  EXPECT_EQ(differences, "");
  EXPECT_EQ(late.erp.desktop.texts(), typed.erp.desktop.texts());
  const std::set<std::string> created(late.parts.created.begin(), late.parts.created.end());
  EXPECT_EQ(created,
            (std::set<std::string>{"Norvalis.FibuUebergabeObject", "Norvalis.Session", "QXHProto.Protokoll",
                                   "qxAdrIdx.Adressindex", "qxPLU.clsPLU", "qxWWSVer.Version"}));
}

TEST_F(AutomationTest, LateBoundPricesComeBackByReference) {
  AutomationErp parts(erp, *component);
  LateBoundErp lateBound(parts);
  const PriceQuestion question{"20001", "A100", 10, "ST", makeDate(2026, 11, 24)};
  const auto typed = erp.components.createPreisfindung();
  const auto late = lateBound.createPreisfindung();
  typed->Init(connection());
  late->setConnection(connection());
  late->Init(connection());
  SalesPrice expected;
  SalesPrice found;
  EXPECT_EQ(late->GetVKPreis(question, found), typed->GetVKPreis(question, expected));
  EXPECT_EQ(found.price, 9);
  EXPECT_EQ(found.calculatedPrice, 9);
  EXPECT_EQ(found.priceUnit, 1);
  EXPECT_EQ(found.discount, expected.discount);
  EXPECT_EQ(found.discountKind, expected.discountKind);
  EXPECT_EQ(found.discounts.kind, "A");
  EXPECT_EQ(found.discounts.values, (std::array<double, 3>{10, 5, 0}));
  EXPECT_EQ(found.source, expected.source);
  EXPECT_EQ(late->GetVKPreis({"20001", "NICHTS", 1, "ST", std::nullopt}, found), Preisfindung::notFound);
  EXPECT_EQ(late->GetGesamtRabattWert(expected.discounts, 50),
            typed->GetGesamtRabattWert(expected.discounts, 50));
  EXPECT_EQ(late->GetGesamtRabattSatz(expected.discounts), typed->GetGesamtRabattSatz(expected.discounts));
  parts.missing = {"qxPLU.clsPLU"};
  EXPECT_EQ(outcome([&] { lateBound.createPreisfindung(); }),
            "429: Die Komponente 'qxPLU.clsPLU' kann nicht erzeugt werden.");
}

} // namespace qx::automation
