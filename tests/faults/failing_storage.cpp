// A preloaded library that lets one call of a program to its files fail. Only files whose name begins with
// FAULT_NAME count: a database, what lies beside it, and its folder. The FAULT_AT-th call of the kind
// FAULT_KIND (write, sync, truncate or open) has the effect FAULT_EFFECT:
//   error  this call fails with an input/output error
//   full   this write stores half of its bytes; it and all later calls of its kind find no space
//   kill   the process dies before the call
// FAULT_REPORT is a file: it gets one line when the call is reached, or without FAULT_AT the number of calls
// of every kind when the program ends.
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

enum Kind : std::size_t { Write, Sync, Truncate, Open, kindCount };
constexpr std::array<std::string_view, kindCount> kindNames{"write", "sync", "truncate", "open"};

std::string_view variable(const char* name) {
  const char* text = std::getenv(name);
  return text == nullptr ? std::string_view() : text;
}

/// The function of that name that this library replaces.
template <class Function>
Function* behind(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

class Faults {
public:
  Faults() : name_(variable("FAULT_NAME")), kind_(variable("FAULT_KIND")), effect_(variable("FAULT_EFFECT")) {
    const std::string at(variable("FAULT_AT"));
    if (!at.empty()) at_ = std::stoul(at);
  }
  void reportCalls() const {
    if (at_ != 0) return;
    std::string lines;
    for (std::size_t i = 0; i < kindCount; ++i)
      lines.append(kindNames[i]).append(" ").append(std::to_string(calls_[i])).append("\n");
    report(lines);
  }

  bool watches(std::string_view path) const {
    const auto slash = path.rfind('/');
    const std::string_view last = slash == std::string_view::npos ? path : path.substr(slash + 1);
    return !name_.empty() && last.starts_with(name_);
  }
  bool watches(int file) const { return inRange(file) && watched_[static_cast<std::size_t>(file)]; }
  void remember(int file, bool watched) {
    if (inRange(file)) watched_[static_cast<std::size_t>(file)] = watched;
  }

  enum class Verdict { Pass, Error, HalfFull, Full };

  Verdict next(Kind kind) {
    const unsigned long call = ++calls_[kind];
    if (at_ == 0 || kindNames[kind] != kind_ || call < at_) return Verdict::Pass;
    if (call == at_) report(kindNames[kind]);
    if (effect_ == "full") return call == at_ ? Verdict::HalfFull : Verdict::Full;
    if (call > at_) return Verdict::Pass;
    if (effect_ == "kill") raise(SIGKILL);
    return Verdict::Error;
  }

private:
  bool inRange(int file) const { return file >= 0 && static_cast<std::size_t>(file) < watched_.size(); }
  static void report(std::string_view text) {
    const std::string file(variable("FAULT_REPORT"));
    const int out =
        behind<int(const char*, int, ...)>("open")(file.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    if (out < 0) return;
    [[maybe_unused]] const auto written =
        behind<ssize_t(int, const void*, std::size_t)>("write")(out, text.data(), text.size());
    behind<int(int)>("close")(out);
  }

  std::string_view name_, kind_, effect_;
  unsigned long at_ = 0;
  std::array<std::atomic<unsigned long>, kindCount> calls_{};
  std::array<std::atomic<bool>, 1024> watched_{};
};

/// Never destroyed: files may still be closed when everything else is gone.
Faults& faults() {
  static Faults& only = *new Faults;
  return only;
}

const struct AtExit {
  AtExit() = default;
  AtExit(const AtExit&) = delete;
  AtExit& operator=(const AtExit&) = delete;
  ~AtExit() { faults().reportCalls(); }
} atExit;

/// What a failing call returns; `errno` says why.
int failure(Faults::Verdict verdict) {
  errno = verdict == Faults::Verdict::Error ? EIO : ENOSPC;
  return -1;
}

/// `store` writes the given number of bytes.
template <class Store>
ssize_t stored(int file, std::size_t size, Store&& store) {
  if (!faults().watches(file)) return store(size);
  const auto verdict = faults().next(Write);
  if (verdict == Faults::Verdict::Pass) return store(size);
  if (verdict == Faults::Verdict::HalfFull && size > 1) return store(size / 2);
  return failure(verdict);
}

template <class Call>
int call(Kind kind, int file, Call&& run) {
  if (!faults().watches(file)) return run();
  const auto verdict = faults().next(kind);
  return verdict == Faults::Verdict::Pass ? run() : failure(verdict);
}

template <class Call>
int opened(const char* path, Call&& run) {
  const bool watched = faults().watches(std::string_view(path));
  if (watched)
    if (const auto verdict = faults().next(Open); verdict != Faults::Verdict::Pass) return failure(verdict);
  const int file = run();
  faults().remember(file, watched);
  return file;
}

} // namespace

extern "C" {

ssize_t write(int file, const void* bytes, std::size_t size) {
  static const auto real = behind<ssize_t(int, const void*, std::size_t)>("write");
  return stored(file, size, [&](std::size_t some) { return real(file, bytes, some); });
}

ssize_t pwrite64(int file, const void* bytes, std::size_t size, off64_t offset) {
  static const auto real = behind<ssize_t(int, const void*, std::size_t, off64_t)>("pwrite64");
  return stored(file, size, [&](std::size_t some) { return real(file, bytes, some, offset); });
}

ssize_t pwrite(int file, const void* bytes, std::size_t size, off_t offset) {
  return pwrite64(file, bytes, size, offset);
}

int fsync(int file) {
  static const auto real = behind<int(int)>("fsync");
  return call(Sync, file, [&] { return real(file); });
}

int fdatasync(int file) {
  static const auto real = behind<int(int)>("fdatasync");
  return call(Sync, file, [&] { return real(file); });
}

int ftruncate64(int file, off64_t size) noexcept {
  static const auto real = behind<int(int, off64_t)>("ftruncate64");
  return call(Truncate, file, [&] { return real(file, size); });
}

int ftruncate(int file, off_t size) noexcept { return ftruncate64(file, size); }

int open64(const char* path, int flags, ...) {
  static const auto real = behind<int(const char*, int, ...)>("open64");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return opened(path, [&] { return real(path, flags, mode); });
}

int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return open64(path, flags, mode);
}

int close(int file) {
  static const auto real = behind<int(int)>("close");
  faults().remember(file, false);
  return real(file);
}

} // extern "C"
