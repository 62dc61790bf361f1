// Where the program writes.
#pragma once

#include <ostream>

namespace qx::cli {

/// The result goes to standard output, progress and messages to standard error.
struct Output {
  std::ostream& result;
  std::ostream& messages;
  bool json = false;    ///< the result is one JSON document
  bool verbose = false; ///< tell every trapped failure
};

} // namespace qx::cli
