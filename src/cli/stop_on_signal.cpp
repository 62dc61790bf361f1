#include "cli/stop_on_signal.h"

namespace qx::cli {
namespace {

void askToStop(void* context) {
  auto& stop = *static_cast<StandingStop*>(context);
  if (stop.ask()) stop.engine().interruptStatement();
}

} // namespace

StopOnSignal::StopOnSignal(ImportJobObject2& engine) : stop_(engine), requests_(askToStop, &stop_) {}

} // namespace qx::cli
