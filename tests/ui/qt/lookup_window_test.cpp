// The lookup window as the clerk uses it: with keys and mouse, above real tables.
#include "ui/qt/lookup_window.h"

#include "support/test_erp.h"
#include "ui/lookup_bridge.h"
#include "ui/qt/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>

#include <functional>

namespace qx {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class LookupWindowTest : public ::testing::Test {
protected:
  LookupWindowTest() {
    erp.components.setAuskunftFactory(
        [this] { return std::make_unique<QtAuskunft>(erp.localSettings, erp.diagnostics); });
    erp.execute("With Recursive n(i) As (Select 1 Union All Select i + 1 From n Where i < 250) "
                "Insert Into Kundenstamm (Kundennummer, Suchbegriff, Bez1) Select Cast(10000 + i As Text), "
                "'KUNDE', 'Kunde ' || i From n"_sql);
    erp.execute("Insert Into Kundenstamm (Kundennummer, Suchbegriff, Bez1) Values ('20001', 'MÜLLER', "
                "'Müller & Söhne'), ('20002', 'MÜLLER', 'Müllerhaus')"_sql);
  }

  /// Opens the lookup and lets the clerk act in it once it is there.
  std::vector<std::string> lookUp(std::string_view lookup, std::function<void()> clerk,
                                  std::string_view context = {}) {
    QTimer::singleShot(0, [this, clerk = std::move(clerk)] {
      window = QApplication::activeModalWidget();
      ASSERT_NE(window, nullptr);
      clerk();
      // A clerk who did not leave would wait for ever.
      if (window != nullptr && window->isVisible()) {
        ADD_FAILURE() << "the window is still open";
        qobject_cast<QDialog*>(window)->reject();
      }
    });
    return bridge.open(lookup, context);
  }
  template <class Widget>
  Widget* find(const char* name) const {
    return window->findChild<Widget*>(QLatin1String(name));
  }
  QTableView& table() const { return *find<QTableView>("lookupTable"); }
  void key(Qt::Key key) const { QTest::keyClick(find<QLineEdit>("lookupSearch"), key); }
  /// Letters of a German keyboard, which the test library cannot press.
  void type(const char* text) const {
    for (const QChar letter : QString::fromUtf8(text)) {
      QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(letter));
      QCoreApplication::sendEvent(find<QLineEdit>("lookupSearch"), &press);
    }
  }
  std::string cell(int row, int column) const {
    return fromQt(table().model()->index(row, column).data().toString());
  }

  TestErp erp;
  LookupBridge bridge{erp.environment};
  QWidget* window = nullptr;
};

TEST_F(LookupWindowTest, TypingArrowAndEnterTakeOverARow) {
  const auto chosen = lookUp("Kundenauskunft", [&] {
    EXPECT_EQ(fromQt(window->windowTitle()), "Kundenauskunft");
    EXPECT_EQ(window->focusWidget(), find<QLineEdit>("lookupSearch"));
    type("mü");
    EXPECT_EQ(table().model()->rowCount(), 2);
    EXPECT_EQ(cell(0, 2), "Müller & Söhne");
    key(Qt::Key_Down);
    key(Qt::Key_Return);
  });
  EXPECT_THAT(chosen, ElementsAre("20002"));
  EXPECT_THAT(erp.diagnostics.entries, IsEmpty()) << erp.diagnostics.text();
}

TEST_F(LookupWindowTest, EscapeAndCancelLeaveWithoutAChoice) {
  EXPECT_THAT(lookUp("Kundenauskunft", [&] { key(Qt::Key_Escape); }), IsEmpty());
  EXPECT_THAT(
      lookUp("Kundenauskunft", [&] { QTest::mouseClick(find<QPushButton>("lookupCancel"), Qt::LeftButton); }),
      IsEmpty());
}

