// The columns of the customer master that a job writes, and their sources.
#pragma once

#include "engine/job_fields.h"

#include <optional>
#include <span>

namespace qx {

/// A column of the customer master and the job field that it is copied from.
struct CustomerColumn {
  ColumnName column;
  ColumnName jobField;
  /// An update with an empty text also leaves the master's value unchanged.
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

/// The value that the job writes, null to clear the column; nothing where the column stays unchanged.
std::optional<Value> writtenBy(const JobFields& job, const CustomerColumn& field, bool isNew);

} // namespace qx
