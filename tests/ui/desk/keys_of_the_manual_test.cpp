// The manual's tables of keys: each of them is pressed and does what it says.
#include "desk_fixture.h"

#include <QClipboard>
#include <QDialog>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTableWidget>

#include <map>
#include <regex>
#include <set>

namespace qx {
namespace {

using Keys = std::vector<std::string>;

/// A row of a table: where it is pressed, what the manual writes and the keys in that.
struct KeyRow {
  std::string place;
  std::string written;
  Keys keys;
};

/// "Eingabe oder Leertaste in Details" has two keys, "Alt und der unterstrichene Buchstabe" none of its own.
Keys keysIn(std::string text) {
  text = std::regex_replace(text, std::regex(R"((\s\(.*\)| (in|im|auf) .*)$)"), "");
  Keys keys;
  const std::regex between(", | oder ");
  for (std::sregex_token_iterator key(text.begin(), text.end(), between, -1), end; key != end; ++key)
    keys.push_back(*key);
  return keys;
}

std::vector<KeyRow> rowsOfManual() {
  QFile file(QStringLiteral(QXIMPORTJOB_MANUAL));
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("the manual cannot be read");
  const QString manual = QString::fromUtf8(file.readAll());
  const qsizetype begin = manual.indexOf(QStringLiteral("\n## Tasten\n"));
  const QString section = manual.mid(begin + 1, manual.indexOf(QStringLiteral("\n## "), begin + 1) - begin);
  std::vector<KeyRow> rows;
  std::string place;
  for (const QString& line : section.split(QLatin1Char('\n'))) {
    if (line.startsWith(QStringLiteral("**"))) place = fromQt(line.section(QStringLiteral("**"), 1, 1));
    if (!line.startsWith(QStringLiteral("| ")) || line.startsWith(QStringLiteral("| Taste"))) continue;
    const std::string written = fromQt(line.section(QLatin1Char('|'), 1, 1).trimmed());
    rows.push_back({place, written, keysIn(written)});
  }
  return rows;
}

class KeysOfTheManual : public DeskTest {
protected:
  using Press = std::function<void(Clerk&, const Keys&)>;

  /// Presses every row of a table. `before` brings the clerk to where its keys are pressed.
  void pressAll(const std::string& place, const std::map<std::string, Press>& presses,
                const Press& before = {}) {
    work([&](Clerk& clerk) {
      std::set<std::string> written;
      for (const KeyRow& row : rowsOfManual()) {
        if (row.place != place) continue;
        written.insert(row.written);
        const auto press = presses.find(row.written);
        if (press == presses.end()) {
          ADD_FAILURE() << "nobody presses " << row.written;
          continue;
        }
        SCOPED_TRACE(row.written);
        try {
          if (before) before(clerk, row.keys);
          press->second(clerk, row.keys);
        } catch (const std::exception& error) {
          ADD_FAILURE() << error.what();
        }
        returnToList(clerk);
      }
      for (const auto& [keys, press] : presses)
        EXPECT_TRUE(written.contains(keys)) << keys << " is not written";
    });
  }

  void returnToList(Clerk& clerk) {
    const auto popup = [] { return QApplication::activePopupWidget(); };
    while (const QWidget* open = clerk.look(popup)) {
      clerk.press("Esc");
      clerk.sees([&] { return popup() != open; });
    }
    const auto modal = [] { return QApplication::activeModalWidget(); };
    while (QWidget* open = clerk.look(modal)) {
      clerk.look([open] { return static_cast<QDialog*>(open)->done(QDialog::Rejected), true; });
      clerk.sees([&] { return modal() != open; });
    }
    comeForward(clerk);
    clerk.look([this] { return list().setFocus(), true; });
  }

