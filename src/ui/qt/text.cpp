#include "ui/qt/text.h"

#include <QTextDocument>

namespace qx {

QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string fromQt(const QString& text) { return text.toStdString(); }

QString plainToolTip(const QString& text) {
  return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

QString plainCaption(QString text) { return text.replace(QLatin1Char('&'), QStringLiteral("&&")); }

} // namespace qx
