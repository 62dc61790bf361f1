#include "adapters/sql/group.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/statement_pattern.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
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
    return isNew_ || index >= source_.shape->size() || !source_.shape->stored(index) ? nullptr : before_(index);
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
bool sameCondition(const ReadPattern& first, std::span<const Value> firstParameters, const ReadPattern& second,
                   std::span<const Value> secondParameters) {
  if (first.furtherConditions || second.furtherConditions || first.equalities.size() != second.equalities.size())
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

bool Group::joinsStatements() const {
  return collects_ && statements_.driver().dialect().joinsStatements;
}

bool Group::collectsFor(std::string_view table) const {
  return collects_ && (triggered_.empty() || std::ranges::find(triggered_, asciiLower(table)) == triggered_.end());
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
    const void* const target = row.kind == Kind::Statement ? static_cast<const void*>(row.statement) : row.source;
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
    sendRows(*run.rows.front()->statement, run.rows, run.rows.front()->table, false);
    break;
  }
}

void Group::sendInserts(std::span<const Waiting* const> rows) {
  for (std::size_t at = 0; at < rows.size();) {
    std::size_t end = at + 1;
    while (end < rows.size() && rows[end]->columns == rows[at]->columns) ++end;
    RowSource& source = *rows[at]->source;
    sendRows(statements_.insert(source, rows[at]->columns), rows.subspan(at, end - at), source.table, false);
    at = end;
  }
}

void Group::sendUpdates(std::span<const Waiting* const> rows) {
  // Of different rows, so their order does not matter.
  std::vector<const Waiting*> left(rows.begin(), rows.end());
  while (!left.empty()) {
    const ColumnMask columns = left.front()->columns;
    const auto others = std::ranges::stable_partition(
        left, [&](const Waiting* row) { return row->columns == columns; });
    const auto same = static_cast<std::size_t>(others.begin() - left.begin());
    RowSource& source = *left.front()->source;
    sendRows(statements_.update(source, columns), std::span(left).first(same), source.table, true);
    left.erase(left.begin(), others.begin());
  }
}

/// Each of the rows must change one row of the table. `keys`: the row key follows the values.
void Group::sendRows(Statement& statement, std::span<const Waiting* const> rows, std::string_view table,
                     bool keys) {
  std::int64_t changed = 0;
  if (!statements_.driver().dialect().joinsStatements) {
    for (const Waiting* row : rows) {
      statement.bindAll(row->values);
      const Value key(row->key);
      if (keys) statement.bind(row->values.size(), key);
      changed += statement.run() > 0 ? 1 : 0;
    }
  } else {
    std::vector<Value> values;
    const std::size_t width = rows.front()->values.size() + (keys ? 1 : 0);
    values.reserve(rows.size() * width);
    for (const Waiting* row : rows) {
      values.insert(values.end(), row->values.begin(), row->values.end());
      if (keys) values.emplace_back(row->key);
    }
    changed = statement.runRows(values, width);
  }
  if (changed != static_cast<std::int64_t>(rows.size())) throw NotInserted(table);
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
        throw WorkLostError("the database holds other values than were written into the table " +
                                query->pattern->table,
                            0);
      }
      entries[i]->rows = found[i];
      entries[i]->derived = entries[i]->used = false;
    }
  }
}

