#include "engine/host_undo.h"

#include "platform/trapped.h"

namespace qx {

void undoStep(Diagnostics& diagnostics, std::string_view where, const std::function<void()>& step) {
  trapped(diagnostics, {where}, step);
}

} // namespace qx
