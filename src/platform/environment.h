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
  std::string program = {};               ///< name and version of the program, for the book of runs
};

/// The shared connection. Raises `StoreError` when none has been set.
inline Connection& activeConnection(const Environment& environment) {
  if (!environment.connection) throw StoreError("Es ist keine Datenbank verbunden.", 0);
  return *environment.connection;
}

/// Shows a box. A failure of the desktop is reported to the diagnostics, with the text.
void showMessage(const Environment& environment, const Message& message);

/// Asks in a box. A failure of the desktop is reported to the diagnostics and counts as no.
bool askQuestion(const Environment& environment, const Message& question);

} // namespace qx
