#include "../dialog_fixture.h"
#include "support/words.h"
#include "window_driver.h"

#include "ui/qt/busy_wait.h"
#include "ui/qt/code_combo.h"
#include "ui/qt/job_dialog_window.h"
#include "ui/qt/text.h"

#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QToolButton>

#include <map>
#include <set>

namespace qx {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class JobDialogWindowTest : public DialogTest {
protected:
  JobDialogWindowTest() {
    add("Adressenstamm",
        {{"Kundennummer", "20001"}, {"Adressnummer", "7"}, {"Bez1", "Lager"}, {"Ort", "Kiel"}});
  }

  DialogEnd show(std::string_view jobId, std::function<void(QDialog&)> steps, const JobPlace& place = {}) {
    inNextWindow(std::move(steps));
    return showJobDialog(nullptr, context, jobId, place);
  }
  std::string stored(std::string_view jobId, std::string_view column) {
    return text("Select "_sql, name(column), " From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql);
  }
  void stagePriced(std::string_view jobId, std::int32_t number, double quantity) {
    stagePosition(jobId, number, "A100", quantity,
                  {{"Preis", 10}, {"Mengeneinheit", "ST"}, {"ChildID", "P" + std::to_string(number)}});
  }

  /// Gives the clerk the time to see what has come; before, a save would only show it.
  static void lookAtFindings() { QTest::qWait(600); }
  static std::vector<std::string> findingCodes(QWidget& window) {
    std::vector<std::string> codes;
    const auto& list = child<QTableView>(window, "lstFehler");
    for (int row = 0; row < list.model()->rowCount(); ++row)
      codes.push_back(fromQt(list.model()->index(row, 0).data().toString()));
    return codes;
  }
  /// What a label, a button or a line of text shows.
  template <class Widget = QLineEdit>
  static std::string shown(QWidget& window, const char* name) {
    return fromQt(child<Widget>(window, name).text());
  }
  static std::string cellText(QWidget& window, int row, const char* caption) {
    return fromQt(cell(window, row, caption).data().toString());
  }
  static int column(const QTableView& table, const char* caption) {
    for (int column = 0; column < table.model()->columnCount(); ++column)
      if (table.model()->headerData(column, Qt::Horizontal).toString() == QLatin1String(caption))
        return column;
    ADD_FAILURE() << caption;
    return 0;
  }
  static QModelIndex cell(QWidget& window, int row, const char* caption) {
    const auto& table = child<QTableView>(window, "TDBGrid1");
    return table.model()->index(row, column(table, caption));
  }
  static QTableView& goTo(QWidget& window, int row, const char* caption) {
    auto& table = child<QTableView>(window, "TDBGrid1");
    table.setCurrentIndex(cell(window, row, caption));
    table.setFocus();
    return table;
  }
  /// Opens the editor of a cell as the clerk would and types into it.
  static void typeInto(QWidget& window, int row, const char* caption, const char* text) {
    auto& table = goTo(window, row, caption);
    QTest::keyClick(&table, Qt::Key_F2);
    QWidget* editor = QApplication::focusWidget();
    ASSERT_NE(editor, &table);
    QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
    typeText(*editor, text);
    QTest::keyClick(editor, Qt::Key_Tab);
  }
};

TEST_F(JobDialogWindowTest, EveryControlIsFoundUnderItsName) {
  constexpr std::string_view shared =
      ("txtKundennummer cmdKundennummer txtVersandKdn txtVersandAdr txtRechnungKdnr txtRechnungAdr "
       "txtHauptkonto txtTelefon txtFax txtKonto txtBlz cmdBLZ txtHinweis tdbVertreter1 tdbVersandart "
       "tdbZahlungsart tdbZahlungsbed tdbPreisliste TDBGrid1 txtKreditinstitut lstFehler cmdClose");
  constexpr std::string_view ofCustomers = "txtSuchbegriff txtBez1 txtBez2 txtBez3 txtStrasse txtPLZ "
                                           "txtOrt txtLand tdbKundengruppe tdbWährung tdbWährungEG";
  constexpr std::string_view ofContracts =
      ("txtVertragsnummer txtKundennummer cmdKundennummer tdbAnzahl tdbBetrag txtVertragsgegenstand "
       "cmdVertragsgegenstand lblVertragsgegenstand txtVertragstext tdbdtVertragsdatum tdbdtVertragsbeginn "
       "tdbdtVertragsende tdbVertragsart lblVertragsart cboIntervall cboZustand chkProcessWaring txtGrund "
       "imgAnzahl imgVertragsgegenstand imgVertragsdatum imgVertragsbeginn imgVertragsart imgZustand "
       "imgIntervall lstFehler cmdCancel");
  const auto expectAll = [](QWidget& window, std::string_view names) {
    for (const std::string& name : split(names))
      EXPECT_NE(window.findChild<QWidget*>(toQt(name)), nullptr) << name;
  };
  stageCustomer("K1", "20001");
  show("K1", [&](QDialog& window) {
    expectAll(window, shared);
    expectAll(window, ofCustomers);
  });
  stageContract("V1");
  show("V1", [&](QDialog& window) { expectAll(window, ofContracts); });
  stageOrder("O1");
  show("O1", [&](QDialog& window) { expectAll(window, shared); });
  customerSpecific();
  show("O1", [&](QDialog& window) { expectAll(window, "txtIndFild1 txtIndFild3 txtIndFild4 chkNeukunde"); });
}

TEST_F(JobDialogWindowTest, AFieldThatIsMendedAndLeftLosesItsPictureAndItsFinding) {
  stageContract("V1", {{"Menge", 0}});
  show("V1", [](QDialog& window) {
    auto& picture = child<QToolButton>(window, "imgAnzahl");
    EXPECT_TRUE(picture.isVisible());
    EXPECT_EQ(picture.toolTip(), QStringLiteral("Die Menge muss mindestens 1 betragen!"));
    EXPECT_THAT(findingCodes(window), ElementsAre("ME"));
    enterInto(window, "tdbAnzahl", "2");
    EXPECT_FALSE(picture.isVisible());
    EXPECT_THAT(findingCodes(window), IsEmpty());
    // The cursor went on as the clerk sent it.
    EXPECT_TRUE(child<QLineEdit>(window, "tdbBetrag").hasFocus());
    press(window, "cmdSpeichern");
  });
  EXPECT_EQ(stored("V1", "Menge"), "2");
}

TEST_F(JobDialogWindowTest, APictureTellsItsMessageInABox) {
  stageContract("V1", {{"Vertragsart", "Z"}});
  show("V1", [](QDialog& window) { press(window, "imgVertragsart"); });
  ASSERT_EQ(erp.desktop.shown.size(), 1U);
  EXPECT_EQ(erp.desktop.shown[0].title, "Vertragsdetails");
  EXPECT_EQ(erp.desktop.shown[0].icon, MessageIcon::Critical);
  EXPECT_EQ(erp.desktop.shown[0].text, "Die Vertragsart: Z ist noch nicht angelegt.");
}

TEST_F(JobDialogWindowTest, ActivatingAFindingPutsTheCursorIntoItsField) {
  stageContract("V1", {{"Menge", 0}, {"Artikelnummer", "X"}});
  show("V1", [](QDialog& window) {
    EXPECT_THAT(findingCodes(window), ElementsAre("VGG", "ME"));
    // The cursor begins at the worst finding.
    auto& list = child<QTableView>(window, "lstFehler");
    ASSERT_TRUE(list.hasFocus());
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(child<QLineEdit>(window, "txtVertragsgegenstand").hasFocus());
    const QRect second = list.visualRect(list.model()->index(1, 2));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, second.center());
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, second.center());
    EXPECT_TRUE(child<QLineEdit>(window, "tdbAnzahl").hasFocus());
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(),
              QStringLiteral("ME\tWarnung\tDie Menge muss mindestens 1 betragen."));
  });
}

