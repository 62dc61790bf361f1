// GUIDs from the random numbers of the kernel.
#include "adapters/system/random_guids.h"
#include "adapters/system/system_sources.h"

#include <cerrno>
#include <sys/random.h>

namespace qx {
namespace {

bool randomBytesOfKernel(std::span<std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = getrandom(bytes.data(), bytes.size(), 0);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

} // namespace

std::optional<GuidFields> SystemGuidSource::create() {
  return RandomGuidSource(randomBytesOfKernel).create();
}

} // namespace qx
