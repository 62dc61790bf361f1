// Watched folders by inotify.
#include "platform/folder_watch.h"

#include "platform/path_text.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <string_view>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace qx {

struct FolderWatch::State {
  /// A descriptor that is closed with the object.
  class Descriptor {
  public:
    /// Raises `std::system_error` for none.
    Descriptor(int descriptor, const std::filesystem::path& of) : descriptor_(descriptor) {
      if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), textOf(of));
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { ::close(descriptor_); }

    int get() const { return descriptor_; }

  private:
    int descriptor_;
  };

  explicit State(const std::filesystem::path& path)
      : folder(path), lock(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), path),
        events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC), path),
        stop(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC), path) {
    const auto raise = [&] { throw std::system_error(errno, std::generic_category(), textOf(path)); };
    if (flock(lock.get(), LOCK_EX | LOCK_NB) != 0) raise();
    // Nothing is told of a folder that is deleted while it is open, as the lock keeps it.
    constexpr std::uint32_t noticed = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVE_SELF;
    if (inotify_add_watch(events.get(), path.c_str(), noticed | IN_ONLYDIR) < 0) raise();
  }

  void read(FolderEvents& into) const {
    constexpr std::size_t size = 64 * (sizeof(inotify_event) + 256);
    std::array<char, size> buffer{};
    for (;;) {
      const ssize_t count = ::read(events.get(), buffer.data(), buffer.size());
      if (count <= 0) return;
      for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        if ((event.mask & (IN_CLOSE_WRITE | IN_MOVED_TO)) != 0 && event.len > 0)
          into.finished.emplace_back(buffer.data() + at + sizeof event);
        at += sizeof event + event.len;
      }
    }
  }

  bool isGone() const {
    struct stat open {};
    struct stat named {};
    return fstat(lock.get(), &open) != 0 || stat(folder.c_str(), &named) != 0 ||
           open.st_ino != named.st_ino || open.st_dev != named.st_dev;
  }

  std::filesystem::path folder;
  Descriptor lock;
  Descriptor events;
  Descriptor stop;
  std::atomic<bool> stopped{false};
};

FolderWatch::FolderWatch(const std::filesystem::path& folder) : state_(std::make_unique<State>(folder)) {}

FolderWatch::~FolderWatch() = default;

FolderEvents FolderWatch::wait(std::chrono::milliseconds limit) {
  std::array<pollfd, 2> waited{{{state_->events.get(), POLLIN, 0}, {state_->stop.get(), POLLIN, 0}}};
  poll(waited.data(), waited.size(), static_cast<int>(limit.count()));
  FolderEvents events;
  state_->read(events);
  events.gone = state_->isGone();
  return events;
}

void FolderWatch::interrupt() noexcept {
  state_->stopped.store(true);
  const std::uint64_t one = 1;
  // Only a counter that is full refuses it, and that ends the wait as well.
  [[maybe_unused]] const ssize_t written = ::write(state_->stop.get(), &one, sizeof one);
}

bool FolderWatch::interrupted() const noexcept { return state_->stopped.load(); }

bool isBeingWritten(const std::filesystem::path& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) return false;
  // Who opens it meanwhile waits until the lease is given back; the signal that tells so must not end us.
  fcntl(descriptor, F_SETSIG, SIGURG);
  const bool written = fcntl(descriptor, F_SETLEASE, F_RDLCK) != 0 && errno == EAGAIN;
  ::close(descriptor);
  return written;
}

} // namespace qx
