// A disk that is full, for this process and those it starts.
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace qx {

/// While it lives no file can grow beyond a size. The files of a database are no exception.
class FullDisk {
public:
  explicit FullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    // Otherwise the first write beyond the size ends the process.
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }

private:
  rlimit before_{};
};

} // namespace qx
