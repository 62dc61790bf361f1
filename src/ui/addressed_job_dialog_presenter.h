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
  /// `kind` says what the dialog has besides the addresses.
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

  /// How an unknown customer is reported.
  virtual void reportUnknownCustomer(const std::string& number) = 0;
  /// What follows a customer that is known; `stored` is its main address.
  virtual void compareCustomer(const Adresse& stored) = 0;
  /// Removes what `compareCustomer` may have reported.
  virtual void clearComparison() = 0;

  /// Which customers and addresses the master data do not know, to which goods and invoices go.
  virtual Findings addressKeys() const = 0;
  /// Reads the addresses, fills the combos and runs every check of the header. `failureCounts`: whether a
  /// reason that stands in the job counts for its status.
  void checkHeader(bool failureCounts = false);
  void checkCustomer();
  CustomerAddresses storedAddresses() const { return CustomerAddresses(environment()); }
  /// Writes the address blocks.
  void storeAddresses(std::string_view& failure);

private:
  /// The rules that the same thing breaks in a customer and in an order.
  struct RulePair {
    Rule customer;
    Rule order;
  };
  Rule ruleOf(RulePair rules) const;
  /// What is worth knowing about the job as it is shown.
  void checkHints();
  /// One of the two address blocks: its columns, controls and rules.
  struct BlockSpec;
  static const std::array<BlockSpec, 2>& blocks();

  void readAddresses();
  /// Fills the combos that the dialog shows and reports unknown codes.
  void fillCodes();
  void checkBank();
  void checkAddresses();
  void checkCode(std::string_view control);
  void checkBlock(const BlockSpec& spec, const Adresse& lines, const Findings& keys);
  AddressBlock blockOf(const BlockSpec& spec, const Adresse& lines) const;

  std::array<Adresse, 2> lines_;  ///< delivery and invoice, as the clerk left them
  std::array<Adresse, 2> stored_; ///< as they stand in the job
};

} // namespace qx
