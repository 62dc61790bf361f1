// The job view without a window, on a whole ERP in a file.
#include "ui/job_view_presenter.h"

#include "erp/demo_data.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace qx {
namespace {

/// Keeps what it was asked and answers as the test says.
class RecordingWindows final : public JobViewHost {
public:
  DialogEnd openJob(std::string_view jobId, const JobPlace& place) override {
    opened.push_back(std::string(jobId) + " " + std::to_string(place.number) + "/" +
                     std::to_string(place.count));
    if (onOpen) onOpen(jobId);
    return opened.size() <= ends.size() ? ends[opened.size() - 1] : DialogEnd::Closed;
  }
  void options() override {
    ++optionsShown;
    if (onOptions) onOptions();
  }
  void deleteDate() override { ++deleteDates; }
  void about() override { ++abouts; }
  void report(std::string_view title, std::string_view text) override {
    reports.push_back(std::string(title) + "|" + std::string(text));
  }
  void showCurrent() override { ++currentShown; }
  void redraw() override { ++redraws; }
  void closeWindow() override { ++closings; }
  std::optional<DeletionAnswer> askDeletion(const Message& question) override {
    questions.push_back(question.text);
    return deletion;
  }
  std::unique_ptr<BusyWait> databaseWait() override {
    class GivingUp final : public BusyWait {
    public:
      bool goOn(std::chrono::milliseconds) override { return false; }
    };
    return std::make_unique<GivingUp>();
  }

  std::vector<std::string> opened;
  std::vector<DialogEnd> ends; ///< what the clerk wants after each dialog, then to close it
  int optionsShown = 0;
  int deleteDates = 0;
  int abouts = 0;
  int currentShown = 0;
  int redraws = 0;
  std::vector<std::string> reports; ///< "title|text"
  int closings = 0;
  std::vector<std::string> questions;     ///< before deletions
  std::optional<DeletionAnswer> deletion; ///< null for the desktop's question
  std::function<void(std::string_view)> onOpen;
  std::function<void()> onOptions;
};

class JobViewTest : public ::testing::Test {
protected:
  JobViewTest() { erp.setOption("AppSettings", "1"); }

  void stage(std::string_view jobId, std::int16_t jobType, std::string_view date = "24.11.2026",
             std::string_view name = "", std::string_view customer = "", std::string_view subject = "") {
    erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum, Bez1, Kundennummer, Betreff) "
                "Values ('"_sql,
                value(jobId), "', "_sql, number(jobType), ", '"_sql, value(date), "', '"_sql, value(name),
                "', '"_sql, value(customer), "', '"_sql, value(subject), "')"_sql);
  }
  void stageDemo() {
    WorkUnit unit(erp.connection());
    erp.execute("Delete From Einstellungen Where \"Key\" = 'AppSettings'"_sql);
    erp::fillDemoData(erp.connection());
    erp::stageDemoJobs(erp.connection(), makeDate(2026, 11, 24));
    unit.commit();
  }
  void show() {
    view.create();
    view.load();
  }
  std::string listed() const {
    std::string keys;
    for (const JobListRow& row : view.state().rows) keys += row.jobId + " ";
    return keys;
  }
  std::string option(std::string_view section, std::string_view key) {
    return erp.environment.session->GetSetting(section, key, std::nullopt);
  }
  std::string local(std::string_view key, std::string_view section = "MAIN") {
    return erp.localSettings.read("QXImportJob", section, key);
  }
  void setLocal(std::string_view section, std::string_view key, std::string_view text) {
    erp.localSettings.write("QXImportJob", section, key, text);
  }

  TestErp erp;
  ImportJobObject2 engine{erp.environment};
  RecordingWindows windows;
  JobViewPresenter view{erp.environment, engine, windows};
  const JobViewState& state = view.state();
};

TEST_F(JobViewTest, FiltersByStateAndSaysWhyNothingIsListed) {
  for (const std::int16_t jobType : {0, 10, 21, 32, 13, 40, 43})
    stage("T" + std::to_string(jobType), jobType);
  show();
  EXPECT_EQ(listed(), "T32 T21 T10 T0 ");
  EXPECT_EQ(cellText(state.rows[0], JobColumn::Vorgang), "Auftrag (fehler)");
  EXPECT_EQ(cellText(state.rows[1], JobColumn::Vorgang), "Vertrag (prüfen)");
  EXPECT_EQ(cellText(state.rows[2], JobColumn::Vorgang), "Kunden");
  EXPECT_EQ(state.counts, (JobCounts{1, 1, 1, 1}));
  view.command(Tool::ViewDone);
  EXPECT_TRUE(state.tool(Tool::ViewDone).checked);
  EXPECT_EQ(listed(), "T13 T32 T21 T10 T0 ");
  for (const Tool tool : {Tool::ViewDone, Tool::ViewWaiting, Tool::ViewWarnings, Tool::ViewError})
    view.command(tool);
  EXPECT_EQ(listed(), "T0 ");
  EXPECT_EQ(state.emptyHint, "");
  erp.execute("Delete From ImportKopf Where JobType = 0"_sql);
  view.key(JobViewKey::F5);
  EXPECT_NE(state.emptyHint.find("kein Zustand"), std::string::npos);
  EXPECT_EQ(state.countText, "0 Vorgänge");
}

