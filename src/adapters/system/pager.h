// The program by which the user reads long texts.
#pragma once

#include <memory>
#include <ostream>

namespace qx {

/// A stream to the program that `$PAGER` names; null when there is none, or it cannot be started. The
/// destructor waits until the user has ended it.
std::unique_ptr<std::ostream> openPager();

} // namespace qx
