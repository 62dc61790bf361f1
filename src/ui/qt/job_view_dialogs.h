// The dialogs behind the commands of the job view.
#pragma once

#include "ui/dialog_context.h"
#include "ui/qt/job_view_window.h"

#include <string>

namespace qx {

/// All dialogs that a job view opens. The context must outlive them; `schemaVersion` is that of the
/// database's tables.
JobViewDialogs dialogsOf(const DialogContext& context, std::string schemaVersion);

} // namespace qx
