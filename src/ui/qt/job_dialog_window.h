// The window of a job dialog.
#pragma once

#include "ui/job_dialog_presenter.h"

#include <cstdint>
#include <string_view>

class QWidget;

namespace qx {

/// What the clerk wants after the dialog.
enum class DialogEnd : std::uint8_t { Closed, Next };

/// Opens the dialog of a job modally and returns when it is closed; one that the clerk wants to read anew is
/// opened again. A job that cannot be opened is told in a box. `offerNext`: whether there is a job to go on
/// to ("Speichern und weiter").
DialogEnd showJobDialog(QWidget* parent, const DialogContext& context, std::string_view jobId,
                        bool offerNext);

} // namespace qx
