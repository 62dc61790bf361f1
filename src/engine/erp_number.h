// Under which number the ERP has what a job became.
#pragma once

#include "platform/database.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace qx {

/// The remark of a written order: its own and the number.
std::string remarkWithOrder(std::string_view remark, std::int32_t order);

/// The number of a done job: of the order, which its remark ends with, else of the contract or the customer.
/// Empty for every other job. From a row with `JobType`, `Kundennummer`, `Vertragsnummer` and `Bemerkung`.
std::string erpNumber(Recordset& header);

} // namespace qx
