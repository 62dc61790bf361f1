// The main window for real: found by object names, driven by mouse and keyboard.
#include "ui/qt/job_view_window.h"

#include "erp/demo_data.h"
#include "store/run_book.h"
#include "support/test_erp.h"
#include "support/words.h"
#include "ui/qt/text.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QScreen>
#include <QScrollBar>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

#include <memory>

namespace qx {
namespace {

class JobViewWindowTest : public ::testing::Test {
protected:
  JobViewWindowTest() {
    WorkUnit unit(erp.connection());
    erp::fillDemoData(erp.connection());
    erp::stageDemoJobs(erp.connection(), makeDate(2026, 11, 24));
    unit.commit();
    erp.desktop.onYield = [this] {
      QCoreApplication::processEvents();
      if (onYield) onYield();
    };
    engine = std::make_unique<ImportJobObject2>(erp.environment);
  }

  void open() {
    JobViewDialogs dialogs;
    dialogs.openJob = [this](QWidget*, std::string_view jobId, const JobPlace&) {
      openedJobs.emplace_back(jobId);
      return openedJobs.size() <= nexts ? DialogEnd::Next : DialogEnd::Closed;
    };
    dialogs.about = [this](QWidget*) { ++abouts; };
    window = std::make_unique<JobViewWindow>(erp.environment, *engine, std::move(dialogs));
    window->open();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    list().setFocus();
    QCoreApplication::processEvents();
  }

