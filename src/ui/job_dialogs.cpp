#include "ui/job_dialogs.h"

#include "ui/contract_dialog.h"
#include "ui/customer_dialog.h"
#include "ui/order_dialog.h"

namespace qx {

std::unique_ptr<JobDialog> makeJobDialog(const DialogContext& context, std::int16_t jobType) {
  const JobState state = stateOf(jobType);
  const bool listed = state >= JobState::Waiting && state <= JobState::Done;
  switch (kindOf(jobType)) {
  case qxtjobkunden:
    return listed ? std::make_unique<CustomerDialog>(context) : nullptr;
  case qxtjobverträge:
    return listed ? std::make_unique<ContractDialog>(context) : nullptr;
  case qxtJobAufträge:
    return listed ? std::make_unique<OrderDialog>(context) : nullptr;
  case qxtjobkundenverträge:
    return state <= JobState::Deleted ? std::make_unique<ContractDialog>(context) : nullptr;
  default:
    return nullptr;
  }
}

} // namespace qx
