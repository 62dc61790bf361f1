// A form in a window of its own.
#pragma once

#include "platform/environment.h"

#include <string_view>

class QString;
class QWidget;

namespace qx {

class Form;

/// Opens a form modally whose changes take effect as each field is left; returns when it is closed. The size
/// is stored under `memoryKey`.
void showForm(QWidget* parent, Environment& environment, Form& form, const QString& title,
              std::string_view memoryKey);

} // namespace qx