  static QWidget* dialog() { return windowWithKeys(jobDialogName); }
  static bool focusIs(const char* name) {
    const QWidget* focus = QApplication::focusWidget();
    return focus != nullptr && focus->objectName() == QLatin1String(name);
  }
  static void expectFocus(Clerk& clerk, const char* name) {
    EXPECT_TRUE(clerk.sees([name] { return focusIs(name); }))
        << name << " but " << clerk.look([] { return fromQt(QApplication::focusWidget()->objectName()); });
  }
  static std::string fieldText(const char* name) { return fromQt(part<QLineEdit>(dialog(), name).text()); }
  static int findings() { return part<QTableView>(dialog(), "lstFehler").model()->rowCount(); }
  static QTableView& grid() { return part<QTableView>(dialog(), "TDBGrid1"); }
  static QString caption(int column) { return grid().model()->headerData(column, Qt::Horizontal).toString(); }
  static QVariant cell(const char* captionOfColumn, int role = Qt::DisplayRole) {
    for (int column = 0; column < grid().model()->columnCount(); ++column)
      if (caption(column) == QLatin1String(captionOfColumn))
        return grid().model()->index(0, column).data(role);
    throw std::runtime_error(std::string("no column ") + captionOfColumn);
  }
  static bool edits() {
    const QWidget* focus = QApplication::focusWidget();
    return dialog() != nullptr && focus != nullptr && focus != &grid() && grid().isAncestorOf(focus);
  }
  /// With the arrow keys, from the cell that the cursor is in.
  static void goToColumn(Clerk& clerk, const char* captionOfColumn) {
    for (const char* arrow : {"Pfeil nach links", "Pfeil nach rechts"})
      for (int i = 0; i < 12; ++i) {
        if (clerk.look(
                [&] { return caption(grid().currentIndex().column()) == QLatin1String(captionOfColumn); }))
          return;
        const int from = clerk.look([] { return grid().currentIndex().column(); });
        clerk.press(arrow);
        if (std::string_view(arrow) == "Pfeil nach links" && from <= 1) break;
        clerk.sees([from] { return grid().currentIndex().column() != from; });
      }
    throw std::runtime_error(std::string("no way to column ") + captionOfColumn);
  }
  /// Looks with patience.
  static void expectSeen(Clerk& clerk, const std::function<bool()>& fact, const char* what) {
    EXPECT_TRUE(clerk.sees(fact)) << what;
  }
  void chooseParked(Clerk& clerk) {
    clerk.look([this] {
      for (const JobListRow& row : view->state().rows)
        if (isParked(row.jobType) && !row.released) {
          choose(row.jobId);
          return true;
        }
      throw std::runtime_error("no job is parked");
    });
  }
  static QString clipboard() { return QApplication::clipboard()->text(); }
  std::size_t marked() { return static_cast<std::size_t>(list().selectionModel()->selectedRows().size()); }
};

TEST_F(KeysOfTheManual, OfTheJobView) {
  const auto atRow = [this](int row) { return [this, row] { return list().currentIndex().row() == row; }; };
  const auto width = [this] { return list().columnWidth(list().currentIndex().column()); };
  const auto place = [this] {
    return list().horizontalHeader()->visualIndex(list().currentIndex().column());
  };
  pressAll(
      "Importvorgänge",
      {
          {"Eingabe, Doppelklick",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             clerk.awaitWindow(jobDialogName);
           }},
          {"F2",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             clerk.awaitWindow("frmAbout2");
           }},
          {"F5",
           [&](Clerk& clerk, const Keys& keys) {
             const auto before = view->state().rows.size();
             clerk.look([this] {
               erp.execute(
                   "Insert Into ImportKopf (JobID, JobType, Eingangsdatum) Values ('NEU', 10, '01.01.2020')"_sql);
               return true;
             });
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return view->state().rows.size() == before + 1; }, "the new job");
           }},
          {"F9",
           [&](Clerk& clerk, const Keys& /*keys*/) {
             runAll(clerk);
             expectSeen(
                 clerk, [&] { return view->state().counts.waiting == 0; }, "that nothing waits");
           }},
          {"Entf",
           [&](Clerk& clerk, const Keys& keys) {
             const auto before = view->state().rows.size();
             clerk.press(keys[0]);
             clerk.awaitWindow("QMessageBox");
             clerk.press("Alt+J");
             expectSeen(
                 clerk, [&] { return view->state().rows.size() < before; }, "one job less");
           }},
          {"Strg+G, Strg+Umschalt+G",
           [&](Clerk& clerk, const Keys& keys) {
             chooseParked(clerk);
             const std::string job = clerk.look([this] { return currentJob(); });
             for (const bool released : {true, false}) {
               clerk.press(keys[released ? 0 : 1]);
               clerk.awaitWindow("QMessageBox");
               clerk.press("Alt+J");
               clerk.awaitWindow(jobViewName);
               expectSeen(
                   clerk,
                   [&] {
                     return erp.count("Select ProcessWarning From ImportKopf Where JobID = '"_sql, value(job),
                                      "'"_sql) == (released ? 1 : 0);
                   },
                   released ? "the release" : "that it is taken back");
             }
           }},
          {"Pos1, Ende",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[1]);
             expectSeen(clerk, atRow(list().model()->rowCount() - 1), "the last job");
             clerk.press(keys[0]);
             expectSeen(clerk, atRow(0), "the first job");
           }},
          {"Umschalt+Pfeil, Strg+A",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return marked() == 2; }, "two jobs");
             clerk.press(keys[1]);
             expectSeen(
                 clerk, [&] { return marked() == view->state().rows.size(); }, "all jobs");
             clerk.press("Pos1");
           }},
          {"Strg+C",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [] { return clipboard().contains(QStringLiteral("\tAuftrag")); }, "the row");
           }},
          {"Strg++, Strg+-",
           [&](Clerk& clerk, const Keys& keys) {
             const int first = clerk.look([this] { return list().currentIndex().column(); });
             clerk.press("Pfeil nach rechts");
             expectSeen(
                 clerk, [&] { return list().currentIndex().column() > first; }, "the next column");
             const int before = clerk.look(width);
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return width() > before; }, "a wider column");
             clerk.press(keys[1], 2);
             expectSeen(
                 clerk, [&] { return width() < before; }, "a narrower column");
           }},
          {"Strg+Umschalt+Pfeil nach links, Strg+Umschalt+Pfeil nach rechts",
           [&](Clerk& clerk, const Keys& keys) {
             const int before = clerk.look(place);
             clerk.press(keys[1]);
             expectSeen(
                 clerk, [&] { return place() == before + 1; }, "the column further right");
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return place() == before; }, "the column further left");
           }},
          {"Alt+F, Alt+U",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectFocus(clerk, "txtDetails");
             clerk.press(keys[1]);
             expectFocus(clerk, "lstUrsachen");
           }},
          {"Eingabe, Leertaste (in den Ursachen)",
           [&](Clerk& clerk, const Keys& keys) {
             expectSeen(
                 clerk, [&] { return !view->state().causes.empty(); }, "causes");
             const auto all = view->state().rows.size();
             clerk.press("Alt+U");
             clerk.press("Pfeil nach unten");
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return view->state().cause && view->state().rows.size() < all; },
                 "the jobs of a cause");
             clerk.press(keys[1]);
             expectSeen(
                 clerk, [&] { return view->state().rows.size() == all; }, "all jobs");
           }},
          {"Esc (in den Befunden und Ursachen)",
           [&](Clerk& clerk, const Keys& keys) {
             for (const char* pane : {"Alt+F", "Alt+U"}) {
               clerk.press(pane);
               expectSeen(
                   clerk, [] { return !focusIs("TDBList1"); }, pane);
               clerk.press(keys[0]);
               expectFocus(clerk, "TDBList1");
             }
           }},
          {"Strg+F",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectFocus(clerk, "txtSearch");
           }},
          {"Esc (im Suchfeld)",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press("Strg+F");
             clerk.type("xyz");
             expectSeen(
                 clerk, [&] { return view->state().rows.empty(); }, "nothing");
             clerk.press(keys[0]);
             expectFocus(clerk, "TDBList1");
             expectSeen(
                 clerk, [&] { return !view->state().rows.empty(); }, "the jobs");
           }},
          {"Eingabe, Pfeil nach unten (im Suchfeld)",
           [&](Clerk& clerk, const Keys& keys) {
             for (const std::string& key : keys) {
               clerk.press("Strg+F");
               expectFocus(clerk, "txtSearch");
               clerk.press(key);
               expectFocus(clerk, "TDBList1");
             }
           }},
          {"Alt und der unterstrichene Buchstabe",
           [&](Clerk& clerk, const Keys& /*keys*/) {
             clerk.press("Alt+B");
             expectSeen(
                 clerk, [] { return QApplication::activePopupWidget() != nullptr; }, "a menu");
           }},
      });
}

