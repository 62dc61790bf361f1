// The context of every dialog.
#pragma once

#include "engine/import_job_object2.h"
#include "ui/database_wait.h"

namespace qx {

class LookupBridge;

/// All of it must outlive the dialog.
struct DialogContext {
  Environment& environment;
  ImportJobObject2& engine;
  LookupBridge& lookups;
  WaitFactory wait{}; ///< for the work that writes
};

} // namespace qx
