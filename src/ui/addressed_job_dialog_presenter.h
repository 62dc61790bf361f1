// What the dialogs of customer and order jobs share, without a toolkit.
#pragma once

#include "rules/customer_addresses.h"
#include "ui/address_dialog_presenter.h"
#include "ui/job_dialog_presenter.h"

#include <array>
#include <optional>

namespace qx {

/// A job with codes of the master tables, a bank, a delivery and an invoice address.
class AddressedJobDialogPresenter : public JobDialogPresenter, public AddressPart {
public:
  /// `kind` describes everything but the addresses.
  AddressedJobDialogPresenter(const DialogContext& context, JobDialogKind kind);
  AddressedJobDialogPresenter(const AddressedJobDialogPresenter&) = delete;
  AddressedJobDialogPresenter& operator=(const AddressedJobDialogPresenter&) = delete;
  ~AddressedJobDialogPresenter() override;

  bool changed() const override;
  std::unique_ptr<AddressDialogPresenter> addresses() override;
  void takeAddresses(const AddressDialogPresenter& edited) override;
  std::string lookupContext(std::string_view control) const override;

protected:
  std::unique_ptr<Recordset> open(std::string_view jobId) override;
  void takeLookup(std::string_view control, const std::vector<std::string>& chosen) override;
  void check(std::string_view control) override;
  void stored() override;
  Value current(ColumnName column) const override;

  /// What the check finds in the customer number; null for a known one.
  virtual std::optional<Finding> unknownCustomer() const = 0;
  /// Shown beside the number of an unknown customer.
  virtual std::string unknownCustomerName() const = 0;
  /// Compares the job with a known customer; `stored` is the main address.
  virtual void compareCustomer(const Adresse& stored) = 0;
  /// Removes what `compareCustomer` may have reported.
  virtual void clearComparison() = 0;

  /// The findings on the keys of the delivery and the invoice address.
  virtual Findings addressKeys() const = 0;
  /// Reads the addresses, fills the combo boxes and runs every check of the header. `failureCounts`: whether
  /// an existing reason in the job affects its status.
  void checkHeader(bool failureCounts = false);
  void checkCustomer();
  CustomerAddresses storedAddresses() const { return CustomerAddresses(environment()); }
  /// Writes the address blocks.
  void storeAddresses(std::string_view& failure);

private:
  /// The rule for customers and the one for orders on the same subject.
  struct RulePair {
    Rule customer;
    Rule order;
  };
  Rule ruleOf(RulePair rules) const;
  /// Updates the hints for the job as shown.
  void checkHints();
  /// One of the two address blocks: its columns, controls and rules.
  struct BlockSpec;
  static const std::array<BlockSpec, 2>& blocks();

  void readAddresses();
  /// Fills the combo boxes of the dialog and reports unknown codes.
  void fillCodes();
  void checkBank();
  void checkAddresses();
  void checkCode(std::string_view control);
  void checkBlock(const BlockSpec& spec, const Adresse& lines, const Findings& keys);
  AddressBlock blockOf(const BlockSpec& spec, const Adresse& lines) const;

  std::array<Adresse, 2> lines_;  ///< delivery and invoice, as edited
  std::array<Adresse, 2> stored_; ///< as stored in the job
};

} // namespace qx