TEST_F(KeysOfTheManual, OfTheJobDialogs) {
  pressAll(
      "Kunde, Vertrag und Auftrag",
      {
          {"Eingabe auf einem Befund",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectFocus(clerk, "txtStrasse");
           }},
          {"Eingabe in einem Feld",
           [](Clerk& clerk, const Keys& keys) {
             const int before = clerk.look([] { return findings(); });
             clerk.press("Alt+P");
             expectFocus(clerk, "txtPLZ");
             clerk.press("Strg+A");
             clerk.type("00101");
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return findings() == before - 1; }, "a finding less");
             expectFocus(clerk, "txtPLZ");
           }},
          {"Eingabe auf einer Schaltfläche",
           [](Clerk& clerk, const Keys& keys) {
             clerk.look([] {
               part<QWidget>(dialog(), "cmdAdressen").setFocus();
               return true;
             });
             clerk.press(keys[0]);
             clerk.awaitWindow("frmAdressen");
           }},
          {"F4",
           [this](Clerk& clerk, const Keys& keys) {
             clerk.press("Alt+K");
             clerk.press(keys[0]);
             clerk.awaitWindow("lookupWindow");
             returnToList(clerk);
             open(clerk, contractOfUnknownKind);
             clerk.press("Alt+U");
             expectFocus(clerk, "tdbdtVertragsdatum");
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [] { return QApplication::activePopupWidget() != nullptr; }, "a calendar");
           }},
          {"Tab, Umschalt+Tab",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press("Alt+K");
             expectFocus(clerk, "txtKundennummer");
             clerk.press(keys[0]);
             expectFocus(clerk, "txtSuchbegriff");
             clerk.press(keys[1]);
             expectFocus(clerk, "txtKundennummer");
           }},
          {"Alt und der unterstrichene Buchstabe",
           [](Clerk& clerk, const Keys& /*keys*/) {
             clerk.press("Alt+O");
             expectFocus(clerk, "txtOrt");
             clerk.press("Alt+R");
             clerk.awaitWindow(jobViewName);
           }},
          {"Strg+S",
           [this](Clerk& clerk, const Keys& keys) {
             clerk.press("F3");
             expectFocus(clerk, "txtStrasse");
             clerk.press("F6");
             clerk.press(keys[0]);
             clerk.awaitWindow(jobViewName);
             EXPECT_EQ(erp.text("Select Strasse From ImportKopf Where JobID = '"_sql, value(movedCustomer),
                                "'"_sql),
                       "Mühlenweg 61");
           }},
          {"Strg+Eingabe",
           [](Clerk& clerk, const Keys& keys) {
             const QString before = clerk.look([] { return part<QLabel>(dialog(), "lblStelle").text(); });
             clerk.press(keys[0]);
             expectSeen(
                 clerk,
                 [&] { return dialog() != nullptr && part<QLabel>(dialog(), "lblStelle").text() != before; },
                 "the next job");
           }},
          {"F7, F8",
           [](Clerk& clerk, const Keys& keys) {
             const auto place = [] {
               return dialog() == nullptr ? QString() : part<QLabel>(dialog(), "lblStelle").text();
             };
             const QString before = clerk.look(place);
             clerk.press(keys[1]);
             expectSeen(
                 clerk, [&] { return !place().isEmpty() && place() != before; }, "the next job");
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return place() == before; }, "the job before");
           }},
          {"F3, Umschalt+F3",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0], 2);
             const std::string second =
                 clerk.look([] { return fromQt(QApplication::focusWidget()->objectName()); });
             clerk.press(keys[1]);
             expectSeen(
                 clerk,
                 [&] {
                   return qobject_cast<QLineEdit*>(QApplication::focusWidget()) != nullptr &&
                          !focusIs(second.c_str());
                 },
                 "the field of the finding before");
           }},
          {"F6",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press("F3");
             const QString field = clerk.look([] { return QApplication::focusWidget()->objectName(); });
             const int before = clerk.look([] { return findings(); });
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return findings() == before - 1; }, "a finding less");
             expectFocus(clerk, field.toUtf8().constData());
           }},
          {"Umschalt+F6",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [] { return fieldText("txtPLZ") + fieldText("txtOrt") == "00101Erlenbrück"; },
                 "the stored values");
           }},
          {"Alt+F, Alt+T",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press("Alt+O");
             clerk.press(keys[0]);
             expectFocus(clerk, "lstFehler");
             clerk.press(keys[1]);
             expectFocus(clerk, "TDBGrid1");
           }},
          {"Strg+C (in den Befunden)",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [] { return clipboard().contains(QStringLiteral("\tWarnung\t")); }, "the finding");
           }},
          {"Esc",
           [this](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             clerk.awaitWindow(jobViewName);
             open(clerk, movedCustomer);
             clerk.press("Alt+K");
             clerk.type("1");
             clerk.press(keys[0]);
             clerk.awaitWindow("QMessageBox");
           }},
      },
      [this](Clerk& clerk, const Keys& /*keys*/) { open(clerk, movedCustomer); });
}

