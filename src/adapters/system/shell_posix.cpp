#include "adapters/system/shell.h"

#include <string_view>

namespace qx {

std::string shellWord(const std::string& text) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-/";
  if (!text.empty() && text.find_first_not_of(plain) == std::string::npos) return text;
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

} // namespace qx
