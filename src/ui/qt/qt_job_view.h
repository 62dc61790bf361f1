// The job window as the engine opens and closes it.
#pragma once

#include "engine/import_job_object2.h"
#include "platform/desktop.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>

namespace qx {

/// Creates the window on an engine that outlives it; without a parent and not yet shown.
using JobWindowFactory = std::function<std::unique_ptr<QWidget>(ImportJobObject2& engine)>;

/// Owns the window between `open` and `close`. A window that the user closes takes the engine's `Unload` with
/// it, whether or not it calls that itself.
class QtJobView final : public QObject, public JobView {
public:
  explicit QtJobView(JobWindowFactory factory) : factory_(std::move(factory)) {}
  QtJobView(const QtJobView&) = delete;
  QtJobView& operator=(const QtJobView&) = delete;
  ~QtJobView() override;

  /// To be called once, before the window is opened.
  void attach(ImportJobObject2& engine) { engine_ = &engine; }

  /// Shows the window; brings it to the front when it is open already. What the factory raises reaches the
  /// caller.
  void open() override;
  /// Hides the window; it is destroyed by the event loop, since it may be its own handler that calls.
  void close() override;
  bool isOpen() const { return !window_.isNull(); }

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  JobWindowFactory factory_;
  ImportJobObject2* engine_ = nullptr;
  QPointer<QWidget> window_;
};

} // namespace qx
