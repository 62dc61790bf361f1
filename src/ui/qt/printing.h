// Printing of texts.
#pragma once

class QPlainTextEdit;
class QString;
class QWidget;

namespace qx {

/// Whether the program was built with a toolkit that prints.
bool canPrint();
/// Lets the clerk choose a printer and prints the whole text.
void printText(QWidget* parent, const QString& title, const QPlainTextEdit& text);

} // namespace qx
