// Between the texts of the core (UTF-8) and those of the toolkit.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace qx {

QString toQt(std::string_view text);
std::string fromQt(const QString& text);

/// A tool tip that shows a text from outside as it is: the toolkit would take some for markup.
QString plainToolTip(const QString& text);
/// The caption of a button with a text from outside: every "&" is shown and marks no key.
QString plainCaption(QString text);

} // namespace qx
