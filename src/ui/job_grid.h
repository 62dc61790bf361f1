// The grid of a job dialog, without a toolkit.
#pragma once

#include "model/job_codes.h"
#include "rules/combo_lists.h"
#include "ui/form.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qx {

enum class GridColumnKind : std::uint8_t {
  Picture, ///< a bitmap
  Text,
  LongText, ///< edited on several lines
  Number,   ///< a German decimal number
  Money,    ///< two decimals
  Date,     ///< dd.mm.yyyy; may be empty
  Unit,     ///< one of `JobGrid::units`; others can be typed
  Check,    ///< "1" or "0"
  Button,   ///< opens the details of its row
};

struct GridColumn {
  std::string_view name{}; ///< column of the table, or the heading of one that is not stored
  std::string_view caption{};
  GridColumnKind kind = GridColumnKind::Text;
  bool editable = false;
  bool hidden = false;           ///< kept, not shown
  bool customerSpecific = false; ///< shown in customer-specific mode only
};

struct GridCell {
  std::string text{};
  CheckStatus severity{CheckStatus::Clean}; ///< how the cell is marked
  std::string message{};                    ///< tool tip
  std::string_view bitmap{};                ///< resource name of a picture; empty for none
};

/// A staged job by its key and code.
struct JobReference {
  std::string jobId;
  std::int16_t jobType = 0;
};

/// Slow checks of rows, which the window runs step by step.
class StepwiseChecks {
public:
  virtual ~StepwiseChecks() = default;
  virtual std::size_t checksLeft() const = 0;
  /// Checks up to `count` further rows.
  virtual void checkMore(std::size_t count) = 0;
  /// Why a check could not be run, for the clerk; empty when all could.
  virtual std::string failure() const = 0;
};

/// Sets cells, adds and removes rows. Rows and columns are indexes of the grid.
class GridEditing {
public:
  virtual ~GridEditing() = default;
  /// Whether anything may be changed.
  virtual bool editable() const = 0;
  /// The initial text of the cell's editor: the value with all its digits.
  virtual std::string editText(std::size_t row, std::size_t column) const = 0;
  /// The items of the unit column: texts and codes.
  virtual ComboRows units() const = 0;
  /// Sets a cell and checks its row again. Returns "" when the text was accepted, otherwise why not; the cell
  /// then keeps its value.
  virtual std::string edit(std::size_t row, std::size_t column, std::string_view text) = 0;
  /// Appends an empty row and returns its index.
  virtual std::size_t addRow() = 0;
  virtual void removeRow(std::size_t row) = 0;
  /// Sets cells from tab-separated lines, down and to the right of a cell in the visible editable columns;
  /// appends rows as needed. Returns "" when every cell was accepted, otherwise which were not.
  virtual std::string paste(std::size_t row, std::size_t column, std::string_view text) = 0;
  /// Opens the lookup of a cell (F4) and stores the chosen value. False when there is none or nothing was
  /// chosen.
  virtual bool lookUp(std::size_t row, std::size_t column) = 0;
  /// Takes the value over that the master data give for a row. False when it has that, or there is none.
  virtual bool takeFound(std::size_t row) = 0;
  /// The number of rows that differ from it.
  virtual std::size_t foundLeft() const = 0;
  /// A form with all fields of a row; changes take effect at once. Must not outlive the row.
  virtual std::unique_ptr<Form> details(std::size_t row) = 0;
};

/// A grid whose rows are staged jobs.
class GridJobs {
public:
  virtual ~GridJobs() = default;
  virtual JobReference jobOf(std::size_t row) const = 0;
};

/// Rows of cells with 0-based indexes. Columns are indexes into `columns`.
class JobGrid {
public:
  /// The parts that the grid has besides its cells, null for those that it lacks. They outlive it.
  JobGrid(GridEditing* editing, GridJobs* jobs) : editing_(editing), jobs_(jobs) {}
  JobGrid(const JobGrid&) = delete;
  JobGrid& operator=(const JobGrid&) = delete;
  virtual ~JobGrid() = default;

  GridEditing* editing() const { return editing_; }
  GridJobs* jobs() const { return jobs_; }
  bool editable() const { return editing_ != nullptr && editing_->editable(); }

  /// The object name of the grid.
  virtual std::string_view name() const = 0;
  virtual std::span<const GridColumn> columns() const = 0;
  virtual std::size_t rowCount() const = 0;
  virtual GridCell cell(std::size_t row, std::size_t column) const = 0;
  /// The row of a position's or job's key; null when there is none.
  virtual std::optional<std::size_t> rowOf(std::string_view item) const = 0;
  /// The column that a finding of this code concerns; null when there is none.
  virtual std::optional<std::size_t> columnOf(std::string_view /*code*/) const { return std::nullopt; }
  /// The header of a row.
  virtual std::string rowLabel(std::size_t row) const = 0;
  /// One line below the grid.
  virtual std::string summary() const = 0;

private:
  GridEditing* editing_;
  GridJobs* jobs_;
};

} // namespace qx
