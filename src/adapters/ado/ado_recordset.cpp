#include "adapters/ado/ado_recordset.h"

#include "adapters/sql/select_parts.h"
#include "adapters/sql/translation.h"
#include "platform/database_error.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace qx::ado {
namespace {

using automation::call;
using automation::get;
using automation::ObjectPointer;
using automation::put;
using automation::Variant;

// How a failure says that the row is gone: it was deleted, or another program has changed what is written.
constexpr auto deletedRow = static_cast<std::int32_t>(0x80040E23);
constexpr auto missingRow = static_cast<std::int32_t>(0x80040E38);

const Value nothingStored;

std::int32_t wholeIn(const ObjectPointer& object, std::string_view property) {
  return automation::int32Of(get(*object, property));
}

} // namespace

SelectText selectText(HostDatabase& database, const Sql& statement) {
  const relational::Dialect& dialect = database.dialect();
  std::string text = relational::translate(statement, dialect);
  const auto parts = relational::splitSelect(text);
  if (!parts) return {std::move(text), false};
  if (parts->aggregate) return {std::move(text), false};
  const std::string order = relational::orderClause(*parts, database.rowKeyOf(parts->table), dialect);
  std::string ordered = "SELECT " + std::string(parts->list) + " FROM " +
                        relational::quotedName(parts->table, dialect) +
                        (parts->where.empty() ? "" : " WHERE " + std::string(parts->where)) + order;
  return {std::move(ordered), true};
}

AdoRecordset::AdoRecordset(HostDatabase& database, const Sql& statement, RowUse use)
    : database_(database), use_(use) {
  const SelectText select = selectText(database, statement);
  if (use == RowUse::Keyset && !select.overOneTable)
    throw StatementError("the statement cannot be opened as a keyset: " + statement.text(), 0);
  changeable_ = select.overOneTable && use != RowUse::Stream;
  rows_ = database.recordset();
  put(*rows_, "CursorLocation", clientCursor);
  database_.ask([&] {
    const ObjectPointer command = database_.command(select.text, statement.values());
    call(*rows_, "Open",
         {command, Variant::missing(), keysetCursor, changeable_ ? optimisticLock : readOnlyLock});
    count_ = static_cast<std::size_t>(wholeIn(rows_, "RecordCount"));
    readFields();
  });
  moveTo(0);
}

AdoRecordset::~AdoRecordset() {
  try {
    // A record set with unwritten columns refuses to close.
    if (adding_ || editing_) call(*rows_, "CancelUpdate");
    call(*rows_, "Close");
  } catch (const std::exception&) {
    // It ends with its last reference, also where its connection is closed already.
    rows_.reset();
  }
}

void AdoRecordset::readFields() {
  const ObjectPointer fields = automation::objectOf(get(*rows_, "Fields"));
  const std::int32_t count = wholeIn(fields, "Count");
  fields_.clear();
  fields_.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) {
    ObjectPointer object = automation::objectOf(call(*fields, "Item", {i}));
    const std::int32_t type = wholeIn(object, "Type");
    const FieldKind kind =
        isDecimal(type) ? fieldKind(type, wholeIn(object, "Precision"), wholeIn(object, "NumericScale"))
                        : fieldKind(type, 0, 0);
    std::string name = automation::textOf(get(*object, "Name"));
    const std::uint64_t hash = foldedNameHash(name);
    fields_.push_back({std::move(object), std::move(name), hash, kind, std::nullopt});
  }
}

std::size_t AdoRecordset::find(ColumnName column) const {
  const auto found = std::ranges::find(fields_, column.hash(), &Field::hash);
  return static_cast<std::size_t>(found - fields_.begin());
}

std::size_t AdoRecordset::place(ColumnName column) const {
  const std::size_t index = find(column);
  if (index == fields_.size())
    throw StatementError("the record set has no column '" + std::string(column.text()) + "'", 0, "42703");
  return index;
}

