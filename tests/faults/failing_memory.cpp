// A preloaded library that lets one request of a program for memory fail: the FAULT_AT-th after its libraries
// are loaded. FAULT_REPORT is a file: it gets one line when the request is reached, or without FAULT_AT the
// number of requests when the program ends. With FAULT_PATHS it gets before that the numbers of the requests
// that are the first of their call path: the innermost FAULT_PATHS callers.
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <string_view>
#include <unistd.h>
#include <unwind.h>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

namespace {

std::atomic<bool> counting{false};
std::atomic<unsigned long> requests{0};
unsigned long failAt = 0;
const char* reportFile = nullptr;

void report(std::string_view text) {
  const int out = open(reportFile, O_WRONLY | O_CREAT | O_APPEND, 0600);
  if (out < 0) return;
  [[maybe_unused]] const auto written = write(out, text.data(), text.size());
  close(out);
}

void report(unsigned long number) {
  std::array<char, 24> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size() - 1, number).ptr;
  *end = '\n';
  report({digits.data(), static_cast<std::size_t>(end - digits.data()) + 1});
}

/// The call paths met so far, without memory of the heap.
class CallPaths {
public:
  void setDepth(unsigned long depth) { depth_ = depth; }
  /// Whether nobody has come this way before.
  bool isNew() {
    if (depth_ == 0) return false;
    Walk walk{depth_ + skippedFrames, 14695981039346656037ULL};
    _Unwind_Backtrace(step, &walk);
    for (std::uint64_t at = walk.hash;; ++at) {
      std::uint64_t& slot = seen_[at % seen_.size()];
      if (slot == walk.hash) return false;
      if (slot != 0) continue;
      if (++used_ == seen_.size()) std::abort();
      slot = walk.hash;
      return true;
    }
  }

private:
  struct Walk {
    unsigned long left;
    std::uint64_t hash;
  };
  /// This file's own.
  static constexpr unsigned long skippedFrames = 3;

  static _Unwind_Reason_Code step(_Unwind_Context* context, void* pointer) {
    Walk& walk = *static_cast<Walk*>(pointer);
    walk.hash = (walk.hash ^ _Unwind_GetIP(context)) * 1099511628211ULL;
    return --walk.left == 0 ? _URC_END_OF_STACK : _URC_NO_REASON;
  }

  unsigned long depth_ = 0;
  std::size_t used_ = 0;
  std::array<std::uint64_t, 1 << 18> seen_{};
};

CallPaths callPaths;
/// Requests of this thread are not counted meanwhile.
thread_local bool exempt = false;

void noteCallPath(unsigned long request) {
  // Looking at the stack may itself need memory.
  exempt = true;
  if (callPaths.isNew()) report(request);
  exempt = false;
}

bool fails() {
  if (!counting || exempt) return false;
  const unsigned long request = ++requests;
  if (failAt == 0) noteCallPath(request);
  if (request != failAt) return false;
  report("reached\n");
  errno = ENOMEM;
  return true;
}

const struct Counting {
  Counting() {
    const char* const at = std::getenv("FAULT_AT");
    if (at != nullptr) failAt = std::strtoul(at, nullptr, 10);
    const char* const paths = std::getenv("FAULT_PATHS");
    if (paths != nullptr) callPaths.setDepth(std::strtoul(paths, nullptr, 10));
    reportFile = std::getenv("FAULT_REPORT");
    counting = reportFile != nullptr;
  }
  Counting(const Counting&) = delete;
  Counting& operator=(const Counting&) = delete;
  ~Counting() {
    if (counting && failAt == 0) report(requests.load());
  }
} countingFromHere;

} // namespace

extern "C" {

void* malloc(std::size_t size) noexcept { return fails() ? nullptr : __libc_malloc(size); }

void* calloc(std::size_t count, std::size_t size) noexcept {
  return fails() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) noexcept {
  return fails() ? nullptr : __libc_realloc(memory, size);
}

/// The C library's look-up of accounts itself crashes without memory, before the program has begun its work.
passwd* getpwuid(uid_t user) {
  using Lookup = passwd* (*)(uid_t);
  static const auto lookup = reinterpret_cast<Lookup>(dlsym(RTLD_NEXT, "getpwuid"));
  exempt = true;
  passwd* const entry = lookup(user);
  exempt = false;
  return entry;
}

} // extern "C"
