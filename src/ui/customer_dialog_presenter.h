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
  void reportUnknownCustomer(const std::string& number) override;
  void compareCustomer(const Adresse& stored) override;
  void clearComparison() override;

private:
  /// What the check of the job says of the values that are shown.
  void checkAnswer();
  void showDifferences(const Findings& found);
  void reloadGrid();
  void checkContracts();

  ContractGrid contracts_;
  CheckStatus answer_ = CheckStatus::Clean;         ///< of the check
  CheckStatus contractAnswer_ = CheckStatus::Clean; ///< what its contracts make of it
  bool moveContracts_ = false;                      ///< the contracts that came with it follow its new number
};

} // namespace qx
