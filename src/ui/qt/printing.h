// Printing of texts.
#pragma once

class QPagedPaintDevice;
class QPlainTextEdit;
class QString;
class QWidget;

namespace qx {

/// Whether the program was built with a toolkit that prints.
bool canPrint();
/// Prints the whole text under its title, as many pages as it needs, with their numbers.
void printPages(QPagedPaintDevice& pages, const QString& title, const QPlainTextEdit& text);
/// Lets the clerk choose a printer and prints the whole text.
void printText(QWidget* parent, const QString& title, const QPlainTextEdit& text);

} // namespace qx