  template <class Control>
  Control& control(const char* name) {
    auto* found = window->findChild<Control*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
  QTableView& list() { return control<QTableView>("TDBList1"); }
  QString cell(int row, JobColumn column) {
    return list().model()->index(row, static_cast<int>(column)).data().toString();
  }
  std::string currentJob() { return fromQt(cell(list().currentIndex().row(), JobColumn::JobID)); }
  int rows() { return list().model()->rowCount(); }
  void clickHeader(JobColumn column) {
    QHeaderView& header = *list().horizontalHeader();
    const int section = static_cast<int>(column);
    QTest::mouseClick(
        header.viewport(), Qt::LeftButton, {},
        {header.sectionViewportPosition(section) + header.sectionSize(section) / 2, header.height() / 2});
  }
  std::int64_t staged() { return erp.count("Select Count(*) From ImportKopf"_sql); }

  TestErp erp;
  std::unique_ptr<ImportJobObject2> engine;
  std::unique_ptr<JobViewWindow> window;
  std::vector<std::string> openedJobs;
  std::size_t nexts = 0;
  int abouts = 0;
  std::function<void()> onYield;
};

TEST_F(JobViewWindowTest, HasEveryToolAndControlUnderItsName) {
  open();
  for (const std::string& name :
       split("ProcessTransactions mnuKunden mnuVerträge mnuAufträge mnuZubehör mnuKundenVerträge "
             "mnuEinzelnVerarbeiten Delete DeleteViewDone DeleteDate UpdateDisplay ImportProcessTransactions "
             "Export ViewWaiting ViewDone ViewWarnings ViewError Options About End"))
    EXPECT_NE(window->findChild<QAction*>(toQt(name)), nullptr) << name;
  control<QLabel>("lblInfo");
  control<QProgressBar>("ProgressBar");
  control<QPlainTextEdit>("txtDetails");
  EXPECT_TRUE(control<QTimer>("Timer1").isActive());
  EXPECT_EQ(list().model()->columnCount(), 9);
  EXPECT_TRUE(list().isColumnHidden(static_cast<int>(JobColumn::JobID)));
  EXPECT_FALSE(control<QAction>("mnuEinzelnVerarbeiten").isVisible());
  EXPECT_EQ(list().horizontalHeader()->sortIndicatorSection(), static_cast<int>(JobColumn::Eingangsdatum));
  EXPECT_EQ(list().horizontalHeader()->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(JobViewWindowTest, FiltersSortsAndSearchesByMouseAndKeyboard) {
  open();
  const int all = rows();
  auto& waiting = control<QToolButton>("btnViewWaiting");
  const auto count = window->state().counts.waiting;
  ASSERT_GT(count, 0);
  EXPECT_TRUE(waiting.text().endsWith(QString::number(count))) << waiting.text().toStdString();
  QTest::mouseClick(&waiting, Qt::LeftButton);
  EXPECT_EQ(rows(), all - count);
  EXPECT_FALSE(control<QAction>("ViewWaiting").isChecked());
  QTest::mouseClick(&waiting, Qt::LeftButton);
  EXPECT_EQ(rows(), all);

  clickHeader(JobColumn::Bez1);
  EXPECT_EQ(list().horizontalHeader()->sortIndicatorSection(), static_cast<int>(JobColumn::Bez1));
  EXPECT_EQ(list().horizontalHeader()->sortIndicatorOrder(), Qt::AscendingOrder);
  const QString first = cell(0, JobColumn::Bez1);
  clickHeader(JobColumn::Bez1);
  EXPECT_NE(cell(0, JobColumn::Bez1), first);
  EXPECT_EQ(cell(all - 1, JobColumn::Bez1), first);

  const std::string job = currentJob();
  QTest::keyClick(&list(), Qt::Key_F, Qt::ControlModifier);
  auto& search = control<QLineEdit>("txtSearch");
  ASSERT_TRUE(search.hasFocus());
  QTest::keyClicks(&search, QStringLiteral("gibt es nicht"));
  EXPECT_EQ(rows(), 0);
  EXPECT_TRUE(control<QLabel>("lblEmptyHint").isVisible());
  QTest::keyClick(&search, Qt::Key_Escape);
  EXPECT_EQ(rows(), all);
  EXPECT_TRUE(list().hasFocus());
}

TEST_F(JobViewWindowTest, OpensAJobByEnterAndByDoubleClickAndGoesOn) {
  open();
  list().selectRow(1);
  const std::string job = currentJob();
  const std::string following = fromQt(cell(2, JobColumn::JobID));
  nexts = 1;
  QTest::keyClick(&list(), Qt::Key_Return);
  EXPECT_EQ(openedJobs, (std::vector<std::string>{job, following}));
  EXPECT_EQ(currentJob(), following);
  const QPoint at = list().visualRect(list().model()->index(0, static_cast<int>(JobColumn::Bez1))).center();
  QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, at);
  QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, at);
  ASSERT_EQ(openedJobs.size(), 3U);
  EXPECT_EQ(openedJobs.back(), fromQt(cell(0, JobColumn::JobID)));
  QTest::keyClick(&list(), Qt::Key_F2);
  QTest::keyClick(&list(), Qt::Key_F1);
  EXPECT_EQ(abouts, 1);
}

TEST_F(JobViewWindowTest, DelAsksAndKeepsOrDeletesTheCurrentJob) {
  open();
  list().selectRow(2);
  const std::string job = currentJob();
  const auto before = staged();
  QTest::keyClick(&list(), Qt::Key_Delete);
  EXPECT_EQ(staged(), before);
  EXPECT_EQ(currentJob(), job);
  erp.desktop.answer = true;
  const std::string following = fromQt(cell(3, JobColumn::JobID));
  QTest::keyClick(&list(), Qt::Key_Delete);
  EXPECT_EQ(erp.desktop.asked.size(), 2U);
  EXPECT_LT(staged(), before);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobID = '"_sql, value(job), "'"_sql), 0);
  EXPECT_EQ(currentJob(), following);
}

TEST_F(JobViewWindowTest, F9RunsToTheEndAndShowsWhatBecameOfTheJobs) {
  open();
  const auto before = window->state().counts;
  bool shownWhileRunning = false;
  bool stopOffered = false;
  onYield = [&] {
    shownWhileRunning = shownWhileRunning || (control<QProgressBar>("ProgressBar").isVisible() &&
                                              control<QProgressBar>("ProgressBar").value() > 0);
    stopOffered = stopOffered || control<QToolButton>("btnStop").isEnabled();
    EXPECT_FALSE(list().isEnabled());
    QTest::keyClick(window.get(), Qt::Key_F9);
    QTest::keyClick(window.get(), Qt::Key_Delete);
  };
  QTest::keyClick(&list(), Qt::Key_F9);
  EXPECT_TRUE(shownWhileRunning);
  EXPECT_TRUE(stopOffered);
  EXPECT_TRUE(erp.desktop.asked.empty());
  EXPECT_GT(window->state().counts.done, before.done);
  EXPECT_TRUE(list().isEnabled());
  EXPECT_FALSE(control<QProgressBar>("ProgressBar").isVisible());
  EXPECT_EQ(rows(), static_cast<int>(window->state().rows.size()));
  EXPECT_TRUE(list().hasFocus());
  EXPECT_TRUE(list().currentIndex().isValid());

  const auto runs = lastRuns(*erp.environment.connection, 1);
  ASSERT_EQ(runs.size(), 1U) << "the run stands in the book of runs";
  EXPECT_EQ(runs[0].outcome, "completed");
  EXPECT_EQ(runs[0].processed, 90);
  EXPECT_EQ(runs[0].done, 52);
  EXPECT_FALSE(runs[0].program.empty());
}

TEST_F(JobViewWindowTest, TheCloseBoxDuringARunClosesOnceTheRunHasReturned) {
  open();
  bool stayed = false;
  onYield = [&] {
    window->close();
    stayed = window->isVisible();
  };
  QTest::keyClick(&list(), Qt::Key_F9);
  EXPECT_TRUE(stayed);
  EXPECT_EQ(engine->lastRun().end, RunEnd::Stopped);
  QCoreApplication::processEvents();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(engine->ViewFormLoad, qxtViewJobForm_Unload);
}

TEST_F(JobViewWindowTest, ShowsTheDetailsOfTheCurrentJobAndCopiesItsRow) {
  erp.execute(
      "Update ImportKopf Set Fehlertext = 'Grund der Ablehnung', ProcessWarning = 0 Where JobType = 12"_sql);
  open();
  int row = 0;
  while (row < rows() && cell(row, JobColumn::Vorgang) != QStringLiteral("Kunden (fehler)")) ++row;
  ASSERT_LT(row, rows());
  list().selectRow(row);
  auto& details = control<QPlainTextEdit>("txtDetails");
  EXPECT_TRUE(QTest::qWaitFor(
      [&] { return details.toPlainText().startsWith(QStringLiteral("Grund der Ablehnung")); }));
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_TRUE(QGuiApplication::clipboard()->text().startsWith(QStringLiteral("Fehler\tKunden (fehler)\t")));
}

TEST_F(JobViewWindowTest, ARefreshKeepsTheCurrentJobAndTheScrollPosition) {
  {
    WorkUnit unit(erp.connection());
    for (int i = 0; i < 200; ++i)
      erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('"_sql,
                  value("Z" + std::to_string(i)), "', 10, '01.01.2020')"_sql);
    unit.commit();
  }
  open();
  list().selectRow(150);
  const std::string job = currentJob();
  const int scrolled = list().verticalScrollBar()->value();
  ASSERT_GT(scrolled, 0);
  QTest::keyClick(&list(), Qt::Key_F5);
  EXPECT_EQ(currentJob(), job);
  EXPECT_EQ(list().verticalScrollBar()->value(), scrolled);
}

TEST_F(JobViewWindowTest, AHeadClickKeepsTheCurrentJobInSight) {
  {
    WorkUnit unit(erp.connection());
    for (int i = 0; i < 200; ++i)
      erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum, Kundennummer) Values ('"_sql,
                  value("Z" + std::to_string(i)), "', 10, '01.01.2020', '5')"_sql);
    unit.commit();
  }
  open();
  const auto inSight = [this] {
    return list().viewport()->rect().intersects(list().visualRect(list().currentIndex()));
  };
  list().selectRow(0);
  clickHeader(JobColumn::Eingangsdatum);
  EXPECT_GT(list().currentIndex().row(), 150);
  EXPECT_TRUE(inSight());
  list().verticalScrollBar()->setValue(0);
  ASSERT_FALSE(inSight());
  QTest::keyClick(&list(), Qt::Key_Delete);
  ASSERT_EQ(erp.desktop.asked.size(), 1U);
  EXPECT_TRUE(inSight());
}

TEST_F(JobViewWindowTest, SeveralJobsAreMarkedReleasedAndSortedByKeyboardAlone) {
  open();
  erp.desktop.answer = true;
  for (const char* filter : {"ViewWaiting", "ViewError"}) control<QAction>(filter).trigger();
  const int warnings = rows();
  ASSERT_GT(warnings, 2);
  EXPECT_TRUE(list().hasFocus()) << "the focus is back after a command";
  QTest::keyClick(&list(), Qt::Key_End);
  EXPECT_EQ(list().currentIndex().row(), warnings - 1);
  QTest::keyClick(&list(), Qt::Key_Home);
  EXPECT_EQ(list().currentIndex().row(), 0);
  QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(window.get(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_EQ(
      erp.count("Select Count(*) From ImportKopf Where ProcessWarning = 1 And JobType In (11,21,31)"_sql),
      warnings);
  const auto& button = control<QToolButton>("btnViewWarnings");
  EXPECT_TRUE(button.text().endsWith(QStringLiteral("davon %1 freigegeben").arg(warnings)))
      << button.text().toStdString();
  EXPECT_EQ(list().model()->index(0, 0).data(Qt::ToolTipRole).toString(),
            QStringLiteral("Warnung, freigegeben"));
  EXPECT_TRUE(control<QLabel>("lblErgebnis").text().endsWith(QStringLiteral(" freigegeben")));
  EXPECT_EQ(list().selectionModel()->selectedRows().size(), warnings) << "marked as before";
  QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text().count(QLatin1Char('\n')), warnings - 1);
  control<QAction>("mnuSortBez1").trigger();
  EXPECT_EQ(list().horizontalHeader()->sortIndicatorSection(), static_cast<int>(JobColumn::Bez1));
}

TEST_F(JobViewWindowTest, AClickOnACauseShowsItsJobs) {
  erp.execute("Update ImportKopf Set Fehlertext = 'Der Artikel: ''X'' ist gesperrt!' Where JobType = 12"_sql);
  const auto blocked = erp.count("Select Count(*) From ImportKopf Where JobType = 12"_sql);
  ASSERT_GT(blocked, 0);
  open();
  auto& causes = control<QTableWidget>("lstUrsachen");
  const auto rowOf = [&] {
    const auto found = causes.findItems(QStringLiteral("Der Artikel: '...' ist gesperrt!"), Qt::MatchExactly);
    return found.isEmpty() ? -1 : found.constFirst()->row();
  };
  ASSERT_TRUE(QTest::qWaitFor([&] { return rowOf() >= 0; }));
  EXPECT_EQ(causes.item(rowOf(), 0)->text(), QString::number(blocked));
  const int all = rows();
  const QPoint place = causes.visualItemRect(causes.item(rowOf(), 1)).center();
  QTest::mouseClick(causes.viewport(), Qt::LeftButton, {}, place);
  EXPECT_EQ(rows(), blocked);
  EXPECT_EQ(cell(0, JobColumn::Vorgang), QStringLiteral("Kunden (fehler)"));
  causes.setFocus();
  QTest::keyClick(&causes, Qt::Key_Return);
  EXPECT_EQ(rows(), all);
}

TEST_F(JobViewWindowTest, EveryAccessKeyStandsForOneThing) {
  open();
  expectSingleAccessKeys(*window);
}

TEST_F(JobViewWindowTest, TheHintOfTheEmptyListCanBeReadOnADarkGround) {
  QPalette dark;
  dark.setColor(QPalette::Base, QColor(0x23, 0x26, 0x29));
  dark.setColor(QPalette::Text, QColor(0xfc, 0xfc, 0xfc));
  dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
  open();
  list().setPalette(dark);
  QCoreApplication::processEvents();
  auto& hint = control<QLabel>("lblEmptyHint");
  EXPECT_GT(hint.palette().color(hint.foregroundRole()).lightness(), 150);
}

TEST_F(JobViewWindowTest, ComesBackWhereItWasOnAVisibleScreen) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  for (const char* key : {"FenstergrößeSpeichern", "FensterpositionSpeichern"})
    erp.localSettings.write("QXImportJob", "ImportJob2", key, "1");
  erp.localSettings.write("QXImportJob", "MAIN", "MainWidth", "900");
  erp.localSettings.write("QXImportJob", "MAIN", "MainHeight", "650");
  erp.localSettings.write("QXImportJob", "MAIN", "MainLeft", "5000");
  erp.localSettings.write("QXImportJob", "MAIN", "MainTop", "40");
  open();
  EXPECT_EQ(window->size(), QSize(900, 650));
  EXPECT_LE(window->geometry().right(), window->screen()->availableGeometry().right());
  EXPECT_TRUE(control<QAction>("mnuEinzelnVerarbeiten").isVisible());
  list().horizontalHeader()->moveSection(static_cast<int>(JobColumn::Betreff), 2);
  list().setColumnWidth(static_cast<int>(JobColumn::Bez1), 321);
  control<QAction>("mnuShowKeys").trigger();
  window->close();
  open();
  EXPECT_EQ(list().columnWidth(static_cast<int>(JobColumn::Bez1)), 321);
  EXPECT_EQ(list().horizontalHeader()->visualIndex(static_cast<int>(JobColumn::Betreff)), 2);
  EXPECT_FALSE(list().isColumnHidden(static_cast<int>(JobColumn::JobID)));
}

} // namespace
} // namespace qx
