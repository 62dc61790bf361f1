#include "adapters/ado/host_database.h"

#include "adapters/ado/connection_text.h"
#include "adapters/ado/field_values.h"
#include "adapters/sql/failure_kind.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

namespace qx::ado {
namespace {

using automation::AutomationError;
using automation::call;
using automation::get;
using automation::ObjectPointer;
using automation::put;
using automation::Variant;
using relational::FailureKind;

constexpr std::int32_t textCommand = 1;
constexpr std::int32_t withoutRows = 128;

struct Product {
  std::string_view name; ///< as providers report it
  const relational::Dialect* dialect;
};
constexpr std::array products{Product{"Microsoft SQL Server", &relational::sqlServerDialect},
                              Product{"PostgreSQL", &relational::postgresDialect},
                              Product{"SQLite", &relational::sqliteDialect}};

/// An item of a collection by its name or place.
ObjectPointer item(const ObjectPointer& collection, Variant index) {
  return automation::objectOf(call(*collection, "Item", {std::move(index)}));
}

std::string textIn(const ObjectPointer& object, std::string_view property) {
  return automation::valueOf(get(*object, property)).text();
}

std::int32_t numberIn(const ObjectPointer& object, std::string_view property) {
  const auto number = wholeAs<std::int32_t>(automation::valueOf(get(*object, property)));
  return number.value_or(0);
}

} // namespace

HostDatabase::HostDatabase(ObjectPointer connection, CreateObject create)
    : connection_(std::move(connection)), create_(std::move(create)),
      name_(withoutPasswords(textIn(connection_, "ConnectionString"))) {}

std::optional<HostDatabase::Report> HostDatabase::firstReport() const noexcept {
  try {
    const ObjectPointer errors = automation::objectOf(get(*connection_, "Errors"));
    if (!errors || numberIn(errors, "Count") == 0) return std::nullopt;
    const ObjectPointer first = item(errors, std::int32_t{0});
    return Report{textIn(first, "Description"), textIn(first, "SQLState"), numberIn(first, "Number"),
                  numberIn(first, "NativeError")};
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool HostDatabase::isOpen() {
  try {
    return (numberIn(connection_, "State") & 1) != 0;
  } catch (const AutomationError&) {
    return false;
  }
}

/// What an earlier failure has left would be taken for the reason of the next one.
void HostDatabase::forgetErrors() noexcept {
  try {
    const ObjectPointer errors = automation::objectOf(get(*connection_, "Errors"));
    if (errors) call(*errors, "Clear");
  } catch (const std::exception&) {
    // A connection that cannot even do this fails the call that follows, which is then raised.
    lastFailure_ = 0;
  }
}

void HostDatabase::raise(const AutomationError& error, const std::optional<Report>& report) {
  lastFailure_ = error.code();
  if (error.number() == automation::ErrorNumber::OutOfMemory) throw std::bad_alloc();
  if (report) lastFailure_ = report->number;
  if (!isOpen())
    throw ConnectionLostError(name_ + ": the program that owns the connection has closed it", lastFailure_);
  if (!report) throw StatementError(error.what(), lastFailure_);
  const int code = report->native != 0 ? report->native : report->number;
  const bool ofServer = dialect_ == &relational::sqlServerDialect;
  const std::string state(ofServer
                              ? relational::tellingState(relational::sqlServerStates, code, report->state)
                              : std::string_view(report->state));
  const std::string named = name_ + ": " + report->text;
  switch (relational::failureKind(state)) {
  case FailureKind::Statement:
  // Without a unit of ours nothing can be done again: the one statement has failed.
  case FailureKind::Conflict:
    throw StatementError(report->text, code, state);
  case FailureKind::Busy:
    throw BusyError(named, code, state);
  case FailureKind::Interrupted:
    throw StatementEndedError(named, code, state);
  case FailureKind::Rights:
    throw MissingRightError(named, code, state);
  case FailureKind::Store:
    break;
  }
  if (relational::isLostConnection(state)) throw ConnectionLostError(named, code, state);
  throw StoreError(named, code, state);
}

const relational::Dialect& HostDatabase::dialect() {
  if (dialect_ != nullptr) return *dialect_;
  if (!isOpen()) throw StoreError(name_ + ": the connection is not open", 0);
  if (connection_->memberId("CommandTimeout")) timeout_ = numberIn(connection_, "CommandTimeout");
  std::string product;
  try {
    const ObjectPointer properties = automation::objectOf(get(*connection_, "Properties"));
    product = textIn(item(properties, "DBMS Name"), "Value");
  } catch (const AutomationError&) {
    // A connection without such a property is of the ERP's own making, and so is its database.
    product = products.front().name;
  }
  const auto* const found =
      std::ranges::find_if(products, [&](const Product& each) { return equalCodes(each.name, product); });
  if (found == products.end())
    throw StoreError(name_ + ": databases of the kind '" + product + "' are not supported", 0);
  dialect_ = found->dialect;
  return *dialect_;
}

std::string HostDatabase::rowKeyOf(std::string_view table) {
  std::string key(dialect().rowKey);
  if (dialect().rowKeyColumn.empty()) return key;
  if (!keyedTables_) {
    std::set<std::string> keyed;
    const ObjectPointer found =
        rows("Select table_name From information_schema.columns Where column_name = ?", {{Value(key)}});
    const ObjectPointer name = item(automation::objectOf(get(*found, "Fields")), std::int32_t{0});
    for (; !automation::truthOf(get(*found, "EOF")); call(*found, "MoveNext"))
      keyed.insert(asciiLower(textIn(name, "Value")));
    keyedTables_ = std::move(keyed);
  }
  return keyedTables_->contains(asciiLower(table)) ? key : std::string();
}

ObjectPointer HostDatabase::command(std::string_view text, std::span<const Value> values) {
  ObjectPointer made = create_("ADODB.Command");
  put(*made, "ActiveConnection", connection_);
  put(*made, "CommandText", text);
  put(*made, "CommandType", textCommand);
  // A command does not take over the limit of its connection.
  if (timeout_ != 0) put(*made, "CommandTimeout", timeout_);
  if (values.empty()) return made;
  const ObjectPointer parameters = automation::objectOf(get(*made, "Parameters"));
  for (const Value& value : values) {
    const Parameter parameter = parameterOf(value);
    constexpr std::int32_t input = 1;
    call(*parameters, "Append",
         {call(*made, "CreateParameter", {"", parameter.type, input, parameter.size, parameter.value})});
  }
  return made;
}

std::int64_t HostDatabase::execute(std::string_view text, std::span<const Value> values) {
  Variant changed;
  ask([&] {
    call(*command(text, values), "Execute",
         {Variant::reference(changed), Variant::missing(), textCommand | withoutRows});
  });
  wrote();
  // A server that was told not to count gives -1.
  const auto count = automation::valueOf(changed).integer().value_or(-1);
  return count < 0 ? 1 : count;
}

ObjectPointer HostDatabase::recordset() { return create_("ADODB.Recordset"); }

ObjectPointer HostDatabase::rows(std::string_view text, std::span<const Value> values) {
  ObjectPointer set = recordset();
  put(*set, "CursorLocation", clientCursor);
  ask([&] { call(*set, "Open", {command(text, values), Variant::missing(), staticCursor, readOnlyLock}); });
  return set;
}

ObjectPointer HostDatabase::schema(std::int32_t list) {
  return ask([&] { return automation::objectOf(call(*connection_, "OpenSchema", {list})); });
}

} // namespace qx::ado
