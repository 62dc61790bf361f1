// Which columns of the customer master a job writes, and from what.
#pragma once

#include "platform/column_name.h"
#include "platform/value.h"

#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace qx {

/// Reads a field of the job at hand; null for a column that its table lacks.
using JobFields = std::function<const Value&(ColumnName)>;

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

/// An address that a job may bring along, and the number under which it is stored.
struct BroughtAddress {
  std::string_view name; ///< as the clerk calls it
  ColumnName customer;
  ColumnName number;
  std::array<ColumnName, 7> lines; ///< in the order of `Adresse`
};
std::span<const BroughtAddress> broughtAddresses();

/// The bank code that the job gives; null when the sender speaks of neither of its fields.
const Value& bankCode(const JobFields& job);

/// What the job writes into the column, null to empty it; nothing where the column stays as it is.
std::optional<Value> writtenBy(const JobFields& job, const CustomerColumn& field, bool isNew);

} // namespace qx
