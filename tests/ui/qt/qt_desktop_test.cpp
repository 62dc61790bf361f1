#include "ui/qt/qt_desktop.h"

#include "support/test_erp.h"
#include "ui/qt/text.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include <functional>

namespace qx {
namespace {

class QtDesktopTest : public ::testing::Test {
protected:
  QtDesktopTest() { desktop.watch(erp.database); }

  /// Hands the next box that opens to `user`.
  template <class Box>
  void next(const std::function<void(Box&)>& user) {
    QTimer::singleShot(0, &context, [this, user] {
      auto* const box = qobject_cast<Box*>(QApplication::activeModalWidget());
      if (box == nullptr) return next<Box>(user);
      ++boxes;
      user(*box);
    });
  }
  static void press(QMessageBox& box, const QString& caption) {
    for (QAbstractButton* const button : box.buttons())
      if (button->text() == caption) return QTest::mouseClick(button, Qt::LeftButton);
    FAIL() << "no button " << caption.toStdString();
  }

  TestErp erp;
  QtDesktop desktop{erp.diagnostics};
  QObject context;
  int boxes = 0;
};

TEST_F(QtDesktopTest, ShowsTextTitleAndIconAsTheyAre) {
  next<QMessageBox>([](QMessageBox& box) {
    EXPECT_EQ(box.text(), QStringLiteral("<b>Fehler</b>\nzwei"));
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Titel"));
    EXPECT_EQ(box.icon(), QMessageBox::Warning);
    press(box, QStringLiteral("OK"));
  });
  desktop.show({"<b>Fehler</b>\r\nzwei", "Titel", MessageIcon::Exclamation});
  EXPECT_EQ(boxes, 1);
}

TEST_F(QtDesktopTest, ShowsALongReasonWhereItCanBeScrolled) {
  std::string reason = "Diese Vorgänge wurden nicht verarbeitet:";
  for (int job = 1; job <= 12; ++job) reason += "\r\nVorgang " + std::to_string(job);
  next<QDialog>([](QDialog& window) {
    EXPECT_EQ(window.objectName(), QStringLiteral("frmError"));
    EXPECT_EQ(window.windowTitle(), QStringLiteral("Titel"));
    EXPECT_TRUE(window.findChild<QPlainTextEdit*>(QStringLiteral("txtError"))
                    ->toPlainText()
                    .endsWith(QStringLiteral("\nVorgang 11\nVorgang 12")));
    window.reject();
  });
  desktop.show({reason, "Titel", MessageIcon::Exclamation});
  EXPECT_EQ(boxes, 1);
}

TEST_F(QtDesktopTest, OnlyTheYesButtonIsAYes) {
  struct Case {
    std::function<void(QMessageBox&)> user;
    bool answer;
  };
  const Case cases[] = {
      {[](QMessageBox& box) { press(box, QStringLiteral("&Ja")); }, true},
      {[](QMessageBox& box) { press(box, QStringLiteral("&Nein")); }, false},
      {[](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }, false},
      {[](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }, false},
      {[](QMessageBox& box) { box.close(); }, false},
  };
  for (const Case& c : cases) {
    next<QMessageBox>(c.user);
    EXPECT_EQ(desktop.ask({"Wirklich?", "Frage", MessageIcon::None}), c.answer);
  }
  EXPECT_EQ(boxes, 5);
}

TEST_F(QtDesktopTest, KeepsBoxesUntilTheUnitOfWorkHasEnded) {
  {
    WorkUnit unit(*erp.database);
    desktop.show({"erster"});
    desktop.show({"zweiter"});
    EXPECT_FALSE(desktop.ask({"Frage"}));
    desktop.yield();
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    unit.commit();
  }
  EXPECT_EQ(erp.diagnostics.entries.size(), 1U) << "the question that nobody saw";
  std::vector<QString> texts;
  const auto read = [&](QMessageBox& box) {
    texts.push_back(box.text());
    box.close();
  };
  next<QMessageBox>([&](QMessageBox& box) {
    next<QMessageBox>(read);
    read(box);
  });
  desktop.yield();
  EXPECT_EQ(texts, (std::vector<QString>{QStringLiteral("erster"), QStringLiteral("zweiter")}));
}

TEST_F(QtDesktopTest, AddsTheSuffixAndAsksBeforeAnExistingFileIsWritten) {
  erp.folder.write("alt.edi", "x");
  const auto path = [&](const char* name) { return (erp.folder.path() / name).string(); };
  const auto choose = [&](const std::string& name) {
    return [name](QFileDialog& dialog) {
      EXPECT_EQ(dialog.nameFilters(), QStringList{QStringLiteral("EDI (*.edi)")});
      dialog.findChild<QLineEdit*>()->setText(toQt(name));
      QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Return);
    };
  };
  next<QFileDialog>(choose(path("neu")));
  EXPECT_EQ(desktop.chooseFile("Ausgeben", "EDI (*.edi)|*.edi", FileUse::Writing), path("neu.edi"));

  next<QFileDialog>([&](QFileDialog& dialog) {
    next<QMessageBox>([&](QMessageBox& box) {
      next<QFileDialog>([](QFileDialog& again) { again.reject(); });
      press(box, QStringLiteral("&Nein"));
    });
    choose(path("alt"))(dialog);
  });
  EXPECT_EQ(desktop.chooseFile("Ausgeben", "EDI (*.edi)|*.edi", FileUse::Writing), std::nullopt);

  next<QFileDialog>(choose(path("alt.edi")));
  EXPECT_EQ(desktop.chooseFile("Einlesen", "EDI (*.edi)|*.edi", FileUse::Reading), path("alt.edi"));
}

} // namespace
} // namespace qx