TEST_F(JobViewTest, SortsByColumnWithAFlagOfItsOwnForEach) {
  stage("A", 30, "02.12.2006", "b", "3");
  stage("B", 10, "15.01.2006", "C", "2");
  stage("C", 20, "unlesbar", "a", "1");
  show();
  EXPECT_EQ(listed(), "A B C ");
  EXPECT_TRUE(state.sortDescending);
  view.headClick(3);
  EXPECT_EQ(listed(), "C B A ");
  view.headClick(2);
  EXPECT_EQ(listed(), "B C A ");
  view.headClick(5);
  EXPECT_EQ(listed(), "C A B ");
  // A column without an order keeps the last one; its flag toggles all the same.
  view.headClick(6);
  EXPECT_EQ(listed(), "C A B ");
  EXPECT_EQ(state.sortColumn, JobColumn::Bez1);
  view.headClick(5);
  EXPECT_EQ(listed(), "B A C ");
  view.headClick(3);
  EXPECT_EQ(listed(), "A B C ");
  view.headClick(99);
  EXPECT_EQ(listed(), "A B C ");
  view.headClick(4);
  EXPECT_EQ(listed(), "C B A ");
}

TEST_F(JobViewTest, ASelectionProcessesItsKindAlone) {
  for (const auto& [tool, taken] :
       {std::pair(Tool::Kunden, "K "), std::pair(Tool::Verträge, "V "), std::pair(Tool::Aufträge, "A "),
        std::pair(Tool::KundenVerträge, "K V ")}) {
    erp.execute("Delete From ImportKopf"_sql);
    stage("A", 30);
    stage("K", 10);
    stage("V", 20);
    show();
    view.command(tool);
    EXPECT_EQ(erp.keys("Select JobID From ImportKopf Where JobType Not In (10, 20, 30) Order By JobID"_sql),
              taken);
  }
}

TEST_F(JobViewTest, ListsTheFirstTwoThousandAndSaysSo) {
  {
    WorkUnit unit(erp.connection());
    for (int i = 0; i < 2001; ++i) stage("J" + std::to_string(i), 10);
    unit.commit();
  }
  show();
  EXPECT_EQ(state.rows.size(), jobListLimit);
  EXPECT_EQ(state.rows.front().jobId, "J2000");
  EXPECT_EQ(state.notice, "Es werden die ersten 2000 Vorgänge angezeigt.");
}

TEST_F(JobViewTest, ASearchFindsAJobBehindTheFirstTwoThousand) {
  {
    WorkUnit unit(erp.connection());
    stage("LETZTER", 11, "01.01.2020", "Ölmann", "70331");
    stage("ERLEDIGT", 13, "01.01.2020", "Ölmann", "70331");
    for (int i = 0; i < 2001; ++i) stage("J" + std::to_string(i), 10);
    unit.commit();
  }
  show();
  view.search("öLMANN 703");
  EXPECT_EQ(listed(), "LETZTER ");
  EXPECT_EQ(state.countText, "1 unter 2.002 Vorgängen");
  EXPECT_EQ(state.notice, "");
  view.search("gibt es nicht");
  EXPECT_EQ(state.emptyHint, "Kein Vorgang passt zu der Suche unter allen 2.003 Vorgängen\n"
                             "Leeren Sie das Suchfeld, um alle zu sehen.");
  view.command(Tool::ViewWarnings);
  view.search("ölmann");
  EXPECT_EQ(state.emptyHint,
            "In den eingeschalteten Zuständen passt kein Vorgang zu der Suche\n"
            "Es passen 1 unter Warnungen, 1 unter Erledigt. Schalten Sie den Zustand oben ein.");
  view.search("");
  EXPECT_EQ(state.rows.size(), jobListLimit);
  EXPECT_EQ(state.countText, "2.000 von 2.001 Vorgängen");
}

TEST_F(JobViewTest, SearchesWhatIsListedAndKeepsTheCurrentJob) {
  stage("A", 10, "24.11.2026", "MÜLLER & Söhne", "10023", "Neukunde");
  stage("B", 30, "24.11.2026", "Hafenbau", "10007", "Bestellung 5");
  stage("C", 10, "24.11.2026", "Hafen", "20000", "");
  show();
  view.select(1);
  view.search(" hafen 1000 ");
  EXPECT_EQ(listed(), "B ");
  EXPECT_EQ(state.current, std::size_t{0});
  EXPECT_EQ(state.countText, "1 unter 3 Vorgängen");
  view.search("müller");
  EXPECT_EQ(listed(), "A ");
  view.search("nirgends");
  EXPECT_FALSE(state.current.has_value());
  EXPECT_FALSE(state.emptyHint.empty());
  view.search("");
  EXPECT_EQ(listed(), "C B A ");
}

TEST_F(JobViewTest, ARefreshKeepsTheJobAndElseItsPlace) {
  for (const char* jobId : {"A", "B", "C"}) stage(jobId, 10);
  show();
  view.select(1);
  stage("D", 10);
  view.key(JobViewKey::F5);
  EXPECT_EQ(state.rows[*state.current].jobId, "B");
  erp.execute("Delete From ImportKopf Where JobID = 'B'"_sql);
  view.key(JobViewKey::F5);
  EXPECT_EQ(state.rows[*state.current].jobId, "A");
}

