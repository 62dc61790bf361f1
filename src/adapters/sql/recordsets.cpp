#include "adapters/sql/recordsets.h"

#include "adapters/sql/dialect.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <stdexcept>
#include <utility>

namespace qx::relational {
namespace {

const Value nullValue;

[[noreturn]] void raiseUnknownColumn(std::string_view name) {
  throw StatementError("the record set has no column '" + std::string(name) + "'", 0);
}

} // namespace

std::size_t EditableRecordset::place(ColumnName column) const {
  const std::size_t index = source_.shape->find(column);
  if (index >= fieldCount()) raiseUnknownColumn(column.text());
  return index;
}

const Value& EditableRecordset::value(std::size_t index) {
  if (index >= fieldCount()) throw std::out_of_range("the record set has fewer columns");
  if (pendingColumns_[index]) return pending_[index];
  return adding_ ? nullValue : storedValue(index);
}

void EditableRecordset::addNew() {
  if (source_.table.empty()) throw StatementError("the rows of this statement cannot be changed", 0);
  cancelUpdate();
  adding_ = true;
}

void EditableRecordset::set(ColumnName column, Value value) {
  const std::size_t index = place(column);
  if (!source_.shape->stored(index))
    throw StatementError("the column '" + std::string(column.text()) + "' is computed", 0);
  if (index >= pendingColumns_.size()) throw StatementError("the table has too many columns", 0);
  if (pending_.empty()) pending_.resize(fieldCount());
  pending_[index] = std::move(value);
  pendingColumns_.set(index);
}

std::size_t EditableRecordset::bindPending(Statement& statement) {
  std::size_t bound = 0;
  for (std::size_t i = 0; i < fieldCount(); ++i)
    if (pendingColumns_[i]) statement.bind(bound++, pending_[i]);
  return bound;
}

std::int64_t EditableRecordset::insertPending() {
  constexpr int most = 10;
  Statement& insert = statements_.insert(source_, pendingColumns_);
  for (int tries = 1;; ++tries) {
    bindPending(insert);
    try {
      const auto inserted = statements_.driver().insertRow(insert);
      if (!inserted) throw NotInserted(source_.table);
      return *inserted;
    } catch (const StatementError& error) {
      // Another program has drawn the same key in the meantime.
      if (tries == most || error.sqlState() != statements_.driver().dialect().keyTaken ||
          !statements_.assignsKey(source_, pendingColumns_))
        throw;
    }
  }
}

void EditableRecordset::update() {
  std::int64_t rowKey = 0;
  if (adding_) {
    rowKey = insertPending();
  } else if (pendingColumns_.any()) {
    rowKey = currentRowKey();
    if (rowKey == 0 || source_.table.empty()) throw StatementError("there is no row to change", 0);
    Statement& update = statements_.update(source_, pendingColumns_);
    const Value key(rowKey);
    const std::size_t bound = bindPending(update);
    update.bind(bound, key);
    if (update.run() == 0) throw StatementError("the row was deleted by another program", 0);
  } else {
    return;
  }
  rowWritten(rowKey, adding_, pendingColumns_, pending_);
  pendingColumns_.reset();
  adding_ = false;
}

void EditableRecordset::cancelUpdate() {
  pendingColumns_.reset();
  adding_ = false;
}

void EditableRecordset::readRow(Statement& statement, std::vector<Value>& into, std::size_t at) const {
  for (std::size_t i = 0; i < fieldCount(); ++i) into[at + i] = source_.shape->read(statement, i);
}

FetchedRecordset::FetchedRecordset(StatementCache& statements, const Sql& statement)
    : EditableRecordset(statements, statements.rows(statement).source), query_(statements.rows(statement)),
      parameters_(statement.values().begin(), statement.values().end()) {
  fetch();
}

void FetchedRecordset::fetch() {
  rowKeys_.clear();
  values_.clear();
  position_ = 0;
  Statement& select = *query_.select;
  select.bindAll(parameters_);
  const StatementUse use(select);
  // Read the shape after the first step, which recompiles the statement when the schema has changed.
  bool more = select.step();
  statements().completeShape(source(), select);
  while (more) {
    rowKeys_.push_back(source().layout.hidden > 0 ? readKey(select) : 0);
    values_.resize(values_.size() + fieldCount());
    readRow(select, values_, values_.size() - fieldCount());
    more = select.step();
  }
}

void FetchedRecordset::moveTo(std::size_t position) {
  cancelUpdate();
  position_ = std::min(position, rowKeys_.size());
}

bool FetchedRecordset::resync() {
  // The rows are a snapshot of the moment of opening; reading them again takes another statement.
  const std::size_t position = position_;
  requery();
  moveTo(position);
  return !eof();
}

void FetchedRecordset::requery() {
  cancelUpdate();
  fetch();
}

const Value& FetchedRecordset::storedValue(std::size_t index) {
  return eof() ? nullValue : values_[position_ * fieldCount() + index];
}

void FetchedRecordset::rowWritten(std::int64_t rowKey, bool inserted, const ColumnMask& written,
                                  std::vector<Value>& values) {
  if (inserted) {
    position_ = rowKeys_.size();
    rowKeys_.push_back(rowKey);
    values_.resize(values_.size() + fieldCount());
    const std::size_t identity = source().shape->find(ColumnName(source().key.identity));
    if (identity < fieldCount()) values_[position_ * fieldCount() + identity] = Value(rowKey);
  }
  for (std::size_t i = 0; i < fieldCount(); ++i)
    if (written[i]) values_[position_ * fieldCount() + i] = std::move(values[i]);
}

KeysetRecordset::KeysetRecordset(StatementCache& statements, const Sql& statement)
    : EditableRecordset(statements, statements.keyset(statement).source),
      query_(statements.keyset(statement)),
      parameters_(statement.values().begin(), statement.values().end()) {
  readKeys();
}

void KeysetRecordset::readKeys() {
  keys_.clear();
  moveTo(0);
  Statement& select = *query_.keys;
  select.bindAll(parameters_);
  const StatementUse use(select);
  while (select.step()) {
    Key key{readKey(select), 0};
    if (source().keyColumn >= 0) key.textHash = textHash(select.column(1, ColumnKind::Plain).textView());
    keys_.push_back(key);
  }
}

void KeysetRecordset::moveTo(std::size_t position) {
  cancelUpdate();
  position_ = std::min(position, keys_.size());
  loaded_ = false;
}

bool KeysetRecordset::resync() {
  loaded_ = true;
  present_ = false;
  if (eof()) return false;
  Statement& select = *query_.row;
  const Value rowKey(keys_[position_].rowKey);
  select.bind(0, rowKey);
  const StatementUse use(select);
  if (!select.step()) return false;
  statements().completeShape(source(), select);
  row_.resize(fieldCount());
  readRow(select, row_, 0);
  const int key = source().keyColumn;
  present_ = key < 0 || textHash(row_[static_cast<std::size_t>(key)].textView()) == keys_[position_].textHash;
  return present_;
}

void KeysetRecordset::requery() { readKeys(); }

const Value& KeysetRecordset::storedValue(std::size_t index) {
  if (!loaded_) resync();
  return present_ ? row_[index] : nullValue;
}

std::int64_t KeysetRecordset::currentRowKey() {
  if (!loaded_) resync();
  return present_ ? keys_[position_].rowKey : 0;
}

void KeysetRecordset::rowWritten(std::int64_t rowKey, bool inserted, const ColumnMask& written,
                                 std::vector<Value>& values) {
  if (inserted) {
    position_ = keys_.size();
    keys_.push_back({rowKey, 0});
    if (const int key = source().keyColumn; key >= 0)
      keys_.back().textHash = textHash(values[static_cast<std::size_t>(key)].textView());
    loaded_ = false;
    return;
  }
  for (std::size_t i = 0; i < fieldCount(); ++i)
    if (written[i]) row_[i] = std::move(values[i]);
}

StreamRecordset::StreamRecordset(StatementCache& statements, const Sql& statement)
    : query_(statements.stream(statement)), shape_(statements.shapeOf(*query_.select, query_.layout)),
      parameters_(statement.values().begin(), statement.values().end()) {
  requery();
}

void StreamRecordset::requery() {
  query_.select->reset();
  query_.select->bindAll(parameters_);
  count_ = 0;
  eof_ = false;
  row_.resize(shape_.size());
  moveNext();
}

void StreamRecordset::moveNext() {
  if (eof_) return;
  if (!query_.select->step()) {
    eof_ = true;
    query_.select->reset();
    row_.assign(shape_.size(), Value());
    return;
  }
  ++count_;
  for (std::size_t i = 0; i < row_.size(); ++i) row_[i] = shape_.read(*query_.select, i);
}

void StreamRecordset::moveTo(std::size_t position) {
  if (position + 1 < count_) requery();
  while (!eof_ && count_ <= position) moveNext();
}

const Value& StreamRecordset::value(ColumnName column) {
  const std::size_t index = shape_.find(column);
  if (index >= shape_.size()) raiseUnknownColumn(column.text());
  return row_[index];
}

void StreamRecordset::refuse() { throw StatementError("the rows of a stream cannot be changed", 0); }

} // namespace qx::relational
