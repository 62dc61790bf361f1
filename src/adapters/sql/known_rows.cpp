#include "adapters/sql/known_rows.h"

#include "model/text.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <utility>

namespace qx::relational {
namespace {

std::uint64_t keyOf(const RowQuery& query, std::span<const Value> parameters) {
  std::uint64_t hash = std::hash<const RowQuery*>()(&query);
  constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;
  for (const Value& value : parameters) {
    const std::uint64_t part = value.kind() == ValueKind::Text
                                   ? textHash(value.textView())
                                   : static_cast<std::uint64_t>(value.integer().value_or(0));
    hash = (hash ^ part) * spread;
    hash ^= hash >> 29U;
  }
  return hash;
}

bool samePlace(std::span<const Value> a, std::span<const Value> b) { return std::ranges::equal(a, b); }

/// The value of the row before and after the change, as far as a condition on the column sees it.
bool mayMeet(const ColumnTerm& condition, std::span<const Value> parameters, const Value* value) {
  const Value* const wanted = condition.value(parameters);
  return wanted == nullptr || value == nullptr || mayEqual(*wanted, *value);
}

const Value* valueAfter(const RowChange& change, ColumnName column) {
  if (change.assigns(column)) return change.after(column);
  // What a new row gets where nothing is given is the database's to say.
  return change.isNew() ? nullptr : change.before(column);
}

/// What the row holds in a column before and after the change; empty when that cannot be told.
std::vector<std::string> keysOf(const RowChange& change, ColumnName column) {
  std::vector<std::string> keys;
  const auto add = [&](const Value* value) {
    auto key = value == nullptr ? std::nullopt : comparisonKey(*value);
    if (key && (keys.empty() || keys.front() != *key)) keys.push_back(*key);
    return key.has_value();
  };
  if (!add(valueAfter(change, column)) || (!change.isNew() && !add(change.before(column)))) return {};
  return keys;
}

} // namespace

bool sameCondition(const ColumnTerm& first, std::span<const Value> firstParameters, const ColumnTerm& second,
                   std::span<const Value> secondParameters) {
  const Value* const a = first.value(firstParameters);
  const Value* const b = second.value(secondParameters);
  return first.columnHash == second.columnHash && first.source == second.source && a != nullptr &&
         b != nullptr && a->kind() == b->kind() && a->text() == b->text();
}

bool concerns(const ReadPattern& read, std::span<const Value> parameters, const RowChange& change) {
  bool before = !change.isNew();
  bool after = !change.isDeleted();
  for (const ColumnTerm& condition : read.equalities) {
    const ColumnName column{std::string_view(condition.column)};
    before = before && mayMeet(condition, parameters, change.before(column));
    after = after && mayMeet(condition, parameters, valueAfter(change, column));
    if (!before && !after) return false;
  }
  return true;
}

KnownRows::Entry* KnownRows::find(const RowQuery& query, std::span<const Value> parameters) {
  const auto [first, last] = entries_.equal_range(keyOf(query, parameters));
  for (auto at = first; at != last; ++at) {
    Entry& entry = at->second;
    if (entry.rows && entry.query == &query && samePlace(entry.parameters, parameters)) return &entry;
  }
  return nullptr;
}

KnownRows::Entry& KnownRows::add(RowQuery& query, std::span<const Value> parameters,
                                 std::shared_ptr<const Rows> rows) {
  Entry& entry = entries_.emplace(keyOf(query, parameters), Entry())->second;
  entry.query = &query;
  entry.parameters.assign(parameters.begin(), parameters.end());
  setRows(entry, std::move(rows));
  Table& table = tables_[query.pattern->table];
  for (const ColumnTerm& condition : query.pattern->equalities) {
    const Value* const value = condition.value(entry.parameters);
    const auto key = value == nullptr ? std::nullopt : comparisonKey(*value);
    if (!key) continue;
    Table::Column& column = table.columns[condition.columnHash];
    if (column.name.empty()) column.name = condition.column;
    column.byValue[*key].push_back(&entry);
    return entry;
  }
  table.others.push_back(&entry);
  return entry;
}

KnownRows::Entry* KnownRows::findAny(const RowQuery& query, std::span<const Value> parameters,
                                     const std::function<bool(const Entry&)>& wanted) {
  const auto table = tables_.find(query.pattern->table);
  if (table == tables_.end()) return nullptr;
  for (const ColumnTerm& condition : query.pattern->equalities) {
    const Value* const value = condition.value(parameters);
    const auto key = value == nullptr ? std::nullopt : comparisonKey(*value);
    const auto column = table->second.columns.find(condition.columnHash);
    if (!key || column == table->second.columns.end()) continue;
    const auto entries = column->second.byValue.find(*key);
    if (entries == column->second.byValue.end()) return nullptr;
    for (Entry* entry : entries->second)
      if (entry->rows && wanted(*entry)) return entry;
    return nullptr;
  }
  return nullptr;
}

void KnownRows::forEachConcerned(const RowChange& change, const std::function<void(Entry&)>& visit) {
  const auto table = tables_.find(std::string(change.table()));
  if (table == tables_.end()) return;
  std::vector<Entry*> found;
  const auto look = [&](const std::vector<Entry*>& entries) {
    for (Entry* entry : entries)
      if (entry->rows && concerns(*entry->query->pattern, entry->parameters, change)) found.push_back(entry);
  };
  look(table->second.others);
  for (const auto& [hash, column] : table->second.columns) {
    const auto keys = keysOf(change, ColumnName(std::string_view(column.name)));
    if (keys.empty()) {
      for (const auto& [key, entries] : column.byValue) look(entries);
      continue;
    }
    for (const std::string& key : keys)
      if (const auto entries = column.byValue.find(key); entries != column.byValue.end())
        look(entries->second);
  }
  for (Entry* entry : found) visit(*entry);
}

void KnownRows::forgetTable(std::string_view table) {
  const auto found = tables_.find(std::string(table));
  if (found == tables_.end()) return;
  const auto forget = [](const std::vector<Entry*>& entries) {
    for (Entry* entry : entries) entry->rows.reset();
  };
  forget(found->second.others);
  for (const auto& [hash, column] : found->second.columns)
    for (const auto& [key, entries] : column.byValue) forget(entries);
  tables_.erase(found);
}

void KnownRows::setRows(Entry& entry, std::shared_ptr<const Rows> rows) {
  entry.rows = std::move(rows);
  entry.since = ++now_;
}

void KnownRows::forgetSince(std::uint64_t moment) {
  for (auto& entry : entries_)
    if (entry.second.since > moment) entry.second.rows.reset();
}

void KnownRows::clear() {
  tables_.clear();
  entries_.clear();
}

} // namespace qx::relational
