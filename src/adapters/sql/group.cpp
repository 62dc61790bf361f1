#include "adapters/sql/group.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/statement_pattern.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
#include <bit>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace qx::relational {
namespace {

/// A row that a record set writes.
class RowOfSource final : public RowChange {
public:
  RowOfSource(const RowSource& source, std::int64_t key, bool isNew, const ColumnMask& columns,
              std::span<const Value> values, const Group::Before& before)
      : source_(source), key_(key), isNew_(isNew), columns_(columns), values_(values), before_(before) {}

  std::string_view table() const override { return source_.tableKey; }
  std::int64_t key() const override { return isNew_ ? 0 : key_; }
  bool isNew() const override { return isNew_; }
  const Value* before(ColumnName column) const override {
    const std::size_t index = source_.shape->find(column);
    return isNew_ || index >= source_.shape->size() || !source_.shape->stored(index) ? nullptr
                                                                                     : before_(index);
  }
  bool assigns(ColumnName column) const override {
    const std::size_t index = source_.shape->find(column);
    return index < source_.shape->size() && columns_[index];
  }
  const Value* after(ColumnName column) const override { return &values_[source_.shape->find(column)]; }
  void forEachAssigned(const std::function<void(ColumnName)>& visit) const override {
    for (std::size_t i = 0; i < source_.shape->size(); ++i)
      if (columns_[i]) visit(ColumnName(source_.shape->name(i)));
  }

private:
  const RowSource& source_;
  std::int64_t key_;
  bool isNew_;
  const ColumnMask& columns_;
  std::span<const Value> values_;
  const Group::Before& before_;
};

/// The rows that a statement writes.
class RowsOfStatement final : public RowChange {
public:
  RowsOfStatement(const WritePattern& pattern, std::span<const Value> parameters)
      : pattern_(pattern), parameters_(parameters) {}

  std::string_view table() const override { return pattern_.table; }
  std::int64_t key() const override { return 0; }
  bool isNew() const override { return pattern_.kind == WritePattern::Kind::Insert; }
  bool isDeleted() const override { return pattern_.kind == WritePattern::Kind::Delete; }
  const Value* before(ColumnName column) const override { return valueOf(pattern_.equalities, column); }
  bool assigns(ColumnName column) const override {
    return std::ranges::any_of(pattern_.assigned,
                               [&](const ColumnTerm& term) { return term.columnHash == column.hash(); });
  }
  const Value* after(ColumnName column) const override { return valueOf(pattern_.assigned, column); }
  void forEachAssigned(const std::function<void(ColumnName)>& visit) const override {
    for (const ColumnTerm& term : pattern_.assigned) visit(ColumnName(std::string_view(term.column)));
  }

private:
  const Value* valueOf(const std::vector<ColumnTerm>& terms, ColumnName column) const {
    for (const ColumnTerm& term : terms)
      if (term.columnHash == column.hash()) return term.value(parameters_);
    return nullptr;
  }

  const WritePattern& pattern_;
  std::span<const Value> parameters_;
};

/// A value as the database would return it from a column of this kind.
Value asRead(const Value& written, ColumnKind kind) {
  if (written.isNull()) return written;
  switch (kind) {
  case ColumnKind::Double:
    if (const auto number = written.number()) return {*number};
    break;
  case ColumnKind::Currency:
    if (const auto amount = written.money()) return {*amount};
    break;
  case ColumnKind::Boolean:
    if (const auto truth = written.truth()) return {*truth};
    break;
  case ColumnKind::Plain:
    break;
  }
  return written;
}

bool sameRows(const Rows& first, const Rows& second) {
  const auto same = [](const Value& a, const Value& b) {
    return a == b || (a.isNull() == b.isNull() && a.text() == b.text());
  };
  return first.keys.size() == second.keys.size() && std::ranges::equal(first.values, second.values, same);
}

/// Whether two selects over one table want the same rows.
bool sameCondition(const ReadPattern& first, std::span<const Value> firstParameters,
                   const ReadPattern& second, std::span<const Value> secondParameters) {
  if (first.furtherConditions || second.furtherConditions ||
      first.equalities.size() != second.equalities.size())
    return false;
  for (std::size_t i = 0; i < first.equalities.size(); ++i) {
    const Value* const a = first.equalities[i].value(firstParameters);
    const Value* const b = second.equalities[i].value(secondParameters);
    if (first.equalities[i].columnHash != second.equalities[i].columnHash || a == nullptr || b == nullptr ||
        a->text() != b->text())
      return false;
  }
  return true;
}

/// Clients of PostgreSQL refuse the description of more than about 7,400 parameters.
std::size_t setsAtOnce(std::size_t width) {
  constexpr std::size_t mostValues = 7000;
  return std::max<std::size_t>(mostValues / std::max<std::size_t>(width, 1), 1);
}

/// Some columns of rows that have them all.
std::shared_ptr<const Rows> columnsOf(const Rows& wider, const RowShape& from, const RowShape& shape) {
  auto rows = std::make_shared<Rows>();
  rows->keys = wider.keys;
  for (std::size_t at = 0; at < wider.keys.size(); ++at)
    for (std::size_t i = 0; i < shape.size(); ++i)
      rows->values.push_back(wider.values[at * from.size() + from.find(ColumnName(shape.name(i)))]);
  return rows;
}

bool comparesOneOf(const ReadPattern& pattern, const RowChange& change) {
  return std::ranges::any_of(pattern.equalities, [&](const ColumnTerm& condition) {
    return change.assigns(ColumnName(std::string_view(condition.column)));
  });
}

} // namespace

