#include "ui/qt/qt_desktop.h"

#include "ui/qt/small_windows.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <algorithm>
#include <cstddef>

namespace qx {
namespace {

/// The core has CR LF as line ends, like the ERP's tables.
QString shownText(std::string_view text) {
  return toQt(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

/// Whether a box with this text would exceed a small screen; boxes neither scroll nor wrap long words.
bool isLong(const Message& message) {
  constexpr std::ptrdiff_t mostLines = 12;
  constexpr std::size_t mostBytes = 800;
  return message.text.size() > mostBytes || std::ranges::count(message.text, '\n') >= mostLines;
}

QMessageBox::Icon boxIcon(MessageIcon icon) {
  switch (icon) {
  case MessageIcon::None:
    return QMessageBox::NoIcon;
  case MessageIcon::Information:
    return QMessageBox::Information;
  case MessageIcon::Exclamation:
    return QMessageBox::Warning;
  case MessageIcon::Critical:
    return QMessageBox::Critical;
  }
  return QMessageBox::NoIcon;
}

void prepare(QMessageBox& box, const Message& message) {
  box.setWindowTitle(toQt(message.title));
  box.setTextFormat(Qt::PlainText);
  box.setText(shownText(message.text));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
}

/// A name as this system writes it; the toolkit has slashes everywhere.
std::string chosen(const QString& name) { return fromQt(QDir::toNativeSeparators(name)); }

/// "EDI (*.edi)|*.edi" as "EDI (*.edi)".
QString nameFilter(const QString& filter) {
  const QStringList parts = filter.split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
    filters << parts[i].section(QLatin1Char('('), 0, 0).trimmed() + QStringLiteral(" (") + parts[i + 1] +
                   QLatin1Char(')');
  return filters.join(QStringLiteral(";;"));
}

/// The suffix of the first pattern, with its dot; empty for "*.*".
QString suffixOf(const QString& filter) {
  const QString suffix =
      QLatin1Char('.') + filter.section(QLatin1Char('|'), 1, 1).section(QLatin1Char('.'), -1);
  return suffix.contains(QLatin1Char('*')) || suffix.size() == 1 ? QString() : suffix;
}

} // namespace

bool QtDesktop::unitIsOpen() const {
  const auto connection = connection_.lock();
  return connection && connection->inWork();
}

void QtDesktop::show(const Message& message) {
  kept_.push_back(message);
  if (unitIsOpen())
    QTimer::singleShot(0, &context_, [this] { showKept(); });
  else
    showKept();
}

void QtDesktop::showKept() {
  while (!kept_.empty() && !unitIsOpen()) {
    const Message message = kept_.front();
    // Before it is shown: the box runs a message loop, which may re-enter.
    kept_.pop_front();
    if (isLong(message)) {
      ErrorWindow(message.text, QApplication::activeWindow(), message.title).exec();
      continue;
    }
    QMessageBox box(QApplication::activeWindow());
    prepare(box, message);
    box.setIcon(boxIcon(message.icon));
    box.setStandardButtons(QMessageBox::Ok);
    box.button(QMessageBox::Ok)->setText(QStringLiteral("OK"));
    // Like the buttons of all other windows.
    box.button(QMessageBox::Ok)->setIcon({});
    box.exec();
  }
}

bool QtDesktop::ask(const Message& message) {
  if (unitIsOpen()) {
    diagnostics_.report({"question inside a unit of work, answered with no", message.text, {}});
    return false;
  }
  showKept();
  QMessageBox box(QApplication::activeWindow());
  prepare(box, message);
  box.setIcon(QMessageBox::Question);
  const QPushButton* const yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
  QPushButton* const no = box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
  box.setDefaultButton(no);
  box.setEscapeButton(no);
  box.exec();
  return box.clickedButton() == yes;
}

std::optional<std::string> QtDesktop::chooseFile(std::string_view title, std::string_view filter,
                                                 FileUse use) {
  const bool forWriting = use == FileUse::Writing;
  const QString filterText = toQt(filter);
  QString name;
  while (true) {
    QFileDialog dialog(QApplication::activeWindow(), toQt(title), folder_, nameFilter(filterText));
    dialog.setAcceptMode(forWriting ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(forWriting ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // The toolkit would ask in its own language, and before the suffix is there.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    dialog.setLabelText(QFileDialog::LookIn, QStringLiteral("Suchen in:"));
    dialog.setLabelText(QFileDialog::FileName, QStringLiteral("Datei&name:"));
    dialog.setLabelText(QFileDialog::FileType, QStringLiteral("Dateityp:"));
    dialog.setLabelText(QFileDialog::Accept,
                        forWriting ? QStringLiteral("&Speichern") : QStringLiteral("Ö&ffnen"));
    dialog.setLabelText(QFileDialog::Reject, QStringLiteral("Abbrechen"));
    if (!name.isEmpty()) dialog.selectFile(name);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    name = dialog.selectedFiles().constFirst();
    folder_ = QFileInfo(name).absolutePath();
    if (!forWriting) return chosen(name);
    if (QFileInfo(name).suffix().isEmpty()) name += suffixOf(filterText);
    if (!QFileInfo::exists(name)) return chosen(name);
    Message question;
    question.text = "Die Datei '" + chosen(name) + "' gibt es bereits. Soll sie ersetzt werden?";
    question.title = title;
    if (ask(question)) return chosen(name);
  }
}

void QtDesktop::yield() {
  showKept();
  QCoreApplication::processEvents();
}

std::optional<DeletionAnswer> askDeletionInBox(const Message& question) {
  QMessageBox box(QApplication::activeWindow());
  prepare(box, question);
  box.setIcon(QMessageBox::Question);
  const QPushButton* const yes = box.addButton(QStringLiteral("&Ja"), QMessageBox::YesRole);
  QPushButton* const no = box.addButton(QStringLiteral("&Nein"), QMessageBox::NoRole);
  QPushButton* const saving = box.addButton(QStringLiteral("Vorher &sichern..."), QMessageBox::ActionRole);
  saving->setToolTip(QStringLiteral("Schreibt die Vorgänge vollständig in eine Datei und löscht sie dann"));
  box.setDefaultButton(no);
  box.setEscapeButton(no);
  box.exec();
  if (box.clickedButton() == saving) return DeletionAnswer::SaveFirst;
  return box.clickedButton() == yes ? DeletionAnswer::Delete : DeletionAnswer::Keep;
}

} // namespace qx
