#include "adapters/system/quiet_thread.h"

#include <utility>

namespace qx {

// Control events come in a thread of the system.
std::thread quietThread(std::function<void()> work) { return std::thread(std::move(work)); }

} // namespace qx
