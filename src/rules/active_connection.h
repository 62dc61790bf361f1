// The component's database connection, for code that requires one.
#pragma once

#include "platform/environment.h"

namespace qx {

/// The shared connection. Raises `StoreError` when none has been set.
inline Connection& activeConnection(const Environment& environment) {
  if (!environment.connection) throw StoreError("Es ist keine Datenbank verbunden.", 0);
  return *environment.connection;
}

} // namespace qx