TEST_F(JobViewTest, DeletesAfterAQuestionWithOrWithoutThePermission) {
  stage("K", 10, "24.11.2026", "", "100");
  stage("V", 40, "24.11.2026", "", "100");
  show();
  EXPECT_FALSE(state.tool(Tool::Delete).visible);
  view.key(JobViewKey::Delete);
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(erp.desktop.asked[0].text, "Wollen Sie diesen Importvorgang wirklich löschen?\r\nKunden 100\r\n"
                                       "Dabei wird 1 Vertrag des Kunden gelöscht.");
  EXPECT_GT(windows.currentShown, 0) << "the clerk sees what is asked about";
  EXPECT_EQ(erp.desktop.asked[0].title, "Wirklich löschen?");
  EXPECT_EQ(listed(), "K ");
  erp.desktop.answer = true;
  view.key(JobViewKey::Delete);
  EXPECT_EQ(listed(), "");
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 0);
  view.key(JobViewKey::Delete);
  EXPECT_EQ(erp.desktop.asked.size(), 2U);

  const auto session = erp.environment.session;
  const auto offers = [&](const char* stored) {
    erp.environment.session = session;
    windows.onOptions = [&] {
      if (stored == nullptr)
        erp.environment.session = nullptr;
      else
        erp.setOption("Löschen", stored);
    };
    view.command(Tool::Options);
    return state.tool(Tool::Delete).visible;
  };
  for (const char* stored : {"1", "0", "Wahr", "falsch", "70000"})
    EXPECT_EQ(offers(stored), std::string_view("0") != stored && std::string_view("falsch") != stored)
        << stored;
  EXPECT_TRUE(offers(nullptr)) << "what cannot be read takes no permission away";
  EXPECT_TRUE(offers("vielleicht"));
}

TEST_F(JobViewTest, OpensTheDialogOfAJobAndGoesOnToTheNext) {
  stage("C", 33);
  stage("X", 0);
  stage("B", 20);
  stage("A", 10);
  show();
  view.command(Tool::ViewDone);
  ASSERT_EQ(listed(), "A B X C ");
  windows.ends = {DialogEnd::Next, DialogEnd::Next, DialogEnd::Previous};
  // The saved job leaves the list: the next one is still the one that followed it.
  windows.onOpen = [&](std::string_view jobId) {
    if (jobId == "A") erp.execute("Delete From ImportKopf Where JobID = 'A'"_sql);
  };
  view.open(0);
  EXPECT_EQ(windows.opened, (std::vector<std::string>{"A 1/3", "B 1/2", "C 2/2", "B 1/2"}));
  view.open(1);
  EXPECT_EQ(windows.opened.size(), 4U) << "there is no dialog for code 0";
}

TEST_F(JobViewTest, MarkedJobsAreReleasedTakenBackAndDeletedTogether) {
  stage("K", 11, "24.11.2026", "Meier", "100");
  stage("A", 32);
  stage("W", 10);
  stage("V", 41, "24.11.2026", "", "100");
  show();
  ASSERT_EQ(listed(), "W A K ");
  EXPECT_FALSE(state.tool(Tool::Release).enabled) << "what waits needs no release";
  view.mark({2, 0, 1});
  EXPECT_EQ(state.countText, "3 markiert, 3 Vorgänge");
  view.command(Tool::Release);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where ProcessWarning = 1"_sql), 0);
  erp.desktop.answer = true;
  view.command(Tool::Release);
  EXPECT_EQ(erp.desktop.asked[1].text,
            "Soll die nächste Verarbeitung diese 2 Vorgänge trotz ihrer Befunde übernehmen?");
  EXPECT_EQ(state.result, "2 Vorgänge freigegeben");
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where ProcessWarning = 1"_sql), 2);
  EXPECT_EQ(rowStateText(state.rows[1]), "Fehler, freigegeben");
  EXPECT_EQ(filterText(state, Tool::ViewWarnings), "Warnungen 1, davon 1 freigegeben");
  EXPECT_EQ(filterText(state, Tool::ViewWaiting), "Wartend 1");
  EXPECT_EQ(state.marked, (std::vector<std::size_t>{0, 1, 2})) << "still marked after the refresh";

  view.mark({2});
  view.select(2);
  view.readDetails();
  EXPECT_EQ(state.details.substr(0, 12), "Freigegeben:");
  view.command(Tool::TakeBack);
  EXPECT_EQ(erp.desktop.asked[2].text, "Soll die Freigabe dieses Vorgangs zurückgenommen werden?\r\n"
                                       "Kunden (prüfen) 100 Meier");
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where ProcessWarning = 1"_sql), 1);

  view.mark({1, 2});
  view.key(JobViewKey::Delete);
  EXPECT_EQ(erp.desktop.asked[3].text, "Wollen Sie diese 2 Importvorgänge wirklich löschen?\r\n"
                                       "Dabei wird 1 Vertrag der Kunden gelöscht.");
  EXPECT_EQ(listed(), "W ");
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 1);
}

