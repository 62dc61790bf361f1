#include "ui/qt/qt_job_view.h"

#include "ui/qt/job_view_window.h"

#include <stdexcept>
#include <utility>

namespace qx {

QtJobView::QtJobView(JobWindowFactory factory) : factory_(std::move(factory)) {}

QtJobView::~QtJobView() { delete window_.data(); }

void QtJobView::open() {
  if (engine_ == nullptr) throw std::logic_error("the job view has no engine");
  if (!isOpen()) window_ = factory_(*engine_).release();
  window_->open();
}

void QtJobView::close() {
  if (!isOpen()) return;
  JobViewWindow* const window = window_.data();
  window_.clear();
  window->hide();
  window->deleteLater();
}

void QtJobView::leave() {
  if (isOpen()) window_->QWidget::close();
}

} // namespace qx