/// Writes of one kind that follow each other.
struct Group::Run {
  Kind kind;
  const void* target; ///< the source or the statement
  std::vector<const Waiting*> rows;
};

bool Group::joinsStatements() const { return collects_ && statements_.driver().dialect().joinsStatements; }

bool Group::collectsFor(std::string_view table) const {
  return collects_ &&
         (triggered_.empty() || std::ranges::find(triggered_, asciiLower(table)) == triggered_.end());
}

void Group::begin() {
  end();
  triggered_ = statements_.driver().triggeredTables();
  collects_ = true;
  statements_.driver().stakeUnit(true);
}

void Group::end() noexcept {
  if (collects_) statements_.driver().stakeUnit(false);
  collects_ = notes_ = lost_ = false;
  noted_.clear();
  ++unit_;
  ++epoch_;
  waiting_.clear();
  waitingOf_.clear();
  waitingIndexes_.clear();
  marks_.clear();
  derived_.clear();
  known_.clear();
}

void Group::finish() {
  if (!collects_) return;
  flush(true);
  end();
}

void Group::lose(const DatabaseError& cause) {
  lost_ = true;
  throw WorkLostError(cause.what(), cause.nativeCode(), cause.sqlState());
}

void Group::setSavepoint() {
  if (collects_)
    marks_.push_back({waiting_.size(), derived_.size(), false});
  else
    savepoints_.setRealSavepoint();
}

void Group::releaseSavepoint() {
  if (marks_.empty()) {
    savepoints_.releaseRealSavepoint();
    return;
  }
  const bool real = marks_.back().real;
  marks_.pop_back();
  if (real) savepoints_.releaseRealSavepoint();
}

void Group::rollbackToSavepoint() noexcept {
  ++epoch_;
  if (marks_.empty()) {
    savepoints_.undoToRealSavepoint();
    return;
  }
  const Mark mark = marks_.back();
  marks_.pop_back();
  for (std::size_t i = mark.at; i < waiting_.size(); ++i) --waitingOf_.find(waiting_[i].table)->second;
  waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(mark.at), waiting_.end());
  waitingIndexes_.clear();
  if (mark.real) {
    savepoints_.undoToRealSavepoint();
    known_.clear();
    derived_.clear();
    return;
  }
  for (std::size_t i = mark.derived; i < derived_.size(); ++i) derived_[i]->rows.reset();
  derived_.resize(mark.derived);
}

void Group::flush(bool allMarks) {
  if (lost_) throw WorkLostError("the unit of work has been lost", 0);
  std::size_t sent = 0;
  try {
    for (Mark& mark : marks_) {
      if (mark.real) continue;
      send(sent, mark.at);
      sent = mark.at;
      if (sent == waiting_.size() && !allMarks) break;
      savepoints_.setRealSavepoint();
      mark.real = true;
    }
    send(sent, waiting_.size());
  } catch (const ConflictError&) {
    lost_ = true;
    throw;
  } catch (const StatementError& refusal) {
    lose(refusal);
  } catch (const BusyError& busy) {
    lose(busy);
  }
  waiting_.clear();
  waitingOf_.clear();
  waitingIndexes_.clear();
  for (Mark& mark : marks_) mark.at = 0;
  prove();
}

