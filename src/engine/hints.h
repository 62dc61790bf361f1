// What a user should know about a job that is no fault of it: findings that change neither its status nor its
// code.
#pragma once

#include "engine/customer_columns.h"
#include "engine/findings.h"
#include "platform/database.h"

#include <string>
#include <string_view>

namespace qx {

/// Those of a customer or order job (`kind`); of a contract, or an order of an unknown customer, there are
/// none.
Findings jobHints(Connection& connection, std::int16_t kind, const JobFields& job,
                  std::string_view homeCurrency);

/// What becomes of a customer's data that its sender may not expect. `master` is the customer's row, null for
/// a new customer.
Findings customerHints(const JobFields& job, Recordset* master, std::string_view homeCurrency);

/// Which currency and tax an order gets that its sender may not expect. `customer` stands on the order's
/// customer.
Findings orderHints(const JobFields& job, Recordset& customer, Connection& connection,
                    std::string_view homeCurrency);

} // namespace qx
