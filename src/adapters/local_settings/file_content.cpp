#include "adapters/local_settings/file_content.h"

#include "platform/files.h"
#include "platform/path_text.h"

#include <array>
#include <stdexcept>
#include <system_error>

namespace qx {

std::optional<std::string> contentOf(const std::filesystem::path& path) {
  try {
    File file = File::forReading(path);
    constexpr std::size_t blockSize = 4096;
    std::array<char, blockSize> block{};
    std::string content;
    while (const std::size_t count = file.read(block.data(), block.size()))
      content.append(block.data(), count);
    return content;
  } catch (const std::system_error& failure) {
    if (failure.code() == std::errc::no_such_file_or_directory) return std::nullopt;
    throw std::runtime_error("the file '" + textOf(path) + "' cannot be read: " + failure.code().message());
  }
}

} // namespace qx
