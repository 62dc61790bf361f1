#include "adapters/sqlite/sqlite_statement.h"

#include "adapters/sql/select_parts.h"
#include "adapters/sqlite/database_handle.h"

#include <sqlite3.h>

#include <string>

namespace qx::sqlite {
namespace {

using relational::findWord;

ColumnKind kindOfDeclaration(const char* declared) {
  if (declared == nullptr) return ColumnKind::Plain;
  const std::string_view type(declared);
  if (findWord(type, "boolean") == 0) return ColumnKind::Boolean;
  if (findWord(type, "decimal") == 0) return ColumnKind::Currency;
  if (findWord(type, "double") == 0) return ColumnKind::Double;
  return ColumnKind::Plain;
}

Value integerValue(std::int64_t number, ColumnKind kind) {
  switch (kind) {
  case ColumnKind::Boolean:
    return Value(number != 0);
  case ColumnKind::Double:
    return Value(static_cast<double>(number));
  case ColumnKind::Currency:
    if (const auto amount = Money::fromDouble(static_cast<double>(number))) return Value(*amount);
    return Value(number);
  case ColumnKind::Plain:
    break;
  }
  return Value(number);
}

Value realValue(double number, ColumnKind kind) {
  if (kind == ColumnKind::Boolean) return Value(number != 0);
  if (kind == ColumnKind::Currency)
    if (const auto amount = Money::fromDouble(number)) return Value(*amount);
  return Value(number);
}

} // namespace

SqliteStatement::SqliteStatement(const DatabaseHandle& database, std::string_view text, StatementLife life)
    : database_(database) {
  database.requireUnit();
  database.check(sqlite3_prepare_v3(database.get(), text.data(), static_cast<int>(text.size()),
                                    life == StatementLife::Cached ? SQLITE_PREPARE_PERSISTENT : 0,
                                    &statement_, nullptr));
}

SqliteStatement::~SqliteStatement() { sqlite3_finalize(statement_); }

std::size_t SqliteStatement::columnCount() {
  return static_cast<std::size_t>(sqlite3_column_count(statement_));
}

std::string_view SqliteStatement::columnName(std::size_t index) {
  const char* const name = sqlite3_column_name(statement_, static_cast<int>(index));
  if (name == nullptr) database_.failForMemory();
  return name;
}

ColumnKind SqliteStatement::columnKind(std::size_t index) {
  return kindOfDeclaration(sqlite3_column_decltype(statement_, static_cast<int>(index)));
}

void SqliteStatement::bind(std::size_t index, const Value& value) {
  const int parameter = static_cast<int>(index) + 1;
  int code = SQLITE_OK;
  switch (value.kind()) {
  case ValueKind::Null:
    code = sqlite3_bind_null(statement_, parameter);
    break;
  case ValueKind::Integer:
  case ValueKind::Boolean:
    code = sqlite3_bind_int64(statement_, parameter, value.integer().value_or(0));
    break;
  case ValueKind::Double:
  case ValueKind::Currency:
    code = sqlite3_bind_double(statement_, parameter, value.number().value_or(0));
    break;
  case ValueKind::Text: {
    const auto text = value.textView();
    code = sqlite3_bind_text64(statement_, parameter, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
    break;
  }
  case ValueKind::TimeStamp: {
    const std::string text = value.text();
    code =
        sqlite3_bind_text64(statement_, parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    break;
  }
  }
  database_.check(code);
}

std::size_t SqliteStatement::parameterCount() {
  return static_cast<std::size_t>(sqlite3_bind_parameter_count(statement_));
}

bool SqliteStatement::step() {
  database_.requireUnit();
  const int code = sqlite3_step(statement_);
  if (code != SQLITE_ROW && code != SQLITE_DONE) database_.fail();
  if (code == SQLITE_DONE) database_.requireUnchanged();
  return code == SQLITE_ROW;
}

std::int64_t SqliteStatement::run() {
  const relational::StatementUse use(*this);
  const std::int64_t before = sqlite3_total_changes64(database_.get());
  while (step()) {
  }
  return sqlite3_total_changes64(database_.get()) == before ? 0 : sqlite3_changes64(database_.get());
}

void SqliteStatement::reset() noexcept { sqlite3_reset(statement_); }

/// One call into SQLite for each column: the connection is used by one thread at a time, so its values may be
/// looked at where they are.
Value SqliteStatement::valueOf(sqlite3_value* held, ColumnKind kind) const {
  switch (sqlite3_value_type(held)) {
  case SQLITE_NULL:
    return Value::null();
  case SQLITE_INTEGER:
    return integerValue(sqlite3_value_int64(held), kind);
  case SQLITE_FLOAT:
    return realValue(sqlite3_value_double(held), kind);
  default: {
    const auto* text = static_cast<const char*>(sqlite3_value_blob(held));
    const auto length = static_cast<std::size_t>(sqlite3_value_bytes(held));
    if (text == nullptr && length > 0) database_.failForMemory();
    return Value(text == nullptr ? std::string_view() : std::string_view(text, length));
  }
  }
}

Value SqliteStatement::column(std::size_t index, ColumnKind kind) {
  return valueOf(sqlite3_column_value(statement_, static_cast<int>(index)), kind);
}

void SqliteStatement::appendColumns(std::span<const relational::ColumnPlace> columns,
                                    std::vector<Value>& values) {
  for (const relational::ColumnPlace& column : columns) {
    sqlite3_value* const held = sqlite3_column_value(statement_, static_cast<int>(column.index));
    if (sqlite3_value_type(held) == SQLITE_NULL)
      values.emplace_back();
    else
      values.push_back(valueOf(held, column.kind));
  }
}

} // namespace qx::sqlite
