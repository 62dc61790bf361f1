// The size of a window from one time to the next.
#pragma once

#include "platform/environment.h"

#include <string>
#include <string_view>

class QScreen;
class QSize;
class QSplitter;
class QWidget;

namespace qx {

/// How large a window may be inside its frame so that all of it can be seen on a screen. Before the window is
/// framed a usual frame is allowed for.
QSize roomFor(const QWidget& window, const QScreen& screen);

/// Keeps a window's size and the sections of its splitter in the user's settings, under a key per window. A
/// failure is told to the diagnostics; the window has its usual size then.
class WindowMemory {
public:
  WindowMemory(Environment& environment, std::string_view key) : environment_(environment), key_(key) {}

  /// Sizes the window as it was, or as given, and no larger than the screen. False when nothing was kept.
  bool restore(QWidget& window, QSplitter* splitter, const QSize& usual) const;
  void keep(const QWidget& window, const QSplitter* splitter) const;

private:
  Environment& environment_;
  std::string key_;
};

} // namespace qx
