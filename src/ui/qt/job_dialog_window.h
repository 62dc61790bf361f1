// The window of a job dialog.
#pragma once

#include "ui/job_dialog_presenter.h"

#include <cstdint>
#include <string_view>

class QWidget;

namespace qx {

/// What to do after the dialog.
enum class DialogEnd : std::uint8_t { Closed, Next };

/// Opens the dialog of a job modally and returns when it is closed; it is reopened when the clerk wants to
/// reread the job. A job that cannot be opened shows a message box. `offerNext`: whether there is a next job
/// ("Speichern und weiter").
DialogEnd showJobDialog(QWidget* parent, const DialogContext& context, std::string_view jobId,
                        bool offerNext);

} // namespace qx
