#include "ui/qt/window_memory.h"

#include "ui/qt/text.h"

#include <QScreen>
#include <QSplitter>
#include <QStringList>
#include <QWidget>

#include <exception>

namespace qx {
namespace {

constexpr std::string_view application = "QXImportJob";
constexpr std::string_view section = "MAIN";

/// The whole numbers of a text like "900,600,300,120"; empty for anything else.
QList<int> numbers(const QString& text) {
  QList<int> numbers;
  for (const QString& part : text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
    bool read = false;
    numbers.append(part.toInt(&read));
    if (!read || numbers.last() < 0) return {};
  }
  return numbers;
}

} // namespace

QSize roomFor(const QWidget& window, const QScreen& screen) {
  const QSize frame = window.frameGeometry().size() - window.size();
  const QSize usual(16, window.fontMetrics().height() + 24);
  return screen.availableSize() - frame.expandedTo(usual);
}

bool WindowMemory::restore(QWidget& window, QSplitter* splitter, const QSize& usual) const {
  QList<int> kept;
  try {
    kept = numbers(toQt(environment_.localSettings.read(application, section, key_)));
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"size of a window", error.what(), {}});
  }
  const bool whole = kept.size() >= 2 && kept[0] > 0 && kept[1] > 0;
  const QSize size = whole ? QSize(kept[0], kept[1]) : usual;
  window.resize(size.boundedTo(roomFor(window, *window.screen())));
  const bool sections = whole && splitter != nullptr && kept.size() == splitter->count() + 2;
  if (sections) splitter->setSizes(kept.mid(2));
  return whole && (sections || splitter == nullptr);
}

void WindowMemory::keep(const QWidget& window, const QSplitter* splitter) const {
  QStringList kept{QString::number(window.width()), QString::number(window.height())};
  if (splitter != nullptr)
    for (const int size : splitter->sizes()) kept.append(QString::number(size));
  try {
    environment_.localSettings.write(application, section, key_, fromQt(kept.join(QLatin1Char(','))));
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"size of a window", error.what(), {}});
  }
}

} // namespace qx
