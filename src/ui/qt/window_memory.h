// Remembers the size of a window.
#pragma once

#include "platform/environment.h"

#include <string>
#include <string_view>

class QScreen;
class QSize;
class QSplitter;
class QWidget;

namespace qx {

/// The maximum size of a window inside its frame for all of it to fit on a screen. Assumes a usual frame
/// before the window has one.
QSize roomFor(const QWidget& window, const QScreen& screen);

/// Keeps a window's size and the sections of its splitter in the user's settings, under a key per window. A
/// failure is reported to the diagnostics; the window then has its default size.
class WindowMemory {
public:
  WindowMemory(Environment& environment, std::string_view key) : environment_(environment), key_(key) {}

  /// Sets the stored size, or else the given one, limited to the screen. False when no size was stored.
  bool restore(QWidget& window, QSplitter* splitter, const QSize& usual) const;
  void keep(const QWidget& window, const QSplitter* splitter) const;

private:
  Environment& environment_;
  std::string key_;
};

} // namespace qx
