// What the SQLSTATE of a failure means, whoever reports it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

namespace qx::relational {

/// Who must act.
enum class FailureKind : std::uint8_t {
  Statement,   ///< this statement was refused
  Conflict,    ///< the unit gave way to another program's
  Busy,        ///< another program held a row for too long
  Interrupted, ///< the statement was ended, by request or by a limit of the server
  Rights,      ///< the user may not do this
  Store,       ///< the server or the connection cannot go on
};

FailureKind failureKind(std::string_view sqlState);
/// Whether the connection is gone.
bool isLostConnection(std::string_view sqlState);

/// Error numbers of a product with the SQLSTATE that they stand for.
using NumberedStates = std::span<const std::pair<int, std::string_view>>;
/// Those of Microsoft SQL Server, whose own states tell too little.
extern const NumberedStates sqlServerStates;
/// The state of a number, else the one that was reported.
std::string_view tellingState(NumberedStates states, int number, std::string_view reported);

} // namespace qx::relational
