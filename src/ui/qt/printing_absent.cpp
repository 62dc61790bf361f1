// For a toolkit without its printing part.
#include "ui/qt/printing.h"

namespace qx {

bool canPrint() { return false; }

void printPages(QPagedPaintDevice& /*pages*/, const QString& /*title*/, const QPlainTextEdit& /*text*/) {}

void printText(QWidget* /*parent*/, const QString& /*title*/, const QPlainTextEdit& /*text*/) {}

} // namespace qx
