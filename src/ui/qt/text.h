// Texts of the core (UTF-8) in the toolkit.
#pragma once

#include <QPalette>
#include <QString>
#include <string>
#include <string_view>

namespace qx {

QString toQt(std::string_view text);
std::string fromQt(const QString& text);

/// A tool tip that shows an external text literally: the toolkit would take some for markup.
QString plainToolTip(const QString& text);
/// The caption of a button with an external text: every "&" is shown and marks no key.
QString plainCaption(QString text);

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