void Group::changeKnown(KnownRows::Entry& entry, const RowChange& change) {
  RowQuery& query = *entry.query;
  const RowShape& shape = *query.source.shape;
  const auto place = change.key() == 0 ? entry.rows->keys.end() : std::ranges::find(entry.rows->keys, change.key());
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
  if (!entry.derived) derived_.push_back(&entry);
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
  Waiting row{Kind::Statement, nullptr, statement.statement.get(), asciiLower(table), 0, {}, {}};
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

void Group::prepareToInsert(const RowSource& source, const ColumnMask& columns, std::span<const Value> values) {
  const Before nothing = [](std::size_t) { return nullptr; };
  prepareToWrite(RowOfSource(source, 0, true, columns, values, nothing));
}

void Group::prepareToUpdate(const RowSource& source, std::int64_t key, const ColumnMask& columns,
                            std::span<const Value> values, const Before& before) {
  prepareToWrite(RowOfSource(source, key, false, columns, values, before));
}

Group::Effect Group::effectOnRead(const RowQuery& query, std::span<const Value> parameters,
                                  std::vector<const Waiting*>& matching) const {
  const ReadPattern& pattern = *query.pattern;
  const auto count = waitingOf_.find(pattern.table);
  if (count == waitingOf_.end() || count->second == 0) return Effect::None;
  bool certain = query.derivable && !pattern.furtherConditions && !pattern.equalities.empty() &&
                 query.source.layout.computed.empty() && !query.source.table.empty();
  bool concerned = false;
  for (const Waiting& row : waiting_) {
    if (row.table != pattern.table) continue;
    // It may bring any row into the result.
    if (row.kind != Kind::Insert) return Effect::Mixed;
    bool may = true;
    bool all = true;
    for (const ColumnTerm& condition : pattern.equalities) {
      const std::size_t index = row.source->shape->find(ColumnName(std::string_view(condition.column)));
      const bool given = index < row.source->shape->size() && row.columns[index];
      const Value* const wanted = condition.value(parameters);
      if (!given || wanted == nullptr) {
        all = false;
        continue;
      }
      std::size_t place = 0;
      for (std::size_t i = 0; i < index; ++i) place += row.columns[i] ? 1 : 0;
      const Value& value = row.values[place];
      may = may && mayEqual(value, *wanted);
      all = all && !value.isNull() && value.text() == wanted->text();
      if (!may) break;
    }
    if (!may) continue;
    concerned = true;
    certain = certain && all;
    matching.push_back(&row);
  }
  if (!concerned) return Effect::None;
  return certain && !matching.empty() ? Effect::Derivable : Effect::Mixed;
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
std::shared_ptr<const Rows> Group::derivedRows(RowQuery& query, std::span<const Value> parameters, Effect effect,
                                               std::span<const Waiting* const> matching) {
  if (!query.derivable || !query.source.shape || !query.source.layout.computed.empty()) return nullptr;
  const RowShape& shape = *query.source.shape;
  const KnownRows::Entry* const wider = known_.findAny(query, parameters, [&](const KnownRows::Entry& entry) {
    if (entry.query == &query || !sameCondition(*entry.query->pattern, entry.parameters, *query.pattern, parameters))
      return false;
    for (std::size_t i = 0; i < shape.size(); ++i)
      if (!entry.query->source.shape->has(shape.name(i))) return false;
    return true;
  });
  auto rows = std::make_shared<Rows>();
  if (wider != nullptr) {
    const RowShape& from = *wider->query->source.shape;
    rows->keys = wider->rows->keys;
    for (std::size_t at = 0; at < rows->keys.size(); ++at)
      for (std::size_t i = 0; i < shape.size(); ++i)
        rows->values.push_back(
            wider->rows->values[at * from.size() + from.find(ColumnName(shape.name(i)))]);
    return rows;
  }
  if (effect != Effect::Derivable) return nullptr;
  for (const Waiting* row : matching) {
    const RowShape& from = *row->source->shape;
    rows->keys.push_back(row->key);
    std::vector<const Value*> given(from.size());
    std::size_t next = 0;
    for (std::size_t i = 0; i < from.size(); ++i)
      if (row->columns[i]) given[i] = &row->values[next++];
    for (std::size_t i = 0; i < shape.size(); ++i) {
      const std::size_t index = from.find(ColumnName(shape.name(i)));
      const bool isGiven = index < from.size() && given[index] != nullptr;
      rows->values.push_back(isGiven ? asRead(*given[index], shape.kind(i)) : Value::null());
    }
  }
  return rows;
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
    rows->keys.push_back(query.source.layout.hidden > 0
                             ? select.column(0, ColumnKind::Plain).integer().value_or(0)
                             : 0);
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
  for (std::size_t at = 0; at < parameters.size(); at += mostAtOnce)
    readBlock(query, parameters.subspan(at, std::min(mostAtOnce, parameters.size() - at)), results);
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
      for (std::size_t i = 0; i < many.shape->size(); ++i) rows.values.push_back(many.shape->read(*many.select, i));
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
  for (auto& [query, all] : std::exchange(noted_, {})) {
    std::vector<const std::vector<Value>*> distinct;
    std::unordered_set<std::string> seen;
    for (const std::vector<Value>& values : all) {
      std::string key;
      for (const Value& value : values) key.append(value.text()).append(1, value.isNull() ? '\1' : '\0');
      if (seen.insert(std::move(key)).second) distinct.push_back(&values);
    }
    std::vector<const Waiting*> matching;
    const bool concerned = std::ranges::any_of(distinct, [&](const auto* values) {
      return effectOnRead(*query, *values, matching) != Effect::None;
    });
    if (concerned) flush(false);
    const auto results = readMany(*query, distinct);
    for (std::size_t i = 0; i < distinct.size(); ++i) known_.add(*query, *distinct[i], results[i]);
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