/// The writes of a table follow each other, those of the same kind together as far as that changes nothing: a
/// new row may come before a change of another one.
void Group::send(std::size_t from, std::size_t to) {
  std::vector<std::vector<Run>> tables;
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = from; i < to; ++i) {
    const Waiting& row = waiting_[i];
    const auto [place, isNew] = places.emplace(row.table, tables.size());
    if (isNew) tables.emplace_back();
    std::vector<Run>& runs = tables[place->second];
    const void* const target =
        row.kind == Kind::Statement ? static_cast<const void*>(row.statement) : row.source;
    const auto fits = [&](const Run& run) { return run.kind == row.kind && run.target == target; };
    const auto holds = [&](const Run& run) {
      return std::ranges::any_of(run.rows, [&](const Waiting* other) { return other->key == row.key; });
    };
    const auto changesAgain = [&](const Run& run) {
      return row.kind == Kind::Update && std::ranges::any_of(run.rows, [&](const Waiting* other) {
               return other->key == row.key && other->columns != row.columns;
             });
    };
    const std::size_t count = runs.size();
    if (count > 0 && fits(runs[count - 1]) && !changesAgain(runs[count - 1]))
      runs[count - 1].rows.push_back(&row);
    else if (count > 1 && fits(runs[count - 2]) && runs[count - 1].kind != Kind::Statement &&
             row.kind != Kind::Statement && runs[count - 1].kind != row.kind && row.kind == Kind::Insert &&
             !holds(runs[count - 1]))
      runs[count - 2].rows.push_back(&row);
    else
      runs.push_back({row.kind, target, {&row}});
  }
  for (const auto& runs : tables)
    for (const Run& run : runs) sendRun(run);
}

void Group::sendRun(const Run& run) {
  switch (run.kind) {
  case Kind::Insert:
    sendInserts(run.rows);
    break;
  case Kind::Update:
    sendUpdates(run.rows);
    break;
  case Kind::Statement:
    sendStatements(run.rows);
    break;
  }
}

void Group::sendInserts(std::span<const Waiting* const> rows) {
  RowSource& source = *rows.front()->source;
  if (joinsStatements() && rows.size() > 1) {
    forEachBlock(rows, source.shape->size(), [&](std::span<const Waiting* const> block) {
      std::vector<const ColumnMask*> columns;
      for (const Waiting* row : block) columns.push_back(&row->columns);
      const auto insert = statements_.manyInserts(source, columns);
      sendBlock(*insert, block, source.table, false);
    });
    return;
  }
  for (const Waiting* row : rows) {
    Statement& insert = statements_.insert(source, row->columns);
    insert.bindAll(row->values);
    if (!statements_.driver().insertRow(insert)) throw NotInserted(source.table);
  }
}

void Group::sendUpdates(std::span<const Waiting* const> rows) {
  RowSource& source = *rows.front()->source;
  if (!joinsStatements() || rows.size() == 1) {
    for (const Waiting* row : rows)
      sendRow(statements_.update(source, row->columns), *row, source.table, true);
    return;
  }
  // Of different rows, so their order does not matter; of those of the same row the last one counts.
  std::unordered_map<ColumnMask, std::vector<const Waiting*>> byColumns;
  std::unordered_set<std::int64_t> seen;
  for (std::size_t i = rows.size(); i-- > 0;)
    if (seen.insert(rows[i]->key).second) byColumns[rows[i]->columns].push_back(rows[i]);
  for (const auto& each : byColumns)
    forEachBlock(each.second, each.first.count() + 1, [&](std::span<const Waiting* const> block) {
      sendBlock(statements_.manyUpdates(source, each.first, block.size()), block, source.table, true);
    });
}

