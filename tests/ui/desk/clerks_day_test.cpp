// Longer work by keyboard alone.
#include "desk_fixture.h"

#include "store/parked_jobs.h"

#include <QAbstractButton>
#include <QLabel>

namespace qx {
namespace {

class ClerksDay : public DeskTest {
protected:
  /// What is before the clerk; empty while windows come and go.
  static std::string sight() {
    QWidget* window = QApplication::activeWindow();
    if (window == nullptr || QApplication::focusWidget() == nullptr) return {};
    if (window->inherits("QMessageBox")) return "question";
    if (window->objectName() != QLatin1String(jobDialogName)) return fromQt(window->objectName());
    const auto& notice = part<QLabel>(window, "lblHinweis");
    return fromQt(part<QLabel>(window, "lblStelle").text() +
                  (notice.isVisible() ? notice.text() : QString()));
  }
  /// Presses keys that lead to something else, and says to what.
  static std::string after(Clerk& clerk, const char* keys) {
    const std::string before = clerk.look([] { return sight(); });
    clerk.press(keys);
    if (!clerk.sees([&] { return !sight().empty() && sight() != before; }))
      throw std::runtime_error(std::string(keys) + " leads nowhere from " + before);
    return clerk.look([] { return sight(); });
  }
  std::int64_t parked() {
    return erp.count(
        "Select Count(*) From ImportKopf Where JobType In (11,12,21,22,31,32) And ProcessWarning = 0"_sql);
  }
};

TEST_F(ClerksDay, FiftyParkedJobsAreMendedAndReleasedWithoutAMouse) {
  erp.setOption("KostenzuordnungAuftrag", "1");
  erp.setSetting("Kostenzuordnung", "Kundenauftrag", "1");
  work([this](Clerk& clerk) {
    runAll(clerk);
    const auto before = clerk.look([this] { return view->state().counts; });
    ASSERT_GE(before.warnings + before.errors, 50);
    clerk.press("Pos1");
    std::string now = after(clerk, "Eingabe");
    int saved = 0;
    while (now != jobViewName && saved < 200) {
      // What the stored values mend is mended, the rest is taken as it is.
      clerk.press("Umschalt+F6");
      if (clerk.look([] {
            const QWidget* window = windowWithKeys(jobDialogName);
            return window != nullptr && window->windowTitle().startsWith(QStringLiteral("Vertrag")) &&
                   part<QAbstractButton>(QApplication::activeWindow(), "cmdFreigeben").isVisible();
          }))
        clerk.press("Alt+I");
      now = after(clerk, "Strg+Eingabe");
      if (now == "question") now = after(clerk, "Alt+J");
      ++saved;
    }
    EXPECT_EQ(now, jobViewName);
    EXPECT_GE(saved, 50);
    EXPECT_EQ(clerk.look([this] { return parked(); }), 0);
    EXPECT_EQ(clerk.look([this] {
      return erp.text("Select Strasse From ImportKopf Where JobID = '"_sql, value(movedCustomer), "'"_sql);
    }),
              "Mühlenweg 61");
    runAll(clerk);
    EXPECT_GT(clerk.look([this] { return view->state().counts.done; }), before.done + 30);
  });
}

TEST_F(ClerksDay, AJobBehindTheListedOnesIsFoundAndOpened) {
  {
    WorkUnit unit(erp.connection());
    for (int i = 0; i < 2100; ++i)
      erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum, Kundennummer, Bez1) Values ('"_sql,
                  value("Z" + std::to_string(i)), "', 11, '01.01.2020', '"_sql,
                  value(std::to_string(90000 + i)), "', 'Weit hinten')"_sql);
    unit.commit();
  }
  work([this](Clerk& clerk) {
    EXPECT_EQ(view->state().rows.size(), 2000U);
    clerk.press("Strg+F");
    clerk.type("92099");
    ASSERT_TRUE(clerk.sees([this] { return view->state().rows.size() == 1; }));
    EXPECT_EQ(clerk.look([this] { return view->state().countText; }), "1 unter 2.189 Vorgängen");
    clerk.press("Eingabe");
    ASSERT_TRUE(clerk.sees([this] { return list().hasFocus(); }));
    clerk.press("Eingabe");
    clerk.awaitWindow(jobDialogName);
    EXPECT_EQ(clerk.look([] { return windowWithKeys(jobDialogName)->windowTitle(); }),
              QStringLiteral("Kunde 92099 Weit hinten"));
  });
}

} // namespace
} // namespace qx
