// Runs the tests of the clerk's desk on a display of its own, with a window manager. The screen is
// $QXIMPORTJOB_TEST_SCREEN: its size and, after "@", the scale of the windows.
#include "../qt/virtual_display.h"
#include "window_frames.h"

#include "ui/qt/appearance.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

#include <cstdlib>
#include <string>

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  const char* const named = std::getenv("QXIMPORTJOB_TEST_SCREEN");
  const std::string screen = named == nullptr ? "1280x800" : named;
  const std::size_t scale = screen.find('@');
  const qx::VirtualDisplay display(screen.substr(0, scale));
  const qx::WindowFrames frames;
  if (scale != std::string::npos) qputenv("QT_SCALE_FACTOR", screen.substr(scale + 1).c_str());
  qputenv("QT_QPA_PLATFORM", "xcb");
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  QApplication application(count, arguments);
  QApplication::setStyle(QStringLiteral("Fusion"));
  QApplication::setQuitOnLastWindowClosed(false);
  qx::dress(application);
  return RUN_ALL_TESTS();
}
