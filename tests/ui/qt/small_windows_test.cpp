// The options dialog and the small dialogs with real keys and clicks.
#include "support/test_erp.h"
#include "window_driver.h"

#include "ui/qt/options_window.h"
#include "ui/qt/printing.h"
#include "ui/qt/small_windows.h"
#include "ui/qt/text.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPdfWriter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTextBlock>
#include <QTimer>

#include <functional>

namespace qx {
namespace {

class Windows : public ::testing::Test {
protected:
  template <class Control>
  static Control* find(QWidget& window, const char* name) {
    auto* const found = window.findChild<Control*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
    return found;
  }
  static void click(QWidget& window, const char* name) {
    auto* const button = find<QAbstractButton>(window, name);
    if (auto* const box = qobject_cast<QCheckBox*>(button))
      QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(box->height() / 2, box->height() / 2));
    else
      QTest::mouseClick(button, Qt::LeftButton);
  }
  /// Runs the dialog as the job view does; `clerk` acts once it is the active modal window.
  static void run(QDialog& window, const std::function<void(QWidget&)>& clerk) {
    QTimer::singleShot(0, &window, [&] {
      ASSERT_EQ(QApplication::activeModalWidget(), &window);
      ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
      clerk(window);
    });
    window.exec();
    EXPECT_FALSE(window.isVisible());
  }

  std::string option(std::string_view key) {
    return Settings(erp.environment).get(applicationName, "ImportJob2", key);
  }

  TestErp erp;
  ImportJobObject2 engine{erp.environment};
};

TEST_F(Windows, OptionsAreSavedByOkAndByTheCloseBox) {
  OptionsWindow first(erp.environment);
  EXPECT_EQ(find<QTabWidget>(first, "TabControll")->count(), 1);
  run(first, [](QWidget& window) {
    click(window, "chkLoeschen");
    EXPECT_FALSE(find<QCheckBox>(window, "chkCreateKost")->isEnabled());
    click(window, "chkKostZuordnung");
    EXPECT_TRUE(find<QCheckBox>(window, "chkCreateKost")->isEnabled());
    click(window, "chkCreateKost");
    click(window, "cmdOK");
  });
  EXPECT_EQ(option("AppSettings"), "1");
  EXPECT_EQ(option("Löschen"), "1");
  EXPECT_EQ(option("KostAutomatischAnlegen"), "1");

  OptionsWindow second(erp.environment);
  run(second, [](QWidget& window) {
    EXPECT_TRUE(find<QCheckBox>(window, "chkCreateKost")->isChecked());
    click(window, "chkKostZuordnung");
    EXPECT_FALSE(find<QCheckBox>(window, "chkCreateKost")->isChecked());
    window.close();
  });
  EXPECT_EQ(option("KostAutomatischAnlegen"), "0");
}

TEST_F(Windows, OptionsAreDiscardedByEscapeAndByCancel) {
  const std::function<void(QWidget&)> endings[] = {
      [](QWidget& window) { QTest::keyClick(&window, Qt::Key_Escape); },
      [](QWidget& window) { click(window, "cmdCancel"); }};
  for (const auto& end : endings) {
    OptionsWindow options(erp.environment);
    run(options, [&](QWidget& window) {
      click(window, "chkLoeschen");
      EXPECT_TRUE(find<QCheckBox>(window, "chkLoeschen")->isChecked());
      end(window);
    });
    EXPECT_EQ(option("Löschen"), "");
    EXPECT_EQ(option("AppSettings"), "");
  }
}

TEST_F(Windows, OptionsHaveASecondPageInCustomerSpecificMode) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  erp.setOption("abGewicht", "31,5");
  OptionsWindow options(erp.environment);
  run(options, [](QWidget& window) {
    auto* const tabs = find<QTabWidget>(window, "TabControll");
    ASSERT_EQ(tabs->count(), 2);
    tabs->setCurrentIndex(1);
    auto* const weight = find<QLineEdit>(window, "txtGewicht");
    EXPECT_EQ(weight->text(), QStringLiteral("31,5"));
    QTest::mouseDClick(weight, Qt::LeftButton);
    weight->selectAll();
    QTest::keyClicks(weight, QStringLiteral("40"));
    QTest::keyClick(weight, Qt::Key_Return);
  });
  EXPECT_EQ(option("abGewicht"), "40");
}

