#include "../dialog_fixture.h"
#include "support/breakable_way.h"
#include "window_driver.h"

#include "ui/qt/job_dialog_window.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/text.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

namespace qx {
namespace {

using testing::HasSubstr;

class ServerDialogWindow : public BreakableWay, public DialogTest {
protected:
  /// Answers the next question, about the connection, with the button of this caption.
  void answerNext(const QString& button, ServerProxy::State meanwhile) {
    inNextWindow([this, button, meanwhile](QDialog& window) {
      auto& box = dynamic_cast<QMessageBox&>(window);
      EXPECT_THAT(fromQt(box.text()), HasSubstr("Soll die Verbindung wieder aufgebaut werden?"));
      proxy.set(meanwhile);
      for (QAbstractButton* const each : box.buttons())
        if (each->text() == button) QTest::mouseClick(each, Qt::LeftButton);
    });
  }

  QtDesktop desktop{erp.diagnostics};
  /// That of the test, with real boxes.
  Environment environment{erp.components,          desktop,     erp.jobView,     erp.clock,    erp.guids,
                          erp.localSettings,       erp.iniFile, erp.diagnostics, erp.liveness, erp.database,
                          erp.environment.session, ""};
  DialogContext withBoxes{environment, engine, lookups};
};

TEST_F(ServerDialogWindow, AsksWhileTheServerIsGoneAndKeepsWhatTheClerkTyped) {
  stageCustomer("K1", "99999");
  inNextWindow([&](QDialog& window) {
    QTest::qWait(600); // the clerk sees the findings
    enterInto(window, "txtBez1", "Neue Firma");
    proxy.set(ServerProxy::State::Gone);
    answerNext(QStringLiteral("&Nein"), ServerProxy::State::Gone);
    press(window, "cmdSpeichern");
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(child<QLineEdit>(window, "txtBez1").text(), QStringLiteral("Neue Firma"));

    answerNext(QStringLiteral("&Ja"), ServerProxy::State::Open);
    press(window, "cmdSpeichern");
    EXPECT_FALSE(window.isVisible()) << "it was to be saved and closed";
  });
  showJobDialog(nullptr, withBoxes, "K1", {});
  EXPECT_EQ(text("Select Bez1 From ImportKopf Where JobID = 'K1'"_sql), "Neue Firma");
}

} // namespace
} // namespace qx
