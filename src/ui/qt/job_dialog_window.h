// The window of a job dialog.
#pragma once

#include "ui/job_dialog.h"

#include <cstdint>
#include <string_view>

class QWidget;

namespace qx {

/// What the clerk wants after the dialog.
enum class DialogEnd : std::uint8_t { Closed, Next };

/// Opens the dialog of a job modally and returns when it is closed. A job that cannot be opened is told in a
/// box. `offerNext`: whether there is a job to go on to ("Speichern und weiter").
DialogEnd showJobDialog(QWidget* parent, const DialogContext& context, std::string_view jobId,
                        std::int16_t jobType, bool offerNext);

} // namespace qx
