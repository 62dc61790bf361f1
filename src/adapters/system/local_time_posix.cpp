#include "adapters/system/local_time.h"

namespace qx {

bool localTime(std::time_t seconds, std::tm& local) { return localtime_r(&seconds, &local) != nullptr; }

} // namespace qx
