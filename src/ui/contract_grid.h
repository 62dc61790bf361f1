// The staged contracts of a customer, in its dialog.
#pragma once

#include "engine/import_job_object2.h"
#include "engine/job_editing.h"
#include "ui/job_grid.h"

#include <string>
#include <vector>

namespace qx {

/// One row per contract that came with the customer; each opens the dialog of its contract.
class ContractGrid final : public JobGrid, public GridJobs {
public:
  ContractGrid() : JobGrid(nullptr, this) {}

  /// Reads the contracts again. Database errors reach the caller.
  void load(const JobEditing& editing, const ImportJobObject2& engine, std::string_view customer);

  std::string_view name() const override { return "TDBGrid1"; }
  std::span<const GridColumn> columns() const override;
  std::size_t rowCount() const override { return rows_.size(); }
  GridCell cell(std::size_t row, std::size_t column) const override;
  std::optional<std::size_t> rowOf(std::string_view item) const override;
  std::string rowLabel(std::size_t row) const override { return std::to_string(row + 1); }
  std::string summary() const override;
  JobReference jobOf(std::size_t row) const override;

private:
  struct Row {
    std::vector<GridCell> cells;
    JobReference job;
    double amount = 0;
  };
  std::vector<Row> rows_;
};

} // namespace qx