TEST_F(JobDialogWindowTest, LeavingWithChangesAsksOnce) {
  stageContract("V1");
  int asked = 0;
  const auto answer = [&](const char* label) {
    inNextWindow([&asked, label](QDialog& box) {
      ++asked;
      for (QAbstractButton* button : dynamic_cast<QMessageBox&>(box).buttons())
        if (button->text() == QString::fromUtf8(label)) QTest::mouseClick(button, Qt::LeftButton);
    });
  };
  show("V1", [&](QDialog& window) {
    // What was not left yet counts, too.
    auto& text = child<QLineEdit>(window, "txtVertragstext");
    text.setFocus();
    typeText(text, "Neu");
    answer("&Zurück");
    QTest::keyClick(&text, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(text.text(), QStringLiteral("Neu"));
    answer("&Verwerfen");
    press(window, "cmdCancel");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(stored("V1", "Vertragstext"), "");

  show("V1", [&](QDialog& window) {
    enterInto(window, "txtVertragstext", "Neu");
    answer("&Speichern");
    window.close();
  });
  EXPECT_EQ(stored("V1", "Vertragstext"), "Neu");
  // Without changes nobody is asked.
  show("V1", [](QDialog& window) {
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
  });
}

TEST_F(JobDialogWindowTest, EnterInAFieldChecksButDoesNotSave) {
  stageContract("V1", {{"Menge", 0}});
  const DialogEnd end = show("V1",
                             [](QDialog& window) {
                               auto& quantity = child<QLineEdit>(window, "tdbAnzahl");
                               quantity.setFocus();
                               quantity.selectAll();
                               typeText(quantity, "3");
                               QTest::keyClick(&quantity, Qt::Key_Return);
                               EXPECT_TRUE(window.isVisible());
                               EXPECT_THAT(findingCodes(window), IsEmpty());
                               auto& next = child<QPushButton>(window, "cmdWeiter");
                               next.setFocus();
                               QTest::keyClick(&next, Qt::Key_Return);
                               EXPECT_FALSE(window.isVisible());
                             },
                             {1, 2});
  EXPECT_EQ(end, DialogEnd::Next);
  EXPECT_EQ(stored("V1", "Menge"), "3");
}

TEST_F(JobDialogWindowTest, WhatIsNoNumberStaysAndIsNotSaved) {
  stageContract("V1");
  show("V1", [](QDialog& window) {
    enterInto(window, "tdbBetrag", "zwölf");
    EXPECT_EQ(shown(window, "tdbBetrag"), "zwölf");
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(window.isVisible());
    EXPECT_THAT(shown<QLabel>(window, "lblHinweis"), HasSubstr("'zwölf' ist keine Zahl."));
  });
  EXPECT_EQ(stored("V1", "Preis"), "0");
}

TEST_F(JobDialogWindowTest, ADoneJobSaysWhyNothingCanBeChanged) {
  stageContract("V1");
  execute("Update ImportKopf Set JobType = 23 Where JobID = 'V1'"_sql);
  show("V1", [](QDialog& window) {
    EXPECT_EQ(shown<QLabel>(window, "lblHinweis"),
              "Der Vorgang ist erledigt und kann nicht mehr geändert werden.");
    for (const QPushButton* button : window.findChildren<QPushButton*>())
      EXPECT_EQ(button->isEnabled(), button->objectName() == QStringLiteral("cmdCancel"))
          << fromQt(button->objectName());
    auto& text = child<QLineEdit>(window, "txtVertragstext");
    typeText(text, "Neu");
    EXPECT_EQ(text.text(), QString());
    EXPECT_FALSE(child<CodeCombo>(window, "tdbVertragsart").isEnabled());
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(window.isVisible());
    press(window, "cmdCancel");
  });
}

TEST_F(JobDialogWindowTest, TheLookupOpensWithF4AndItsChoiceIsChecked) {
  stageContract("V1", {{"Artikelnummer", "X"}});
  show("V1", [&](QDialog& window) {
    EXPECT_THAT(findingCodes(window), ElementsAre("VGG"));
    chosen = {"G1"};
    auto& object = child<QLineEdit>(window, "txtVertragsgegenstand");
    object.setFocus();
    QTest::keyClick(&object, Qt::Key_F4);
    EXPECT_EQ(object.text(), QStringLiteral("G1"));
    EXPECT_EQ(shown<QLabel>(window, "lblVertragsgegenstand"), "Kassenwartung");
    EXPECT_THAT(findingCodes(window), IsEmpty());
    // A lookup that is left without a choice changes nothing.
    chosen.clear();
    press(window, "cmdKundennummer");
    EXPECT_EQ(shown(window, "txtKundennummer"), "20001");
  });
}

TEST_F(JobDialogWindowTest, ACodeCanBeTypedAsTextAndUnknownOnesStay) {
  stageContract("V1", {{"Zustand", "X"}});
  show("V1", [](QDialog& window) {
    auto& state = child<CodeCombo>(window, "cboZustand");
    EXPECT_EQ(state.currentIndex(), -1);
    EXPECT_THAT(findingCodes(window), ElementsAre("ZD"));
    state.setFocus();
    QTest::keyClick(&state, Qt::Key_Down);
    EXPECT_EQ(state.currentText(), QStringLiteral("Aktiv"));
    EXPECT_THAT(findingCodes(window), IsEmpty());
    enterInto(window, "tdbVertragsart", "zz");
    EXPECT_EQ(child<CodeCombo>(window, "tdbVertragsart").currentText(), QStringLiteral("zz"));
    EXPECT_THAT(findingCodes(window), ElementsAre("VA"));
    enterInto(window, "tdbVertragsart", "w");
    EXPECT_EQ(child<CodeCombo>(window, "tdbVertragsart").currentText(), QStringLiteral("W"));
    press(window, "cmdSpeichern");
  });
  EXPECT_EQ(stored("V1", "Zustand"), "A");
  EXPECT_EQ(stored("V1", "Vertragsart"), "W");
}

TEST_F(JobDialogWindowTest, TheStoredValueIsTakenOverWithOneClick) {
  stageCustomer("K1", "20001");
  set("K1", "Bez1", "Hafenbau AG");
  show("K1", [](QDialog& window) {
    auto& master = child<QToolButton>(window, "txtBez1Stamm");
    ASSERT_TRUE(master.isVisible());
    EXPECT_EQ(master.text(), QStringLiteral("Stamm: Hafenbau GmbH"));
    EXPECT_THAT(findingCodes(window), Contains("BZ1"));
    press(window, "txtBez1Stamm");
    EXPECT_EQ(shown(window, "txtBez1"), "Hafenbau GmbH");
    EXPECT_TRUE(child<QLineEdit>(window, "txtBez1").hasFocus());
    EXPECT_FALSE(master.isVisible());
    EXPECT_THAT(findingCodes(window), Not(Contains("BZ1")));
  });
}

TEST_F(JobDialogWindowTest, TextsOfTheMasterAreNeverMarkup) {
  execute("Update Kundenstamm Set Bez1 = 'Hafen & Co <b>KG</b>'"_sql);
  execute("Update Adressenstamm Set Bez1 = 'Hafen & Co <b>KG</b>'"_sql);
  stageCustomer("K1", "20001");
  set("K1", "Bez1", "Hafen");
  show("K1", [](QDialog& window) {
    const auto& master = child<QToolButton>(window, "txtBez1Stamm");
    EXPECT_EQ(master.text(), QStringLiteral("Stamm: Hafen && Co <b>KG</b>"));
    for (const char* button : {"txtBez1Stamm", "imgBez1"}) {
      const std::string tip = fromQt(child<QToolButton>(window, button).toolTip());
      EXPECT_THAT(tip, HasSubstr("&lt;b&gt;KG&lt;/b&gt;"));
      EXPECT_THAT(tip, Not(HasSubstr("<b>")));
    }
  });
}

TEST_F(JobDialogWindowTest, AFindingThatArisesBySavingIsSeenBeforeTheWindowCloses) {
  stageContract("V1");
  show("V1", [](QDialog& window) {
    auto& object = child<QLineEdit>(window, "txtVertragsgegenstand");
    object.setFocus();
    object.selectAll();
    typeText(object, "NIX");
    press(window, "cmdSpeichern");
    ASSERT_TRUE(window.isVisible());
    EXPECT_THAT(findingCodes(window), ElementsAre("VGG"));
    EXPECT_EQ(
        child<QLabel>(window, "lblHinweis").text(),
        QStringLiteral("Es sind Befunde hinzugekommen. Noch einmal Speichern übernimmt den Vorgang so."));
    press(window, "cmdSpeichern");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_EQ(stored("V1", "Artikelnummer"), "NIX");
  EXPECT_EQ(jobType("V1"), 22);
}

TEST_F(JobDialogWindowTest, AJobThatAnotherProgramHasChangedIsReadAnewOrKeptInSight) {
  stageContract("V1");
  show("V1", [&](QDialog& window) {
    enterInto(window, "txtVertragstext", "Neu");
    set("V1", "Preis", "99");
    press(window, "cmdSpeichern");
    ASSERT_TRUE(window.isVisible()) << "keep looking";
    EXPECT_EQ(shown(window, "txtVertragstext"), "Neu");
    // Nobody is asked whether to save what cannot be saved.
    press(window, "cmdCancel");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_EQ(stored("V1", "Vertragstext"), "");
  erp.desktop.answer = true;
  QString price;
  show("V1", [&](QDialog& window) {
    enterInto(window, "txtVertragstext", "Neu");
    set("V1", "Preis", "100");
    press(window, "cmdSpeichern");
    EXPECT_FALSE(window.isVisible());
    inNextWindow([&price](QDialog& anew) { price = child<QLineEdit>(anew, "tdbBetrag").text(); });
  });
  EXPECT_EQ(price, QStringLiteral("100,00"));
  show("V1", [&](QDialog& window) {
    set("V1", "Preis", "101");
    press(window, "cmdDelete");
    EXPECT_FALSE(window.isVisible());
    inNextWindow([&price](QDialog& anew) { price = child<QLineEdit>(anew, "tdbBetrag").text(); });
  });
  EXPECT_EQ(price, QStringLiteral("101,00"));
}

TEST_F(JobDialogWindowTest, WhileAnotherProgramWritesTheClerkMayGiveUpOrWait) {
  stageContract("V1");
  context.wait = [] { return std::make_unique<QtBusyWait>(); };
  const auto other = erp.secondConnection();
  show("V1", [&](QDialog& window) {
    enterInto(window, "txtVertragstext", "Neu");
    other->beginWork(nullptr);
    const auto whenWaiting = [](std::function<void(QDialog&)> steps) {
      auto* const poll = new QTimer(qApp);
      QObject::connect(poll, &QTimer::timeout, poll, [poll, steps] {
        auto* const box = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (box == nullptr || box->objectName() != QStringLiteral("frmWarten")) return;
        poll->stop();
        poll->deleteLater();
        steps(*box);
      });
      poll->start(5);
    };
    QString text;
    whenWaiting([&text](QDialog& box) {
      text = child<QLabel>(box, "lblWarten").text();
      EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
      press(box, "cmdCancel");
    });
    press(window, "cmdSpeichern");
    EXPECT_EQ(text, QStringLiteral("Die Datenbank wird gerade von einem anderen Programm benutzt.\n"
                                   "Es geht weiter, sobald sie frei ist."));
    ASSERT_TRUE(window.isVisible());
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    whenWaiting([&other](QDialog&) { other->rollbackWork(); });
    press(window, "cmdSpeichern");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_EQ(stored("V1", "Vertragstext"), "Neu");
}

TEST_F(JobDialogWindowTest, ABlankAtWhichNoLineBreaksSurvivesAnEdit) {
  stageOrder("O1");
  set("O1", "Bemerkung", "10\u00A0kg");
  show("O1", [](QDialog& window) {
    auto& note = child<QPlainTextEdit>(window, "txtHinweis");
    note.setFocus();
    note.moveCursor(QTextCursor::End);
    typeText(note, "x");
    press(window, "cmdSpeichern");
  });
  EXPECT_EQ(stored("O1", "Bemerkung"), "10\u00A0kgx");
}

TEST_F(JobDialogWindowTest, AReleaseTicksItsBoxAndIsStored) {
  stageCustomer("K1", "20001");
  set("K1", "Vertreter1", "99");
  show("K1", [](QDialog& window) {
    ASSERT_TRUE(child<QPushButton>(window, "cmdFreigeben").isVisible());
    press(window, "cmdFreigeben");
    EXPECT_FALSE(child<QPushButton>(window, "cmdFreigeben").isVisible());
    EXPECT_TRUE(child<QAbstractButton>(window, "chkProcessWaring").isChecked());
    press(window, "cmdSpeichern");
  });
  EXPECT_EQ(stored("K1", "ProcessWarning"), "1");
}

TEST_F(JobDialogWindowTest, TheAddressesAreEditedInAWindowOfTheirOwn) {
  stageCustomer("K1", "20001");
  show("K1", [&](QDialog& window) {
    inNextWindow([](QDialog& addresses) {
      enterInto(addresses, "txtVS_AdrNr", "7");
      EXPECT_EQ(shown<QLabel>(addresses, "lblVS_Stand"), "Es gilt die Stammadresse: Lager, Kiel");
      press(addresses, "cmdVS_Stamm");
      enterInto(addresses, "txtVS_Ort", "Lübeck");
      EXPECT_TRUE(child<QToolButton>(addresses, "imgVS_Ort").isVisible());
      press(addresses, "cmdOK");
    });
    press(window, "cmdAdressen");
    EXPECT_EQ(shown(window, "txtVersandAdr"), "7");
    EXPECT_THAT(findingCodes(window), Contains("VA"));
    lookAtFindings();
    press(window, "cmdSpeichern");
  });
  EXPECT_EQ(stored("K1", "VS_AdrNr") + stored("K1", "VS_Ort"), "7Lübeck");
}

TEST_F(JobDialogWindowTest, CellsAreEditedByKindAndARefusedTextStaysInSight) {
  stageOrder("O1");
  stagePriced("O1", 1, 3);
  show("O1", [](QDialog& window) {
    typeInto(window, 0, "Menge", "2,5");
    EXPECT_EQ(cellText(window, 0, "Menge"), "2,5");
    typeInto(window, 0, "Preis", "teuer");
    EXPECT_EQ(cellText(window, 0, "Preis"), "teuer");
    EXPECT_EQ(cell(window, 0, "Preis").data(Qt::ToolTipRole).toString(),
              QStringLiteral("'teuer' ist keine Zahl."));
    press(window, "cmdSpeichern");
    EXPECT_TRUE(window.isVisible());
    typeInto(window, 0, "Preis", "11");
    const QRect box = child<QTableView>(window, "TDBGrid1").visualRect(cell(window, 0, "Lieferbereit"));
    QTest::mouseClick(child<QTableView>(window, "TDBGrid1").viewport(), Qt::LeftButton, {}, box.center());
    EXPECT_EQ(cell(window, 0, "Lieferbereit").data(Qt::CheckStateRole).toInt(), Qt::Checked);
    // A cell that is still being edited is saved, too.
    auto& table = goTo(window, 0, "Artikellangtext");
    QTest::keyClick(&table, Qt::Key_F2);
    typeText(*QApplication::focusWidget(), "Erste Zeile");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    typeText(*QApplication::focusWidget(), "Zweite");
    lookAtFindings();
    press(window, "cmdSpeichern");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_THAT(erp.rows("Select Menge, Preis, Lieferbereit, Artikellangtext From ImportPos"_sql),
              ElementsAre(ElementsAre(Value(2.5), Value(11.0), Value(true), Value("Erste Zeile\r\nZweite"))));
}

TEST_F(JobDialogWindowTest, RowsAreAddedPastedCopiedAndRemoved) {
  stageOrder("O1");
  stagePriced("O1", 1, 3);
  show("O1", [](QDialog& window) {
    auto& table = goTo(window, 0, "Artikelnummer");
    QTest::keyClick(&table, Qt::Key_Insert);
    EXPECT_EQ(table.model()->rowCount(), 2);
    EXPECT_EQ(table.currentIndex(), cell(window, 1, "Artikelnummer"));
    QApplication::clipboard()->setText(QStringLiteral("A100\t2\r\nB200\tviel\r\nA100\t4\r\n"));
    QTest::keyClick(&table, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(table.model()->rowCount(), 4);
    EXPECT_EQ(cellText(window, 3, "Menge"), "4");
    EXPECT_THAT(shown<QLabel>(window, "lblTabelleHinweis"),
                HasSubstr("Position 3, Menge: 'viel' ist keine Zahl."));
    table.selectionModel()->select(QItemSelection(cell(window, 2, "Artikelnummer"), cell(window, 3, "Menge")),
                                   QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(&table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("B200\t\nA100\t4"));
    QTest::keyClick(&table, Qt::Key_Delete, Qt::ControlModifier);
    EXPECT_EQ(table.model()->rowCount(), 2);
    EXPECT_EQ(cellText(window, 1, "Artikelnummer"), "A100");
    // The cursor is in a row again.
    EXPECT_TRUE(table.currentIndex().isValid());
  });
}

TEST_F(JobDialogWindowTest, PositionsAreCheckedWhileTheWindowIsOpenAndTheirFindingsLeadToTheirRows) {
  stageOrder("O1");
  for (int number = 1; number <= 120; ++number) stagePriced("O1", number, 1);
  execute("Update ImportPos Set Preis = 9 Where ChildID = 'P111'"_sql);
  show("O1", [](QDialog& window) {
    auto& table = goTo(window, 0, "Menge");
    QTest::keyClick(&table, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(QApplication::focusWidget());
    ASSERT_NE(editor, nullptr);
    typeText(*editor, "45");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !findingCodes(window).empty(); }));
    EXPECT_THAT(findingCodes(window), ElementsAre("PR 111"));
    EXPECT_FALSE(child<QLabel>(window, "lblPruefung").isVisible());
    // The checks leave alone what is being typed meanwhile.
    ASSERT_EQ(QApplication::focusWidget(), editor);
    EXPECT_EQ(editor->text(), QStringLiteral("45"));
    QTest::keyClick(editor, Qt::Key_Escape);
    auto& list = child<QTableView>(window, "lstFehler");
    list.selectRow(0);
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(table.hasFocus());
    EXPECT_EQ(table.currentIndex().row(), 110);
  });
}

TEST_F(JobDialogWindowTest, TheDetailsOfAPositionReachItsRowAndF4ChoosesItsArticle) {
  stageOrder("O1");
  stagePriced("O1", 1, 3);
  show("O1", [&](QDialog& window) {
    auto& table = goTo(window, 0, "Details");
    inNextWindow([](QDialog& details) {
      enterInto(details, "tdbnbrMenge", "8");
      press(details, "cmdClose");
    });
    QTest::keyClick(&table, Qt::Key_Space);
    EXPECT_EQ(cellText(window, 0, "Menge"), "8");

    awaitActive(window);
    chosen = {"B200"};
    goTo(window, 0, "Artikelnummer");
    QTest::keyClick(&table, Qt::Key_F4);
    EXPECT_EQ(cellText(window, 0, "Artikelnummer"), "B200");
    EXPECT_THAT(findingCodes(window), Contains("PR 1"));
  });
}

TEST_F(JobDialogWindowTest, AnUnreadableNumberKeepsTheDetailsOfAPositionOpen) {
  stageOrder("O1");
  stagePriced("O1", 1, 3);
  show("O1", [&](QDialog& window) {
    auto& table = goTo(window, 0, "Details");
    inNextWindow([](QDialog& details) {
      auto& quantity = child<QLineEdit>(details, "tdbnbrMenge");
      enterInto(details, "tdbnbrMenge", "2 Stück");
      enterInto(details, "tdbnbrPreis", "9");
      EXPECT_EQ(quantity.text(), QStringLiteral("2 Stück")) << "another field does not take it away";
      press(details, "cmdClose");
      ASSERT_TRUE(details.isVisible());
      EXPECT_TRUE(quantity.hasFocus());
      EXPECT_THAT(shown<QLabel>(details, "lblHinweis"), testing::StartsWith("'2 Stück' ist keine Zahl."));
      QTest::keyClick(&quantity, Qt::Key_Escape);
      ASSERT_TRUE(details.isVisible());
      EXPECT_EQ(quantity.text(), QStringLiteral("3"));
      EXPECT_FALSE(child<QLabel>(details, "lblHinweis").isVisible());
      QTest::keyClick(&quantity, Qt::Key_Escape);
      EXPECT_FALSE(details.isVisible());
    });
    QTest::keyClick(&table, Qt::Key_Space);
    EXPECT_EQ(cellText(window, 0, "Menge"), "3");
    EXPECT_EQ(cellText(window, 0, "Preis"), "9,00");
  });
}

TEST_F(JobDialogWindowTest, TheTabulatorLeavesATableAtItsEnds) {
  stageOrder("O1");
  stagePriced("O1", 10, 3);
  stagePriced("O1", 20, 4);
  show("O1", [](QDialog& window) {
    auto& table = child<QTableView>(window, "TDBGrid1");
    EXPECT_EQ(table.model()->headerData(1, Qt::Vertical).toString(), QStringLiteral("20"));
    goTo(window, 0, "Status");
    int steps = 0;
    while (table.hasFocus() && steps < 100) {
      QTest::keyClick(&table, Qt::Key_Tab);
      ++steps;
    }
    EXPECT_EQ(steps, 24) << "two rows of twelve cells";
    EXPECT_TRUE(child<QToolButton>(window, "cmdZeileNeu").hasFocus());
    goTo(window, 0, "Status");
    QTest::keyClick(&table, Qt::Key_Backtab);
    EXPECT_FALSE(table.hasFocus());
    typeInto(window, 1, "Liefertermin", "24.12.2026");
    EXPECT_TRUE(table.hasFocus()) << "the editor of the last cell goes back to its table";
    EXPECT_EQ(table.currentIndex(), cell(window, 1, "Liefertermin"));
  });
}

TEST_F(JobDialogWindowTest, AJobLeadsToItsNeighboursWithOrWithoutSaving) {
  stageContract("V1");
  const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    return [=](QDialog& window) {
      enterInto(window, "txtVertragstext", modifiers == Qt::NoModifier ? "" : "Neu");
      QTest::keyClick(&window, key, modifiers);
      EXPECT_FALSE(window.isVisible());
    };
  };
  EXPECT_EQ(show("V1", press(Qt::Key_F8), {2, 3}), DialogEnd::Next);
  EXPECT_EQ(show("V1", press(Qt::Key_F7), {2, 3}), DialogEnd::Previous);
  EXPECT_EQ(stored("V1", "Vertragstext"), "");
  // There is nothing behind the last one: saving closes.
  EXPECT_EQ(show("V1", press(Qt::Key_Return, Qt::ControlModifier), {3, 3}), DialogEnd::Closed);
  EXPECT_EQ(stored("V1", "Vertragstext"), "Neu");
  show("V1",
       [](QDialog& window) {
         EXPECT_EQ(shown<QLabel>(window, "lblStelle"), "Vorgang 3 von 1.011");
         QTest::keyClick(&window, Qt::Key_F8);
         EXPECT_FALSE(window.isVisible());
       },
       {3, 1011});
  show("V1",
       [](QDialog& window) {
         QTest::keyClick(&window, Qt::Key_F8);
         EXPECT_TRUE(window.isVisible()) << "the last one";
       },
       {2, 2});
}

TEST_F(JobDialogWindowTest, F3GoesFromFindingToFindingAndFromCellToCell) {
  stageContract("V1", {{"Menge", 0}, {"Artikelnummer", "X"}});
  show("V1", [](QDialog& window) {
    const auto next = [&](Qt::KeyboardModifiers modifiers = {}) {
      QTest::keyClick(&window, Qt::Key_F3, modifiers);
      return fromQt(window.focusWidget()->objectName());
    };
    EXPECT_EQ(next(), "txtVertragsgegenstand");
    EXPECT_EQ(next(), "tdbAnzahl");
    EXPECT_EQ(next(), "txtVertragsgegenstand");
    EXPECT_EQ(next(Qt::ShiftModifier), "tdbAnzahl");
    EXPECT_EQ(shown<QLabel>(window, "lblBefunde"), "Be&funde: 2");
    QTest::keyClick(&window, Qt::Key_F, Qt::AltModifier);
    EXPECT_TRUE(child<QTableView>(window, "lstFehler").hasFocus());
  });
  add("Mengeneinheiten", {{"Mengeneinheit", "ST"}, {"Langtext", "Stück"}});
  stageOrder("O1");
  stagePosition("O1", 10, "A100", 2, {{"Preis", 12}, {"Mengeneinheit", "FASS"}});
  show("O1", [](QDialog& window) {
    auto& table = child<QTableView>(window, "TDBGrid1");
    std::vector<std::string> places;
    for (int i = 0; i < 2; ++i) {
      QTest::keyClick(&window, Qt::Key_F3);
      EXPECT_TRUE(table.hasFocus());
      places.push_back(
          fromQt(table.model()->headerData(table.currentIndex().column(), Qt::Horizontal).toString()));
    }
    EXPECT_THAT(places, testing::UnorderedElementsAre("Preis", "Einheit"));
    QTest::keyClick(&table, Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_FALSE(table.hasFocus());
    QTest::keyClick(&window, Qt::Key_T, Qt::AltModifier);
    EXPECT_TRUE(table.hasFocus());
  });
}

TEST_F(JobDialogWindowTest, OneKeyTakesAValueOverAndAnotherAllOfThem) {
  stageCustomer("K1", "20001");
  set("K1", "Bez1", "Hafenbau AG");
  set("K1", "Strasse", "Am Kai 2");
  set("K1", "Ort", "Kiel");
  show("K1", [](QDialog& window) {
    child<QLineEdit>(window, "txtStrasse").setFocus();
    QTest::keyClick(&window, Qt::Key_F6);
    EXPECT_EQ(shown(window, "txtStrasse"), "Am Kai 1");
    EXPECT_EQ(shown(window, "txtOrt"), "Kiel");
    ASSERT_TRUE(child<QPushButton>(window, "cmdAllesUebernehmen").isVisible());
    QTest::keyClick(&window, Qt::Key_F6, Qt::ShiftModifier);
    EXPECT_EQ(shown(window, "txtBez1") + shown(window, "txtOrt"), "Hafenbau GmbHHamburg");
    EXPECT_FALSE(child<QPushButton>(window, "cmdAllesUebernehmen").isVisible());
  });
  stageOrder("O1");
  for (int number = 1; number <= 3; ++number)
    stagePosition("O1", number, "A100", 1, {{"Preis", 12}, {"Mengeneinheit", "ST"}});
  show("O1", [](QDialog& window) {
    goTo(window, 1, "Menge");
    QTest::keyClick(&window, Qt::Key_F6);
    EXPECT_EQ(cellText(window, 0, "Preis") + " " + cellText(window, 1, "Preis"), "12,00 10,00");
    press(window, "cmdAllesUebernehmen");
    EXPECT_EQ(cellText(window, 0, "Preis") + " " + cellText(window, 2, "Preis"), "10,00 10,00");
    EXPECT_THAT(findingCodes(window), Not(Contains(HasSubstr("PR"))));
  });
}

TEST_F(JobDialogWindowTest, AnAddedPositionIsGivenItsUnitAndPrice) {
  erp.setOption("AuftragLieferbereit", "1");
  stageOrder("O1");
  stagePriced("O1", 1, 1);
  show("O1", [](QDialog& window) {
    QTest::keyClick(&goTo(window, 0, "Menge"), Qt::Key_Insert);
    typeInto(window, 1, "Artikelnummer", "B200");
    EXPECT_EQ(cellText(window, 1, "Einheit"), "ST");
    EXPECT_THAT(findingCodes(window), Contains("ME 2"));
    typeInto(window, 1, "Menge", "3");
    EXPECT_EQ(cellText(window, 1, "Preis"), "4,99");
    EXPECT_EQ(cell(window, 1, "Lieferbereit").data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_THAT(findingCodes(window), IsEmpty());
    // What is typed stays.
    typeInto(window, 1, "Preis", "5");
    typeInto(window, 1, "Menge", "4");
    EXPECT_EQ(cellText(window, 1, "Preis"), "5,00");
    EXPECT_EQ(shown<QLabel>(window, "lblTabelleSumme"), "2 Positionen, Summe 30,00");
    typeInto(window, 1, "Preis", "1234,5");
    EXPECT_EQ(shown<QLabel>(window, "lblTabelleSumme"), "2 Positionen, Summe 4.948,00");
  });
}

TEST_F(JobDialogWindowTest, PartOfATextChoosesTheOnlyRowThatHasIt) {
  stageOrder("O1");
  show("O1", [](QDialog& window) {
    enterInto(window, "tdbZahlungsart", "nach");
    EXPECT_EQ(child<CodeCombo>(window, "tdbZahlungsart").code(), "NN");
    EXPECT_THAT(findingCodes(window), Not(Contains("ZA")));
    enterInto(window, "tdbZahlungsart", "xy");
    EXPECT_THAT(findingCodes(window), Contains("ZA"));
    press(window, "cmdSpeichern");
  });
}

TEST_F(JobDialogWindowTest, TheOrderShowsTheAddressThatItJudges) {
  stageOrder("O1", {{"Strasse", "Weg 43"}});
  show("O1", [](QDialog& window) {
    EXPECT_EQ(child<QPlainTextEdit>(window, "txtAnschrift").toPlainText(),
              QStringLiteral("Hafenbau GmbH\nWeg 43"));
    EXPECT_EQ(child<QPlainTextEdit>(window, "txtStammanschrift").toPlainText(),
              QStringLiteral("Hafenbau GmbH\nAm Kai 1\nDE 20457 Hamburg"));
    EXPECT_TRUE(child<QToolButton>(window, "imgAnschrift").isVisible());
    auto& own = child<QPlainTextEdit>(window, "txtAnschrift");
    typeText(own, "x");
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible()) << "nothing has been changed";
  });
}

TEST_F(JobDialogWindowTest, TheReleaseIsProposedToAMendedJobAndEscapeGoesBack) {
  context.askRelease = askReleaseInBox;
  stageCustomer("K1", "20001");
  set("K1", "Vertreter1", "99");
  execute("Update ImportKopf Set JobType = 11 Where JobID = 'K1'"_sql);
  std::vector<std::string> proposals;
  const auto answer = [&](Qt::Key key) {
    inNextWindow([&proposals, key](QDialog& box) {
      for (QAbstractButton* button : dynamic_cast<QMessageBox&>(box).buttons())
        if (dynamic_cast<QPushButton&>(*button).isDefault()) proposals.push_back(fromQt(button->text()));
      QTest::keyClick(&box, key);
    });
  };
  show("K1", [&](QDialog& window) {
    answer(Qt::Key_Escape);
    press(window, "cmdSpeichern");
    EXPECT_TRUE(window.isVisible());
    enterInto(window, "tdbVertreter1", "01");
    answer(Qt::Key_Return);
    press(window, "cmdSpeichern");
    EXPECT_FALSE(window.isVisible());
  });
  EXPECT_THAT(proposals, ElementsAre("&Nein", "&Ja"));
  EXPECT_EQ(stored("K1", "ProcessWarning") + stored("K1", "Vertreter1"), "101");
}

TEST_F(JobDialogWindowTest, TheTabulatorGoesDownOneColumnAfterTheOther) {
  stageCustomer("K1", "20001");
  show("K1", [](QDialog& window) {
    const auto* before = &child<QWidget>(window, "txtKundennummer");
    const auto left = [&](const QWidget& widget) {
      return widget.parentWidget()->mapTo(&window, QPoint()).x();
    };
    const auto top = [&](const QWidget& widget) { return widget.mapTo(&window, QPoint()).y(); };
    child<QWidget>(window, "txtKundennummer").setFocus();
    for (int i = 0; i < 24; ++i) {
      QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
      const QWidget* now = window.focusWidget();
      if (now == before || qobject_cast<const QToolButton*>(now) != nullptr) continue;
      if (now->objectName() == QStringLiteral("lstFehler")) break;
      EXPECT_TRUE(left(*now) > left(*before) || (left(*now) == left(*before) && top(*now) > top(*before)))
          << fromQt(before->objectName()) << " to " << fromQt(now->objectName());
      before = now;
    }
  });
}

TEST_F(JobDialogWindowTest, EveryAccessKeyStandsForOneThing) {
  stageOrder("O1");
  stagePriced("O1", 1, 3);
  stageCustomer("K1", "20001");
  stageContract("V1");
  for (const char* job : {"O1", "K1", "V1"})
    show(job, [](QDialog& window) { expectSingleAccessKeys(window); }, {1, 2});
  show("O1", [&](QDialog& window) {
    auto& table = goTo(window, 0, "Details");
    inNextWindow([](QDialog& details) { expectSingleAccessKeys(details); });
    QTest::keyClick(&table, Qt::Key_Space);
  });
}

TEST_F(JobDialogWindowTest, AButtonHasTheSameKeyInEveryDialog) {
  stageOrder("O1");
  stageCustomer("K1", "20001");
  stageContract("V1");
  std::map<std::string, std::set<std::string>> keys;
  for (const char* job : {"O1", "K1", "V1"})
    show(job,
         [&](QDialog& window) {
           for (const QPushButton* button : window.findChildren<QPushButton*>())
             keys[fromQt(button->text().remove(QLatin1Char('&')))].insert(fromQt(button->text()));
         },
         {1, 2});
  for (const auto& [text, marked] : keys) EXPECT_EQ(marked.size(), 1U) << text;
  EXPECT_TRUE(keys.contains("Speichern und weiter"));
}

TEST_F(JobDialogWindowTest, EveryDialogFitsASmallScreenWithLargeLetters) {
  stageCustomer("K1", "20001");
  stageContract("V1");
  execute("Update ImportKopf Set JobType = 40 Where JobID = 'V1'"_sql);
  stageOrder("O1");
  stagePriced("O1", 1, 3);
  const QFont usual = QApplication::font();
  const auto expectToFit = [](QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    EXPECT_LE(window.width(), screen.width() - 8) << fromQt(window.objectName());
    EXPECT_LE(window.height(), screen.height() - 28) << fromQt(window.objectName());
    for (const QPushButton* button : window.findChildren<QPushButton*>())
      if (button->isVisible() && button->parentWidget() == &window) {
        EXPECT_TRUE(window.rect().contains(button->mapTo(&window, button->rect().bottomRight())))
            << fromQt(window.objectName() + button->text());
      }
  };
  for (const double scale : {1.0, 1.5, 2.0}) {
    QFont font = usual;
    font.setPointSizeF(usual.pointSizeF() * scale);
    QApplication::setFont(font);
    SCOPED_TRACE(scale);
    show("K1",
         [&](QDialog& window) {
           expectToFit(window);
           inNextWindow([&](QDialog& addresses) { expectToFit(addresses); });
           press(window, "cmdAdressen");
         },
         {3, 11});
    show("V1", [&](QDialog& window) { expectToFit(window); }, {3, 11});
    show("O1",
         [&](QDialog& window) {
           expectToFit(window);
           inNextWindow([&](QDialog& details) { expectToFit(details); });
           QTest::keyClick(&goTo(window, 0, "Details"), Qt::Key_Space);
         },
         {3, 11});
  }
  QApplication::setFont(usual);
}

TEST_F(JobDialogWindowTest, AWindowFitsItsScreenWithItsFrame) {
  erp.localSettings.write("QXImportJob", "MAIN", "DialogKunde", "5000,5000");
  stageCustomer("K1", "20001");
  show("K1", [](QDialog& window) {
    const QRect screen = window.screen()->availableGeometry();
    EXPECT_LE(window.height(), screen.height() - 30);
    EXPECT_LE(window.width(), screen.width());
    EXPECT_LE(window.mapToGlobal(child<QPushButton>(window, "cmdSpeichern").geometry().bottomLeft()).y(),
              screen.bottom());
    EXPECT_FALSE(child<QTableView>(window, "TDBGrid1").isVisible()) << "there are no contracts";
  });
}

TEST_F(JobDialogWindowTest, TheDetailsOfAContractOpenItsDialog) {
  stageCustomer("K1", "20001");
  stageContract("V1");
  execute("Update ImportKopf Set JobType = 40 Where JobID = 'V1'"_sql);
  show("K1", [](QDialog& window) {
    auto& table = child<QTableView>(window, "TDBGrid1");
    ASSERT_EQ(table.model()->rowCount(), 1);
    table.scrollTo(cell(window, 0, "Details"));
    inNextWindow([](QDialog& contract) {
      enterInto(contract, "txtVertragstext", "Aus dem Kunden");
      press(contract, "cmdSpeichern");
    });
    QTest::mouseClick(table.viewport(), Qt::LeftButton, {},
                      table.visualRect(cell(window, 0, "Details")).center());
    EXPECT_EQ(cellText(window, 0, "Vertragstext"), "Aus dem Kunden");
  });
}

TEST_F(JobDialogWindowTest, TheSizeIsKeptAndAFailureToKeepItIsTold) {
  stageContract("V1");
  show("V1", [](QDialog& window) {
    window.resize(877, 555);
    press(window, "cmdCancel");
  });
  show("V1", [](QDialog& window) { EXPECT_EQ(window.size(), QSize(877, 555)); });
  erp.localSettings.failing = true;
  show("V1", [](QDialog& window) { press(window, "cmdCancel"); });
  EXPECT_THAT(erp.diagnostics.text(), HasSubstr("size of a window"));
}

TEST_F(JobDialogWindowTest, AJobThatIsGoneIsTold) {
  EXPECT_EQ(showJobDialog(nullptr, context, "FORT", {}), DialogEnd::Closed);
  EXPECT_EQ(erp.desktop.texts(), "Der Vorgang ist nicht mehr vorhanden.\n");
}

} // namespace
} // namespace qx
