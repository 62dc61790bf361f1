// The job view on the demo company with its real dialogs and boxes, and a clerk before it.
#pragma once

#include "clerk.h"

#include "erp/demo_data.h"
#include "support/test_erp.h"
#include "ui/lookup_bridge.h"
#include "ui/qt/job_dialog_window.h"
#include "ui/qt/job_view_dialogs.h"
#include "ui/qt/lookup_window.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/text.h"

#include <gtest/gtest.h>

#include <QTableView>

#include <memory>
#include <stdexcept>
#include <string>

namespace qx {

constexpr const char* jobViewName = "frmJobView";
constexpr const char* jobDialogName = "frmVorgang";

class DeskTest : public ::testing::Test {
protected:
  DeskTest() {
    WorkUnit unit(erp.connection());
    erp::fillDemoData(erp.connection());
    erp::stageDemoJobs(erp.connection(), makeDate(2026, 11, 24));
    unit.commit();
    erp.setOption("AppSettings", "1");
    erp.components.setAuskunftFactory(
        [this] { return std::make_unique<QtAuskunft>(erp.localSettings, erp.diagnostics); });
    desktop.watch(erp.database);
  }

  /// Opens the window and lets the clerk work in it; it is closed afterwards.
  void work(const std::function<void(Clerk&)>& day) {
    view = std::make_unique<JobViewWindow>(environment, engine, dialogsOf(context, "1"));
    view->open();
    Clerk::work([&](Clerk& clerk) {
      comeForward(clerk);
      day(clerk);
    });
    view->close();
    view.reset();
  }

  /// The frames may hesitate to give the keys to a first window, or when two windows go at once.
  void comeForward(Clerk& clerk) {
    clerk.sees([this] {
      view->activateWindow();
      return windowWithKeys(jobViewName) != nullptr;
    });
    clerk.awaitWindow(jobViewName);
  }
  /// Runs all jobs, and confirms what is told at the end.
  void runAll(Clerk& clerk) {
    clerk.look([this] { return before_ = view->state().result, true; });
    clerk.press("F9");
    const auto told = [] { return windowWithKeys("QMessageBox") != nullptr; };
    const auto ended = [this] { return view->state().result != before_ && view->state().listEnabled; };
    while (clerk.sees([&] { return told() || ended(); }) && clerk.look(told)) {
      clerk.press("Eingabe");
      clerk.sees([&] { return !told(); });
    }
    clerk.awaitWindow(jobViewName);
  }

  template <class Widget>
  static Widget& part(QWidget* window, const char* name) {
    auto* found = window == nullptr ? nullptr : window->findChild<Widget*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::runtime_error(std::string("no part ") + name);
    return *found;
  }
  QTableView& list() { return part<QTableView>(view.get(), "TDBList1"); }
  std::string currentJob() {
    return fromQt(
        list().currentIndex().siblingAtColumn(static_cast<int>(JobColumn::JobID)).data().toString());
  }
  /// The job that the clerk would find by looking at the list.
  void choose(const std::string& jobId) {
    const auto& rows = view->state().rows;
    for (std::size_t row = 0; row < rows.size(); ++row)
      if (rows[row].jobId == jobId) list().selectRow(static_cast<int>(row));
    if (currentJob() != jobId) throw std::runtime_error("the list does not have " + jobId);
    list().setFocus();
  }
  void open(Clerk& clerk, const std::string& jobId) {
    clerk.look([&] {
      choose(jobId);
      return true;
    });
    clerk.press("Eingabe");
    clerk.awaitWindow(jobDialogName);
  }

  TestErp erp;
  QtDesktop desktop{erp.diagnostics};
  Environment environment{erp.components,          desktop,     erp.jobView,     erp.clock,    erp.guids,
                          erp.localSettings,       erp.iniFile, erp.diagnostics, erp.liveness, erp.database,
                          erp.environment.session, ""};
  ImportJobObject2 engine{environment};
  LookupBridge lookups{environment};
  DialogContext context{environment, engine, lookups, {}, askReleaseInBox};
  std::unique_ptr<JobViewWindow> view;
  std::string before_;

  // Jobs of the demo company.
  const std::string movedCustomer = "DE000000000000000000000000000017"; ///< three stored values differ
  const std::string orderWithoutStock = "DE000000000000000000000000000073";
  const std::string contractOfUnknownKind = "DE000000000000000000000000000042";
};

} // namespace qx
