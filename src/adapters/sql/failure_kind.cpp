#include "adapters/sql/failure_kind.h"

#include <algorithm>
#include <array>

namespace qx::relational {
namespace {

struct StateRule {
  std::string_view prefix; ///< of SQLSTATE
  FailureKind kind;
};

/// The first rule that fits holds; every other state is a refused statement.
constexpr std::array stateRules{
    StateRule{"40001", FailureKind::Conflict},    // serialisation failure
    StateRule{"40P01", FailureKind::Conflict},    // deadlock
    StateRule{"55P03", FailureKind::Busy},        // a row was locked for longer than the limit
    StateRule{"57014", FailureKind::Interrupted}, // cancelled
    StateRule{"HYT", FailureKind::Interrupted},   // time limit of the driver
    StateRule{"HY008", FailureKind::Interrupted}, // cancelled in the driver
    StateRule{"42501", FailureKind::Rights},      StateRule{"08", FailureKind::Store}, // connection
    StateRule{"25006", FailureKind::Store}, // the server is read-only
    StateRule{"28", FailureKind::Store},    // login
    StateRule{"3D", FailureKind::Store},    // no such database
    StateRule{"53", FailureKind::Store},    // disk full, memory, connections
    StateRule{"57", FailureKind::Store},    // shut down, crashed, not ready
    StateRule{"58", FailureKind::Store},    // input/output error
    StateRule{"F0", FailureKind::Store},    // configuration
    StateRule{"XX", FailureKind::Store},    // damage
    StateRule{"IM", FailureKind::Store},    // driver manager
    StateRule{"HY001", FailureKind::Store}, // memory
};

constexpr std::array serverStates{
    std::pair<int, std::string_view>{1222, "55P03"}, // a row was locked for longer than the limit
    std::pair<int, std::string_view>{1205, "40001"}, // deadlock
    std::pair<int, std::string_view>{3960, "40001"}, // another program has changed the row since
    std::pair<int, std::string_view>{229, "42501"},  // rights on a table, a column, the database
    std::pair<int, std::string_view>{230, "42501"},
    std::pair<int, std::string_view>{262, "42501"},
    std::pair<int, std::string_view>{1105, "53100"}, // the data or their log are full
    std::pair<int, std::string_view>{9002, "53100"},
    std::pair<int, std::string_view>{701, "53200"},  // memory
    std::pair<int, std::string_view>{3906, "25006"}, // the database is read-only
    std::pair<int, std::string_view>{823, "58030"},  // input/output error
    std::pair<int, std::string_view>{824, "58030"},
    std::pair<int, std::string_view>{6005, "57P01"}, // shutdown
};

} // namespace

const NumberedStates sqlServerStates = serverStates;

std::string_view tellingState(NumberedStates states, int number, std::string_view reported) {
  const auto known = std::ranges::find(states, number, &std::pair<int, std::string_view>::first);
  return known == states.end() ? reported : known->second;
}

FailureKind failureKind(std::string_view sqlState) {
  const auto* const rule =
      std::ranges::find_if(stateRules, [&](const StateRule& r) { return sqlState.starts_with(r.prefix); });
  return rule == stateRules.end() ? FailureKind::Statement : rule->kind;
}

bool isLostConnection(std::string_view sqlState) {
  return sqlState.starts_with("08") || sqlState == "57P01" || sqlState == "57P02" || sqlState == "57P03";
}

} // namespace qx::relational