TEST_F(KeysOfTheManual, OfThePositions) {
  const auto opensEditor = [](Clerk& clerk) {
    expectSeen(
        clerk, [] { return edits(); }, "an editor");
    clerk.press("Esc");
    expectFocus(clerk, "TDBGrid1");
  };
  pressAll("Positionen",
           {
               {"Eingabe, F2 oder Tippen",
                [&](Clerk& clerk, const Keys& keys) {
                  clerk.press(keys[0]);
                  opensEditor(clerk);
                  clerk.press(keys[1]);
                  opensEditor(clerk);
                  clerk.type("4");
                  opensEditor(clerk);
                }},
               {"Eingabe",
                [](Clerk& clerk, const Keys& keys) {
                  clerk.type("42");
                  clerk.press(keys[0]);
                  expectSeen(
                      clerk, [] { return cell("Menge").toString() == QStringLiteral("42"); }, "the quantity");
                }},
               {"Tab, Umschalt+Tab",
                [](Clerk& clerk, const Keys& keys) {
                  const auto column = [] { return caption(grid().currentIndex().column()); };
                  clerk.press(keys[0]);
                  expectSeen(
                      clerk, [&] { return column() == QStringLiteral("Einheit"); }, "the next cell");
                  clerk.press(keys[1]);
                  expectSeen(
                      clerk, [&] { return column() == QStringLiteral("Menge"); }, "the cell before");
                }},
               {"Strg+Tab, Strg+Umschalt+Tab",
                [](Clerk& clerk, const Keys& keys) {
                  for (const std::string& key : keys) {
                    clerk.press(key);
                    expectSeen(
                        clerk, [] { return !focusIs("TDBGrid1"); }, key.c_str());
                    clerk.press("Alt+T");
                    expectFocus(clerk, "TDBGrid1");
                  }
                }},
               {"Esc",
                [](Clerk& clerk, const Keys& keys) {
                  clerk.type("42");
                  expectSeen(
                      clerk, [] { return edits(); }, "an editor");
                  clerk.press(keys[0]);
                  expectFocus(clerk, "TDBGrid1");
                  EXPECT_EQ(clerk.look([] { return fromQt(cell("Menge").toString()); }), "5000");
                }},
               {"F4 in Artikelnummer",
                [](Clerk& clerk, const Keys& keys) {
                  goToColumn(clerk, "Artikelnummer");
                  clerk.press(keys[0]);
                  clerk.awaitWindow("lookupWindow");
                }},
               {"Leertaste in Lieferbereit oder Fakturierbereit",
                [](Clerk& clerk, const Keys& keys) {
                  for (const char* column : {"Lieferbereit", "Fakturierbereit"}) {
                    goToColumn(clerk, column);
                    clerk.press(keys[0]);
                    expectSeen(
                        clerk, [=] { return cell(column, Qt::CheckStateRole).toInt() == Qt::Unchecked; },
                        column);
                  }
                }},
               {"Eingabe oder Leertaste in Details",
                [](Clerk& clerk, const Keys& keys) {
                  goToColumn(clerk, "Details");
                  for (const std::string& key : keys) {
                    clerk.press(key);
                    clerk.awaitWindow("frmAngaben");
                    clerk.press("Esc");
                    clerk.awaitWindow(jobDialogName);
                  }
                }},
               {"Einfg",
                [](Clerk& clerk, const Keys& keys) {
                  clerk.press(keys[0]);
                  expectSeen(
                      clerk, [] { return grid().model()->rowCount() == 2; }, "another row");
                }},
               {"Strg+Entf",
                [](Clerk& clerk, const Keys& keys) {
                  clerk.press(keys[0]);
                  expectSeen(
                      clerk, [] { return grid().model()->rowCount() == 0; }, "no row");
                }},
               {"Strg+C, Strg+V",
                [](Clerk& clerk, const Keys& keys) {
                  clerk.press(keys[0]);
                  expectSeen(
                      clerk, [] { return clipboard() == QStringLiteral("5000"); }, "the quantity");
                  clerk.look([] {
                    QApplication::clipboard()->setText(QStringLiteral("7"));
                    return true;
                  });
                  clerk.press(keys[1]);
                  expectSeen(
                      clerk,
                      [] {
                        return cell("Menge").toString() + cell("Auslieferungsmenge").toString() +
                                   cell("Fakturiermenge").toString() ==
                               QStringLiteral("777");
                      },
                      "the pasted quantity and those that follow it");
                }},
               {"Eingabe im Langtext",
                [](Clerk& clerk, const Keys& keys) {
                  goToColumn(clerk, "Artikellangtext");
                  clerk.press("F2");
                  expectSeen(
                      clerk, [] { return edits(); }, "an editor");
                  clerk.type("a");
                  clerk.press(keys[0]);
                  clerk.type("b");
                  clerk.press("Strg+Eingabe");
                  expectFocus(clerk, "TDBGrid1");
                  const std::string text =
                      clerk.look([] { return fromQt(cell("Artikellangtext", Qt::EditRole).toString()); });
                  EXPECT_TRUE(text == "a\nb" || text == "a\r\nb") << text;
                }},
           },
           [this](Clerk& clerk, const Keys& /*keys*/) {
             open(clerk, orderWithoutStock);
             // The finding leads to the quantity.
             clerk.press("F3");
             expectFocus(clerk, "TDBGrid1");
           });
}

