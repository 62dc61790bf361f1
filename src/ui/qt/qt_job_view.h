// The job window as the engine opens and closes it.
#pragma once

#include "engine/import_job_object2.h"
#include "platform/desktop.h"

#include <QPointer>

#include <functional>
#include <memory>

namespace qx {

class JobViewWindow;

/// Creates the window, not yet opened, on an engine that must outlive it.
using JobWindowFactory = std::function<std::unique_ptr<JobViewWindow>(ImportJobObject2& engine)>;

/// Owns the window between `open` and `close`.
class QtJobView final : public JobView {
public:
  explicit QtJobView(JobWindowFactory factory);
  QtJobView(const QtJobView&) = delete;
  QtJobView& operator=(const QtJobView&) = delete;
  ~QtJobView() override;

  /// To be called once, before the window is opened.
  void attach(ImportJobObject2& engine) { engine_ = &engine; }

  /// Opens the window, or brings it to the front when it is open. Exceptions of the factory reach the caller.
  void open() override;
  /// Hides the window; the event loop destroys it, since the caller may be its own handler.
  void close() override;
  /// Closes the window as its close box does: its geometry is saved and the engine is unloaded.
  void leave();
  bool isOpen() const { return !window_.isNull(); }

private:
  JobWindowFactory factory_;
  ImportJobObject2* engine_ = nullptr;
  QPointer<JobViewWindow> window_;
};

} // namespace qx
