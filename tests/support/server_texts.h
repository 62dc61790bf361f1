// What the component would send to SQL Server, for the grammar that reads it.
#pragma once

#include "platform/database.h"

#include <memory>

namespace qx {

/// With $QX_STATEMENTS, a connection over this one that also appends to that file how each statement, and
/// each row that a record set writes, reads on SQL Server, one a line. It asks in that server's way where
/// both understand it. Without $QX_STATEMENTS the connection itself.
std::shared_ptr<Connection> withServerTexts(std::shared_ptr<Connection> connection);

/// The connection beneath, for statements of a test that are not the component's.
Connection& withoutServerTexts(Connection& connection);

} // namespace qx
