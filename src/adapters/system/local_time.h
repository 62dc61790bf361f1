// The system's time as local time.
#pragma once

#include <ctime>

namespace qx {

/// False when the system cannot convert it.
bool localTime(std::time_t seconds, std::tm& local);

} // namespace qx
