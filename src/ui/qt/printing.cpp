#include "ui/qt/printing.h"

#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrinter>

namespace qx {

bool canPrint() { return true; }

void printText(QWidget* parent, const QString& title, const QPlainTextEdit& text) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(title);
  QPrintDialog dialog(&printer, parent);
  dialog.setWindowTitle(QStringLiteral("Drucken"));
  if (dialog.exec() == QDialog::Accepted) text.print(&printer);
}

} // namespace qx
