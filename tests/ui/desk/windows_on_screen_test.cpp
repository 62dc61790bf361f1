// Every window on the screen of a clerk, in its frame.
#include "desk_fixture.h"

#include <QAbstractButton>
#include <QScreen>
#include <QWindow>

namespace qx {
namespace {

class WindowsOnScreen : public DeskTest {
protected:
  /// Waits for a window and looks whether all of it can be seen.
  static void expectWhole(Clerk& clerk, const char* name) {
    clerk.awaitWindow(name);
    EXPECT_TRUE(clerk.sees([=] {
      const QWidget* window = windowWithKeys(name);
      return window != nullptr && window->windowHandle()->frameMargins().top() > 0;
    })) << name
        << " has no frame";
    clerk.look([=] {
      const QWidget* window = windowWithKeys(name);
      const QRect screen = window->screen()->availableGeometry();
      const QRect frame = window->windowHandle()->frameGeometry();
      EXPECT_TRUE(screen.contains(frame)) << name << ' ' << frame.left() << ' ' << frame.top() << ' '
                                          << frame.width() << 'x' << frame.height();
      for (const QAbstractButton* button : window->findChildren<QAbstractButton*>())
        if (button->isVisible() && button->parentWidget() == window) {
          EXPECT_TRUE(window->rect().contains(button->geometry())) << name << fromQt(button->text());
        }
      return true;
    });
  }
  /// A window behind some keys; Esc leaves it.
  static void visit(Clerk& clerk, std::initializer_list<const char*> keys, const char* name) {
    for (const char* each : keys) clerk.press(each);
    expectWhole(clerk, name);
  }
  static void leave(Clerk& clerk, const char* to) {
    clerk.press("Esc");
    clerk.awaitWindow(to);
  }
};

TEST_F(WindowsOnScreen, EveryWindowIsSeenWholeWithItsFrame) {
  work([this](Clerk& clerk) {
    expectWhole(clerk, jobViewName);
    open(clerk, movedCustomer);
    expectWhole(clerk, jobDialogName);
    visit(clerk, {"Alt+E"}, "frmAdressen");
    leave(clerk, jobDialogName);
    visit(clerk, {"Alt+K", "F4"}, "lookupWindow");
    leave(clerk, jobDialogName);
    leave(clerk, jobViewName);
    open(clerk, contractOfUnknownKind);
    expectWhole(clerk, jobDialogName);
    leave(clerk, jobViewName);
    open(clerk, orderWithoutStock);
    expectWhole(clerk, jobDialogName);
    visit(clerk,
          {"F3", "Strg+Pos1", "Pfeil nach rechts", "Pfeil nach rechts", "Pfeil nach rechts",
           "Pfeil nach rechts", "Pfeil nach rechts", "Pfeil nach rechts", "Pfeil nach rechts", "Eingabe"},
          "frmAngaben");
    leave(clerk, jobDialogName);
    leave(clerk, jobViewName);
    visit(clerk, {"Entf"}, "QMessageBox");
    leave(clerk, jobViewName);
    visit(clerk, {"Alt+X", "o"}, "frmOptions");
    leave(clerk, jobViewName);
    visit(clerk, {"Alt+B", "d"}, "frmDeleteDate");
    leave(clerk, jobViewName);
    visit(clerk, {"Alt+V", "r"}, "frmError");
    leave(clerk, jobViewName);
    visit(clerk, {"Alt+D", "e"}, "QFileDialog");
    leave(clerk, jobViewName);
    visit(clerk, {"F2"}, "frmAbout2");
    visit(clerk, {"Alt+Y"}, "frmSysInfo");
    leave(clerk, "frmAbout2");
  });
}

} // namespace
} // namespace qx
