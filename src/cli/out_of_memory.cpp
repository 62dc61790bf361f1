#include "cli/out_of_memory.h"

#include "platform/terminal.h"
#include "program/program_error.h"

#include <cstdlib>
#include <exception>
#include <new>
#include <string_view>

namespace qx::cli {
namespace {

// Global because a terminate handler has no argument by which to find its predecessor.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
std::terminate_handler previousHandler = nullptr;

[[noreturn]] void endUncaught() {
  try {
    if (const auto current = std::current_exception()) std::rethrow_exception(current);
  } catch (const std::bad_alloc&) {
    std::_Exit(endOutOfMemory());
  } catch (...) {
    // The library's handler reports what it is.
  }
  if (previousHandler != nullptr) previousHandler();
  std::abort();
}

} // namespace

int endOutOfMemory() noexcept {
  constexpr std::string_view sentence = "qximportjob: out of memory\n";
  writeToStandardError(sentence);
  return static_cast<int>(ExitCode::Failure);
}

OutOfMemoryGuard::OutOfMemoryGuard() noexcept { previousHandler = std::set_terminate(endUncaught); }

} // namespace qx::cli
