#include "ui/qt/pictures.h"

#include "ui/qt/text.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QPainter>
#include <QPixmap>
#include <QPointer>

/// The pictures are in a static library; the linker drops them unless initialised here. Must be outside any
/// namespace.
static void registerPictures() { Q_INIT_RESOURCE(pictures); }

namespace qx {

namespace {

/// Draws each picture once; destroyed with the application.
class PictureStore final : public QObject {
public:
  using QObject::QObject;

  QIcon get(const QString& name) {
    const auto known = pictures_.constFind(name);
    if (known != pictures_.constEnd()) return *known;
    return *pictures_.insert(name, load(name));
  }

private:
  static QIcon load(const QString& name) {
    const QDir folder(QStringLiteral(":/pictures"));
    QIcon icon;
    if (const QString drawing = name + QStringLiteral(".svg"); folder.exists(drawing))
      icon.addFile(folder.filePath(drawing));
    // Where the toolkit cannot read drawings, the build has made bitmaps of them, NAME-SIZE.png.
    for (const QString& bitmap : folder.entryList({name + QStringLiteral("-*.png")}))
      icon.addFile(folder.filePath(bitmap));
    return icon;
  }

  QHash<QString, QIcon> pictures_;
};

} // namespace

QIcon picture(std::string_view name) {
  static const bool registered = (registerPictures(), true);
  static_cast<void>(registered);
  static QPointer<PictureStore> store;
  if (!store) store = new PictureStore(QCoreApplication::instance());
  return store->get(toQt(name));
}

QIcon releasedPicture(std::string_view name) {
  const QIcon state = picture(name);
  const QIcon mark = picture("PROCESSED");
  QIcon both;
  for (const int side : {16, 24, 32, 48, 64, 96}) {
    QPixmap drawn(side, side);
    drawn.fill(Qt::transparent);
    QPainter painter(&drawn);
    painter.setRenderHint(QPainter::Antialiasing);
    const int large = side * 3 / 4;
    const int small = side * 9 / 16;
    state.paint(&painter, QRect(0, 0, large, large));
    mark.paint(&painter, QRect(side - small, side - small, small, small));
    painter.end();
    both.addPixmap(drawn);
  }
  return both;
}

QIcon severityPicture(CheckStatus severity) {
  if (severity == CheckStatus::Clean) return picture("PROCESSING");
  return picture(severity == CheckStatus::Warning ? "WARNING" : "ERROR");
}

QIcon fieldPicture(CheckStatus severity) {
  if (severity == CheckStatus::Clean) return {};
  return picture(severity == CheckStatus::Warning ? "WARNINGGRAY" : "ERRORGRAY");
}

} // namespace qx