/// Sets that agree in what they find go into statements of their own, in their order.
void Group::sendStatements(std::span<const Waiting* const> rows) {
  PlainStatement& plain = *rows.front()->statement;
  const std::string& table = rows.front()->table;
  if (!joinsStatements() || !plain.set || rows.size() == 1) {
    for (const Waiting* row : rows) sendRow(*plain.statement, *row, table, false);
    return;
  }
  std::vector<std::vector<const Waiting*>> waves;
  std::unordered_map<std::string, std::size_t> used;
  for (const Waiting* row : rows) {
    std::string key;
    for (const std::size_t parameter : plain.set->keys)
      key.append(comparisonKey(row->values[parameter]).value_or(std::string())).append(1, '\0');
    const std::size_t wave = plain.set->keys.empty() ? 0 : used[key]++;
    if (wave == waves.size()) waves.emplace_back();
    waves[wave].push_back(row);
  }
  for (const auto& wave : waves)
    forEachBlock(wave, rows.front()->values.size(), [&](std::span<const Waiting* const> block) {
      sendBlock(*statements_.many(plain, block.size()), block, table, false);
    });
}

void Group::forEachBlock(std::span<const Waiting* const> rows, std::size_t width,
                         const std::function<void(std::span<const Waiting* const>)>& send) {
  const std::size_t most = setsAtOnce(width);
  for (std::size_t at = 0; at < rows.size(); at += most)
    send(rows.subspan(at, std::min(most, rows.size() - at)));
}

/// `keys`: the row key follows the values.
void Group::sendRow(Statement& statement, const Waiting& row, std::string_view table, bool keys) {
  statement.bindAll(row.values);
  const Value key(row.key);
  if (keys) statement.bind(row.values.size(), key);
  if (statement.run() == 0) throw NotInserted(table);
}

/// Each of the rows must change one row of the table.
void Group::sendBlock(Statement& statement, std::span<const Waiting* const> rows, std::string_view table,
                      bool keys) {
  std::size_t place = 0;
  std::vector<Value> keyValues;
  keyValues.reserve(rows.size());
  for (const Waiting* row : rows) {
    for (const Value& value : row->values) statement.bind(place++, value);
    if (keys) statement.bind(place++, keyValues.emplace_back(row->key));
  }
  if (statement.run() != static_cast<std::int64_t>(rows.size())) throw NotInserted(table);
}

/// What was answered from waiting writes must be what the database holds now.
void Group::prove() {
  std::vector<KnownRows::Entry*> open;
  for (KnownRows::Entry* entry : derived_)
    if (entry->rows && entry->used) open.push_back(entry);
  for (KnownRows::Entry* entry : derived_)
    if (entry->rows && !entry->used) entry->rows.reset();
  derived_.clear();
  for (Mark& mark : marks_) mark.derived = 0;
  std::map<RowQuery*, std::vector<KnownRows::Entry*>> byQuery;
  for (KnownRows::Entry* entry : open) byQuery[entry->query].push_back(entry);
  for (auto& [query, entries] : byQuery) {
    std::vector<const std::vector<Value>*> parameters;
    for (const KnownRows::Entry* entry : entries) parameters.push_back(&entry->parameters);
    const auto found = readMany(*query, parameters);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (!sameRows(*entries[i]->rows, *found[i])) {
        query->derivable = false;
        lost_ = true;
        throw WorkLostError(
            "the database holds other values than were written into the table " + query->pattern->table, 0);
      }
      entries[i]->rows = found[i];
      entries[i]->derived = entries[i]->used = false;
    }
  }
}

void Group::changeKnown(KnownRows::Entry& entry, const RowChange& change) {
  RowQuery& query = *entry.query;
  const RowShape& shape = *query.source.shape;
  const auto place =
      change.key() == 0 ? entry.rows->keys.end() : std::ranges::find(entry.rows->keys, change.key());
  if (place == entry.rows->keys.end() || query.pattern->furtherConditions || !query.derivable ||
      !query.source.layout.computed.empty() || comparesOneOf(*query.pattern, change)) {
    entry.rows.reset();
    return;
  }
  auto rows = std::make_shared<Rows>(*entry.rows);
  const std::size_t at = static_cast<std::size_t>(place - entry.rows->keys.begin()) * shape.size();
  bool touched = false;
  change.forEachAssigned([&](ColumnName column) {
    const std::size_t index = shape.find(column);
    if (index >= shape.size()) return;
    rows->values[at + index] = asRead(*change.after(column), shape.kind(index));
    touched = true;
  });
  if (!touched) return;
  entry.rows = std::move(rows);
  entry.used = false;
  // Each time: the undoing of a part forgets what was derived in it.
  derived_.push_back(&entry);
  entry.derived = true;
}

