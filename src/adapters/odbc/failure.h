// What ODBC reports about a call that failed.
#pragma once

#include "adapters/sql/failure_kind.h"

#include <string>
#include <string_view>

namespace qx::odbc {

using relational::FailureKind;

struct Failure {
  std::string sqlState;
  int nativeCode = 0;
  std::string message;

  FailureKind kind() const { return relational::failureKind(sqlState); }
  bool lostConnection() const { return relational::isLostConnection(sqlState); }
};

/// The failure of the last call on a handle. `kind` is one of the SQL_HANDLE constants.
Failure failureOf(short kind, void* handle);

/// Raises the failure of a connection, which is always one of the store.
[[noreturn]] void raiseConnectFailure(const Failure& failure, const std::string& target);

/// Raises the failure as one of the errors of platform/database_error.h. `target`: the database as messages
/// name it. `statement`: the text that was run, whose verb is the right that a refused user lacks.
[[noreturn]] void raiseFailure(const Failure& failure, const std::string& target, std::string_view statement,
                               bool interruptRequested);

} // namespace qx::odbc
