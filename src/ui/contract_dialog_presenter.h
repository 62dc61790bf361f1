// The dialog of a staged contract, without a toolkit.
#pragma once

#include "ui/job_dialog_presenter.h"

namespace qx {

/// Contract jobs, including those that came with their customer. A single contract with positions is shown
/// with the values of the first one, as the run would copy them. Saving stores the result of the contract
/// check, so that a corrected contract waits again.
class ContractDialogPresenter final : public JobDialogPresenter {
public:
  explicit ContractDialogPresenter(const DialogContext& context);

  std::span<const ControlGroup> groups() const override;
  std::string title() const override;
  std::optional<CheckStatus> verdict() const override;

protected:
  bool isDone(std::int16_t jobType) const override;
  std::unique_ptr<Recordset> open(std::string_view jobId) override;
  void fill() override;
  void check(std::string_view control) override;
  void takeLookup(std::string_view control, const std::vector<std::string>& chosen) override;
  Value loaded(ColumnName column) const override;
  void prepareSaving() override { checkContract(); }
  void store(std::string_view& failure) override;
  void stored() override { markSaved(); }

private:
  /// Lists the findings of the contract check on the values shown.
  void checkContract();
  /// Checks state and interval more strictly than the contract check.
  void checkChoices();
  /// Whether it came without a customer.
  bool isSingle() const;
  /// Whether its first position holds the values of the contract.
  bool inPosition() const;

  StagedRows positions_; ///< in the order in which the run reads them
  CheckStatus answer_ = CheckStatus::Clean;
};

} // namespace qx