/// Whatever was read of the row is forgotten or follows the change.
void Group::note(const RowChange& change) {
  std::vector<KnownRows::Entry*> concerned;
  known_.forEachConcerned(change, [&](KnownRows::Entry& entry) { concerned.push_back(&entry); });
  // An answer must be proved in the state for which it was given.
  if (std::ranges::any_of(concerned, [](const auto* entry) { return entry->derived && entry->used; }))
    flush(false);
  for (KnownRows::Entry* entry : concerned)
    if (entry->rows) changeKnown(*entry, change);
}

std::int64_t Group::insertLater(RowSource& source, const ColumnMask& columns, std::span<const Value> values) {
  requireWriting();
  const Before nothing = [](std::size_t) { return nullptr; };
  note(RowOfSource(source, 0, true, columns, values, nothing));
  std::int64_t key = 0;
  Waiting row{Kind::Insert, &source, nullptr, source.tableKey, 0, columns, {}};
  for (std::size_t i = 0; i < source.shape->size(); ++i) {
    if (!columns[i]) continue;
    if (equalCodes(source.shape->name(i), source.key.row) ||
        equalCodes(source.shape->name(i), source.key.identity))
      key = values[i].integer().value_or(0);
    row.values.push_back(values[i]);
  }
  row.key = key;
  ++waitingOf_[row.table];
  waiting_.push_back(std::move(row));
  return key;
}

void Group::updateLater(RowSource& source, std::int64_t key, const ColumnMask& columns,
                        std::span<const Value> values, const Before& before) {
  requireWriting();
  note(RowOfSource(source, key, false, columns, values, before));
  Waiting row{Kind::Update, &source, nullptr, source.tableKey, key, columns, {}};
  for (std::size_t i = 0; i < source.shape->size(); ++i)
    if (columns[i]) row.values.push_back(values[i]);
  ++waitingOf_[row.table];
  waiting_.push_back(std::move(row));
}

void Group::executeLater(std::string_view table, PlainStatement& statement, std::vector<Value> values) {
  requireWriting();
  Waiting row{Kind::Statement, nullptr, &statement, asciiLower(table), 0, {}, {}};
  if (statement.pattern)
    note(RowsOfStatement(*statement.pattern, values));
  else
    known_.forgetTable(row.table);
  row.values = std::move(values);
  ++writes_[row.table];
  ++waitingOf_[row.table];
  waiting_.push_back(std::move(row));
}

void Group::requireWriting() const {
  if (notes_) throw std::logic_error("nothing is written while reads are noted");
}

std::uint64_t Group::writesTo(const std::string& table) const {
  const auto found = writes_.find(table);
  return found == writes_.end() ? 0 : found->second;
}

void Group::prepareToRead(const std::string* table) {
  if (!collects_ || waiting_.empty()) return;
  if (table != nullptr) {
    const auto count = waitingOf_.find(*table);
    if (count == waitingOf_.end() || count->second == 0) return;
  }
  flush(false);
}

void Group::prepareToReadRow(const RowSource& source, std::int64_t key) {
  if (!collects_) return;
  const auto count = waitingOf_.find(source.tableKey);
  if (count == waitingOf_.end() || count->second == 0) return;
  const bool concerned = std::ranges::any_of(waiting_, [&](const Waiting& row) {
    return row.table == source.tableKey && (row.kind == Kind::Statement || row.key == key);
  });
  if (concerned) flush(false);
}

void Group::prepareToWrite(const Sql& statement) {
  if (!collects_) return;
  requireWriting();
  const PlainStatement& plain = statements_.plain(statement);
  if (plain.pattern) {
    prepareToWrite(RowsOfStatement(*plain.pattern, statement.values()));
  } else {
    flush(true);
    known_.clear();
  }
}

void Group::prepareToWrite(const RowChange& change) {
  if (!collects_) return;
  flush(true);
  ++writes_[std::string(change.table())];
  if (!collectsFor(change.table())) {
    known_.clear();
    return;
  }
  std::vector<KnownRows::Entry*> concerned;
  known_.forEachConcerned(change, [&](KnownRows::Entry& entry) { concerned.push_back(&entry); });
  for (KnownRows::Entry* entry : concerned) entry->rows.reset();
}

