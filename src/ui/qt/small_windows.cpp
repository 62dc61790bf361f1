#include "ui/qt/small_windows.h"

#include "model/date.h"
#include "program/version.h"
#include "ui/about_box.h"
#include "ui/qt/busy_wait.h"
#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QClipboard>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

namespace qx {
namespace {

constexpr int textColumns = 80;
constexpr int textLines = 14;
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
  box->setMinimumSize(metrics.averageCharWidth() * textColumns, metrics.lineSpacing() * textLines);
  return box;
}

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

DeleteDateWindow::DeleteDateWindow(Environment& environment, ImportJobObject2& engine, QWidget* parent)
    : QDialog(parent), deletion_(environment, engine), date_(new QLineEdit),
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

ErrorWindow::ErrorWindow(std::string_view text, QWidget* parent, std::string_view title) : QDialog(parent) {
  setObjectName(QStringLiteral("frmError"));
  setWindowTitle(toQt(title));
  QPlainTextEdit* const box = makeTextBox(toQt(text));
  box->setObjectName(QStringLiteral("txtError"));
  box->setAccessibleName(QStringLiteral("Fehlertext"));
  QPushButton* const close = makeButton(QStringLiteral("&Schließen"), "cmdOK");
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &ErrorWindow::accept);
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(box);
  layout->addLayout(makeButtonRow({makeCopyButton(box), close}));
  close->setFocus();
}

AboutWindow::AboutWindow(Environment& environment, std::string schemaVersion, QWidget* parent)
    : QDialog(parent), environment_(environment), schemaVersion_(std::move(schemaVersion)) {
  setObjectName(QStringLiteral("frmAbout2"));
  setWindowTitle(QStringLiteral("Info über die Importvorgänge"));
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
  close->setFocus();
  window.exec();
}

} // namespace qx
