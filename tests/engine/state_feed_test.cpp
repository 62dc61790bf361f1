// The changes of states that the feed of results is told, whoever makes them.
#include "engine_fixture.h"

#include "engine/contract_check.h"
#include "store/job_deletion.h"
#include "store/state_feed.h"

#include <gmock/gmock.h>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class Feed : public EngineTest {
protected:
  /// "number: key code ERP number|first reason" of all changes, in their order.
  std::vector<std::string> told() {
    std::vector<std::string> changes;
    const auto rows = open("Select * From Zustandswechsel Order By Folge"_sql);
    for (; !rows->eof(); rows->moveNext()) {
      EXPECT_EQ(rows->text("Zeitpunkt"), "20261124103000");
      const std::string reasons = rows->text("Fehlertext");
      changes.push_back(rows->text("Folge") + ": " + rows->text("JobID") + ' ' + rows->text("JobType") + ' ' +
                        rows->text("Nummer") + '|' + reasons.substr(0, reasons.find('\r')));
    }
    return changes;
  }
  std::int64_t counter() { return count("Select Stand From Zaehlerstaende"_sql); }
};

TEST_F(Feed, IsToldEachOutcomeOfARunOnceAndInItsOrder) {
  stageCustomer("gut", "70001");
  stageCustomer("schlecht", "70002", {{"Kundengruppe", "keine"}});
  erp.setOption("AutomatischVerarbeiten", "1");
  EXPECT_TRUE(run());
  EXPECT_THAT(told(), ElementsAre("1: gut 13 70001|",
                                  "2: schlecht 11 |Beim Verarbeiten wurden Warnungen festgestellt."));
  EXPECT_TRUE(run());
  EXPECT_EQ(counter(), 2) << "a parked job stays as it is";
  // Back to waiting and then written, in the same run; after that it is released, but done.
  release("schlecht");
  execute("Update ImportKopf Set Kundengruppe = Null"_sql);
  EXPECT_TRUE(run());
  EXPECT_TRUE(run());
  EXPECT_THAT(told(), ElementsAre("1: gut 13 70001|",
                                  "2: schlecht 11 |Beim Verarbeiten wurden Warnungen festgestellt.",
                                  "3: schlecht 10 |", "4: schlecht 13 70002|"));
}

TEST_F(Feed, IsToldACustomerThatFailsWithItsContract) {
  stageCustomer("K", "70001");
  Vertrag contract(erp.environment);
  contract.JobID = "V";
  contract.JobType = qxtjobkundenverträge;
  contract.Kundennummer = "70001";
  contract.Artikelnummer = "fehlt";
  writeStaged(connection(), static_cast<const VertragFields&>(contract));
  EXPECT_TRUE(run(qxProcessState::ProcessVerträge));
  const auto changes = told();
  ASSERT_EQ(changes.size(), 2U);
  EXPECT_THAT(changes[0], HasSubstr("1: K 12 |"));
  EXPECT_THAT(changes[1], HasSubstr("2: V 42 |"));
}

TEST_F(Feed, KnowsNothingOfAGroupThatWasLost) {
  stageMany(150);
  // The group of J120 is done again in smaller ones, and then it alone fails.
  refuse("INSERT ON Kundenstamm"_sql, "new.Kundennummer = '70120'"_sql, "'nein'"_sql, true);
  EXPECT_TRUE(run());
  EXPECT_EQ(counter(), 150);
  EXPECT_EQ(count("Select Count(Distinct JobID) From Zustandswechsel"_sql), 150);
  EXPECT_EQ(count("Select Count(*) From Zustandswechsel, ImportKopf Where ImportKopf.JobID = "
                  "Zustandswechsel.JobID And ImportKopf.JobType = Zustandswechsel.JobType"_sql),
            150);
  EXPECT_EQ(count("Select Max(Folge) From Zustandswechsel"_sql), 150);
}

TEST_F(Feed, IsWrittenAtTheEndOfEachJobOfAHost) {
  stageMany(3);
  becomeHost();
  ImportJobObject2 host(erp.environment);
  EXPECT_TRUE(host.ProcessJobs());
  EXPECT_THAT(told(), ElementsAre("1: J1 13 70001|", "2: J2 13 70002|", "3: J3 13 70003|"));
}

TEST_F(Feed, ThatRefusesARowOrIsMissingKeepsNoRunFromItsWork) {
  stageMany(3);
  refuse("INSERT ON Zustandswechsel"_sql, "'gesperrt'"_sql);
  EXPECT_TRUE(run());
  EXPECT_EQ(done(), 3);
  EXPECT_EQ(protocolLines(), 3);
  EXPECT_EQ(outcomes.size(), 3U);
  ASSERT_EQ(erp.diagnostics.entries.size(), 1U) << erp.diagnostics.text();
  EXPECT_THAT(erp.diagnostics.text(), HasSubstr("feed of results | gesperrt"));
  EXPECT_EQ(counter(), 0) << "a number is given out with its row";
  allow();
  stageCustomer("spät", "70009");
  EXPECT_TRUE(run());
  EXPECT_THAT(told(), ElementsAre("1: spät 13 70009|"));
  execute("Drop Table Zustandswechsel"_sql);
  erp.environment.connection = erp.secondConnection();
  ImportJobObject2 later(erp.environment);
  stageCustomer("ohne", "70010");
  erp.diagnostics.entries.clear();
  EXPECT_TRUE(later.ProcessJobs());
  EXPECT_EQ(done(), 5);
  EXPECT_EQ(erp.diagnostics.text(), "");
}

TEST_F(Feed, IsToldWhatTheClerkDoesButNotTheClearingOfDoneJobs) {
  stageCustomer("fort", "70001");
  stageCustomer("fertig", "70002");
  stageCustomer("bleibt", "70003");
  execute("Update ImportKopf Set JobType = 13 Where JobID = 'fertig'"_sql);
  engine.DelItem("FORT");
  engine.DelItem("gibt es nicht");
  EXPECT_THAT(told(), ElementsAre("1: fort 14 |"));
  JobDeletion(erp.environment).DelArchives();
  EXPECT_EQ(count("Select Count(*) From ImportKopf"_sql), 1);
  EXPECT_EQ(counter(), 1);
  refuse("DELETE ON ImportKopf"_sql, "'nein'"_sql);
  engine.DelItem("bleibt");
  allow();
  EXPECT_EQ(counter(), 1) << "it was not deleted";

  Vertrag contract(erp.environment);
  contract.JobID = "V";
  contract.Menge = 0;
  contract.AddItem();
  ContractCheck(erp.environment).checkContract("V");
  ContractCheck(erp.environment).checkContract("V");
  // Whoever stages it again starts it anew.
  contract.AddItem();
  contract.AddItem();
  const auto changes = told();
  ASSERT_EQ(changes.size(), 3U);
  EXPECT_THAT(changes[1], HasSubstr("2: V 22 |"));
  EXPECT_EQ(changes[2], "3: V 20 |");
}

} // namespace
} // namespace qx
