#include "ui/qt/printing.h"

#include <QPlainTextEdit>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextCursor>
#include <QTextDocument>

namespace qx {

bool canPrint() { return true; }

void printPages(QPagedPaintDevice& pages, const QString& title, const QPlainTextEdit& text) {
  QTextDocument document;
  document.setDefaultFont(text.font());
  QTextCursor cursor(&document);
  QTextCharFormat heading;
  heading.setFontWeight(QFont::Bold);
  cursor.insertText(title, heading);
  cursor.insertBlock();
  cursor.insertBlock();
  cursor.insertText(text.toPlainText(), QTextCharFormat());
  document.print(&pages);
}

void printText(QWidget* parent, const QString& title, const QPlainTextEdit& text) {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(title);
  QPrintDialog dialog(&printer, parent);
  dialog.setWindowTitle(QStringLiteral("Drucken"));
  if (dialog.exec() == QDialog::Accepted) printPages(printer, title, text);
}

} // namespace qx
