// The dialog of a staged contract, without a toolkit.
#pragma once

#include "ui/job_dialog_presenter.h"

namespace qx {

/// Contract jobs, also those that came with their customer. A single contract whose values came in a position
/// is shown with those of the first one, as the run takes them over. Saving gives the job the answer of the
/// contract check, so that a mended contract waits again.
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
  void stored() override { settle(); }

private:
  /// Lists what the contract check finds in the values that are shown.
  void checkContract();
  /// The state and the interval: of those the dialog tells more than the check finds.
  void checkChoices();
  /// It did not come with a customer.
  bool isSingle() const;
  /// The values of the contract stand in its first position.
  bool inPosition() const;

  StagedRows positions_; ///< the first one first
  CheckStatus answer_ = CheckStatus::Clean;
};

} // namespace qx
