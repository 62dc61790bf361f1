#include "ui/qt/small_windows.h"

#include "model/date.h"
#include "program/version.h"
#include "ui/about_box.h"
#include "ui/qt/busy_wait.h"
#include "ui/qt/pictures.h"
#include "ui/qt/printing.h"
#include "ui/qt/text.h"
#include "ui/qt/window_memory.h"

#include <QApplication>
#include <QClipboard>
#include <QFormLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QSysInfo>
#include <QTextDocument>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace qx {
namespace {

constexpr int textColumns = 80;
constexpr int textLines = 14;
constexpr int mostLines = 30;
constexpr int fewestColumns = 40;
constexpr int fewestLines = 6;
constexpr int hintColumns = 60;
constexpr int iconSize = 48;

class Hourglass {
public:
  Hourglass() { QApplication::setOverrideCursor(Qt::WaitCursor); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;
  ~Hourglass() { QApplication::restoreOverrideCursor(); }
};

QPushButton* makeButton(const QString& caption, const char* name) {
  auto* const button = new QPushButton(caption);
  button->setObjectName(QString::fromLatin1(name));
  return button;
}

/// A text that can be selected and copied, in the width of its lines.
QPlainTextEdit* makeTextBox(const QString& text) {
  auto* const box = new QPlainTextEdit(text);
  box->setReadOnly(true);
  box->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  const QFontMetrics metrics = box->fontMetrics();
  box->setMinimumSize(metrics.averageCharWidth() * fewestColumns, metrics.lineSpacing() * fewestLines);
  return box;
}

/// Enter looks for the next place and does not press the default button.
class SearchLine final : public QLineEdit {
protected:
  void keyPressEvent(QKeyEvent* event) override {
    QLineEdit::keyPressEvent(event);
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) event->accept();
  }
};

QPushButton* makeCopyButton(const QPlainTextEdit* box) {
  QPushButton* const copy = makeButton(QStringLiteral("&Kopieren"), "cmdCopy");
  copy->setAutoDefault(false);
  QObject::connect(copy, &QPushButton::clicked, box,
                   [box] { QApplication::clipboard()->setText(box->toPlainText()); });
  return copy;
}

QLabel* makeFact(const QString& text, const char* name) {
  auto* const label = new QLabel(text);
  label->setObjectName(QString::fromLatin1(name));
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

/// Buttons at the right end of a row.
QHBoxLayout* makeButtonRow(std::initializer_list<QPushButton*> buttons) {
  auto* const row = new QHBoxLayout;
  row->addStretch();
  for (QPushButton* const button : buttons) row->addWidget(button);
  return row;
}

} // namespace

DeleteDateWindow::DeleteDateWindow(Environment& environment, ImportJobObject2& engine, QWidget* parent,
                                   AskDeletion ask)
    : QDialog(parent), deletion_(environment, engine, std::move(ask)), date_(new QLineEdit),
      remove_(makeButton(QStringLiteral("&Löschen"), "cmdOK")) {
  setObjectName(QStringLiteral("frmDeleteDate"));
  setWindowTitle(QStringLiteral("Erledigte Vorgänge löschen"));
  date_->setObjectName(QStringLiteral("dtDeleteDate"));
  date_->setPlaceholderText(QStringLiteral("tt.mm.jjjj"));
  date_->setText(toQt(germanDate(deletion_.proposedDate())));
  date_->selectAll();
  connect(date_, &QLineEdit::textChanged, this,
          [this](const QString& text) { remove_->setEnabled(parseGermanDate(fromQt(text)).has_value()); });
  auto* const fields = new QFormLayout;
  fields->addRow(QStringLiteral("Eingang &vor dem:"), date_);
  auto* const hint = new QLabel(
      QStringLiteral("Erledigte Vorgänge, die vor diesem Tag eingegangen sind, werden endgültig gelöscht. "
                     "Vorgänge vom Tag selbst bleiben."));
  hint->setWordWrap(true);
  hint->setMinimumWidth(hint->fontMetrics().averageCharWidth() * hintColumns);
  remove_->setDefault(true);
  connect(remove_, &QPushButton::clicked, this, &DeleteDateWindow::accept);
  QPushButton* const cancel = makeButton(QStringLiteral("Abbrechen"), "cmdCancel");
  // Enter triggers the deletion even without a day.
  cancel->setAutoDefault(false);
  connect(cancel, &QPushButton::clicked, this, &DeleteDateWindow::reject);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(hint);
  layout->addLayout(fields);
  layout->addStretch();
  layout->addLayout(makeButtonRow({remove_, cancel}));
  date_->setFocus();
}

void DeleteDateWindow::accept() {
  const auto day = deletion_.confirmedDate(fromQt(date_->text()));
  if (!day) return;
  {
    const Hourglass hourglass;
    QtBusyWait wait(this);
    deletion_.deleteBefore(*day, &wait);
  }
  QDialog::accept();
}

ErrorWindow::ErrorWindow(std::string_view text, QWidget* parent, std::string_view title)
    : QDialog(parent), box_(makeTextBox(toQt(text))) {
  setObjectName(QStringLiteral("frmError"));
  setWindowTitle(toQt(title));
  box_->setObjectName(QStringLiteral("txtError"));
  box_->setAccessibleName(QStringLiteral("Text"));
  auto* const sought = new SearchLine;
  sought->setObjectName(QStringLiteral("txtSuchen"));
  sought->setClearButtonEnabled(true);
  connect(sought, &QLineEdit::textChanged, this, [this](const QString& typed) { find(typed, true); });
  connect(sought, &QLineEdit::returnPressed, this, [this, sought] { find(sought->text(), false); });
  auto* const caption = new QLabel(QStringLiteral("&Suchen:"));
  caption->setBuddy(sought);
  auto* const search = new QHBoxLayout;
  search->addWidget(caption);
  search->addWidget(sought, 1);
  QPushButton* const print = makeButton(QStringLiteral("&Drucken..."), "cmdDrucken");
  print->setAutoDefault(false);
  print->setVisible(canPrint());
  connect(print, &QPushButton::clicked, this, [this] { printText(this, windowTitle(), *box_); });
  QPushButton* const close = makeButton(QStringLiteral("S&chließen"), "cmdOK");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &ErrorWindow::accept);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(search);
  layout->addWidget(box_);
  layout->addLayout(makeButtonRow({print, makeCopyButton(box_), close}));
  const int lines = std::clamp(static_cast<int>(text.size()) / textColumns, textLines, mostLines);
  const QFontMetrics metrics = box_->fontMetrics();
  const QSize usual(metrics.averageCharWidth() * textColumns, metrics.lineSpacing() * (lines + 6));
  resize(usual.boundedTo(roomFor(*this, *screen())));
  close->setFocus();
}

