// The connection object of a host and what is asked of it.
#pragma once

#include "adapters/sql/dialect.h"
#include "automation/automation_error.h"
#include "automation/automation_object.h"
#include "platform/sql.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>

namespace qx::ado {

/// Creates an object by its ProgID. Raises `automation::AutomationError` 429 when there is none.
using CreateObject = std::function<automation::ObjectPointer(std::string_view progId)>;

/// Where the rows of a record set are kept, how its cursor moves and how its rows are locked, as the data
/// access interface counts them.
inline constexpr std::int32_t clientCursor = 3;
inline constexpr std::int32_t keysetCursor = 1;
inline constexpr std::int32_t staticCursor = 3;
inline constexpr std::int32_t readOnlyLock = 1;
inline constexpr std::int32_t optimisticLock = 3;

/// Asks by the names of members. What the provider reports is raised as one of the errors of
/// platform/database_error.h, with its text, number and SQLSTATE.
class HostDatabase {
public:
  HostDatabase(automation::ObjectPointer connection, CreateObject create);

  const automation::ObjectPointer& object() const { return connection_; }
  /// How the host has opened it, without passwords.
  const std::string& name() const { return name_; }
  /// That of the product which the connection names; of the ERP's own when it names none. Raises `StoreError`
  /// for another product.
  const relational::Dialect& dialect();
  /// What identifies a row of a table, ascending in order of insertion; empty for a table of the host's own.
  std::string rowKeyOf(std::string_view table);

  /// A statement with "?" for each value.
  automation::ObjectPointer command(std::string_view text, std::span<const Value> values);
  /// The number of changed rows.
  std::int64_t execute(std::string_view text, std::span<const Value> values);
  automation::ObjectPointer recordset();
  /// The rows of a statement, not to be changed.
  automation::ObjectPointer rows(std::string_view text, std::span<const Value> values);
  automation::ObjectPointer schema(std::int32_t list);

  /// Makes a call that may reach the provider.
  template <class Call>
  auto ask(Call&& call) {
    forgetErrors();
    try {
      return call();
    } catch (const automation::AutomationError& error) {
      raise(error, firstReport());
    }
  }
  /// Makes a call that stays within the client: nothing of what the provider has reported belongs to it.
  template <class Call>
  auto askClient(Call&& call) {
    try {
      return call();
    } catch (const automation::AutomationError& error) {
      raise(error, std::nullopt);
    }
  }
  /// The number of the last failure, as the interface reports it.
  std::int32_t lastFailure() const { return lastFailure_; }

  /// Grows with everything that is written through this connection.
  std::uint64_t writes() const { return writes_; }
  void wrote() { ++writes_; }

private:
  /// What the provider has reported first, which is the reason.
  struct Report {
    std::string text;
    std::string state;
    std::int32_t number = 0; ///< of the interface
    std::int32_t native = 0; ///< of the database
  };
  /// Null when it cannot be asked any more, which is no reason to hide the failure itself.
  std::optional<Report> firstReport() const noexcept;
  void forgetErrors() noexcept;
  [[noreturn]] void raise(const automation::AutomationError& error, const std::optional<Report>& report);
  bool isOpen();

  automation::ObjectPointer connection_;
  CreateObject create_;
  std::string name_;
  const relational::Dialect* dialect_ = nullptr;
  std::optional<std::set<std::string>> keyedTables_; ///< in lower case
  std::int32_t timeout_ = 0;                         ///< of a command, in seconds
  std::int32_t lastFailure_ = 0;
  std::uint64_t writes_ = 0;
};

} // namespace qx::ado
