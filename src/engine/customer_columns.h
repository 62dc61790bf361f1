// Which columns of the customer master a job writes, and from what.
#pragma once

#include "engine/job_fields.h"

#include <optional>
#include <span>

namespace qx {

/// A column of the customer master and the job field that it is copied from.
struct CustomerColumn {
  ColumnName column;
  ColumnName jobField;
  /// An update with an empty text, too, leaves what the master holds.
  bool keptWhenEmpty = false;

  consteval CustomerColumn(ColumnName name) : column(name), jobField(name) {}
  consteval CustomerColumn(ColumnName name, ColumnName source) : column(name), jobField(source) {}
  consteval CustomerColumn kept() const {
    CustomerColumn field = *this;
    field.keptWhenEmpty = true;
    return field;
  }
};

/// In the order in which they are written.
std::span<const CustomerColumn> writtenCustomerColumns();

/// What the job writes into the column, null to empty it; nothing where the column stays as it is.
std::optional<Value> writtenBy(const JobFields& job, const CustomerColumn& field, bool isNew);

} // namespace qx
