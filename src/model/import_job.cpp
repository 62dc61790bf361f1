#include "model/import_job.h"

namespace qx {

void ImportJob::SubItemMoveFirst() {
  if (SubItemCount() == 0) return;
  cursor_ = 1;
  SubItem = items_.Item(cursor_);
}

void ImportJob::SubItemMoveNext() {
  ++cursor_;
  if (cursor_ <= SubItemCount()) SubItem = items_.Item(cursor_);
}

void ImportJob::SubItemMovePrev() {
  if (cursor_ <= 0) return;
  --cursor_;
  SubItem = items_.Item(cursor_);
}

} // namespace qx
