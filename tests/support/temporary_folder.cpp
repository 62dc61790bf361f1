#include "support/temporary_folder.h"

#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <system_error>

namespace qx {

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  // False for a name that exists already.
  do path_ = std::filesystem::temp_directory_path() / ("qx-test-" + std::to_string(random()));
  while (!std::filesystem::create_directory(path_));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

void TemporaryFolder::write(const std::filesystem::path& name, std::string_view content) const {
  const auto file = path_ / name;
  std::filesystem::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.exceptions(std::ios::badbit | std::ios::failbit);
  stream.write(content.data(), static_cast<std::streamsize>(content.size()));
  stream.close();
}

std::string TemporaryFolder::read(const std::filesystem::path& name) const {
  std::ifstream stream(path_ / name, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + (path_ / name).string());
  return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace qx
