// The editor of a job's delivery and invoice address, without a toolkit.
#pragma once

#include "rules/customer_addresses.h"
#include "ui/form.h"

#include <cstdint>
#include <span>
#include <string>

namespace qx {

struct DialogContext;

/// One address of a job: whose it is (customer and address number, both may be empty) and its own lines.
struct AddressBlock {
  std::string customer;
  std::string number;
  Adresse lines;

  friend bool operator==(const AddressBlock&, const AddressBlock&) = default;
};

/// Edits copies; the dialog that opened it takes them over. A line that differs from the stored address of
/// its key shows the stored value. Failures are told to the diagnostics and stand in `notice`.
class AddressDialog final : public Form {
public:
  /// `ownCustomer` is the job's own customer number, for keys without a customer.
  AddressDialog(const DialogContext& context, std::string ownCustomer, AddressBlock delivery,
                AddressBlock invoice, bool readOnly);

  std::span<const ControlGroup> groups() const override;
  void leave(std::size_t place) override;
  bool lookUp(std::size_t place) override;

  /// Which block a group is about, for the members below.
  enum class Block : std::uint8_t { Delivery, Invoice };
  /// Takes every line of the stored address over. False when there is none.
  bool takeStored(Block block);
  /// Empties the lines, so that the stored address of the key holds.
  void clear(Block block);
  /// How the block stands, on one line: equal, different, stored nowhere, or empty.
  std::string standing(Block block) const;
  AddressBlock block(Block block) const;
  const std::string& notice() const { return notice_; }

private:
  const DialogContext& context_;
  std::string ownCustomer_;
  std::string notice_;
};

} // namespace qx
