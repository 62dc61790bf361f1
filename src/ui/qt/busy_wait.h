// What a window shows while another program holds the database.
#pragma once

#include "platform/database.h"

#include <QPointer>

#include <memory>

class QDialog;
class QWidget;

namespace qx {

/// A wait cursor at first, then a box that says for what the program waits, with a button that gives up.
/// Meanwhile the windows are drawn; nothing else can be done in them. Goes with the wait. Needs a
/// `QApplication`.
class QtBusyWait final : public BusyWait {
public:
  /// `parent` is the window that waits; null for the active one.
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
