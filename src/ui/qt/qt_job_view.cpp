#include "ui/qt/qt_job_view.h"

#include <QEvent>
#include <QTimer>

#include <stdexcept>

namespace qx {

QtJobView::~QtJobView() { delete window_.data(); }

void QtJobView::open() {
  if (engine_ == nullptr) throw std::logic_error("the job view has no engine");
  if (!isOpen()) {
    window_ = factory_(*engine_).release();
    window_->installEventFilter(this);
  }
  window_->show();
  window_->raise();
  window_->activateWindow();
}

void QtJobView::close() {
  if (!isOpen()) return;
  QWidget* const window = window_.data();
  window_.clear();
  window->removeEventFilter(this);
  window->hide();
  window->deleteLater();
}

bool QtJobView::eventFilter(QObject* watched, QEvent* event) {
  // Looked at once the window has handled its closing, which it may refuse.
  if (event->type() == QEvent::Close)
    QTimer::singleShot(0, this, [this] {
      if (isOpen() && !window_->isVisible()) engine_->Unload();
    });
  return QObject::eventFilter(watched, event);
}

} // namespace qx
