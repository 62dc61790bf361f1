#include "engine/job_row.h"

#include <utility>

namespace qx {
namespace {

const Value nullValue;

} // namespace

void MissingColumns::report(ColumnName column) {
  if (reported_.insert(column.hash()).second)
    diagnostics_.report({"ImportKopf", "the table has no column '" + std::string(column.text()) + "'", ""});
}

const Value& JobRow::value(ColumnName column) const {
  if (rows_.hasField(column)) return rows_.value(column);
  missing_.report(column);
  return nullValue;
}

std::string JobRow::firstOf(ColumnName first, ColumnName second) const {
  std::string found = text(first);
  return found.empty() ? text(second) : found;
}

void JobRow::set(ColumnName column, Value value) {
  if (rows_.hasField(column))
    rows_.set(column, std::move(value));
  else
    missing_.report(column);
}

} // namespace qx
