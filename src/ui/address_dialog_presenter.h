// The editor of a job's delivery and invoice address, without a toolkit.
#pragma once

#include "rules/customer_addresses.h"
#include "ui/form.h"
#include "ui/job_dialog_presenter.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace qx {

/// One address of a job: its key (customer and address number, both may be empty) and its own lines.
struct AddressBlock {
  std::string customer;
  std::string number;
  Adresse lines;

  friend bool operator==(const AddressBlock&, const AddressBlock&) = default;
};

/// Edits copies, which the dialog that opened it takes over. A line that differs from the stored address of
/// the key shows the stored value; a block without lines is not compared, since the stored address then
/// applies. Failures are reported to the diagnostics and shown in `notice`.
class AddressDialogPresenter final : public Form {
public:
  /// `ownCustomer` is the job's own customer number, for keys without a customer.
  AddressDialogPresenter(DialogContext context, std::string ownCustomer, AddressBlock delivery,
                         AddressBlock invoice, bool readOnly);

  std::span<const ControlGroup> groups() const override;
  void leave(std::size_t index) override;
  bool lookUp(std::size_t index) override;

  /// The group of the same number is about it.
  enum class Block : std::uint8_t { Delivery, Invoice };
  static constexpr std::array allBlocks{Block::Delivery, Block::Invoice};
  /// Copies every line of the stored address. False when there is none.
  bool takeStored(Block block);
  /// Empties the lines, so that the stored address of the key applies.
  void clear(Block block);
  bool hasStored(Block block) const { return stored_[slot(block)].has_value(); }
  /// The state of the block on one line: equal, different, not stored, or empty.
  std::string standing(Block which) const;
  AddressBlock block(Block which) const;
  const std::string& notice() const { return notice_; }

private:
  struct BlockSpec;
  static const std::array<BlockSpec, 2>& specsOfBlocks();
  static std::size_t slot(Block block) { return static_cast<std::size_t>(block); }

  bool takeGeneral(Block block, std::string_view number);
  void setLines(Block block, const Adresse& lines);
  /// The customer whose address the key refers to.
  std::string owner(Block which) const;
  /// Whether the key refers to the customer of the job itself, who need not be stored yet.
  bool isOwn(Block which) const;
  /// Reads the stored address of the key again and marks an unknown key.
  void readStored(Block which);
  void compare(Block which);

  DialogContext context_;
  std::string ownCustomer_;
  std::array<std::optional<Adresse>, 2> stored_;
  std::string notice_;
};

/// The lines that are not empty, joined with commas, in the order in which the windows show them.
std::string oneLine(const Adresse& address);

} // namespace qx
