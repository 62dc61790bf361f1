// The colour of hints.
#pragma once

#include <QPalette>

namespace qx {

/// Fainter than the text of a list or field but still readable. The toolkit's own colour for hints can be
/// half-transparent black, which is invisible on a dark background.
inline QColor quietText(const QPalette& palette) {
  const QColor text = palette.color(QPalette::Active, QPalette::Text);
  const QColor ground = palette.color(QPalette::Active, QPalette::Base);
  constexpr float share = 0.65F;
  const auto mixed = [](float front, float back) { return front * share + back * (1 - share); };
  return QColor::fromRgbF(mixed(text.redF(), ground.redF()), mixed(text.greenF(), ground.greenF()),
                          mixed(text.blueF(), ground.blueF()));
}

} // namespace qx
