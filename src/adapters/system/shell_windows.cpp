#include "adapters/system/shell.h"

namespace qx {

// A file name holds no quotation mark there.
std::string shellWord(const std::string& text) {
  const bool plain = !text.empty() && text.find_first_of(" \t&()[]{}^=;!'+,`~%") == std::string::npos;
  return plain ? text : '"' + text + '"';
}

} // namespace qx
