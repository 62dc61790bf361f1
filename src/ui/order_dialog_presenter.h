// The dialog of a staged order, without a toolkit.
#pragma once

#include "engine/order_rules.h"
#include "engine/run_options.h"
#include "ui/addressed_job_dialog_presenter.h"
#include "ui/position_grid.h"

namespace qx {

/// Checks the header and, in steps, the positions of an order job.
class OrderDialogPresenter final : public AddressedJobDialogPresenter {
public:
  explicit OrderDialogPresenter(const DialogContext& context);

  std::span<const ControlGroup> groups() const override;
  std::string title() const override;
  bool changed() const override;

protected:
  bool isDone(std::int16_t jobType) const override { return jobType == qxtJobAufträgeDone; }
  Findings addressKeys() const override;
  void fill() override;
  void check(std::string_view control) override;
  void prepareSaving() override { checkMore(checksLeft()); }
  void store(std::string_view& failure) override;
  void stored() override;
  std::optional<Finding> unknownCustomer() const override;
  std::string unknownCustomerName() const override { return own_.Bez1; }
  void compareCustomer(const Adresse& stored) override;
  void clearComparison() override;

private:
  void checkCustomerCodes();
  /// Makes the checks of the header that belong to no control.
  void checkRules();
  void loadPositions();

  OrderOptions options_;
  OrderMaster master_;
  PositionGrid positions_;
  Adresse own_; ///< the address given in the order
  std::string receivedOn_;
};

} // namespace qx