void Group::prepareToInsert(const RowSource& source, const ColumnMask& columns,
                            std::span<const Value> values) {
  const Before nothing = [](std::size_t) { return nullptr; };
  prepareToWrite(RowOfSource(source, 0, true, columns, values, nothing));
}

void Group::prepareToUpdate(const RowSource& source, std::int64_t key, const ColumnMask& columns,
                            std::span<const Value> values, const Before& before) {
  prepareToWrite(RowOfSource(source, key, false, columns, values, before));
}

/// What the column of the written row holds; null when that is not known.
const Value* Group::valueIn(const Waiting& row, const ColumnTerm& column) {
  const ColumnName name{std::string_view(column.column)};
  switch (row.kind) {
  case Kind::Update:
    break;
  case Kind::Statement:
    if (!row.statement->pattern) break;
    if (const RowsOfStatement written(*row.statement->pattern, row.values); !written.isNew())
      return written.assigns(name) ? nullptr : written.before(name);
    return RowsOfStatement(*row.statement->pattern, row.values).after(name);
  case Kind::Insert: {
    const std::size_t index = row.source->shape->find(name);
    if (index >= row.source->shape->size() || !row.columns[index]) return nullptr;
    std::size_t place = 0;
    for (std::size_t i = 0; i < index; ++i) place += row.columns[i] ? 1 : 0;
    return &row.values[place];
  }
  }
  return nullptr;
}

/// The places of the writes that may concern the rows of a read, in their order.
std::vector<std::size_t> Group::candidates(const ReadPattern& pattern, std::span<const Value> parameters) {
  std::vector<std::size_t> places;
  for (const ColumnTerm& condition : pattern.equalities) {
    const Value* const wanted = condition.value(parameters);
    const auto key = wanted == nullptr ? std::nullopt : comparisonKey(*wanted);
    if (!key) continue;
    WaitingIndex& index = waitingIndexes_[{pattern.table, condition.columnHash}];
    for (; index.upTo < waiting_.size(); ++index.upTo) {
      const Waiting& row = waiting_[index.upTo];
      if (row.table != pattern.table) continue;
      const Value* const value = valueIn(row, condition);
      const auto held = value == nullptr ? std::nullopt : comparisonKey(*value);
      (held ? index.byValue[*held] : index.others).push_back(index.upTo);
    }
    places = index.others;
    if (const auto found = index.byValue.find(*key); found != index.byValue.end()) {
      places.insert(places.end(), found->second.begin(), found->second.end());
      std::ranges::sort(places);
    }
    return places;
  }
  for (std::size_t i = 0; i < waiting_.size(); ++i)
    if (waiting_[i].table == pattern.table) places.push_back(i);
  return places;
}

Group::Effect Group::effectOnRead(const RowQuery& query, std::span<const Value> parameters,
                                  std::vector<const Waiting*>& matching) {
  const ReadPattern& pattern = *query.pattern;
  const auto count = waitingOf_.find(pattern.table);
  if (count == waitingOf_.end() || count->second == 0) return Effect::None;
  bool certain = query.derivable && !pattern.furtherConditions && !pattern.equalities.empty() &&
                 query.source.layout.computed.empty() && !query.source.table.empty();
  for (const std::size_t place : candidates(pattern, parameters)) {
    const Waiting& row = waiting_[place];
    if (row.kind == Kind::Statement && row.statement->pattern &&
        !concerns(pattern, parameters, RowsOfStatement(*row.statement->pattern, row.values)))
      continue;
    // It may bring any row into the result.
    if (row.kind != Kind::Insert) return Effect::Mixed;
    bool may = true;
    bool must = true;
    for (const ColumnTerm& condition : pattern.equalities) {
      const Value* const value = valueIn(row, condition);
      const Value* const wanted = condition.value(parameters);
      may = may && (value == nullptr || wanted == nullptr || mayEqual(*value, *wanted));
      must = must && value != nullptr && wanted != nullptr && !value->isNull() &&
             value->text() == wanted->text();
      if (!may) break;
    }
    if (!may) continue;
    certain = certain && must;
    matching.push_back(&row);
  }
  if (matching.empty()) return Effect::None;
  return certain ? Effect::Derivable : Effect::Mixed;
}

