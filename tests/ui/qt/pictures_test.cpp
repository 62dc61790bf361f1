#include "ui/qt/pictures.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

TEST(Pictures, AreDrawnForEveryResourceName) {
  for (const char* name : {"PROCESSING"}) {
    const QImage image = picture(name).pixmap(16, 16).toImage();
    bool drawn = false;
    for (int y = 0; y < image.height(); ++y)
      for (int x = 0; x < image.width(); ++x) drawn = drawn || qAlpha(image.pixel(x, y)) > 128;
    EXPECT_TRUE(drawn) << name;
  }
  EXPECT_TRUE(picture("UNKNOWN").isNull());
}

} // namespace
} // namespace qx
