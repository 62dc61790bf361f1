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

constexpr std::array sqlServerSettings{
    // A stream is read while other statements run.
    Setting{"MARS_Connection", "yes"},
};
constexpr std::array sqlServerStates{
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

/// A lock is waited for in portions, so that the caller may end the wait; a portion is longer than the second
/// after which the server looks for deadlocks.
constexpr std::array servers{
    Server{.product = "PostgreSQL",
           .drivers = "postgresql",
           .dialect = &relational::postgresDialect,
           .settings = postgresSettings,
           .states = {},
           .longestShortText = 0,
           .start = {},
           .greeting = "Select current_setting('server_encoding'), set_config('lock_timeout', '2s', false), "
                       "set_config('application_name', 'qximportjob', false)",
           .encoding = "UTF8",
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
    // One state for all reads takes a database that allows it; what it costs stands in docs/servers.md.
    Server{.product = "Microsoft SQL Server",
           .drivers = "sql server",
           .dialect = &relational::sqlServerDialect,
           .settings = sqlServerSettings,
           .states = sqlServerStates,
           .longestShortText = 4000,
           .start = "Set Lock_Timeout 2000;Set Xact_Abort Off",
           .greeting = "Select 'UTF-16' As Encoding",
           .encoding = "UTF-16",
           .keyedTables =
               "Select t.name, c.name From sys.tables t Join sys.columns c On c.object_id = t.object_id "
               "Where t.schema_id = Schema_ID() And c.is_identity = 1 Union All "
               "Select t.name, c.name From sys.tables t Join sys.indexes i On i.object_id = t.object_id And "
               "i.is_primary_key = 1 Join sys.index_columns k On k.object_id = t.object_id And k.index_id = "
               "i.index_id Join sys.columns c On c.object_id = t.object_id And c.column_id = k.column_id "
               "Where t.schema_id = Schema_ID() And c.system_type_id = 127 And Not Exists (Select 1 From "
               "sys.columns o Where o.object_id = t.object_id And o.is_identity = 1)",
           .tables = "Select table_name From information_schema.tables Where table_schema = Schema_Name()",
           .triggeredTables =
               "Select Distinct Object_Name(parent_id) As name From sys.triggers Where parent_id <> 0",
           .begin = "Begin Transaction;Save Transaction step",
           .beginReading = "Set Transaction Isolation Level Snapshot;Begin Transaction;Save Transaction step",
           .commit = "Commit Transaction",
           .rollback =
               "If @@Trancount > 0 Rollback Transaction;Set Transaction Isolation Level Read Committed",
           .set = "Save Transaction ",
           .release = {},
           .undo = "Rollback Transaction "},
};

} // namespace

const Server* findServer(std::string_view product) {
  const auto* const found = std::ranges::find_if(
      servers, [&](const Server& server) { return equalCodes(server.product, product); });
  return found == servers.end() ? nullptr : found;
}

const Server* guessServer(std::string_view driverName) {
  const std::string lower = asciiLower(driverName);
  const auto* const found = std::ranges::find_if(
      servers, [&](const Server& server) { return lower.find(server.drivers) != std::string::npos; });
  return found == servers.end() ? nullptr : found;
}

} // namespace qx::odbc
