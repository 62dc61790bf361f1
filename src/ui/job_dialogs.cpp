#include "ui/job_dialogs.h"

#include "platform/failure.h"
#include "ui/contract_dialog_presenter.h"
#include "ui/customer_dialog_presenter.h"
#include "ui/order_dialog_presenter.h"

#include <exception>
#include <string>

namespace qx {

std::unique_ptr<JobDialogPresenter> makeJobDialog(const DialogContext& context, std::int16_t jobType) {
  const JobState state = stateOf(jobType);
  const bool listed = state >= JobState::Waiting && state <= JobState::Done;
  switch (kindOf(jobType)) {
  case qxtjobkunden:
    return listed ? std::make_unique<CustomerDialogPresenter>(context) : nullptr;
  case qxtjobverträge:
    return listed ? std::make_unique<ContractDialogPresenter>(context) : nullptr;
  case qxtJobAufträge:
    return listed ? std::make_unique<OrderDialogPresenter>(context) : nullptr;
  case qxtjobkundenverträge:
    return state <= JobState::Deleted ? std::make_unique<ContractDialogPresenter>(context) : nullptr;
  default:
    return nullptr;
  }
}

std::unique_ptr<JobDialogPresenter> openJobDialog(const DialogContext& context, std::string_view jobId) {
  Environment& environment = context.environment;
  std::string reason = "Zu dieser Art von Vorgang gibt es keinen Dialog.";
  try {
    const auto code = JobEditing(environment).codeOf(jobId);
    if (!code) reason = "Der Vorgang ist nicht mehr vorhanden.";
    std::unique_ptr<JobDialogPresenter> dialog = code ? makeJobDialog(context, *code) : nullptr;
    if (dialog && dialog->load(jobId)) return dialog;
    if (dialog) reason = dialog->notice();
  } catch (const std::exception& error) {
    environment.diagnostics.report({"Laden des Vorgangs", error.what(), jobId});
    reason = germanCause(error);
  }
  showMessage(environment, {reason, std::string(defaultTitle), MessageIcon::Exclamation});
  return nullptr;
}

} // namespace qx
