// The protocol of a day, as it is read.
#pragma once

#include "platform/database.h"

#include <functional>
#include <string>
#include <vector>

namespace qx {

/// The protocols of the day, oldest first: after a run under another session date a new one is begun. Here
/// and below database errors reach the caller.
std::vector<std::string> protocolsOf(Connection& connection, const Date& day);

/// Passes each line of the protocols, in order.
void forEachProtocolLine(Connection& connection, const std::vector<std::string>& ids,
                         const std::function<void(Recordset&)>& take);

/// The lines as a German text for reading and printing, each with its reasons below; empty without lines.
std::string dayProtocolText(Connection& connection, const Date& day);

} // namespace qx
