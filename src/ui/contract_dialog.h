// The dialog of a staged contract, without a toolkit.
#pragma once

#include "ui/job_dialog.h"

namespace qx {

/// Contract jobs, also those that came with their customer. Saving gives the job the code that its findings
/// ask for, so that a mended contract waits again.
class ContractDialog final : public JobDialog {
public:
  using JobDialog::JobDialog;

  std::span<const ControlGroup> groups() const override;
  std::string title() const override;
  std::string_view cancelButton() const override { return "cmdCancel"; }
  std::string_view boxTitle() const override { return "Vertragsdetails"; }
  bool canErase() const override { return !readOnly(); }
  bool erase() override;

protected:
  bool isDone(std::int16_t jobType) const override;
  std::unique_ptr<Recordset> open(std::string_view jobId) override;
  void fill() override;
  void check(std::string_view control) override;
  void takeLookup(std::string_view control, const std::vector<std::string>& chosen) override;
  bool offersRelease() const override { return false; }
  void prepareSaving() override;
  void store() override;

private:
  void checkQuantity();
  void checkObject();
  void checkDate(std::string_view control, std::string_view code, std::string_view message);
  void fillKinds();
  void checkKind(bool known);
  void checkState(bool known);
  void checkInterval(bool known);

  std::string reasons_; ///< what the contract check says of what is about to be stored
};

} // namespace qx
