#include "platform/path_text.h"

namespace qx {

std::filesystem::path pathOf(std::string_view name) { return {std::u8string(name.begin(), name.end())}; }

std::string textOf(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

} // namespace qx
