// The module-wide state of the component, as one object that is passed in.
#pragma once

#include "platform/desktop.h"
#include "platform/erp_components.h"
#include "platform/system.h"

#include <memory>
#include <string>

namespace qx {

/// The ports, which the composition root owns, and the state that all objects of one component share: the
/// database connection, the ERP session and the most recently created order.
struct Environment {
  ErpComponents& components;
  Desktop& desktop;
  JobView& jobView;
  Clock& clock;
  GuidSource& guids;
  LocalSettings& localSettings;
  IniFile& iniFile;
  Diagnostics& diagnostics;
  SessionLiveness& liveness;

  std::shared_ptr<Connection> connection; ///< null before one is set
  std::shared_ptr<Session> session;       ///< null before one is connected or adopted
  std::string currentOrder;               ///< `JobID` of the most recently created `Auftrag`
};

} // namespace qx