TEST_F(JobViewTest, CausesAreCountedOverAllJobsAndLimitTheList) {
  const auto reason = [&](const char* jobId, const char* text) {
    erp.execute("Update ImportKopf Set Fehlertext = '"_sql, value(text), "' Where JobID = '"_sql,
                value(jobId), "'"_sql);
  };
  for (const char* jobId : {"A", "B", "C"}) stage(jobId, 31);
  stage("D", 32);
  reason("A", "Beim Verarbeiten wurden Warnungen festgestellt.\r\nAchtung: Fehlende Kostenzuordnung für "
              "Artikel 'A1'!\r\nAchtung: Fehlende Kostenzuordnung für Artikel 'A2'!\r\n");
  reason("B", "Achtung: Fehlende Kostenzuordnung für Artikel 'A3'!");
  reason("C", "Das steht in keiner Regel.");
  reason("D", "Der Artikel: 'X' ist gesperrt!");
  show();
  view.readCauses();
  std::vector<std::string> causes;
  for (const JobCause& cause : state.causes)
    causes.push_back(std::to_string(cause.jobs.size()) + " " + cause.text);
  EXPECT_EQ(causes, (std::vector<std::string>{"2 Kostenzuordnung", "1 Das steht in keiner Regel.",
                                              "1 Der Artikel: '...' ist gesperrt!"}));
  view.showCause(0);
  EXPECT_EQ(listed(), "B A ");
  EXPECT_EQ(state.countText, "2 unter 4 Vorgängen");
  // The cause stays chosen while it holds up a job.
  reason("A", "");
  view.key(JobViewKey::F5);
  view.readCauses();
  EXPECT_EQ(listed(), "B ");
  view.command(Tool::ViewWarnings);
  view.readCauses();
  EXPECT_EQ(listed(), "D ") << "the cause is gone";
  EXPECT_EQ(state.causes.size(), 1U);
}

TEST_F(JobViewTest, ACheckSaysHowManyWaitingJobsHaveFindingsAndCanBeStopped) {
  stageDemo();
  show();
  view.command(Tool::UpdateDisplay);
  std::int64_t withFindings = 0;
  for (const JobListRow& row : state.rows)
    if (stateOf(row.jobType) == JobState::Waiting &&
        engine.checkJob(row.jobId).status() != CheckStatus::Clean)
      ++withFindings;
  EXPECT_EQ(state.result, std::to_string(withFindings) + " von " + std::to_string(state.counts.waiting) +
                              " wartenden Vorgängen haben Befunde");
  erp.desktop.onYield = [&] { view.command(Tool::StopProcessing); };
  view.command(Tool::UpdateDisplay);
  EXPECT_EQ(state.result,
            "Es wurde kein Vorgang geprüft; " + std::to_string(state.counts.waiting) + " warten");
  EXPECT_TRUE(state.listEnabled);
}

TEST_F(JobViewTest, ARunReportsToTheOtherProgramsAndRefreshesTheList) {
  stageDemo();
  show();
  view.search("");
  const std::int64_t waiting = state.counts.waiting;
  ASSERT_GT(waiting, 3);
  std::string flagDuringRun;
  std::vector<std::string> labels;
  int percent = 0;
  erp.desktop.onYield = [&] {
    flagDuringRun = option("ImportJob2", "OnProcess");
    if (labels.empty() || labels.back() != state.label) labels.push_back(state.label);
    percent = std::max(percent, state.progress.value_or(0));
    EXPECT_FALSE(state.listEnabled);
    EXPECT_TRUE(state.progressVisible);
    for (const ToolSpec& spec : jobViewTools())
      EXPECT_TRUE(spec.tool == Tool::StopProcessing || !state.tool(spec.tool).enabled) << spec.name;
  };
  view.key(JobViewKey::F9);
  EXPECT_EQ(flagDuringRun, "1");
  EXPECT_EQ(option("ImportJob2", "OnProcess"), "0");
  ASSERT_GE(labels.size(), 2U);
  EXPECT_EQ(labels.front(), "Daten werden verarbeitet...");
  EXPECT_EQ(labels.back(), "Daten werden aktuallisiert...");
  EXPECT_GT(percent, 0);
  EXPECT_LT(state.counts.waiting, waiting);
  EXPECT_EQ(state.counts.waiting,
            erp.count("Select Count(*) From ImportKopf Where JobType In (10,20,30)"_sql));
  EXPECT_TRUE(state.listEnabled);
  EXPECT_FALSE(state.progressVisible);
  EXPECT_EQ(state.label, "");
  const RunReport& run = engine.lastRun();
  EXPECT_EQ(state.result, std::to_string(run.done) + " erledigt, " + std::to_string(run.warning) +
                              " zurückgestellt, " + std::to_string(run.error) + " Fehler, " +
                              std::to_string(state.counts.waiting) + " warten");
  view.command(Tool::DayProtocol);
  ASSERT_EQ(windows.reports.size(), 1U);
  EXPECT_EQ(windows.reports[0].substr(0, 24), "Protokoll vom " + germanDate(engine.NowEx()));
  EXPECT_NE(windows.reports[0].find("\r\nErledigt  Kunden "), std::string::npos) << windows.reports[0];
}

