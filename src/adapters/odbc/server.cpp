#include "adapters/odbc/server.h"

#include "model/text.h"

#include <algorithm>
#include <array>

namespace qx::odbc {
namespace {

using Setting = std::pair<std::string_view, std::string_view>;

constexpr std::array postgresSettings{
    // Savepoints are the adapter's; the driver would set one per statement, a round trip each.
    Setting{"Protocol", "7.4-0"},
    Setting{"UseServerSidePrepare", "1"},
    Setting{"UseDeclareFetch", "0"},
    Setting{"UpdatableCursors", "0"},
    // Line breaks are data.
    Setting{"LFConversion", "0"},
    Setting{"BoolsAsChar", "0"},
    Setting{"OptionalErrors", "0"},
    // A dead server is noticed although nothing comes back from it.
    Setting{"Pqopt", "connect_timeout=15 keepalives_idle=30 tcp_user_timeout=60000"},
};

/// A lock is waited for in portions, so that the caller may end the wait; a portion is longer than the second
/// after which the server looks for deadlocks.
constexpr std::array servers{
    Server{.product = "PostgreSQL",
           .dialect = &relational::postgresDialect,
           .settings = postgresSettings,
           .greeting = "Select current_setting('server_encoding'), set_config('lock_timeout', '2s', false), "
                       "set_config('application_name', 'qximportjob', false)",
           .utf8 = "UTF8",
           .keyedTables =
               "Select c.relname, a.attname From pg_class c Join pg_attribute a On a.attrelid = c.oid "
               "Where a.attidentity <> '' And c.relkind = 'r' And pg_table_is_visible(c.oid)",
           .tables = "Select table_name From information_schema.tables Where table_schema = current_schema()",
           .triggeredTables = "Select c.relname From pg_trigger t Join pg_class c On c.oid = t.tgrelid Where "
                              "Not t.tgisinternal "
                              "Union Select tablename From pg_rules",
           .begin = "Begin;Savepoint step",
           .beginReading = "Begin Isolation Level Repeatable Read Read Only;Savepoint step",
           .commit = "Commit",
           .rollback = "Rollback",
           .set = "Savepoint ",
           .release = "Release Savepoint ",
           .undo = "Rollback To Savepoint "},
};

} // namespace

const Server* findServer(std::string_view product) {
  const auto* const found = std::ranges::find_if(
      servers, [&](const Server& server) { return equalCodes(server.product, product); });
  return found == servers.end() ? nullptr : found;
}

const Server* guessServer(std::string_view driverName) {
  const std::string lower = asciiLower(driverName);
  const auto* const found = std::ranges::find_if(servers, [&](const Server& server) {
    return lower.find(asciiLower(server.product)) != std::string::npos;
  });
  return found == servers.end() ? nullptr : found;
}

} // namespace qx::odbc