TEST_F(KeysOfTheManual, OfTheLookup) {
  const auto table = []() -> QTableView& {
    return part<QTableView>(windowWithKeys("lookupWindow"), "lookupTable");
  };
  const auto row = [=] { return table().currentIndex().row(); };
  pressAll(
      "Auskunft",
      {
          {"Tippen",
           [&](Clerk& clerk, const Keys& /*keys*/) {
             clerk.type("70003");
             expectSeen(
                 clerk,
                 [=] { return table().model()->index(0, 0).data().toString() == QStringLiteral("70003"); },
                 "the customer");
           }},
          {"Pfeile, Bild auf, Bild ab",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [=] { return row() == 1; }, "the next entry");
             clerk.press(keys[2]);
             expectSeen(
                 clerk, [=] { return row() > 5; }, "the next page");
             clerk.press(keys[1]);
             expectSeen(
                 clerk, [=] { return row() < 3; }, "the page before");
           }},
          {"Pos1, Ende (in den Einträgen)",
           [&](Clerk& clerk, const Keys& keys) {
             clerk.press("Tab");
             expectFocus(clerk, "lookupTable");
             clerk.press(keys[1]);
             expectSeen(
                 clerk, [=] { return row() > 50; }, "the last entry");
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [=] { return row() == 0; }, "the first entry");
           }},
          {"Eingabe, Doppelklick",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press("Pfeil nach unten");
             clerk.press(keys[0]);
             clerk.awaitWindow(jobDialogName);
             EXPECT_EQ(clerk.look([] { return fieldText("txtKundennummer"); }), "14999");
           }},
          {"Esc",
           [](Clerk& clerk, const Keys& keys) {
             clerk.press("Pfeil nach unten");
             clerk.press(keys[0]);
             clerk.awaitWindow(jobDialogName);
             EXPECT_EQ(clerk.look([] { return fieldText("txtKundennummer"); }), "70061");
           }},
      },
      [this](Clerk& clerk, const Keys& /*keys*/) {
        open(clerk, movedCustomer);
        clerk.press("Alt+K");
        clerk.press("F4");
        clerk.awaitWindow("lookupWindow");
      });
}