std::size_t AdoRecordset::recordCount() const {
  return use_ == RowUse::Stream ? std::min(position_ + 1, count_) : count_;
}

void AdoRecordset::forgetRow() {
  for (Field& field : fields_) field.known.reset();
}

void AdoRecordset::moveTo(std::size_t position) {
  cancelUpdate();
  position_ = std::min(position, count_);
  forgetRow();
  read_ = use_ != RowUse::Keyset;
  present_ = true;
  // Behind the last row there is none to move to: the end is known here.
  if (eof()) return;
  database_.askClient([&] { put(*rows_, "AbsolutePosition", static_cast<std::int32_t>(position_ + 1)); });
}

/// Reads the current row from the database. False when it no longer exists.
bool AdoRecordset::readAgain() {
  constexpr std::int32_t currentRow = 1;
  constexpr std::int32_t allValues = 2;
  forgetRow();
  read_ = true;
  present_ = false;
  if (eof()) return false;
  try {
    database_.ask([&] { call(*rows_, "Resync", {currentRow, allValues}); });
  } catch (const StatementError&) {
    if (database_.lastFailure() != deletedRow && database_.lastFailure() != missingRow) throw;
    return false;
  }
  writesWhenRead_ = database_.writes();
  present_ = true;
  return true;
}

bool AdoRecordset::resync() {
  cancelUpdate();
  if (use_ == RowUse::Keyset) return readAgain();
  if (use_ == RowUse::Stream) return !eof();
  const std::size_t position = position_;
  requery();
  moveTo(position);
  return !eof();
}

void AdoRecordset::requery() {
  cancelUpdate();
  database_.ask([&] {
    call(*rows_, "Requery");
    count_ = static_cast<std::size_t>(wholeIn(rows_, "RecordCount"));
    readFields();
  });
  writesWhenRead_ = database_.writes();
  moveTo(0);
}

const Value& AdoRecordset::value(std::size_t index) {
  if (index >= fields_.size()) throw std::out_of_range("the record set has fewer columns");
  Field& field = fields_[index];
  if (field.known) return *field.known;
  if (adding_ || eof()) return nothingStored;
  if (!read_) readAgain();
  if (!present_) return nothingStored;
  field.known = database_.askClient([&] { return valueIn(field.kind, get(*field.object, "Value")); });
  return *field.known;
}

void AdoRecordset::requireChangeable() const {
  if (use_ == RowUse::Stream) throw StatementError("the rows of a stream cannot be changed", 0);
  if (!changeable_) throw StatementError("the rows of this statement cannot be changed", 0);
}

void AdoRecordset::addNew() {
  requireChangeable();
  cancelUpdate();
  database_.askClient([&] { call(*rows_, "AddNew"); });
  forgetRow();
  adding_ = true;
}

/// Makes sure that the current row is as the database has it.
void AdoRecordset::edit() {
  if (adding_ || editing_) return;
  if (eof()) throw StatementError("there is no row to change", 0);
  if (!read_ || writesWhenRead_ != database_.writes()) readAgain();
  if (!present_) throw StatementError("the row was deleted by another program", 0);
  editing_ = true;
}

void AdoRecordset::set(ColumnName column, Value value) {
  requireChangeable();
  Field& field = fields_[place(column)];
  edit();
  database_.askClient([&] { put(*field.object, "Value", forField(field.kind, value)); });
  field.known = std::move(value);
}

void AdoRecordset::update() {
  if (!adding_ && !editing_) return;
  database_.ask([&] { call(*rows_, "Update"); });
  database_.wrote();
  if (adding_) position_ = count_++;
  adding_ = false;
  editing_ = false;
  read_ = true;
  present_ = true;
  writesWhenRead_ = database_.writes();
  // As the column keeps it.
  forgetRow();
}

void AdoRecordset::cancelUpdate() {
  if (!adding_ && !editing_) return;
  adding_ = false;
  editing_ = false;
  forgetRow();
  database_.askClient([&] { call(*rows_, "CancelUpdate"); });
}

} // namespace qx::ado