void ErrorWindow::find(const QString& text, bool fromHere) {
  QTextDocument& document = *box_->document();
  QList<QTextEdit::ExtraSelection> places;
  QTextCharFormat marked;
  marked.setBackground(palette().color(QPalette::Highlight));
  marked.setForeground(palette().color(QPalette::HighlightedText));
  for (QTextCursor at = document.find(text); !text.isEmpty() && !at.isNull(); at = document.find(text, at))
    places.append({at, marked});
  box_->setExtraSelections(places);
  if (places.isEmpty()) return;
  QTextCursor cursor = box_->textCursor();
  if (fromHere) cursor.setPosition(cursor.selectionStart());
  QTextCursor next = document.find(text, cursor);
  if (next.isNull()) next = places.constFirst().cursor;
  box_->setTextCursor(next);
  box_->centerCursor();
}

AboutWindow::AboutWindow(Environment& environment, std::string schemaVersion, QWidget* parent)
    : QDialog(parent), environment_(environment), schemaVersion_(std::move(schemaVersion)) {
  setObjectName(QStringLiteral("frmAbout2"));
  setWindowTitle(QStringLiteral("Info"));
  auto* const icon = new QLabel;
  icon->setPixmap(picture("qximportjob").pixmap(QSize(iconSize, iconSize), devicePixelRatioF()));
  QLabel* const name = makeFact(QStringLiteral("Importvorgänge"), "lblName");
  QFont large = name->font();
  constexpr double enlarged = 1.4;
  large.setPointSizeF(large.pointSizeF() * enlarged);
  name->setFont(large);
  auto* const facts = new QFormLayout;
  facts->addRow(QStringLiteral("Version:"), makeFact(toQt(versionNumber), "lblVersion"));
  facts->addRow(QStringLiteral("Stand:"), makeFact(toQt(commitText), "lblCommit"));
  facts->addRow(QStringLiteral("Warenwirtschaft:"), makeFact(toQt(erpVersion(environment)), "lblErpVersion"));
  auto* const texts = new QVBoxLayout;
  texts->addWidget(name);
  texts->addLayout(facts);
  auto* const top = new QHBoxLayout;
  top->addWidget(icon, 0, Qt::AlignTop);
  top->addLayout(texts, 1);
  QPushButton* const information = makeButton(QStringLiteral("S&ysteminformationen..."), "cmdSysInfo");
  information->setAutoDefault(false);
  connect(information, &QPushButton::clicked, this, &AboutWindow::showSystemInformation);
  QPushButton* const close = makeButton(QStringLiteral("&Schließen"), "cmdOK");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &AboutWindow::accept);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(top);
  layout->addStretch();
  layout->addLayout(makeButtonRow({information, close}));
  close->setFocus();
}

std::string AboutWindow::systemInformation() {
  std::vector<InformationLine> lines{{"Programm", std::string(versionText)},
                                     {"Warenwirtschaft", erpVersion(environment_)}};
  for (InformationLine& line : workInformation(environment_)) lines.push_back(std::move(line));
  lines.push_back({"Stand der Tabellen", schemaVersion_});
  lines.push_back({"Qt", qVersion()});
  lines.push_back({"Bildschirm", fromQt(QGuiApplication::platformName())});
  lines.push_back({"Betriebssystem", fromQt(QSysInfo::prettyProductName())});
  return informationText(lines);
}

void AboutWindow::showSystemInformation() {
  QDialog window(this);
  window.setObjectName(QStringLiteral("frmSysInfo"));
  window.setWindowTitle(QStringLiteral("Systeminformationen"));
  QPlainTextEdit* const box = makeTextBox(toQt(systemInformation()));
  box->setObjectName(QStringLiteral("txtSysInfo"));
  box->setAccessibleName(window.windowTitle());
  QPushButton* const close = makeButton(QStringLiteral("&Schließen"), "cmdOK");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, &window, &QDialog::accept);
  auto* const layout = new QVBoxLayout(&window);
  layout->addWidget(box);
  layout->addLayout(makeButtonRow({makeCopyButton(box), close}));
  const QFontMetrics metrics = box->fontMetrics();
  const QSize usual(metrics.averageCharWidth() * textColumns, metrics.lineSpacing() * (textLines + 5));
  window.resize(usual.boundedTo(roomFor(window, *window.screen())));
  close->setFocus();
  window.exec();
}

} // namespace qx
