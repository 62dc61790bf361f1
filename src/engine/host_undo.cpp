#include "engine/host_undo.h"

#include <exception>

namespace qx {

void undoStep(Diagnostics& diagnostics, std::string_view where, const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    diagnostics.report({where, error.what(), ""});
  }
}

} // namespace qx