TEST_F(Windows, OptionsStayOpenAtANumberThatMayMeanTwo) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  erp.setOption("AppSettings", "1");
  OptionsWindow options(erp.environment);
  run(options, [&](QWidget& window) {
    auto* const tabs = find<QTabWidget>(window, "TabControll");
    auto* const weight = find<QLineEdit>(window, "txtGewicht");
    weight->setText(QStringLiteral("1.000"));
    click(window, "cmdOK");
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(erp.desktop.shown.size(), 1U);
    EXPECT_EQ(tabs->currentIndex(), 1) << "the page of the field comes up";
    EXPECT_EQ(window.focusWidget(), weight);
    window.close();
    EXPECT_TRUE(window.isVisible()) << "the close box saves as OK does";
    weight->setText(QStringLiteral("1000"));

    auto* const delivery = find<QCheckBox>(window, "chkSWLief");
    EXPECT_EQ(delivery->checkState(), Qt::PartiallyChecked) << "not set";
    click(window, "chkSWLief");
    EXPECT_EQ(delivery->checkState(), Qt::Checked);
    click(window, "chkSWLief");
    EXPECT_EQ(delivery->checkState(), Qt::Unchecked);
    click(window, "cmdOK");
  });
  EXPECT_EQ(option("abGewicht"), "1000");
  EXPECT_EQ(option("SWAuftLieferbereit"), "0");
  EXPECT_EQ(option("SWAuftFakturierbereit"), "");
}

TEST_F(Windows, OptionsThatCannotBeReadAreLocked) {
  const auto session = erp.environment.session;
  erp.environment.session = nullptr;
  OptionsWindow options(erp.environment);
  erp.environment.session = session;
  run(options, [](QWidget& window) {
    EXPECT_FALSE(find<QLabel>(window, "lblInfo")->text().isEmpty());
    EXPECT_FALSE(find<QCheckBox>(window, "chkLoeschen")->isEnabled());
    window.close();
  });
  EXPECT_EQ(option("Löschen"), "");
}

