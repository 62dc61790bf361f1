#include "platform/one_line.h"

namespace qx {

std::string oneLine(std::string_view text) {
  std::string line;
  line.reserve(text.size());
  bool inBreak = false;
  for (const char c : text) {
    const bool isBreak = c == '\r' || c == '\n';
    if (!isBreak)
      line += c;
    else if (!inBreak)
      line += ' ';
    inBreak = isBreak;
  }
  return line;
}

} // namespace qx
