#include "adapters/sql/waiting_writes.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/known_rows.h"
#include "adapters/sql/row_changes.h"
#include "adapters/sql/statement_pattern.h"
#include "platform/database_error.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

namespace qx::relational {

/// A value as the database would return it from a column of this kind.
Value valueAsRead(const Value& written, ColumnKind kind) {
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

/// Writes of one kind that follow each other.
struct WaitingWrites::Run {
  Kind kind;
  const void* target; ///< the source or the statement
  std::vector<const WaitingWrite*> rows;
  std::unordered_map<std::int64_t, const ColumnMask*> columnsOf; ///< that it changes, by the key of the row
};

bool WaitingWrites::concern(std::string_view table) const {
  const auto count = countOf_.find(table);
  return count != countOf_.end() && count->second > 0;
}

bool WaitingWrites::concernRow(std::string_view table, std::int64_t key) const {
  return concern(table) && std::ranges::any_of(writes_, [&](const WaitingWrite& row) {
           return row.table == table && (row.kind == Kind::Statement || row.key == key);
         });
}

void WaitingWrites::add(WaitingWrite write) {
  ++countOf_[write.table];
  writes_.push_back(std::move(write));
}

void WaitingWrites::keep(std::size_t count) {
  for (std::size_t i = count; i < writes_.size(); ++i) --countOf_.find(writes_[i].table)->second;
  writes_.erase(writes_.begin() + static_cast<std::ptrdiff_t>(count), writes_.end());
  indexes_.clear();
}

void WaitingWrites::clear() noexcept {
  writes_.clear();
  countOf_.clear();
  indexes_.clear();
}

/// The writes of a table follow each other, those of the same kind together as far as that changes nothing: a
/// new row may come before a change of another one.
void WaitingWrites::send(std::size_t from, std::size_t to) {
  std::vector<std::vector<Run>> tables;
  std::map<std::string_view, std::size_t> places;
  for (std::size_t i = from; i < to; ++i) {
    const WaitingWrite& row = writes_[i];
    const auto [place, isNew] = places.emplace(row.table, tables.size());
    if (isNew) tables.emplace_back();
    std::vector<Run>& runs = tables[place->second];
    const void* const target =
        row.kind == Kind::Statement ? static_cast<const void*>(row.statement) : row.source;
    const auto fits = [&](const Run& run) { return run.kind == row.kind && run.target == target; };
    const auto changesAgain = [&](const Run& run) {
      const auto found = row.kind == Kind::Update ? run.columnsOf.find(row.key) : run.columnsOf.end();
      return found != run.columnsOf.end() && *found->second != row.columns;
    };
    const std::size_t count = runs.size();
    Run* into = nullptr;
    if (count > 0 && fits(runs[count - 1]) && !changesAgain(runs[count - 1]))
      into = &runs[count - 1];
    else if (count > 1 && row.kind == Kind::Insert && runs[count - 1].kind == Kind::Update &&
             fits(runs[count - 2]) && !runs[count - 1].columnsOf.contains(row.key))
      into = &runs[count - 2];
    else
      into = &runs.emplace_back(Run{row.kind, target, {}, {}});
    into->rows.push_back(&row);
    if (row.kind == Kind::Update) into->columnsOf.emplace(row.key, &row.columns);
  }
  for (const auto& runs : tables)
    for (const Run& run : runs) sendRun(run);
}

bool WaitingWrites::joinsStatements() const { return statements_.driver().dialect().joinsStatements; }

void WaitingWrites::sendRun(const Run& run) {
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

void WaitingWrites::sendInserts(std::span<const WaitingWrite* const> rows) {
  RowSource& source = *rows.front()->source;
  if (joinsStatements() && rows.size() > 1) {
    forEachBlock(rows, source.shape->size(), [&](std::span<const WaitingWrite* const> block) {
      std::vector<const ColumnMask*> columns;
      for (const WaitingWrite* row : block) columns.push_back(&row->columns);
      const auto insert = statements_.manyInserts(source, columns);
      sendBlock(*insert, block, source.table, false);
    });
    return;
  }
  for (const WaitingWrite* row : rows) {
    Statement& insert = statements_.insert(source, row->columns);
    insert.bindAll(row->values);
    if (!statements_.driver().insertRow(insert)) throw NotInserted(source.table);
  }
}

void WaitingWrites::sendUpdates(std::span<const WaitingWrite* const> rows) {
  RowSource& source = *rows.front()->source;
  // Of those of the same row the last one counts.
  std::vector<const WaitingWrite*> last;
  std::unordered_set<std::int64_t> seen;
  for (std::size_t i = rows.size(); i-- > 0;)
    if (seen.insert(rows[i]->key).second) last.push_back(rows[i]);
  std::ranges::reverse(last);
  if (!joinsStatements() || last.size() == 1) {
    for (const WaitingWrite* row : last)
      sendRow(statements_.update(source, row->columns), *row, source.table, true);
    return;
  }
  std::unordered_map<ColumnMask, std::vector<const WaitingWrite*>> byColumns;
  for (const WaitingWrite* row : last) byColumns[row->columns].push_back(row);
  for (const auto& each : byColumns)
    forEachBlock(each.second, each.first.count() + 1, [&](std::span<const WaitingWrite* const> block) {
      sendBlock(statements_.manyUpdates(source, each.first, block.size()), block, source.table, true);
    });
}

/// Sets that agree in what they find go into statements of their own, in their order.
void WaitingWrites::sendStatements(std::span<const WaitingWrite* const> rows) {
  PlainStatement& plain = *rows.front()->statement;
  const std::string& table = rows.front()->table;
  if (!joinsStatements() || !plain.set || rows.size() == 1) {
    for (const WaitingWrite* row : rows) sendRow(*plain.statement, *row, table, false);
    return;
  }
  std::vector<std::vector<const WaitingWrite*>> waves;
  std::unordered_map<std::string, std::size_t> used;
  for (const WaitingWrite* row : rows) {
    std::string key;
    for (const std::size_t parameter : plain.set->keys)
      key.append(comparisonKey(row->values[parameter]).value_or(std::string())).append(1, '\0');
    const std::size_t wave = plain.set->keys.empty() ? 0 : used[key]++;
    if (wave == waves.size()) waves.emplace_back();
    waves[wave].push_back(row);
  }
  for (const auto& wave : waves)
    forEachBlock(wave, rows.front()->values.size(), [&](std::span<const WaitingWrite* const> block) {
      sendBlock(*statements_.many(plain, block.size()), block, table, false);
    });
}

void WaitingWrites::forEachBlock(std::span<const WaitingWrite* const> rows, std::size_t width,
                                 const std::function<void(std::span<const WaitingWrite* const>)>& send) {
  const std::size_t most = setsAtOnce(width);
  for (std::size_t at = 0; at < rows.size(); at += most)
    send(rows.subspan(at, std::min(most, rows.size() - at)));
}

/// `keys`: the row key follows the values.
void WaitingWrites::sendRow(Statement& statement, const WaitingWrite& row, std::string_view table,
                            bool keys) {
  statement.bindAll(row.values);
  const Value key(row.key);
  if (keys) statement.bind(row.values.size(), key);
  if (statement.run() == 0) throw NotInserted(table);
}

/// Each of the rows must change one row of the table.
void WaitingWrites::sendBlock(Statement& statement, std::span<const WaitingWrite* const> rows,
                              std::string_view table, bool keys) {
  std::size_t place = 0;
  std::vector<Value> keyValues;
  keyValues.reserve(rows.size());
  for (const WaitingWrite* row : rows) {
    for (const Value& value : row->values) statement.bind(place++, value);
    if (keys) statement.bind(place++, keyValues.emplace_back(row->key));
  }
  if (statement.run() != static_cast<std::int64_t>(rows.size())) throw NotInserted(table);
}

/// What the column of the written row holds; null when that is not known.
const Value* WaitingWrites::valueIn(const WaitingWrite& row, const ColumnTerm& column) {
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
std::vector<std::size_t> WaitingWrites::candidates(const ReadPattern& pattern,
                                                   std::span<const Value> parameters) {
  std::vector<std::size_t> places;
  for (const ColumnTerm& condition : pattern.equalities) {
    const Value* const wanted = condition.value(parameters);
    const auto key = wanted == nullptr ? std::nullopt : comparisonKey(*wanted);
    if (!key) continue;
    Index& index = indexes_[{pattern.table, condition.columnHash}];
    for (; index.upTo < writes_.size(); ++index.upTo) {
      const WaitingWrite& row = writes_[index.upTo];
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
  for (std::size_t i = 0; i < writes_.size(); ++i)
    if (writes_[i].table == pattern.table) places.push_back(i);
  return places;
}

WaitingWrites::Effect WaitingWrites::effectOn(const RowQuery& query, std::span<const Value> parameters,
                                              std::vector<const WaitingWrite*>& matching) {
  const ReadPattern& pattern = *query.pattern;
  if (!concern(pattern.table)) return Effect::None;
  bool certain = query.derivable && !pattern.furtherConditions && !pattern.equalities.empty() &&
                 query.source.layout.computed.empty() && !query.source.table.empty();
  for (const std::size_t place : candidates(pattern, parameters)) {
    const WaitingWrite& row = writes_[place];
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

/// The row as it will be read, with null where nothing is given.
void WaitingWrites::append(const WaitingWrite& row, const RowShape& shape, Rows& rows) {
  const RowShape& from = *row.source->shape;
  rows.keys.push_back(row.key);
  std::vector<const Value*> given(from.size());
  std::size_t next = 0;
  for (std::size_t i = 0; i < from.size(); ++i)
    if (row.columns[i]) given[i] = &row.values[next++];
  for (std::size_t i = 0; i < shape.size(); ++i) {
    const std::size_t index = from.find(shape, i);
    const bool isGiven = index < from.size() && given[index] != nullptr;
    rows.values.push_back(isGiven ? valueAsRead(*given[index], shape.kind(i)) : Value::null());
  }
}

} // namespace qx::relational
