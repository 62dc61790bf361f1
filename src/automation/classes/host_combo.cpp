#include "automation/classes/host_combo.h"

#include "automation/automation_error.h"

namespace qx::automation {

void HostCombo::setRowSource(ComboRows rows) {
  recordset_ = host_.recordsetOf(rows);
  put(*combo_, "RowSource", recordset_);
}

void HostCombo::hideColumn(int index) {
  const ObjectPointer column = objectOf(call(*combo_, "Columns", {std::int32_t{index}}));
  if (!column) throw AutomationError(ErrorNumber::ObjectNotSet, "Die Auswahlliste hat keine Spalten.");
  put(*column, "Visible", false);
}

void HostCombo::setColumnHeaders(bool shown) { put(*combo_, "ColumnHeaders", shown); }

/// A bookmark belongs to its record set, which is the only one to give it.
void HostCombo::setBookmark(std::size_t row) {
  call(*recordset_, "MoveFirst");
  call(*recordset_, "Move", {static_cast<std::int32_t>(row)});
  put(*combo_, "Bookmark", get(*recordset_, "Bookmark"));
}

} // namespace qx::automation
