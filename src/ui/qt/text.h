// Between the texts of the core (UTF-8) and those of the toolkit.
#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace qx {

QString toQt(std::string_view text);
std::string fromQt(const QString& text);

} // namespace qx