TEST_F(JobViewTest, JobsThatARunHadToLeaveAreNamedWithTheirReason) {
  stage("A", 10, "24.11.2026", "Firma", "70001");
  stage("B", 10, "24.11.2026", "Firma", "70002");
  erp.execute("CREATE TRIGGER freeze BEFORE UPDATE ON ImportKopf WHEN new.JobID = 'B' "
              "BEGIN SELECT RAISE(ABORT, 'Vorgang gesperrt'); END"_sql);
  show();
  view.key(JobViewKey::F9);
  EXPECT_EQ(windows.reports,
            std::vector<std::string>{
                "Vorgänge, die nicht geändert werden konnten|Die Datenbank lehnt es ab, "
                "diese Vorgänge zu ändern. Sie stehen noch wie zuvor:\r\nB: Vorgang gesperrt"});
  erp.execute("Drop Trigger freeze"_sql);
  view.key(JobViewKey::F9);
  EXPECT_EQ(windows.reports.size(), 1U);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobType = 13"_sql), 2);
}

TEST_F(JobViewTest, NothingGetsThroughDuringARunButTheStop) {
  stageDemo();
  show();
  erp.desktop.answer = true;
  int yields = 0;
  erp.desktop.onYield = [&] {
    ++yields;
    erp.setOption("NewMail", "1");
    view.timerTick();
    erp.setOption("NewMail", "");
    EXPECT_FALSE(state.listEnabled);
    EXPECT_NE(state.label, "Bestellungen werden eingelesen...");
    for (const JobViewKey key : {JobViewKey::F9, JobViewKey::Delete, JobViewKey::F5, JobViewKey::Enter})
      view.key(key);
    for (const Tool tool :
         {Tool::ProcessTransactions, Tool::DeleteViewDone, Tool::Options, Tool::ViewDone, Tool::End})
      view.command(tool);
    view.headClick(2);
    view.open(0);
    if (yields == 2) view.command(Tool::StopProcessing);
  };
  view.command(Tool::ProcessTransactions);
  EXPECT_TRUE(erp.desktop.asked.empty());
  EXPECT_TRUE(windows.opened.empty());
  EXPECT_EQ(windows.optionsShown + windows.closings, 0);
  EXPECT_FALSE(state.tool(Tool::ViewDone).checked);
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_GT(state.counts.waiting, 0);
  erp.desktop.onYield = {};
  view.command(Tool::ProcessTransactions);
  EXPECT_EQ(engine.lastRun().end, RunEnd::Completed) << "the stop was for the run before";
}

TEST_F(JobViewTest, ClosingDuringARunStopsItAndClosesOnceItHasReturned) {
  stageDemo();
  show();
  bool refused = false;
  erp.desktop.onYield = [&] { refused = !view.close({}); };
  view.command(Tool::KundenVerträge);
  EXPECT_TRUE(refused);
  EXPECT_EQ(windows.closings, 1);
  EXPECT_EQ(engine.lastRun().end, RunEnd::Stopped);
  EXPECT_EQ(option("ImportJob2", "OnProcess"), "0");
  EXPECT_GT(erp.count("Select Count(*) From ImportKopf Where JobType = 20"_sql), 0)
      << "the second run must not begin";
  EXPECT_EQ(engine.ViewFormLoad, qxtViewJobForm_Nothing);
  EXPECT_TRUE(view.close({}));
  EXPECT_EQ(engine.ViewFormLoad, qxtViewJobForm_Unload);
}

TEST_F(JobViewTest, AnOrderBeingReadInBlocksTheListUntilItIsOver) {
  stage("A", 10);
  show();
  erp.setOption("NewMail", "1");
  view.timerTick();
  EXPECT_FALSE(state.tool(Tool::ProcessTransactions).enabled);
  EXPECT_FALSE(state.tool(Tool::UpdateDisplay).enabled);
  EXPECT_TRUE(state.tool(Tool::Options).enabled);
  EXPECT_FALSE(state.listEnabled);
  EXPECT_EQ(state.label, "Bestellungen werden eingelesen...");
  view.key(JobViewKey::F9);
  EXPECT_EQ(engine.lastRun().processed, 0U);
  EXPECT_EQ(option("ImportJob2", "OnProcess"), "");
  erp.setOption("NewMail", "0");
  view.timerTick();
  EXPECT_TRUE(state.tool(Tool::ProcessTransactions).enabled);
  EXPECT_TRUE(state.listEnabled);
  EXPECT_EQ(state.label, "");
}

TEST_F(JobViewTest, AFirstStartShowsTheOptionsThenReadsThePermissions) {
  erp.setOption("AppSettings", "");
  erp.setSetting("Allgemein", "Individual", "VLK");
  erp.setSetting("Process", "OnProcess", "1");
  windows.onOptions = [&] {
    erp.setOption("Löschen", "1");
    stage("A", 10);
  };
  show();
  EXPECT_EQ(windows.optionsShown, 1);
  EXPECT_TRUE(state.tool(Tool::Delete).visible);
  EXPECT_TRUE(state.tool(Tool::EinzelnVerarbeiten).visible);
  EXPECT_EQ(listed(), "A ");
  EXPECT_EQ(option("Process", "OnProcess"), "0");
}

