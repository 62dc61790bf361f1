// Works through waiting jobs in the groups in which the program commits them.
#pragma once

#include "floor/database.h"

#include <functional>
#include <string>

namespace qx::bench {

/// Every run has a database of its own, so the name of its protocol is always the same.
inline constexpr std::string_view protocolId = "00000000000000000000000000000001";

/// The time stamp of a German date: "24.12.2026" becomes "20261224000000".
std::string dayStamp(std::string_view date);

/// Writes the head of the protocol, reads the list (row number, key) to its end, then writes one job after
/// the other, committed every 100 jobs or 200 ms.
void runJobs(Database& database, std::string_view list, const std::function<void(std::int64_t)>& write);

} // namespace qx::bench
