// What a fuzz target asks of the code that it tries.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace qx {

/// Ends the program, which keeps the input, when something does not hold.
inline void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", what);
  std::abort();
}

} // namespace qx
