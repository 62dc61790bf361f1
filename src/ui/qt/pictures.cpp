#include "ui/qt/pictures.h"

#include "ui/qt/text.h"

#include <QFile>

/// The pictures lie in a static library; the linker drops them unless they are asked for. Must stand outside
/// of any namespace.
static void registerPictures() { Q_INIT_RESOURCE(pictures); }

namespace qx {

QIcon picture(std::string_view name) {
  static const bool registered = (registerPictures(), true);
  static_cast<void>(registered);
  const QString path = QStringLiteral(":/pictures/") + toQt(name) + QStringLiteral(".svg");
  return QFile::exists(path) ? QIcon(path) : QIcon();
}

QIcon severityPicture(CheckStatus severity) {
  switch (severity) {
  case CheckStatus::Clean:
    return picture("PROCESSING");
  case CheckStatus::Warning:
    return picture("WARNING");
  case CheckStatus::Error:
    return picture("ERROR");
  }
  return {};
}

QIcon fieldPicture(CheckStatus severity) {
  switch (severity) {
  case CheckStatus::Clean:
    return {};
  case CheckStatus::Warning:
    return picture("WARNINGGRAY");
  case CheckStatus::Error:
    return picture("ERRORGRAY");
  }
  return {};
}

} // namespace qx
