// A preloaded library that lets one request of a program for memory fail: the FAULT_AT-th after its libraries
// are loaded. FAULT_REPORT is a file: it gets one line when the request is reached, or without FAULT_AT the
// number of requests when the program ends.
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <fcntl.h>
#include <string_view>
#include <unistd.h>

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

bool fails() {
  if (!counting || ++requests != failAt) return false;
  report("reached\n");
  errno = ENOMEM;
  return true;
}

const struct Counting {
  Counting() {
    const char* const at = std::getenv("FAULT_AT");
    if (at != nullptr) failAt = std::strtoul(at, nullptr, 10);
    reportFile = std::getenv("FAULT_REPORT");
    counting = reportFile != nullptr;
  }
  Counting(const Counting&) = delete;
  Counting& operator=(const Counting&) = delete;
  ~Counting() {
    if (!counting || failAt != 0) return;
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size() - 1, requests.load()).ptr;
    *end = '\n';
    report({digits.data(), static_cast<std::size_t>(end - digits.data()) + 1});
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

} // extern "C"
