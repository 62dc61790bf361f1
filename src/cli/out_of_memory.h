// The end of a program that gets no more memory.
#pragma once

namespace qx::cli {

/// Says so on standard error, in one sentence and without any memory, and gives the exit status for it.
int endOutOfMemory() noexcept;

/// As long as it exists, a shortage of memory in places where nobody can catch it ends the program as
/// `endOutOfMemory` does instead of an abort.
class OutOfMemoryGuard {
public:
  OutOfMemoryGuard() noexcept;
};

} // namespace qx::cli