TEST_F(JobViewTest, AFileHandedOverBeforeIsReadInOnceAndFilesAreAskedFor) {
  stage("A", 10, "24.11.2026", "Müller");
  show();
  const std::string file = (erp.folder.path() / "jobs.edi").string();
  view.command(Tool::Export);
  EXPECT_FALSE(std::ifstream(file).good());
  erp.desktop.file = file;
  view.command(Tool::Export);
  ASSERT_TRUE(std::ifstream(file).good());
  EXPECT_EQ(erp.desktop.choices.back().filter, "EDI (*.edi)|*.edi");
  erp.execute("Delete From ImportKopf"_sql);
  engine.setStartParameters({"", "", file});
  view.load();
  ASSERT_EQ(listed(), "A ");
  erp.execute("Delete From ImportKopf"_sql);
  view.load();
  view.key(JobViewKey::F5);
  EXPECT_EQ(listed(), "");
  view.command(Tool::ImportProcessTransactions);
  EXPECT_EQ(listed(), "A ");
  EXPECT_TRUE(erp.desktop.asked.empty());
  EXPECT_TRUE(windows.reports.empty());
}

TEST_F(JobViewTest, AFileThatSetsDoneJobsBackIsReadOnlyAfterAQuestion) {
  stage("A", 10, "24.11.2026", "Müller");
  stage("B", 30, "24.11.2026", "Hafen");
  stage("C", 13, "24.11.2026", "Kontor");
  show();
  erp.desktop.file = (erp.folder.path() / "jobs.edi").string();
  view.command(Tool::Export);
  erp.execute("Update ImportKopf Set JobType = 33 Where JobID = 'B'"_sql);
  erp.execute("Update ImportKopf Set Bez1 = 'geändert' Where JobID = 'A'"_sql);
  const auto typeOfB = [&] { return erp.text("Select JobType From ImportKopf Where JobID = 'B'"_sql); };

  view.command(Tool::ImportProcessTransactions);
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_EQ(erp.desktop.asked[0].title, "Vorgänge einlesen");
  EXPECT_EQ(erp.desktop.asked[0].text,
            "Ein Vorgang der Datei ist hier schon erledigt und würde wieder zurückgesetzt:\r\n\r\n"
            "Zeile 3: B\r\n\r\n"
            "Die nächste Verarbeitung schreibt sie dann noch einmal in die Warenwirtschaft.\r\n"
            "Soll die Datei trotzdem eingelesen werden?");
  EXPECT_EQ(typeOfB(), "33");
  EXPECT_EQ(erp.text("Select Bez1 From ImportKopf Where JobID = 'A'"_sql), "geändert");
  EXPECT_TRUE(windows.reports.empty());

  erp.desktop.answer = true;
  view.command(Tool::ImportProcessTransactions);
  EXPECT_EQ(typeOfB(), "30");
  ASSERT_EQ(windows.reports.size(), 1U);
  EXPECT_EQ(
      windows.reports[0],
      "Vorgänge einlesen|" + *erp.desktop.file +
          "\r\n\r\nEingelesen wurden 3 Vorgänge und 0 Positionen.\r\n"
          "\r\nErledigte Vorgänge, die zurückgesetzt wurden (die nächste Verarbeitung schreibt sie noch "
          "einmal):\r\nZeile 3: B\r\n");
}

TEST_F(JobViewTest, WhatBreaksTheReadingOfAFileIsToldInGerman) {
  stage("A", 10, "24.11.2026", "Müller");
  show();
  erp.desktop.file = (erp.folder.path() / "jobs.edi").string();
  view.command(Tool::Export);
  erp.execute("Pragma query_only = 1"_sql);
  view.command(Tool::ImportProcessTransactions);
  ASSERT_EQ(windows.reports.size(), 1U);
  EXPECT_NE(windows.reports[0].find("\r\nDas Lesen brach ab: Sie dürfen die Datenbank lesen, aber nicht "
                                    "ändern."),
            std::string::npos)
      << windows.reports[0];
}

TEST_F(JobViewTest, RefusedLinesOfAFileAreListedWithTheirReasonsInGerman) {
  stage("A", 10, "24.11.2026", "Müller");
  show();
  erp.desktop.file = (erp.folder.path() / "jobs.edi").string();
  view.command(Tool::Export);
  std::ofstream(*erp.desktop.file, std::ios::app) << "\"30\";\"kurz\";\r\n";
  view.command(Tool::ImportProcessTransactions);
  EXPECT_EQ(erp.desktop.texts(), "Beim Importieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht "
                                 "alle Daten importiert werden.\n");
  ASSERT_EQ(windows.reports.size(), 1U);
  EXPECT_TRUE(windows.reports[0].ends_with("\r\n\r\nEingelesen wurden 1 Vorgang und 0 Positionen.\r\n"
                                           "\r\nNicht eingelesen wurden:\r\n"
                                           "Zeile 3: Die Datei endet mitten im Satz.\r\n"))
      << windows.reports[0];
}

