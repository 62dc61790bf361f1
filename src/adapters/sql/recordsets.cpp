#include "adapters/sql/recordsets.h"

#include "adapters/sql/dialect.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace qx::relational {
namespace {

const Value nullValue;

[[noreturn]] void raiseUnknownColumn(std::string_view name) {
  throw StatementError("the record set has no column '" + std::string(name) + "'", 0, "42703");
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

std::int64_t EditableRecordset::insertNow() {
  constexpr int most = 10;
  Statement& insert = statements().insert(source_, pendingColumns_);
  for (int tries = 1;; ++tries) {
    bindPending(insert);
    try {
      const auto inserted = statements().driver().insertRow(insert);
      if (!inserted) throw NotInserted(source_.table);
      return *inserted;
    } catch (const StatementError& error) {
      // Another program has drawn the same key in the meantime.
      if (tries == most || error.sqlState() != statements().driver().dialect().keyTaken ||
          !statements().assignsKey(source_, pendingColumns_))
        throw;
    }
  }
}

std::int64_t EditableRecordset::insertPending() {
  if (!group_.collects()) return insertNow();
  // A key that the table draws is known when the row is written only.
  const bool drawn = !source_.key.identity.empty() &&
                     (!source_.shape->has(source_.key.identity) ||
                      !pendingColumns_[source_.shape->find(ColumnName(source_.key.identity))]);
  if (!drawn && group_.collectsFor(source_.tableKey))
    return group_.insertLater(source_, pendingColumns_, pending_);
  group_.prepareToInsert(source_, pendingColumns_, pending_);
  return insertNow();
}

void EditableRecordset::updatePending(std::int64_t rowKey) {
  const BeforeValues before = [this](std::size_t index) { return &storedValue(index); };
  if (group_.collectsFor(source_.tableKey)) {
    group_.updateLater(source_, rowKey, pendingColumns_, pending_, before);
    return;
  }
  group_.prepareToUpdate(source_, rowKey, pendingColumns_, pending_, before);
  Statement& update = statements().update(source_, pendingColumns_);
  const Value key(rowKey);
  const std::size_t bound = bindPending(update);
  update.bind(bound, key);
  if (update.run() == 0) throw StatementError("the row was deleted by another program", 0);
}

void EditableRecordset::update() {
  std::int64_t rowKey = 0;
  if (adding_) {
    rowKey = insertPending();
  } else if (pendingColumns_.any()) {
    rowKey = currentRowKey();
    if (rowKey == 0) rowKey = writtenRowKey();
    if (rowKey == 0 && isWritten()) group_.loseUnit("a new row is changed whose key is not known yet");
    if (rowKey == 0 || source_.table.empty()) throw StatementError("there is no row to change", 0);
    updatePending(rowKey);
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

FetchedRecordset::FetchedRecordset(Group& group, const Sql& statement)
    : EditableRecordset(group, group.statements().rows(statement).source),
      query_(group.statements().rows(statement)),
      parameters_(statement.values().begin(), statement.values().end()),
      rows_(group.read(query_, parameters_)) {}

Rows& FetchedRecordset::ownRows() {
  if (own_ != rows_) {
    own_ = std::make_shared<Rows>(*rows_);
    rows_ = own_;
  }
  return *own_;
}

bool FetchedRecordset::isWritten() const {
  return position_ < rows_->keys.size() && group().collects() && !source().table.empty();
}

/// That of the row in this place, once the database has it and if it is the same row.
std::int64_t FetchedRecordset::writtenRowKey() {
  if (!isWritten()) return 0;
  group().prepareToRead(&source().tableKey);
  const auto rows = group().read(query_, parameters_, true);
  if (position_ >= rows->keys.size()) return 0;
  for (std::size_t i = 0; i < fieldCount(); ++i) {
    const Value& known = storedValue(i);
    if (!known.isNull() && !sameValue(known, rows->values[position_ * fieldCount() + i])) return 0;
  }
  return rows->keys[position_];
}

void FetchedRecordset::moveTo(std::size_t position) {
  cancelUpdate();
  position_ = std::min(position, rows_->keys.size());
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
  position_ = 0;
  rows_ = group().read(query_, parameters_, true);
}

const Value& FetchedRecordset::storedValue(std::size_t index) {
  return eof() ? nullValue : rows_->values[position_ * fieldCount() + index];
}

void FetchedRecordset::rowWritten(std::int64_t rowKey, bool inserted, const ColumnMask& written,
                                  std::vector<Value>& values) {
  Rows& rows = ownRows();
  if (inserted) {
    position_ = rows.keys.size();
    rows.keys.push_back(rowKey);
    rows.values.resize(rows.values.size() + fieldCount());
    const std::size_t identity = source().shape->find(ColumnName(source().key.identity));
    if (identity < fieldCount()) rows.values[position_ * fieldCount() + identity] = Value(rowKey);
  }
  for (std::size_t i = 0; i < fieldCount(); ++i)
    if (written[i]) rows.values[position_ * fieldCount() + i] = std::move(values[i]);
}

KeysetRecordset::KeysetRecordset(Group& group, const Sql& statement)
    : EditableRecordset(group, group.statements().keyset(statement).source),
      query_(group.statements().keyset(statement)),
      parameters_(statement.values().begin(), statement.values().end()) {
  readKeys();
}

void KeysetRecordset::readKeys() {
  keys_.clear();
  moveTo(0);
  group().prepareToRead(&source().tableKey);
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
  if (!takeRow(keys_[position_].rowKey)) return false;
  const int key = source().keyColumn;
  present_ = key < 0 || textHash(row_[static_cast<std::size_t>(key)].textView()) == keys_[position_].textHash;
  return present_;
}

/// False when there is no such row.
bool KeysetRecordset::takeRow(std::int64_t rowKey) {
  group().prepareToReadRow(source(), rowKey);
  if (const auto known = ahead_.find(rowKey); known != ahead_.end() && group().collects() &&
                                              aheadUnit_ == group().unit() &&
                                              aheadWrites_ == group().writesTo(source().tableKey)) {
    row_ = known->second;
    return true;
  }
  Statement& select = *query_.row;
  const Value key(rowKey);
  select.bind(0, key);
  const StatementUse use(select);
  if (!select.step()) return false;
  statements().completeShape(source(), select);
  row_.clear();
  source().shape->appendRow(select, row_);
  return true;
}

void KeysetRecordset::readAhead(std::size_t count) {
  ahead_.clear();
  if (!group().joinsStatements()) return;
  std::vector<std::int64_t> keys;
  for (std::size_t i = position_; i < keys_.size() && keys.size() < count; ++i)
    keys.push_back(keys_[i].rowKey);
  Rows rows = group().readByKey(query_, keys);
  for (std::size_t i = 0; i < rows.keys.size(); ++i) {
    const auto first = rows.values.begin() + static_cast<std::ptrdiff_t>(i * fieldCount());
    ahead_.emplace(rows.keys[i], std::vector<Value>(std::make_move_iterator(first),
                                                    std::make_move_iterator(
                                                        first + static_cast<std::ptrdiff_t>(fieldCount()))));
  }
  aheadUnit_ = group().unit();
  aheadWrites_ = group().writesTo(source().tableKey);
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
  ahead_.erase(rowKey);
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
  row_.clear();
  shape_.appendRow(*query_.select, row_);
}

void StreamRecordset::moveTo(std::size_t position) {
  if (position + 1 < count_) requery();
  while (!eof_ && count_ <= position) moveNext();
}

const Value& StreamRecordset::value(ColumnName column) {
  const std::size_t index = shape_.find(column);
  if (index >= shape_.size()) raiseUnknownColumn(column.text());
  return row_.at(index);
}

void StreamRecordset::refuse() { throw StatementError("the rows of a stream cannot be changed", 0); }

} // namespace qx::relational
