// The positions of a staged order, in its dialog.
#pragma once

#include "engine/import_job_object2.h"
#include "engine/job_editing.h"
#include "model/date.h"
#include "rules/stock.h"
#include "ui/finding_list.h"
#include "ui/job_grid.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qx {

/// On what the checks of the positions depend.
struct PositionContext {
  std::string customer;
  std::optional<Date> date; ///< of the order; null when it cannot be read
  bool warnOfStock = false;
  bool costAssignment = false;
  bool readOnly = false;
  bool customerSpecific = false;
};

/// The positions in the order of their numbers, each checked against stock, cost assignment and price.
/// Findings go to the dialog's list under the key of their position.
class PositionGrid final : public JobGrid {
public:
  PositionGrid(Environment& environment, ImportJobObject2& engine, FindingList& findings)
      : environment_(environment), engine_(engine), findings_(findings), stock_(environment) {}

  /// Takes the positions of a job; all of them are still to be checked.
  void load(std::string_view jobId, PositionTable positions, ComboRows units, PositionContext context);
  /// Another customer has other prices: every position is to be checked again.
  void setCustomer(std::string_view customer);
  std::size_t checksLeft() const { return unchecked_.size(); }
  void checkMore(std::size_t count);

  const PositionTable& positions() const { return positions_; }
  bool changed() const { return !(positions_ == stored_); }
  void settle() { stored_ = positions_; }

  std::string_view name() const override { return "TDBGrid1"; }
  std::span<const GridColumn> columns() const override;
  std::size_t rowCount() const override { return positions_.size(); }
  GridCell cell(std::size_t row, std::size_t column) const override;
  std::optional<std::size_t> rowOf(std::string_view item) const override;
  std::string summary() const override;
  bool editable() const override { return !context_.readOnly; }
  std::string editText(std::size_t row, std::size_t column) const override;
  ComboRows units() const override { return units_; }
  std::string edit(std::size_t row, std::size_t column, std::string_view text) override;
  std::size_t addRow() override;
  void removeRow(std::size_t row) override;
  std::string paste(std::size_t row, std::size_t column, std::string_view text) override;

private:
  std::string childOf(std::size_t row) const { return positions_.at(row, "ChildID").text(); }
  void checkRow(std::size_t row);
  void checkArticle(std::size_t row);
  void checkStock(std::size_t row);
  void checkCost(std::size_t row);
  void checkPrice(std::size_t row);
  void checkCount();
  /// The staged unit as the ERP knows it, or the article's own.
  std::string unitOf(std::size_t row) const;
  void report(std::size_t row, std::string_view code, CheckStatus severity, std::string text = {});
  Preisfindung* prices();
  std::string set(std::size_t row, const GridColumn& column, std::string_view text);

  Environment& environment_;
  ImportJobObject2& engine_;
  FindingList& findings_;
  Stock stock_;
  std::string jobId_;
  PositionContext context_;
  PositionTable positions_;
  PositionTable stored_;
  ComboRows units_;
  std::unique_ptr<Preisfindung> prices_;
  std::map<std::string, double> found_; ///< prices by `ChildID`
  std::set<std::string> unchecked_;     ///< by `ChildID`
};

} // namespace qx
