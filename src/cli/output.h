// Where the program writes.
#pragma once

#include <ostream>

namespace qx::cli {

/// The result goes to standard output, messages to standard error; control characters are removed from both.
struct Output {
  std::ostream& result;
  std::ostream& messages;
  std::ostream& terminal; ///< standard error as it is, for a progress bar that moves the cursor
  bool json = false;      ///< the result is one JSON document
};

} // namespace qx::cli
