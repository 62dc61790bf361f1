// The positions of a staged order, in its dialog.
#pragma once

#include "engine/job_editing.h"
#include "engine/order_rules.h"
#include "engine/position_facts.h"
#include "model/date.h"
#include "store/entry_objects.h"
#include "ui/control.h"
#include "ui/dialog_context.h"
#include "ui/edit_codec.h"
#include "ui/finding_list.h"
#include "ui/job_grid.h"

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qx {

/// What the checks of the positions depend on.
struct PositionContext {
  std::string customer;
  std::optional<Date> date; ///< of the order; null when it cannot be read
  bool readOnly = false;
  ReadyFlags ready; ///< of an added position
};

/// The positions in the order of their numbers, each checked against stock, cost assignment and price.
/// Findings are added to the dialog's list under the key of their position.
class PositionGrid final : public JobGrid, public GridEditing, public StepwiseChecks {
public:
  PositionGrid(const DialogContext& context, const OrderMaster& master, FindingList& findings)
      : JobGrid(this, nullptr), environment_(context.environment), master_(master), lookups_(context.lookups),
        findings_(findings), prices_(std::in_place, context.environment) {}

  /// Replaces the positions by those of a job; they, and their number, have yet to be checked.
  void load(std::string_view jobId, StagedRows positions, ComboRows units, PositionContext context);
  /// Every position must be checked again if the customer, and with it the prices, changes.
  void setCustomer(std::string_view customer);
  std::size_t checksLeft() const override { return unchecked_.size(); }
  void checkMore(std::size_t count) override;
  void checkCount();
  std::string failure() const override { return failed_.empty() ? std::string() : failure_; }

  const StagedRows& positions() const { return positions_; }
  bool changed() const { return !(positions_ == stored_); }
  void markSaved() { stored_ = positions_; }

  std::string_view name() const override { return "TDBGrid1"; }
  std::span<const GridColumn> columns() const override;
  std::size_t rowCount() const override { return positions_.size(); }
  GridCell cell(std::size_t row, std::size_t column) const override;
  std::optional<std::size_t> rowOf(std::string_view item) const override;
  /// The number by which findings and documents name the position.
  std::string rowLabel(std::size_t row) const override;
  std::string summary() const override;
  bool editable() const override { return !context_.readOnly; }
  std::string editText(std::size_t row, std::size_t column) const override;
  ComboRows units() const override { return units_; }
  std::string edit(std::size_t row, std::size_t column, std::string_view text) override;
  std::size_t addRow() override;
  void removeRow(std::size_t row) override;
  std::string paste(std::size_t row, std::size_t column, std::string_view text) override;

  bool lookUp(std::size_t row, std::size_t column) override;
  bool takeFound(std::size_t row) override;
  std::size_t foundLeft() const override;
  std::optional<std::size_t> columnOf(std::string_view code) const override;
  std::unique_ptr<Form> details(std::size_t row) override;

  /// The value of any column of a row, in the form of `editText`.
  std::string value(std::size_t row, ColumnName column, ControlKind kind) const;
  /// Sets any column of a row and checks the row again; otherwise like `edit`.
  std::string setValue(std::size_t row, ColumnName column, ControlKind kind, std::string_view text);
  /// Lets the clerk choose an article for a row.
  bool chooseArticle(std::size_t row);
  std::string articleText(std::size_t row) const;
  /// The findings of a row, one a line.
  std::string messages(std::size_t row) const;
  /// Null when there is none. Valid until the row is checked again.
  const ListedFinding* finding(std::size_t row, std::string_view code) const {
    return findings_.find(code, childOf(row));
  }

private:
  GridCell statusCell(std::size_t row) const;
  GridCell priceCell(std::size_t row) const;
  GridCell foundPriceCell(std::size_t row) const;
  GridCell readyCell(std::size_t row, std::string_view flag) const;
  GridCell articleCell(std::size_t row) const;
  std::string childOf(std::size_t row) const { return positions_.at(row, "ChildID").text(); }
  bool customerSpecific() const { return master_.options.customerSpecific; }
  void checkRow(std::size_t row);
  void checkEntry(std::size_t row, PositionFacts& facts);
  void propose(std::size_t row);
  void proposePrice(std::size_t row);
  bool isDifferent(std::size_t row) const;
  /// Sets a column and those that follow it. Empty when accepted, otherwise why not.
  std::string set(std::size_t row, ColumnName column, ControlKind kind, std::string_view text);
  /// Reads a typed number into `value`. Empty when the column accepts it, otherwise why not.
  std::string readNumber(std::size_t row, ColumnName column, const std::string& typed, Value& value) const;
  /// Why a column with rules of its own does not accept the number; empty when it does.
  std::string refusal(std::size_t row, ColumnName column, double number) const;

  Environment& environment_;
  const OrderMaster& master_;
  LookupBridge& lookups_;
  FindingList& findings_;
  std::string jobId_;
  PositionContext context_;
  StagedRows positions_;
  StagedRows stored_;
  ComboRows units_;
  std::optional<PriceComponent> prices_; ///< a new one for each job
  std::map<std::string, double> found_;  ///< prices by `ChildID`
  std::set<std::string> added_;          ///< positions whose unit and price are proposed; by `ChildID`
  std::set<std::string> unchecked_;      ///< by `ChildID`
  std::set<std::string> failed_;         ///< positions with a check that could not be made; by `ChildID`
  std::set<std::string> told_;           ///< failures already reported to the diagnostics
  std::string failure_;
};

} // namespace qx
