#include "ui/qt/pictures.h"

#include <gtest/gtest.h>

#include <cmath>

namespace qx {
namespace {

/// How much a colour differs in brightness from a background, by the usual measure of readable contrast.
double contrast(QRgb colour, double background) {
  const auto linear = [](int part) { return std::pow(part / 255.0, 2.2); };
  const double bright =
      0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
  return (std::max(bright, background) + 0.05) / (std::min(bright, background) + 0.05);
}

/// The opaque pixels that stand out from a background.
int readablePixels(const QImage& image, double background) {
  constexpr int opaque = 200;
  constexpr double readable = 3;
  int count = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (const QRgb pixel = image.pixel(x, y); qAlpha(pixel) > opaque)
        count += contrast(qUnpremultiply(pixel), background) >= readable ? 1 : 0;
  return count;
}

TEST(Pictures, CanBeReadOnLightAndDarkInEverySize) {
  constexpr double white = 1;
  constexpr double dark = 0.02;
  for (const char* name :
       {"BUTTON",     "CONTRACT_ALTERED", "CONTRACT_DELETE", "CONTRACT_DONE", "CONTRACT_NEW", "ERROR",
        "ERRORGRAY",  "PROCESSED",        "PROCESSING",      "WARNING",       "WARNINGGRAY",  "tool-process",
        "tool-check", "tool-import",      "tool-export",     "tool-delete",   "tool-options", "tool-save",
        "tool-next",  "tool-stop",        "tool-search",     "qximportjob"})
    for (const int size : {16, 32, 48}) {
      const QImage image = picture(name).pixmap(size, size).toImage();
      ASSERT_EQ(image.width(), size) << name;
      const int wanted = size * size / 25;
      EXPECT_GE(readablePixels(image, white), wanted) << name << ' ' << size;
      EXPECT_GE(readablePixels(image, dark), wanted) << name << ' ' << size;
    }
  EXPECT_TRUE(picture("UNKNOWN").isNull());
}

TEST(Pictures, OfTheStatesDifferInShape) {
  const auto shape = [](const char* name) {
    return picture(name).pixmap(16, 16).toImage().convertToFormat(QImage::Format_Alpha8);
  };
  const char* const states[] = {"PROCESSING", "WARNING", "ERROR", "PROCESSED"};
  for (std::size_t i = 0; i < std::size(states); ++i)
    for (std::size_t j = i + 1; j < std::size(states); ++j)
      EXPECT_NE(shape(states[i]), shape(states[j])) << states[i] << ' ' << states[j];
}

} // namespace
} // namespace qx
