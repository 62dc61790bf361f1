// The dialogs and the check give each demo job one answer, and saving leaves it as it was.
#include "engine/import_job_object2.h"
#include "erp/demo_data.h"
#include "support/test_erp.h"
#include "ui/job_dialogs.h"
#include "ui/lookup_bridge.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace qx {
namespace {

class Agreement : public testing::Test {
protected:
  Agreement() {
    WorkUnit unit(erp.connection());
    erp::fillDemoData(erp.connection());
    erp::stageDemoJobs(erp.connection(), makeDate(2026, 11, 24));
    unit.commit();
  }

  std::vector<std::string> jobs() {
    std::vector<std::string> keys;
    for (const auto& job : erp.rows("Select JobID From ImportKopf Where JobType In (10, 11, 12, 20, 21, 22, "
                                    "30, 31, 32, 40, 41, 42) Order By JobID"_sql))
      keys.push_back(job[0].text());
    return keys;
  }
  std::unique_ptr<JobDialogPresenter> opened(const std::string& job) {
    auto dialog = makeJobDialog(context, *JobEditing(erp.environment).codeOf(job));
    EXPECT_TRUE(dialog->load(job)) << job << dialog->notice();
    dialog->checkMore(dialog->checksLeft());
    return dialog;
  }
  int check(const std::string& job) { return static_cast<int>(engine.checkJob(job).status()); }

  TestErp erp;
  ImportJobObject2 engine{erp.environment};
  LookupBridge lookups{erp.environment};
  DialogContext context{erp.environment, engine, lookups};
};

/// The findings that the clerk sees though the job goes through with them, as "job: codes".
std::string onlyTold(const std::string& job, const JobDialogPresenter& dialog, CheckStatus answer) {
  std::string codes;
  for (const ListedFinding& finding : dialog.findings())
    if (finding.found.severity > answer && finding.found.rule != Rule::EarlierReasons)
      (codes += " ") += finding.code();
  return codes.empty() ? codes : job.substr(job.size() - 2) + ":" + codes;
}

TEST_F(Agreement, TheDialogAndTheCheckGiveEachDemoJobOneAnswer) {
  std::vector<std::string> told;
  for (const std::string& job : jobs()) {
    const auto dialog = opened(job);
    ASSERT_TRUE(dialog->verdict()) << job << ": " << dialog->notice();
    EXPECT_EQ(static_cast<int>(*dialog->verdict()), check(job)) << job;
    // Nothing that the check finds stays without a line.
    CheckStatus worst = CheckStatus::Clean;
    for (const ListedFinding& finding : dialog->findings()) worst = worse(worst, finding.found.severity);
    EXPECT_GE(worst, *dialog->verdict()) << job;
    if (const std::string line = onlyTold(job, *dialog, *dialog->verdict()); !line.empty())
      told.push_back(line);
  }
  // A new customer (KN) is not an error of his job. An unknown currency (WÄ) is refused by the run only. A
  // contract without a state is written as an active one, one with any interval with that interval. A
  // price that differs is told.
  EXPECT_THAT(told, testing::ElementsAre("01: KN", "02: KN", "03: KN", "04: KN", "05: KN", "06: KN", "12: KN",
                                         "13: KN", "14: KN", "20: KN", "21: WÄ KN", "41: ZD INT", "63: PR"));
}

TEST_F(Agreement, SavingADemoJobWithoutAChangeLeavesItsAnswerAsItWas) {
  ASSERT_EQ(jobs().size(), 93U);
  for (const std::string& job : jobs()) {
    SCOPED_TRACE(job);
    const int before = check(job);
    const auto dialog = opened(job);
    ASSERT_TRUE(dialog->save()) << dialog->notice();
    EXPECT_EQ(check(job), before);
    EXPECT_EQ(static_cast<int>(dialog->verdict().value_or(CheckStatus::Clean)), before);
    const auto row =
        erp.rows("Select JobType, Status, ImportType, Fehlertext From ImportKopf Where JobID = '"_sql,
                 value(job), "'"_sql)[0];
    EXPECT_EQ(row[2].integer(), before) << "ImportType";
    const auto kind = kindOf(static_cast<std::int16_t>(*row[0].integer()));
    if (kind == qxtjobkunden) continue;
    EXPECT_EQ(row[1].integer(), before) << "Status";
    if (kind == qxtJobAufträge) continue;
    EXPECT_EQ(*row[0].integer(), kind + (before - 10) / 10) << "JobType";
    EXPECT_EQ(row[3].text(), engine.checkJob(job).text()) << "Fehlertext";
  }
}

} // namespace
} // namespace qx
