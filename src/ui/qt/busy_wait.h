// What a window shows while another program holds the database.
#pragma once

#include "platform/database.h"

#include <QPointer>

#include <memory>

class QDialog;
class QWidget;

namespace qx {

/// A wait cursor at first, then a box that names the reason, with a button to cancel. Meanwhile the windows
/// are redrawn but accept no input. Disappears with the wait. Needs a `QApplication`.
class QtBusyWait final : public BusyWait {
public:
  /// `parent` is the waiting window; null for the active one.
  explicit QtBusyWait(QWidget* parent = nullptr);
  QtBusyWait(const QtBusyWait&) = delete;
  QtBusyWait& operator=(const QtBusyWait&) = delete;
  ~QtBusyWait() override;

  bool goOn(std::chrono::milliseconds waited) override;

private:
  void open();

  QPointer<QWidget> parent_;
  std::unique_ptr<QDialog> box_;
  bool cursor_ = false;
  bool givenUp_ = false;
};

} // namespace qx