TEST_F(JobViewTest, DoneJobsAreDeletedInFewUnitsOfWork) {
  for (int i = 0; i < 20; ++i) stage("D" + std::to_string(i), 13);
  stage("W", 10);
  show();
  int inUnits = 0;
  int yields = 0;
  erp.desktop.onYield = [&] {
    ++yields;
    inUnits += erp.connection().inWork() ? 1 : 0;
  };
  erp.desktop.answer = true;
  view.command(Tool::DeleteViewDone);
  EXPECT_EQ(erp.text("Select Count(*) From ImportKopf"_sql), "1");
  EXPECT_EQ(inUnits, 0);
  EXPECT_LE(yields, 3) << "each unit of work yields at its end";
}

TEST_F(JobViewTest, JobsThatCannotBeSavedAreNotDeleted) {
  stage("K", 12, "24.11.2026", "Müller", "10023");
  stage("V", 42, "24.11.2026", "", "10023");
  show();
  windows.deletion = DeletionAnswer::SaveFirst;
  for (const std::optional<std::string>& file :
       {std::optional<std::string>(), std::optional(erp.file), std::optional<std::string>("/dev/full")}) {
    erp.desktop.file = file;
    view.key(JobViewKey::Delete);
    EXPECT_EQ(erp.text("Select group_concat(JobID) From ImportKopf"_sql), "K,V");
  }
  const std::string sentence =
      "Es wurde nichts gelöscht, denn die Vorgänge konnten nicht gesichert werden.\r\n";
  EXPECT_EQ(erp.desktop.texts(),
            sentence + "Diese Datei gehört zur Datenbank.\n" + sentence + "Der Datenträger ist voll.\n");

  const std::string file = (erp.folder.path() / "Für später.json").string();
  erp.desktop.file = file;
  view.key(JobViewKey::Delete);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 0);
  EXPECT_EQ(state.result, "1 Vorgang gelöscht, gesichert in Für später.json");
  std::ifstream lines(file);
  for (const char* job : {"\"JobID\":\"K\",\"JobType\":12", "\"JobID\":\"V\",\"JobType\":42"}) {
    std::string line;
    std::getline(lines, line);
    EXPECT_TRUE(line.starts_with("{\"type\":\"ImportKopf\",")) << line;
    EXPECT_NE(line.find(job), std::string::npos) << line;
  }
}

TEST_F(JobViewTest, APurgeSaysHowManyGoAndSavesThemWhereTheClerkWantsThat) {
  show();
  view.command(Tool::DeleteViewDone);
  EXPECT_EQ(state.result, "Es gibt keine erledigten Vorgänge.");
  for (const std::int16_t done : {13, 23, 43}) stage("D" + std::to_string(done), done);
  stage("W", 10);
  view.key(JobViewKey::F5);
  windows.deletion = DeletionAnswer::Keep;
  view.command(Tool::DeleteViewDone);
  EXPECT_EQ(windows.questions,
            (std::vector<std::string>{"3 Vorgänge sind erledigt.\r\nSollen sie endgültig gelöscht werden?"}));
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 4);
  windows.deletion = DeletionAnswer::SaveFirst;
  erp.desktop.file = (erp.folder.path() / "erledigt.json").string();
  view.command(Tool::DeleteViewDone);
  EXPECT_EQ(erp.text("Select group_concat(JobID) From ImportKopf"_sql), "W");
  EXPECT_TRUE(state.result.ends_with(" gelöscht, gesichert in erledigt.json")) << state.result;
  std::ifstream file(*erp.desktop.file);
  EXPECT_EQ(std::count(std::istreambuf_iterator<char>(file), {}, '\n'), 3);
}

TEST_F(JobViewTest, MarkedJobsAreExportedCustomersWithTheirContracts) {
  stage("A", 10, "24.11.2026", "Müller", "10023");
  stage("B", 10, "24.11.2026", "Maier", "10024");
  stage("O", 30, "24.11.2026", "Müller", "10023");
  stage("V", 40, "24.11.2026", "", "10023");
  stage("W", 40, "24.11.2026", "", "10024");
  show();
  std::vector<std::size_t> rows;
  for (std::size_t row = 0; row < state.rows.size(); ++row)
    if (state.rows[row].jobId != "B") rows.push_back(row);
  view.mark(rows);
  erp.desktop.file = (erp.folder.path() / "markiert.edi").string();
  view.command(Tool::ExportMarked);
  EXPECT_EQ(state.result, "3 Vorgänge und 0 Positionen geschrieben nach markiert.edi");
  erp.execute("Delete From ImportKopf"_sql);
  view.command(Tool::ImportProcessTransactions);
  EXPECT_EQ(erp.text("Select group_concat(JobID) From (Select JobID From ImportKopf Order By JobID)"_sql),
            "A,O,V");
}

TEST_F(JobViewTest, ACheckTakesAllWaitingJobsAlsoThoseThatAreNotListed) {
  {
    WorkUnit unit(erp.connection());
    for (int i = 0; i < 2003; ++i)
      stage("J" + std::to_string(i), i == 2002 ? 30 : 10, "24.11.2026", "x", "1");
    unit.commit();
  }
  show();
  view.command(Tool::UpdateDisplay);
  EXPECT_EQ(state.result, "1 von 2.003 wartenden Vorgängen hat Befunde") << "the order without positions";
}

