// A small company, staged jobs and the dialogs that open them.
#pragma once

#include "../engine/order_fixture.h"

#include "ui/job_dialogs.h"
#include "ui/lookup_bridge.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace qx {

/// Answers every lookup with what the test says.
class ScriptedAuskunft final : public Auskunft {
public:
  ScriptedAuskunft(const std::vector<std::string>& answer, std::vector<std::string>& criteria)
      : answer_(answer), criteria_(criteria) {}
  std::vector<std::string> show(Session& /*session*/, const LookupRequest& request) override {
    criteria_.push_back(request.recordSource + "|" + request.criteria.text());
    return answer_;
  }

private:
  const std::vector<std::string>& answer_;
  std::vector<std::string>& criteria_;
};

class DialogTest : public OrderTest {
protected:
  DialogTest() {
    usualContract = usualContract + Properties{{"Zustand", "A"},
                                               {"Intervall", 12},
                                               {"Menge", 1},
                                               {"Vertragsdatum", "01.11.2026"},
                                               {"Vertragsbeginn", "01.12.2026"}};
    erp.components.setAuskunftFactory(
        [this] { return std::make_unique<ScriptedAuskunft>(chosen, lookupsOpened); });
    add("Vertragsarten", {{"Vertragsart", "W"}, {"Kurztext", "Wartung"}});
    add("Vertragsgegenstände", {{"VertrGegenstandsNr", "G1"}, {"Bez", "Kassenwartung"}});
    add("Kundengruppen", {{"Kundengruppe", "GH"}, {"Langtext", "Großhandel"}});
    add("PreislistenKopf", {{"Preisliste", "A"}, {"Langtext", "Liste A"}});
  }

  std::unique_ptr<JobDialogPresenter> opened(std::string_view jobId) {
    auto dialog = makeJobDialog(context, jobType(jobId));
    EXPECT_TRUE(dialog->load(jobId)) << dialog->notice();
    return dialog;
  }
  static std::size_t indexOf(const JobDialogPresenter& dialog, std::string_view control) {
    const auto found = dialog.find(control);
    EXPECT_TRUE(found) << control;
    return found.value_or(0);
  }
  static const ControlState& state(const JobDialogPresenter& dialog, std::string_view control) {
    return dialog.control(indexOf(dialog, control));
  }
  /// The clerk types into a control and leaves it.
  static void enter(JobDialogPresenter& dialog, std::string_view control, std::string_view text) {
    dialog.type(indexOf(dialog, control), text);
    dialog.leave(indexOf(dialog, control));
  }
  /// "code severity text" of each finding, without the hints.
  static std::vector<std::string> findings(const JobDialogPresenter& dialog) {
    std::vector<std::string> lines;
    for (const ListedFinding& finding : dialog.findings())
      if (!finding.found.isHint())
        lines.push_back(std::string(finding.code()) +
                        (finding.item().empty() ? "" : " " + finding.found.position.number) + "|" +
                        std::to_string(static_cast<int>(finding.found.severity)) + "|" + finding.text());
    return lines;
  }
  static std::vector<std::string> hints(const JobDialogPresenter& dialog) {
    std::vector<std::string> texts;
    for (const ListedFinding& finding : dialog.findings())
      if (finding.found.isHint()) texts.push_back(finding.text());
    return texts;
  }
  static std::vector<std::string> codes(const JobDialogPresenter& dialog) {
    std::vector<std::string> codes;
    for (const ListedFinding& finding : dialog.findings())
      if (!finding.found.isHint()) codes.emplace_back(finding.code());
    std::sort(codes.begin(), codes.end());
    return codes;
  }
  void set(std::string_view jobId, std::string_view column, std::string_view text) {
    execute("Update ImportKopf Set "_sql, name(column), " = '"_sql, value(text), "' Where JobID = '"_sql,
            value(jobId), "'"_sql);
  }

  std::vector<std::string> chosen;        ///< what a lookup gives
  std::vector<std::string> lookupsOpened; ///< "record source|criteria"
  LookupBridge lookups{erp.environment};
  DialogContext context{erp.environment, engine, lookups};
};

} // namespace qx