std::shared_ptr<const Rows> Group::read(RowQuery& query, std::span<const Value> parameters, bool again) {
  if (!collects_) return readNow(query, parameters);
  if (notes_) {
    const KnownRows::Entry* const known = query.pattern ? known_.find(query, parameters) : nullptr;
    return known != nullptr ? known->rows : noteRead(query, parameters);
  }
  if (!query.pattern) {
    prepareToRead(nullptr);
    return readNow(query, parameters);
  }
  if (query.source.layout.aggregate) {
    prepareToRead(&query.pattern->table);
    return readNow(query, parameters);
  }
  KnownRows::Entry* const known = known_.find(query, parameters);
  if (known != nullptr && !again) {
    known->used = true;
    return known->rows;
  }
  if (known != nullptr) known->rows.reset();
  std::vector<const Waiting*> matching;
  const Effect effect = effectOnRead(query, parameters, matching);
  if (effect != Effect::None && !again)
    if (auto rows = derivedRows(query, parameters, effect, matching)) {
      KnownRows::Entry& entry = known_.add(query, parameters, std::move(rows));
      entry.derived = entry.used = true;
      derived_.push_back(&entry);
      return entry.rows;
    }
  if (effect != Effect::None) flush(false);
  return known_.add(query, parameters, readNow(query, parameters)).rows;
}

/// From another result with the same rows, or from the rows that wait. Null when neither has all columns.
std::shared_ptr<const Rows> Group::derivedRows(RowQuery& query, std::span<const Value> parameters,
                                               Effect effect, std::span<const Waiting* const> matching) {
  if (!query.derivable || !query.source.shape || !query.source.layout.computed.empty()) return nullptr;
  const RowShape& shape = *query.source.shape;
  const KnownRows::Entry* const wider = known_.findAny(query, parameters, [&](const KnownRows::Entry& entry) {
    return entry.query != &query && entry.query->source.shape->hasAll(shape) &&
           sameCondition(*entry.query->pattern, entry.parameters, *query.pattern, parameters);
  });
  if (wider != nullptr) return columnsOf(*wider->rows, *wider->query->source.shape, shape);
  if (effect != Effect::Derivable) return nullptr;
  auto rows = std::make_shared<Rows>();
  for (const Waiting* row : matching) appendWaiting(*row, shape, *rows);
  return rows;
}

/// The row as it will be read, with null where nothing is given.
void Group::appendWaiting(const Waiting& row, const RowShape& shape, Rows& rows) {
  const RowShape& from = *row.source->shape;
  rows.keys.push_back(row.key);
  std::vector<const Value*> given(from.size());
  std::size_t next = 0;
  for (std::size_t i = 0; i < from.size(); ++i)
    if (row.columns[i]) given[i] = &row.values[next++];
  for (std::size_t i = 0; i < shape.size(); ++i) {
    const std::size_t index = from.find(ColumnName(shape.name(i)));
    const bool isGiven = index < from.size() && given[index] != nullptr;
    rows.values.push_back(isGiven ? asRead(*given[index], shape.kind(i)) : Value::null());
  }
}

std::shared_ptr<const Rows> Group::readNow(RowQuery& query, std::span<const Value> parameters) {
  auto rows = std::make_shared<Rows>();
  Statement& select = *query.select;
  select.bindAll(parameters);
  const StatementUse use(select);
  // Read the shape after the first step, which recompiles the statement when the schema has changed.
  bool more = select.step();
  statements_.completeShape(query.source, select);
  const RowShape& shape = *query.source.shape;
  while (more) {
    rows->keys.push_back(
        query.source.layout.hidden > 0 ? select.column(0, ColumnKind::Plain).integer().value_or(0) : 0);
    for (std::size_t i = 0; i < shape.size(); ++i) rows->values.push_back(shape.read(select, i));
    more = select.step();
  }
  return rows;
}

std::vector<std::shared_ptr<const Rows>>
Group::readMany(RowQuery& query, std::span<const std::vector<Value>* const> parameters) {
  std::vector<std::shared_ptr<const Rows>> results;
  results.reserve(parameters.size());
  if (!statements_.driver().dialect().joinsStatements || parameters.size() == 1) {
    for (const std::vector<Value>* each : parameters) results.push_back(readNow(query, *each));
    return results;
  }
  const std::size_t most = std::bit_floor(std::min(mostAtOnce, setsAtOnce(query.parameterCount)));
  for (std::size_t at = 0; at < parameters.size(); at += most)
    readBlock(query, parameters.subspan(at, std::min(most, parameters.size() - at)), results);
  return results;
}

