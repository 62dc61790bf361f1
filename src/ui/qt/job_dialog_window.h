// The window of a job dialog.
#pragma once

#include "ui/job_dialog_presenter.h"
#include "ui/job_place.h"

#include <string_view>

class QWidget;

namespace qx {

/// Opens the dialog of a job modally and returns when it is closed; it is reopened when the clerk wants to
/// reread the job. A job that cannot be opened shows a message box. `place`: where the job stands among those
/// through which the dialog steps.
DialogEnd showJobDialog(QWidget* parent, const DialogContext& context, std::string_view jobId,
                        const JobPlace& place);

/// Asks in a box whether a parked job is released when it is saved; Escape goes back to the dialog.
ReleaseAnswer askReleaseInBox(std::string_view text, bool proposesRelease);

} // namespace qx
