// A drop-down list of the host.
#pragma once

#include "automation/classes/component.h"

namespace qx::automation {

/// A data-bound list control with `RowSource`, `Columns`, `ColumnHeaders` and `Bookmark`. Raises what the
/// control raises.
class HostCombo final : public ComboTarget {
public:
  HostCombo(ObjectPointer combo, HostObjects& host) : combo_(std::move(combo)), host_(host) {}

  void setRowSource(ComboRows rows) override;
  void hideColumn(int index) override;
  void setColumnHeaders(bool shown) override;
  void setBookmark(std::size_t row) override;

private:
  ObjectPointer combo_;
  HostObjects& host_;
  ObjectPointer recordset_;
};

} // namespace qx::automation
