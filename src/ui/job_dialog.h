// What the dialogs of customer, contract and order jobs have in common, without a toolkit.
#pragma once

#include "engine/import_job_object2.h"
#include "ui/control.h"
#include "ui/finding_list.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class LookupBridge;

/// What every dialog works with; all of it outlives the dialog.
struct DialogContext {
  Environment& environment;
  ImportJobObject2& engine;
  LookupBridge& lookups;
};

/// Everything a dialog shows. The window renders it as a whole after each call.
struct JobDialogState {
  std::string title;
  std::string readOnlyReason;         ///< one line; empty when the job may be changed
  std::string notice;                 ///< one line on what went wrong last; empty otherwise
  std::vector<ControlState> controls; ///< in the order of `JobDialog::specs`
  std::vector<Finding> findings;      ///< worst first
  bool changed = false;               ///< differs from what was loaded or saved last
  bool canRelease = false;            ///< the job has findings or stands at a warning or an error
  bool released = false;              ///< the next run takes the job whatever the check finds
  std::size_t checksLeft = 0;         ///< positions still to be checked by `checkMore`
};

/// A cell of a dialog's grid.
struct GridCell {
  std::string text;
  CheckStatus picture = CheckStatus::Clean;
  std::string message;     ///< tool tip
  std::string_view bitmap; ///< resource name of the picture that the cell shows; empty for none
};

enum class GridColumnKind : std::uint8_t {
  Picture,
  Text,
  LongText,
  Number,
  Money,
  Date,
  Unit,
  Check,
  Button
};

struct GridColumn {
  std::string_view name; ///< column of the table, or the heading of one that is not stored
  std::string_view caption;
  GridColumnKind kind = GridColumnKind::Text;
  bool editable = false;
  bool hidden = false;           ///< kept for the code, not shown
  bool customerSpecific = false; ///< shown in customer-specific mode only
};

/// The grid of a dialog: the contracts of a customer or the positions of an order. Rows are counted from 0.
class JobGrid {
public:
  virtual ~JobGrid() = default;
  virtual std::string_view name() const = 0; ///< object name of the grid
  virtual std::span<const GridColumn> columns() const = 0;
  virtual std::size_t rowCount() const = 0;
  virtual GridCell cell(std::size_t row, std::size_t column) const = 0;
  /// One line below the grid; empty for none.
  virtual std::string summary() const { return {}; }
  virtual bool editable() const { return false; }
  /// What the unit column offers.
  virtual const ComboRows& units() const;
  /// Sets a cell and checks its row again; false, with the reason in the cell's message, when the text cannot
  /// stand in this column. The cell then keeps its value.
  virtual bool edit(std::size_t row, std::size_t column, std::string_view text);
  /// Appends an empty row; its number.
  virtual std::size_t addRow();
  virtual void removeRow(std::size_t row);
  /// Sets cells from tab separated lines, downwards and to the right of a cell; rows are appended as needed.
  /// The number of cells that could not be set.
  virtual std::size_t paste(std::size_t row, std::size_t column, std::string_view text);
  /// The row of a position; null when there is none.
  virtual std::optional<std::size_t> rowOf(std::string_view item) const = 0;
};

/// The dialog of one staged job.
///
/// The window calls a member for each thing that the clerk does and then shows `state()` again. Nothing is
/// written before `save`. Members do not raise: what fails is told to the diagnostics and stands in
/// `JobDialogState::notice`; what the clerk typed stays.
class JobDialog {
public:
  explicit JobDialog(const DialogContext& context) : context_(context) {}
  JobDialog(const JobDialog&) = delete;
  JobDialog& operator=(const JobDialog&) = delete;
  virtual ~JobDialog() = default;

  /// Reads the job and checks it. False when there is no such job or it cannot be read; `state().notice`
  /// says why.
  bool load(std::string_view jobId);

  /// The groups of controls from left to right, top to bottom.
  virtual std::span<const ControlGroup> groups() const = 0;
  /// The name of the button that closes without saving.
  virtual std::string_view cancelButton() const = 0;
  /// The grid below the controls; null for none.
  virtual JobGrid* grid() { return nullptr; }

  /// All controls of all groups that are shown, in order.
  const std::vector<const ControlSpec*>& specs() const { return specs_; }
  /// The place of a control in `specs`; null when there is no such control.
  std::optional<std::size_t> indexOf(std::string_view control) const;
  const JobDialogState& state() const { return state_; }
  const ComboContent& combo(std::size_t control) const { return combos_[control]; }
  const std::string& jobId() const { return jobId_; }

  /// The clerk has typed or chosen; nothing is checked yet.
  void type(std::size_t control, std::string_view text);
  /// The clerk leaves the control: its checks run again.
  void leave(std::size_t control);
  /// Opens the control's lookup and takes over what was chosen. False when nothing was chosen.
  bool lookUp(std::size_t control);
  /// Takes over the stored value from which the control differs.
  void takeMaster(std::size_t control);
  void release(bool on);
  /// Checks up to `count` further positions; the number that is left.
  virtual std::size_t checkMore(std::size_t count);

  /// Writes the job. False when it could not be written; the message was shown then and the input stays.
  bool save();
  /// Deletes the job after a question. True when it is gone.
  bool erase();

protected:
  // See job_dialog.cpp: the steps that the three kinds of dialog fill in.
  virtual bool isReadOnly(std::int16_t jobType) const = 0;
  virtual std::string titleOf(std::int16_t jobType) const = 0;

  DialogContext context_;
  std::string jobId_;
  std::vector<const ControlSpec*> specs_;
  std::vector<ComboContent> combos_;
  JobDialogState state_;
  FindingList findings_;
};

} // namespace qx