TEST_F(LookupWindowTest, ADoubleClickTakesOverTheRowUnderTheMouse) {
  const auto chosen = lookUp("Kundenauskunft", [&] {
    const QPoint place = table().visualRect(table().model()->index(3, 1)).center();
    QTest::mouseClick(table().viewport(), Qt::LeftButton, Qt::NoModifier, place);
    QTest::mouseDClick(table().viewport(), Qt::LeftButton, Qt::NoModifier, place);
  });
  EXPECT_THAT(chosen, ElementsAre("10004"));
}

TEST_F(LookupWindowTest, AnEmptyListSaysSoAndCannotBeTakenOver) {
  EXPECT_THAT(lookUp("Kundenauskunft",
                     [&] {
                       type("xyz");
                       EXPECT_TRUE(find<QLabel>("lookupHint")->isVisible());
                       EXPECT_NE(fromQt(find<QLabel>("lookupHint")->text()).find("xyz"), std::string::npos);
                       EXPECT_FALSE(find<QPushButton>("lookupAccept")->isEnabled());
                       key(Qt::Key_Return);
                       EXPECT_TRUE(window->isVisible());
                       find<QLineEdit>("lookupSearch")->clear();
                       EXPECT_FALSE(find<QLabel>("lookupHint")->isVisible());
                       EXPECT_TRUE(find<QPushButton>("lookupAccept")->isEnabled());
                       key(Qt::Key_Escape);
                     }),
              IsEmpty());
}

TEST_F(LookupWindowTest, WalkingDownReadsOnlyWhatIsReachedAndThenAllOfIt) {
  const auto chosen = lookUp("Kundenauskunft", [&] {
    EXPECT_EQ(table().model()->rowCount(), 100);
    for (int i = 0; i < 40; ++i) key(Qt::Key_PageDown);
    EXPECT_EQ(table().model()->rowCount(), 252);
    EXPECT_EQ(table().currentIndex().row(), 251);
    key(Qt::Key_Up);
    QTest::mouseClick(find<QPushButton>("lookupAccept"), Qt::LeftButton);
  });
  EXPECT_THAT(chosen, ElementsAre("20001"));
}

TEST_F(LookupWindowTest, GivesBothKeysOfAnAddress) {
  erp.execute("Insert Into Adressenstamm (Kundennummer, Adressnummer, Bez1) Values ('20001', '1', 'Lager'), "
              "(Null, '1', 'Messe'), ('20002', '1', 'Haus')"_sql);
  const auto chosen = lookUp(
      "Adressauskunft",
      [&] {
        EXPECT_EQ(table().model()->rowCount(), 2);
        key(Qt::Key_Return);
      },
      "20001");
  EXPECT_THAT(chosen, ElementsAre("20001", "1"));
}

TEST_F(LookupWindowTest, AFailureOfTheDatabaseIsOneLineInTheWindow) {
  EXPECT_THAT(lookUp("Kundenauskunft",
                     [&] {
                       erp.execute("Drop Table Kundenstamm"_sql);
                       type("m");
                       EXPECT_FALSE(find<QLabel>("lookupNotice")->text().isEmpty());
                       EXPECT_EQ(table().model()->rowCount(), 0);
                       key(Qt::Key_Return);
                       EXPECT_TRUE(window->isVisible());
                       key(Qt::Key_Escape);
                     }),
              IsEmpty());
  ASSERT_EQ(erp.diagnostics.entries.size(), 1U) << erp.diagnostics.text();
  EXPECT_EQ(erp.diagnostics.entries.front().where, "AUSK_KUNDENAUSKUNFT");
}

TEST_F(LookupWindowTest, KeepsItsSizePerLookup) {
  lookUp("Kundenauskunft", [&] {
    window->resize(777, 444);
    key(Qt::Key_Escape);
  });
  lookUp("Kundenauskunft", [&] {
    EXPECT_EQ(window->size(), QSize(777, 444));
    key(Qt::Key_Escape);
  });
  lookUp("Artikelauskunft", [&] {
    EXPECT_NE(window->size(), QSize(777, 444));
    key(Qt::Key_Escape);
  });
}

} // namespace
} // namespace qx
