// The demo jobs show every finding of the checks and every reason for which something is not written.
#include "engine/import_job_object2.h"
#include "erp/demo_data.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qx {
namespace {

/// The invented company with its jobs on the day of their receipt.
class DemoErp : public TestErp {
public:
  DemoErp() {
    WorkUnit unit(connection());
    erp::fillDemoData(connection());
    erp::stageDemoJobs(connection(), makeDate(2026, 11, 24));
    unit.commit();
    engine.setOutcomeSink([this](const JobOutcome& outcome) { note(outcome.findings); });
  }

  void run() { EXPECT_TRUE(engine.ProcessJobs()); }
  void check() {
    for (const auto& job : rows(sql("Select JobID From ImportKopf"_sql)))
      note(engine.checkJob(job[0].text()));
  }

  std::set<std::string> broken; ///< codes of the rules
  std::vector<std::string> unexplained;

private:
  void note(const Findings& findings) {
    for (const Finding& finding : findings) {
      const RuleTerms& row = terms(finding.rule);
      broken.emplace(row.code);
      if (finding.rule == Rule::ProcessingFailed || row.run.empty()) continue;
      if (!says(row, runText(finding))) unexplained.push_back(runText(finding));
    }
  }

  ImportJobObject2 engine{environment};
};

/// What no job alone can bring about: a number in use, line numbers used up, a tax table or a setting that
/// cannot be read; a contract date of other words; and numbers beyond all sense.
const std::set<std::string_view> beyondTheDemo{
    "contract.date.invalid",         "contract.price.too_large",    "contract.price.no_number",
    "contract.quantity.too_large",   "contract.quantity.no_number", "order.number.in_use",
    "order.quantity.too_large",      "order.discount.too_large",    "order.price_unit.too_large",
    "order.cost_assignment.invalid", "order.position_number.none",  "order.tax_change_day.unreadable",
    "order.tax_rate.invalid",        "order.currency.ignored",      "order.exchange_rate.missing",
    "order.credit_limit.doubtful",   "order.customer.waiting"};

TEST(DemoJobs, ShowEveryFindingAndEveryFailure) {
  DemoErp plain;
  plain.check();
  plain.run();
  EXPECT_TRUE(std::ranges::any_of(plain.desktop.shown, [](const Message& box) {
    return box.text.starts_with("Folgende Aufträge enthalten Zahlungsart Nachnahme");
  }));
  plain.execute(sql("Update ImportKopf Set ProcessWarning = 1 Where JobType In (31, 32)"_sql));
  plain.run();
  DemoErp own;
  own.setSetting("Allgemein", "Individual", "VLK");
  own.setOption("KostenzuordnungAuftrag", "1");
  own.run();
  EXPECT_EQ(plain.unexplained, std::vector<std::string>()) << "texts that lead to no rule";
  EXPECT_EQ(own.unexplained, std::vector<std::string>());
  std::set<std::string> broken = plain.broken;
  broken.insert(own.broken.begin(), own.broken.end());
  std::vector<std::string_view> missing;
  for (const RuleTerms& rule : allTerms())
    if (!rule.run.empty() && (rule.code.starts_with("order.") || rule.code.starts_with("contract.")) &&
        !beyondTheDemo.contains(rule.code) && !broken.contains(std::string(rule.code)))
      missing.push_back(rule.code);
  EXPECT_EQ(missing, std::vector<std::string_view>());
}

} // namespace
} // namespace qx
