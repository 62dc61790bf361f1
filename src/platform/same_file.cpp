#include "platform/same_file.h"

#include <system_error>

namespace qx {
namespace {

std::filesystem::path folderOf(const std::filesystem::path& file) {
  return file.has_parent_path() ? file.parent_path() : ".";
}

} // namespace

bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other) {
  std::error_code absent;
  if (std::filesystem::equivalent(one, other, absent)) return true;
  return one.filename() == other.filename() &&
         std::filesystem::equivalent(folderOf(one), folderOf(other), absent);
}

} // namespace qx
