// Converts between the texts of the core (UTF-8) and the toolkit.
#pragma once

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

} // namespace qx
