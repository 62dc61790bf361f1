// The four groups of tables that make up the schema.
#pragma once

#include "erp/schema_table.h"

#include <span>

namespace qx::erp {

/// The staged jobs and the lock.
std::span<const SchemaTable> stagingTables();
/// Customers, addresses, contracts and the code tables about them.
std::span<const SchemaTable> customerTables();
/// Orders, articles, stock, tax and cost assignment.
std::span<const SchemaTable> orderTables();
/// Protocols and what the ERP's own components need.
std::span<const SchemaTable> componentTables();

} // namespace qx::erp