TEST_F(KeysOfTheManual, OfTheSmallWindows) {
  struct Way {
    const char* menu;
    const char* entry;
    const char* window;
  };
  const Way ways[] = {
      {"Alt+X", "o", "frmOptions"}, {"Alt+B", "d", "frmDeleteDate"}, {"Alt+H", "i", "frmAbout2"}};
  const auto go = [](Clerk& clerk, const Way& way) {
    clerk.press(way.menu);
    clerk.press(way.entry);
    clerk.awaitWindow(way.window);
  };
  pressAll(
      "Optionen und kleine Fenster",
      {
          {"Eingabe",
           [&](Clerk& clerk, const Keys& keys) {
             for (const Way& way : ways) {
               go(clerk, way);
               clerk.press(keys[0]);
               // The deletion has its question.
               clerk.awaitWindow(way.entry == std::string("d") ? "QMessageBox" : jobViewName);
               returnToList(clerk);
             }
           }},
          {"Esc",
           [&](Clerk& clerk, const Keys& keys) {
             for (const Way& way : ways) {
               go(clerk, way);
               clerk.press(keys[0]);
               clerk.awaitWindow(jobViewName);
             }
           }},
          {"Leertaste",
           [&](Clerk& clerk, const Keys& keys) {
             go(clerk, ways[0]);
             const auto ticked = [] {
               return part<QAbstractButton>(windowWithKeys("frmOptions"), "chkCheckKreditlimit").isChecked();
             };
             clerk.look([] {
               part<QWidget>(windowWithKeys("frmOptions"), "chkCheckKreditlimit").setFocus();
               return true;
             });
             const bool before = clerk.look(ticked);
             clerk.press(keys[0]);
             expectSeen(
                 clerk, [&] { return ticked() != before; }, "the tick");
           }},
      });
}

} // namespace
} // namespace qx
