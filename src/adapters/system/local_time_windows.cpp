#include "adapters/system/local_time.h"

namespace qx {

bool localTime(std::time_t seconds, std::tm& local) { return localtime_s(&local, &seconds) == 0; }

} // namespace qx
