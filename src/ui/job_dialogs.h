// Creates the dialog of a job by its kind.
#pragma once

#include "ui/job_dialog_presenter.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace qx {

/// The dialog for this job code, not loaded yet: customers 10 to 13, contracts 20 to 23 and 40 to 44, orders
/// 30 to 33. Null for any other.
std::unique_ptr<JobDialogPresenter> makeJobDialog(const DialogContext& context, std::int16_t jobType);

/// The loaded dialog of the job, by the job's current code, since a list may be out of date. Null when it
/// cannot be opened; the reason has been shown.
std::unique_ptr<JobDialogPresenter> openJobDialog(const DialogContext& context, std::string_view jobId);

} // namespace qx
