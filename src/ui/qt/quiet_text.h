// The colour of hints.
#pragma once

#include <QPalette>

namespace qx {

/// Quieter than the text of a list or field and still to be read on its ground. The toolkit's own colour for
/// hints can be half a black, which cannot be seen on a dark one.
inline QColor quietText(const QPalette& palette) {
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor ground = palette.color(QPalette::Active, QPalette::Base);
  constexpr float share = 0.65F;
  const auto mixed = [](float front, float back) { return front * share + back * (1 - share); };
  return QColor::fromRgbF(mixed(text.redF(), ground.redF()), mixed(text.greenF(), ground.greenF()),
                          mixed(text.blueF(), ground.blueF()));
}

} // namespace qx
