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
  void prepareSaving() override { checkAnswer(); }
  void store(std::string_view& failure) override;
  void stored() override { settle(); }

private:
  void checkControl(std::string_view control);
  /// What the contract check says of the values that are shown.
  void checkAnswer();
  /// The values of the contract stand in its first position.
  bool inPosition() const;
  void checkQuantity();
  void checkObject();
  void checkDate(std::string_view control, bool noon, Rule missing, Rule wrong);
  void fillKinds();
  void checkKind(bool known);
  void checkState(bool known);
  void checkInterval(bool known);

  /// Whether the state asks for a known kind and object.
  bool objectMatters() const;

  StagedRows positions_; ///< the first one first
  CheckStatus answer_ = CheckStatus::Clean;
};

} // namespace qx
