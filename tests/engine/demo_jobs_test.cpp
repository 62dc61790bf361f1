// The demo jobs show every finding of the checks and every reason for which something is not written.
#include "engine/contract_check.h"
#include "engine/contract_texts.h"
#include "engine/import_job_object2.h"
#include "engine/order_texts.h"
#include "erp/demo_data.h"
#include "erp/demo_jobs.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {
namespace {

/// What stands in the jobs, and what was shown at the end of the orders.
struct Texts {
  std::vector<std::string> orders;
  std::vector<std::string> contracts;
};

/// The invented company with its jobs on the day of their receipt.
class DemoErp : public TestErp {
public:
  DemoErp() {
    WorkUnit unit(connection());
    erp::fillDemoData(connection());
    erp::stageDemoJobs(connection(), makeDate(2026, 11, 24));
    unit.commit();
  }

  void run() { EXPECT_TRUE(engine.ProcessJobs()); }
  /// As the dialogs check contracts when a clerk opens them.
  void checkContracts() {
    ContractCheck check(environment);
    for (const auto& job : rows(sql("Select JobID, Kundennummer From ImportKopf Where JobType < 30 Or "
                                    "JobType >= 40"_sql))) {
      check.checkContract(job[0].text());
      check.checkCustomerContracts(job[1].text());
    }
  }
  Texts texts() {
    Texts all;
    for (const auto& job :
         rows(sql("Select Fehlertext, JobType From ImportKopf Where Fehlertext <> '' And JobType >= 20"_sql)))
      (job[1].integer() >= 30 && job[1].integer() < 40 ? all.orders : all.contracts).push_back(job[0].text());
    for (const Message& box : desktop.shown) all.orders.push_back(box.text);
    return all;
  }

private:
  ImportJobObject2 engine{environment};
};

/// The texts after each way of going through the demo jobs.
struct Ways {
  Texts asTheyCome, ownMode, released, checked;

  static Ways go() {
    Ways ways;
    DemoErp plain;
    plain.run();
    ways.asTheyCome = plain.texts();
    plain.execute(sql("Update ImportKopf Set ProcessWarning = 1 Where JobType In (31, 32)"_sql));
    plain.run();
    ways.released = plain.texts();

    DemoErp own;
    own.setSetting("Allgemein", "Individual", "VLK");
    own.setOption("KostenzuordnungAuftrag", "1");
    own.run();
    ways.ownMode = own.texts();

    DemoErp checked;
    checked.checkContracts();
    ways.checked = checked.texts();
    return ways;
  }
};

/// A table with a row for every text that is looked for and how often each way showed it.
class Seen {
public:
  using Kind = std::vector<std::string> Texts::*;

  explicit Seen(const Ways& ways) : ways_(ways) {}

  void count(Kind kind, std::string_view text, const std::function<bool(const std::string&)>& matches) {
    const auto in = [&](const Texts& texts) { return std::ranges::count_if(texts.*kind, matches); };
    const auto plain = in(ways_.asTheyCome);
    const auto own = in(ways_.ownMode);
    const auto released = in(ways_.released);
    const auto checked = in(ways_.checked);
    (table_ += text) += ": " + std::to_string(plain) + " as they come, " + std::to_string(own) +
                        " in the own mode, " + std::to_string(released) + " released, " +
                        std::to_string(checked) + " checked\n";
    if (plain + own + released + checked == 0) missing.emplace_back(text);
  }

  const std::string& table() const { return table_; }
  std::vector<std::string> missing;

private:
  const Ways& ways_;
  std::string table_;
};

bool hasLine(std::string_view text, std::string_view line) {
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find("\r\n", begin), text.size());
    if (text.substr(begin, end - begin) == line) return true;
    begin = end + 2;
  }
  return false;
}

TEST(DemoJobs, ShowEveryFindingAndEveryFailure) {
  const Ways ways = Ways::go();
  Seen seen(ways);
  const auto finding = [&](std::string_view token) {
    seen.count(&Texts::orders, token, [token](const std::string& text) {
      return text.starts_with("Beim Verarbeiten wurden Warnungen festgestellt.") && hasLine(text, token);
    });
  };
  std::ranges::for_each(order_tokens::general, finding);
  std::ranges::for_each(order_tokens::customerSpecific, finding);
  // A reason of the writing stands alone, so that it is not taken for the token of the same words.
  for (const OrderSentence& failure : order_failures::all)
    seen.count(&Texts::orders, failure.before, [&failure](const std::string& text) {
      return text.starts_with(failure.before) && text.ends_with(failure.after) &&
             text.find("\r\n") == std::string::npos;
    });
  seen.count(&Texts::orders, heavyCashOnDelivery,
             [](const std::string& text) { return text.starts_with(heavyCashOnDelivery); });
  for (const std::string_view text : contract_findings::all)
    seen.count(&Texts::contracts, text,
               [text](const std::string& reasons) { return hasLine(reasons, text); });
  for (const std::string_view text : contract_failures::all)
    seen.count(&Texts::contracts, text, [text](const std::string& reasons) {
      return reasons.starts_with(text) || reasons.find("\r\n" + std::string(text)) != std::string::npos;
    });
  EXPECT_EQ(seen.missing, std::vector<std::string>()) << seen.table();
}

} // namespace
} // namespace qx
