// Hints: findings that a user should know about but that change neither status nor code of the job.
#pragma once

#include "engine/customer_columns.h"
#include "engine/findings.h"
#include "platform/database.h"

#include <string>
#include <string_view>

namespace qx {

/// The hints of a customer or order job (`kind`); none for a contract or an order of an unknown customer.
Findings jobHints(Connection& connection, std::int16_t kind, const JobFields& job,
                  std::string_view homeCurrency);

/// Possibly unexpected handling of a customer's data. `master` is the customer's row, null for a new
/// customer.
Findings customerHints(const JobFields& job, Recordset* master, std::string_view homeCurrency);

/// Possibly unexpected currency and tax of an order. `customer` is positioned on the order's customer.
Findings orderHints(const JobFields& job, Recordset& customer, Connection& connection,
                    std::string_view homeCurrency);

} // namespace qx
