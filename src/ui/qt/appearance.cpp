#include "ui/qt/appearance.h"

#include "ui/qt/pictures.h"
#include "ui/qt/text.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QPalette>
#include <QStyle>
#include <QTranslator>

namespace qx {
namespace {

void speakGerman(QApplication& application) {
  auto* const german = new QTranslator(&application);
  // In the program itself where the system has no toolkit.
  for (const QString& folder :
       {QStringLiteral(":/translations"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)})
    if (german->load(QStringLiteral("qtbase_de"), folder)) {
      QApplication::installTranslator(german);
      return;
    }
}

} // namespace

void dress(QApplication& application) {
  QApplication::setWindowIcon(picture("qximportjob"));
  if (QApplication::style()->name() == QStringLiteral("windows"))
    QApplication::setStyle(QStringLiteral("Fusion"));
  QPalette colours = QApplication::palette();
  for (const auto group : {QPalette::Active, QPalette::Inactive})
    colours.setColor(group, QPalette::PlaceholderText, quietText(colours));
  QApplication::setPalette(colours);
  speakGerman(application);
}

} // namespace qx
