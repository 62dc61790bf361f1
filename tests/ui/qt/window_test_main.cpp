// Runs the window tests in an application on a display of its own.
#include "virtual_display.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLocale>

#include <cstring>
#include <optional>

int main(int count, char** arguments) {
  bool listing = false;
  for (int i = 1; i < count; ++i)
    listing = listing || std::strncmp(arguments[i], "--gtest_list_tests", 18) == 0;
  testing::InitGoogleTest(&count, arguments);
  if (listing) return RUN_ALL_TESTS();
  const qx::VirtualDisplay display;
  qputenv("QT_QPA_PLATFORM", "xcb");
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  QApplication application(count, arguments);
  QApplication::setStyle(QStringLiteral("Fusion"));
  return RUN_ALL_TESTS();
}