/// One statement joins the table with the values of all.
void Group::readBlock(RowQuery& query, std::span<const std::vector<Value>* const> parameters,
                      std::vector<std::shared_ptr<const Rows>>& results) {
  ManyQuery& many = statements_.many(query, parameters.size());
  const std::size_t width = query.parameterCount;
  std::vector<Value> values;
  values.reserve(many.rows * width);
  for (const std::vector<Value>* each : parameters) values.insert(values.end(), each->begin(), each->end());
  // Null equals nothing.
  values.resize(many.rows * width);
  std::vector<std::shared_ptr<Rows>> found(parameters.size());
  for (auto& rows : found) rows = std::make_shared<Rows>();
  many.select->bindAll(values);
  const StatementUse use(*many.select);
  bool more = many.select->step();
  if (!many.shape) many.shape.emplace(statements_.shapeOf(*many.select, many.layout));
  if (!query.source.shape) query.source.shape = many.shape->without(1);
  while (more) {
    const auto at = static_cast<std::size_t>(many.select->column(0, ColumnKind::Plain).integer().value_or(0));
    if (at < found.size()) {
      Rows& rows = *found[at];
      rows.keys.push_back(query.source.layout.hidden > 0
                              ? many.select->column(1, ColumnKind::Plain).integer().value_or(0)
                              : 0);
      for (std::size_t i = 0; i < many.shape->size(); ++i)
        rows.values.push_back(many.shape->read(*many.select, i));
    }
    more = many.select->step();
  }
  results.insert(results.end(), found.begin(), found.end());
}

std::shared_ptr<const Rows> Group::noteRead(RowQuery& query, std::span<const Value> parameters) {
  if (!query.source.shape) statements_.completeShape(query.source, *query.select);
  if (query.pattern && !query.source.layout.aggregate && query.parameterCount > 0)
    noted_[&query].emplace_back(parameters.begin(), parameters.end());
  return std::make_shared<Rows>();
}

void Group::noteReads() { notes_ = joinsStatements(); }

std::size_t Group::readNoted() {
  notes_ = false;
  std::size_t count = 0;
  for (auto& noted : std::exchange(noted_, {})) {
    RowQuery& query = *noted.first;
    std::vector<const std::vector<Value>*> distinct;
    std::unordered_set<std::string> seen;
    for (const std::vector<Value>& values : noted.second) {
      std::string key;
      for (const Value& value : values) key.append(value.text()).append(1, value.isNull() ? '\1' : '\0');
      if (seen.insert(std::move(key)).second) distinct.push_back(&values);
    }
    std::vector<const Waiting*> matching;
    const bool concerned = std::ranges::any_of(
        distinct, [&](const auto* values) { return effectOnRead(query, *values, matching) != Effect::None; });
    if (concerned) flush(false);
    const auto results = readMany(query, distinct);
    for (std::size_t i = 0; i < distinct.size(); ++i) known_.add(query, *distinct[i], results[i]);
    count += distinct.size();
  }
  return count;
}

Rows Group::readByKey(KeysetQuery& query, std::span<const std::int64_t> keys) {
  Rows rows;
  for (std::size_t at = 0; at < keys.size(); at += mostAtOnce) {
    const auto block = keys.subspan(at, std::min(mostAtOnce, keys.size() - at));
    ManyQuery& many = statements_.many(query, block.size());
    std::vector<Value> values(block.begin(), block.end());
    values.resize(many.rows);
    many.select->bindAll(values);
    const StatementUse use(*many.select);
    bool more = many.select->step();
    statements_.completeShape(query.source, *many.select);
    const RowShape& shape = *query.source.shape;
    while (more) {
      rows.keys.push_back(many.select->column(0, ColumnKind::Plain).integer().value_or(0));
      for (std::size_t i = 0; i < shape.size(); ++i) rows.values.push_back(shape.read(*many.select, i));
      more = many.select->step();
    }
  }
  return rows;
}

} // namespace qx::relational
