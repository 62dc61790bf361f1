#include "cli/terminal_text.h"

#include <cstdlib>
#include <memory>
#include <utf8proc.h>

namespace qx::cli {
namespace {

/// The library hands over memory of `malloc`.
struct FreeMemory {
  // NOLINTNEXTLINE(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  void operator()(utf8proc_uint8_t* memory) const { std::free(memory); }
};

const utf8proc_uint8_t* bytesOf(std::string_view text) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast)
  return reinterpret_cast<const utf8proc_uint8_t*>(text.data());
}

} // namespace

std::string composed(std::string_view text) {
  constexpr auto form = static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE);
  utf8proc_uint8_t* result = nullptr;
  const auto length = utf8proc_map(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &result, form);
  const std::unique_ptr<utf8proc_uint8_t, FreeMemory> owner(result);
  if (length < 0) return std::string(text);
  return {result, result + length};
}

std::string fitted(std::string_view text, std::size_t width, Fitting fitting) {
  std::string line;
  std::size_t used = 0;
  // Where the text ends when it is cut.
  std::size_t kept = 0;
  std::size_t keptColumns = 0;
  while (!text.empty() && text.front() != '\r' && text.front() != '\n') {
    utf8proc_int32_t character = 0;
    const auto length =
        utf8proc_iterate(bytesOf(text), static_cast<utf8proc_ssize_t>(text.size()), &character);
    const bool shown = length > 0 && utf8proc_category(character) != UTF8PROC_CATEGORY_CC;
    const std::size_t columns = shown ? static_cast<std::size_t>(utf8proc_charwidth(character)) : 1;
    if (fitting == Fitting::Cut && used + columns > width) {
      line.resize(kept);
      used = keptColumns;
      if (used < width) {
        line += "…";
        ++used;
      }
      break;
    }
    const auto bytes = static_cast<std::size_t>(length > 0 ? length : 1);
    line += shown ? text.substr(0, bytes) : " ";
    text.remove_prefix(bytes);
    used += columns;
    if (used < width) {
      kept = line.size();
      keptColumns = used;
    }
  }
  return used < width ? line.append(width - used, ' ') : line;
}

} // namespace qx::cli
