#include "ui/qt/access_keys.h"

#include "ui/qt/text.h"

namespace qx {

void AccessKeys::take(std::string_view caption) {
  const QString text = toQt(caption);
  const qsizetype mark = text.indexOf(QLatin1Char('&'));
  if (mark >= 0 && mark + 1 < text.size()) taken_ += text[mark + 1].toLower();
}

QString AccessKeys::mark(const QString& caption) {
  if (caption.contains(QLatin1Char('&'))) {
    take(fromQt(caption));
    return caption;
  }
  for (qsizetype i = 0; i < caption.size(); ++i) {
    const QChar key = caption[i].toLower();
    if (!key.isLetter() || taken_.contains(key)) continue;
    taken_ += key;
    return QString(caption).insert(i, QLatin1Char('&'));
  }
  return caption;
}

} // namespace qx
