#include "adapters/sqlite/prepared_statement.h"

#include "adapters/sqlite/database_handle.h"
#include "adapters/sqlite/select_parts.h"

#include <sqlite3.h>

#include <bit>
#include <utility>

namespace qx::sqlite {
namespace {

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

RowShape::RowShape(const PreparedStatement& statement, int hidden) {
  const int count = statement.columnCount();
  for (int i = hidden; i < count; ++i) {
    names_.emplace_back(statement.columnName(i));
    const char* declared = statement.declaredType(i);
    kinds_.push_back(kindOfDeclaration(declared));
    stored_.push_back(declared != nullptr);
  }
  slots_.resize(std::bit_ceil(names_.size() * 2 + 1));
  for (std::size_t i = 0; i < names_.size(); ++i) {
    const std::uint64_t hash = foldedNameHash(names_[i]);
    std::size_t at = hash & (slots_.size() - 1);
    while (slots_[at].used && slots_[at].hash != hash) at = (at + 1) & (slots_.size() - 1);
    if (!slots_[at].used) slots_[at] = {hash, static_cast<std::uint32_t>(i), true};
  }
}

std::size_t RowShape::find(ColumnName column) const {
  std::size_t at = column.hash() & (slots_.size() - 1);
  while (slots_[at].used) {
    if (slots_[at].hash == column.hash()) return slots_[at].index;
    at = (at + 1) & (slots_.size() - 1);
  }
  return size();
}

PreparedStatement::PreparedStatement(const DatabaseHandle& database, std::string_view text,
                                     StatementLife life)
    : database_(&database) {
  database.requireUnit();
  database.check(sqlite3_prepare_v3(database.get(), text.data(), static_cast<int>(text.size()),
                                    life == StatementLife::Cached ? SQLITE_PREPARE_PERSISTENT : 0,
                                    &statement_, nullptr));
}

PreparedStatement::PreparedStatement(PreparedStatement&& other) noexcept
    : database_(other.database_), statement_(std::exchange(other.statement_, nullptr)) {}

PreparedStatement& PreparedStatement::operator=(PreparedStatement&& other) noexcept {
  std::swap(database_, other.database_);
  std::swap(statement_, other.statement_);
  return *this;
}

PreparedStatement::~PreparedStatement() { sqlite3_finalize(statement_); }

int PreparedStatement::columnCount() const { return sqlite3_column_count(statement_); }

const char* PreparedStatement::columnName(int index) const {
  const char* const name = sqlite3_column_name(statement_, index);
  if (name == nullptr) database_->failForMemory();
  return name;
}

const char* PreparedStatement::declaredType(int index) const {
  return sqlite3_column_decltype(statement_, index);
}

void PreparedStatement::bind(int index, const Value& value) {
  int code = SQLITE_OK;
  switch (value.kind()) {
  case ValueKind::Null:
    code = sqlite3_bind_null(statement_, index);
    break;
  case ValueKind::Integer:
  case ValueKind::Boolean:
    code = sqlite3_bind_int64(statement_, index, value.integer().value_or(0));
    break;
  case ValueKind::Double:
  case ValueKind::Currency:
    code = sqlite3_bind_double(statement_, index, value.number().value_or(0));
    break;
  case ValueKind::Text: {
    const auto text = value.textView();
    code = sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8);
    break;
  }
  case ValueKind::TimeStamp: {
    const std::string text = value.text();
    code = sqlite3_bind_text64(statement_, index, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    break;
  }
  }
  database_->check(code);
}

void PreparedStatement::bindAll(std::span<const Value> values) {
  int index = 0;
  for (const Value& value : values) bind(++index, value);
}

bool PreparedStatement::step() {
  database_->requireUnit();
  const int code = sqlite3_step(statement_);
  if (code != SQLITE_ROW && code != SQLITE_DONE) database_->fail();
  if (code == SQLITE_DONE) database_->requireUnchanged();
  return code == SQLITE_ROW;
}

void PreparedStatement::reset() noexcept { sqlite3_reset(statement_); }

Value PreparedStatement::column(int index, ColumnKind kind) const {
  switch (sqlite3_column_type(statement_, index)) {
  case SQLITE_NULL:
    return Value::null();
  case SQLITE_INTEGER:
    return integerValue(sqlite3_column_int64(statement_, index), kind);
  case SQLITE_FLOAT:
    return realValue(sqlite3_column_double(statement_, index), kind);
  default: {
    const auto* text = static_cast<const char*>(sqlite3_column_blob(statement_, index));
    const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_, index));
    if (text == nullptr && length > 0) database_->failForMemory();
    return Value(text == nullptr ? std::string_view() : std::string_view(text, length));
  }
  }
}

} // namespace qx::sqlite
