// The dialog of a staged customer, without a toolkit.
#pragma once

#include "ui/addressed_job_dialog_presenter.h"
#include "ui/contract_grid.h"

#include <string_view>
#include <vector>

namespace qx {

/// Compares the job field by field with the customer master and lists the contracts that came with it.
class CustomerDialogPresenter final : public AddressedJobDialogPresenter {
public:
  explicit CustomerDialogPresenter(const DialogContext& context);

  std::span<const ControlGroup> groups() const override;
  std::string title() const override;
  void takeAddresses(const AddressDialogPresenter& edited) override;
  std::optional<CheckStatus> verdict() const override;

protected:
  bool isDone(std::int16_t jobType) const override { return jobType == qxtJobKundenDone; }
  Findings addressKeys() const override;
  Value current(ColumnName column) const override;
  void fill() override;
  void check(std::string_view control) override;
  void prepareSaving() override;
  void store(std::string_view& failure) override;
  void stored() override;
  std::optional<Finding> unknownCustomer() const override;
  std::string unknownCustomerName() const override { return "Neukunde"; }
  void compareCustomer(const Adresse& stored) override;
  void clearComparison() override;

private:
  /// Runs the job's check on the values shown.
  void checkAnswer();
  void showDifferences(const Findings& found);
  void reloadGrid();
  void checkContracts();

  ContractGrid contracts_;
  CheckStatus answer_ = CheckStatus::Clean;         ///< result of the check
  CheckStatus contractAnswer_ = CheckStatus::Clean; ///< result of the check of its contracts
  bool moveContracts_ = false;                      ///< its contracts get its new number
};

} // namespace qx
