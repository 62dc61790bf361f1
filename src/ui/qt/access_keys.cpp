#include "ui/qt/access_keys.h"

#include "ui/qt/text.h"

namespace qx {

void AccessKeys::take(std::string_view caption) {
  const QString text = toQt(caption);
  const qsizetype mark = text.indexOf(QLatin1Char('&'));
  if (mark >= 0 && mark + 1 < text.size()) taken_ += text[mark + 1].toLower();
}

QString AccessKeys::mark(const QString& caption) {
  QString plain = caption;
  const qsizetype marked = caption.indexOf(QLatin1Char('&'));
  if (marked >= 0) {
    plain.remove(marked, 1);
    if (marked < plain.size() && !taken_.contains(plain[marked].toLower())) {
      taken_ += plain[marked].toLower();
      return caption;
    }
  }
  for (qsizetype i = 0; i < plain.size(); ++i) {
    const QChar key = plain[i].toLower();
    if (!key.isLetterOrNumber() || taken_.contains(key)) continue;
    taken_ += key;
    return QString(plain).insert(i, QLatin1Char('&'));
  }
  return plain;
}

} // namespace qx
