// How the program ends when it runs out of memory.
#pragma once

namespace qx::cli {

/// Prints a sentence to standard error without allocating memory and returns the exit status.
int endOutOfMemory() noexcept;

/// While it exists, running out of memory where nothing can catch it ends the program as `endOutOfMemory`
/// does instead of an abort.
class OutOfMemoryGuard {
public:
  OutOfMemoryGuard() noexcept;
};

} // namespace qx::cli