TEST_F(Windows, DeletingByDateTakesOnlyDoneJobsReceivedBeforeTheDay) {
  struct Job {
    std::string_view id;
    std::int64_t type;
    std::string_view received;
  };
  for (const Job& job :
       {Job{"alt", 13, "23.10.2026"}, Job{"vertrag", 43, "01.01.2025"}, Job{"tag", 33, "24.10.2026"},
        Job{"wartet", 10, "01.01.2025"}, Job{"fehler", 32, "01.01.2025"}, Job{"ohne", 13, "gestern"}})
    erp.execute("Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('"_sql, value(job.id),
                "', "_sql, number(job.type), ", '"_sql, value(job.received), "')"_sql);
  const auto left = [&] { return erp.count("Select Count(*) From ImportKopf"_sql); };

  DeleteDateWindow cancelled(erp.environment, engine, nullptr, {});
  run(cancelled, [](QWidget& window) {
    EXPECT_EQ(find<QLineEdit>(window, "dtDeleteDate")->text(), QStringLiteral("24.10.2026"));
    click(window, "cmdCancel");
  });
  EXPECT_EQ(left(), 6);

  DeleteDateWindow refused(erp.environment, engine, nullptr, {});
  run(refused, [](QWidget& window) {
    click(window, "cmdOK");
    EXPECT_TRUE(window.isVisible()) << "the question was answered with no";
    auto* const day = find<QLineEdit>(window, "dtDeleteDate");
    day->selectAll();
    QTest::keyClicks(day, QStringLiteral("31.02.2026"));
    EXPECT_FALSE(find<QPushButton>(window, "cmdOK")->isEnabled());
    QTest::keyClick(&window, Qt::Key_Return);
    EXPECT_TRUE(window.isVisible());
    click(window, "cmdCancel");
  });
  EXPECT_EQ(left(), 6);
  ASSERT_EQ(erp.desktop.asked.size(), 1U);

  erp.desktop.answer = true;
  DeleteDateWindow typed(erp.environment, engine, nullptr, {});
  run(typed, [](QWidget& window) {
    QTest::keyClicks(find<QLineEdit>(window, "dtDeleteDate"), QStringLiteral("01.01.2026"));
    QTest::keyClick(&window, Qt::Key_Return);
  });
  EXPECT_EQ(left(), 5);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobID = 'vertrag'"_sql), 0);

  DeleteDateWindow confirmed(erp.environment, engine, nullptr, {});
  run(confirmed, [](QWidget& window) { click(window, "cmdOK"); });
  EXPECT_EQ(left(), 4);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobID = 'alt'"_sql), 0);
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(Windows, AnErrorTextCanBeCopiedButNotChanged) {
  ErrorWindow error("Zeile 1\r\n<b>Zeile 2</b>");
  run(error, [](QWidget& window) {
    auto* const text = find<QPlainTextEdit>(window, "txtError");
    QTest::keyClicks(text, QStringLiteral("x"));
    EXPECT_EQ(text->toPlainText(), QStringLiteral("Zeile 1\n<b>Zeile 2</b>"));
    click(window, "cmdCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), text->toPlainText());
    QTest::keyClick(&window, Qt::Key_Escape);
  });
}

TEST_F(Windows, ALongTextIsSearchedFromPlaceToPlace) {
  ErrorWindow window("Erledigt A\nFehler B\nErledigt C\nFehler D", nullptr, "Protokoll");
  run(window, [&](QWidget& shown) {
    auto* const text = find<QPlainTextEdit>(shown, "txtError");
    auto* const sought = find<QLineEdit>(shown, "txtSuchen");
    const auto line = [&] { return text->textCursor().block().text(); };
    sought->setFocus();
    QTest::keyClicks(sought, QStringLiteral("fehler"));
    EXPECT_EQ(line(), QStringLiteral("Fehler B"));
    EXPECT_EQ(text->extraSelections().size(), 2);
    QTest::keyClick(sought, Qt::Key_Return);
    EXPECT_EQ(line(), QStringLiteral("Fehler D"));
    QTest::keyClick(sought, Qt::Key_Return);
    EXPECT_EQ(line(), QStringLiteral("Fehler B")) << "from the beginning again";
    EXPECT_TRUE(shown.isVisible());
    click(shown, "cmdOK");
  });
}

TEST_F(Windows, ALongTextIsPrintedOnPagesUnderItsTitle) {
  if (!canPrint()) GTEST_SKIP() << "the toolkit does not print";
  QString lines;
  for (int line = 1; line <= 200; ++line)
    lines += QStringLiteral("10:30 Auftrag %1 wurde für Köhler & Söhne geschrieben.\n").arg(line);
  const QPlainTextEdit text(lines);
  const auto pagesOf = [&](const QString& title, const char* name) {
    const QString file = toQt((erp.folder.path() / name).string());
    {
      QPdfWriter pages(file);
      printPages(pages, title, text);
    }
    QFile written(file);
    EXPECT_TRUE(written.open(QIODevice::ReadOnly));
    return written.readAll();
  };
  const QByteArray printed = pagesOf(QStringLiteral("Protokoll vom 24.11.2026"), "Protokoll für heute.pdf");
  EXPECT_TRUE(printed.startsWith("%PDF"));
  EXPECT_GE(printed.count("/Type /Page\n"), 3);
  EXPECT_NE(printed.size(), pagesOf(QString(), "ohne.pdf").size()) << "the title is on the page";
}

TEST_F(Windows, EveryWindowFitsASmallScreenAndItsKeysAreUnique) {
  erp.setSetting("Allgemein", "Individual", "VLK");
  const QFont usual = QApplication::font();
  for (const double scale : {1.0, 1.5, 2.0}) {
    QFont font = usual;
    font.setPointSizeF(usual.pointSizeF() * scale);
    QApplication::setFont(font);
    OptionsWindow options(erp.environment);
    DeleteDateWindow deletion(erp.environment, engine, nullptr, {});
    ErrorWindow text(std::string(5000, 'x'));
    AboutWindow about(erp.environment, "1");
    for (QDialog* const window : std::initializer_list<QDialog*>{&options, &deletion, &text, &about})
      run(*window, [&](QWidget& shown) {
        EXPECT_LE(shown.width(), 1272) << fromQt(shown.objectName()) << scale;
        EXPECT_LE(shown.height(), 772) << fromQt(shown.objectName()) << scale;
        if (window != &options) expectSingleAccessKeys(shown);
        window->done(QDialog::Rejected);
      });
  }
  QApplication::setFont(usual);
}

TEST_F(Windows, TheAboutBoxTellsTheSystemInformation) {
  AboutWindow about(erp.environment, "17");
  QString information;
  run(about, [&](QWidget& window) {
    EXPECT_EQ(find<QLabel>(window, "lblErpVersion")->text(), QStringLiteral("6.3.0"));
    QTimer::singleShot(0, &window, [&] {
      QWidget* const shown = QApplication::activeModalWidget();
      ASSERT_EQ(shown->objectName(), QStringLiteral("frmSysInfo"));
      information = find<QPlainTextEdit>(*shown, "txtSysInfo")->toPlainText();
      click(*shown, "cmdOK");
    });
    click(window, "cmdSysInfo");
    click(window, "cmdOK");
  });
  EXPECT_TRUE(information.contains(toQt("Datenbank: " + erp.file))) << information.toStdString();
  EXPECT_TRUE(information.contains(QStringLiteral("Benutzer: pruefer")));
  EXPECT_TRUE(information.contains(QStringLiteral("Stand der Tabellen: 17\n")));
}

} // namespace
} // namespace qx
