// Objects of the shape of ADODB's, over a SQLite file: what a host hands over, without the interface itself.
#pragma once

#include "automation/automation_object.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// One database of a host. Its objects convert and refuse as ADODB's do where the adapter could rely on it: a
/// text is no number, True is -1 in a number, a moved cursor writes what is pending, a row that was changed
/// since it was read cannot be updated, a record set with unwritten columns cannot be closed.
class AdoDatabase {
public:
  /// `file` must exist.
  explicit AdoDatabase(const std::string& file);
  AdoDatabase(const AdoDatabase&) = delete;
  AdoDatabase& operator=(const AdoDatabase&) = delete;
  ~AdoDatabase();

  /// The open connection, always the same object. It must not outlive the database.
  const automation::ObjectPointer& connection() const { return connection_; }
  /// "ADODB.Command" and "ADODB.Recordset"; raises 429 for others.
  automation::ObjectPointer create(std::string_view progId);

  std::string connectionString = "Provider=MSDASQL;DSN=Warenwirtschaft;UID=tester;PWD=geheim";
  std::string product = "SQLite"; ///< "" for a connection that does not name it
  bool open = true;
  int begun = 0;                   ///< transactions
  int timeout = 90;                ///< of a command, in seconds
  std::vector<std::string> opened; ///< record sets, as "location,cursor,lock"
  std::vector<std::string> statements;
  std::vector<std::string> columns; ///< that were set, of all record sets
  /// Lets the next call that reaches the provider fail with this; none when the text is empty.
  struct Report {
    std::string text;
    std::string state;
    std::int32_t number = 0;
    std::int32_t native = 0;
  };
  Report next;

private:
  friend class AdoObject;
  struct Inner;
  std::unique_ptr<Inner> inner_;
  automation::ObjectPointer connection_;
};

} // namespace qx