TEST_F(JobViewTest, ThePlaceIsAlwaysKeptAndRestoredBySwitches) {
  EXPECT_TRUE(view.close({800, 600, WindowState::Maximized, -20, 30}));
  EXPECT_EQ(local("MainWidth") + " " + local("MainHeight"), "800 600");
  EXPECT_EQ(local("MainState") + " " + local("MainLeft") + " " + local("MainTop"), "2 -20 30");
  EXPECT_FALSE(view.storedGeometry().size || view.storedGeometry().left);
  setLocal("ImportJob2", "FenstergrößeSpeichern", "1");
  setLocal("ImportJob2", "FensterpositionSpeichern", "1");
  EXPECT_EQ(view.storedGeometry().size, std::pair(800, 600));
  EXPECT_EQ(view.storedGeometry().state, WindowState::Maximized);
  EXPECT_EQ(view.storedGeometry().left, -20);
  // A size needs both, a position has no such guard.
  setLocal("MAIN", "MainHeight", "0");
  setLocal("MAIN", "MainLeft", "links");
  EXPECT_FALSE(view.storedGeometry().size.has_value());
  EXPECT_FALSE(view.storedGeometry().left.has_value());
  EXPECT_EQ(view.storedGeometry().top, 30);
}

TEST_F(JobViewTest, TheDetailsAreTheReasonsAndTheFindingsEachOnce) {
  stage("A", 10, "24.11.2026", "Müller", "10023");
  erp.execute("Update ImportKopf Set Zahlungsart = 'XX'"_sql);
  const std::string finding = engine.checkJob("A").text();
  ASSERT_FALSE(finding.empty());
  erp.execute("Update ImportKopf Set JobType = 12, Fehlertext = '"_sql,
              value("Nicht geschrieben\r\n" + finding), "'"_sql);
  show();
  view.readDetails();
  EXPECT_TRUE(state.details.starts_with("Nicht geschrieben\n")) << state.details;
  const std::string line = finding.substr(0, finding.find('\r'));
  EXPECT_EQ(state.details.find(line), state.details.rfind(line));
  EXPECT_NE(state.details.find(line), std::string::npos);
}

TEST_F(JobViewTest, HintsStandBehindTheFindingsOfTheDetails) {
  stage("A", 10, "24.11.2026", "Müller", "10023");
  erp.execute("Update ImportKopf Set Land = 'FR'"_sql);
  show();
  view.readDetails();
  EXPECT_EQ(state.details,
            "Die Prüfung hat nichts zu beanstanden.\n"
            "Hinweis: Neukunde im Land 'FR' mit dem Steuermerkmal des Inlands (MwSt_KZ 'IN').");
}

TEST_F(JobViewTest, AStagedLineBreakMakesNoFindingOfItsOwn) {
  stage("A", 10, "24.11.2026", "Müller", "10023");
  erp.execute("Update ImportKopf Set Zahlungsart = '"_sql, value("X\r\nAlles in Ordnung"), "'"_sql);
  show();
  view.readDetails();
  EXPECT_NE(state.details.find("Zahlungsart: 'X Alles in Ordnung' ist nicht angelegt."), std::string::npos)
      << state.details;
}

TEST_F(JobViewTest, KeepsWhatItShowsWhenTheDatabaseIsGone) {
  stage("A", 10);
  show();
  const auto database = std::exchange(erp.environment.connection, nullptr);
  view.key(JobViewKey::F5);
  EXPECT_EQ(listed(), "A ");
  EXPECT_TRUE(state.databaseGone);
  EXPECT_FALSE(state.notice.empty());
  EXPECT_FALSE(erp.diagnostics.entries.empty());
  erp.environment.connection = database;
  view.key(JobViewKey::F5);
  EXPECT_EQ(state.notice, "");
}

TEST_F(JobViewTest, WhoDoesNotWaitForAnotherProgramLeavesEverythingAsItIs) {
  stage("A", 10, "24.11.2026", "Müller");
  stage("B", 13, "24.11.2026", "Maier");
  show();
  erp.desktop.answer = true;
  const auto other = erp.secondConnection();
  other->beginWork(nullptr);
  view.key(JobViewKey::Delete);
  view.command(Tool::ProcessTransactions);
  view.command(Tool::DeleteViewDone);
  EXPECT_FALSE(view.close({}));
  other->rollbackWork();
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobType In (10, 13)"_sql), 2);
  EXPECT_NE(erp.text("Select Value From Einstellungen Where Key = 'OnProcess'"_sql), "1");
  EXPECT_TRUE(view.close({}));
}

TEST_F(JobViewTest, AFileThatWasRemovedAndARunThatDiedAreNoticed) {
  erp.setOption("OnProcess", "1");
  show();
  EXPECT_EQ(
      erp.text("Select Value From Einstellungen Where Section = 'ImportJob2' And Key = 'OnProcess'"_sql),
      "0");
  std::filesystem::rename(erp.file, erp.file + ".alt");
  view.key(JobViewKey::F5);
  EXPECT_TRUE(view.state().databaseGone);
  view.command(Tool::ProcessTransactions);
  ASSERT_FALSE(erp.desktop.shown.empty());
  EXPECT_NE(erp.desktop.shown.back().text.find("wurde entfernt oder ersetzt"), std::string::npos)
      << erp.desktop.shown.back().text;
}

} // namespace
} // namespace qx
