// Windows has no pager that programs agree on.
#include "adapters/system/pager.h"

namespace qx {

std::unique_ptr<std::ostream> openPager() { return nullptr; }

} // namespace qx
