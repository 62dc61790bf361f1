#include "adapters/sql/group.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/row_changes.h"
#include "adapters/sql/statement_pattern.h"
#include "model/text.h"
#include "platform/database_error.h"

#include <algorithm>
#include <stdexcept>
#include <unordered_set>
#include <utility>

namespace qx::relational {
namespace {

bool sameRows(const Rows& first, const Rows& second) {
  return first.keys.size() == second.keys.size() &&
         std::ranges::equal(first.values, second.values, sameValue);
}

/// Whether two selects over one table want the same rows.
bool sameConditions(const ReadPattern& first, std::span<const Value> firstParameters,
                    const ReadPattern& second, std::span<const Value> secondParameters) {
  return !first.furtherConditions && !second.furtherConditions &&
         std::ranges::equal(first.equalities, second.equalities,
                            [&](const ColumnTerm& a, const ColumnTerm& b) {
                              return sameCondition(a, firstParameters, b, secondParameters);
                            });
}

/// Some columns of rows that have them all.
std::shared_ptr<const Rows> columnsOf(const Rows& wider, const RowShape& from, const RowShape& shape) {
  auto rows = std::make_shared<Rows>();
  rows->keys = wider.keys;
  rows->values.reserve(wider.keys.size() * shape.size());
  for (std::size_t at = 0; at < wider.keys.size(); ++at)
    for (std::size_t i = 0; i < shape.size(); ++i)
      rows->values.push_back(wider.values[at * from.size() + from.find(shape, i)]);
  return rows;
}

bool comparesOneOf(const ReadPattern& pattern, const RowChange& change) {
  return std::ranges::any_of(pattern.equalities, [&](const ColumnTerm& condition) {
    return change.assigns(ColumnName(std::string_view(condition.column)));
  });
}

} // namespace

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

void Group::loseUnit(const std::string& reason) {
  lost_ = true;
  throw WorkLostError(reason, 0);
}

void Group::setSavepoint() {
  if (collects_)
    marks_.push_back({waiting_.size(), derived_.size(), known_.now(), false});
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
  if (hasClaims(marks_.back().derived)) {
    try {
      flush(true);
    } catch (const std::exception&) {
      // Whatever the cause, the part may have failed for a wrong answer.
      lost_ = true;
    }
  }
  const Mark mark = marks_.back();
  marks_.pop_back();
  if (mark.real) {
    waiting_.clear();
    savepoints_.undoToRealSavepoint();
    known_.forgetSince(mark.known);
    derived_.clear();
    return;
  }
  waiting_.keep(mark.at);
  for (std::size_t i = mark.derived; i < derived_.size(); ++i) derived_[i]->rows.reset();
  derived_.resize(mark.derived);
}

/// Whether answers were derived, from the one at place `from` on, that have not been proved.
bool Group::hasClaims(std::size_t from) const {
  return !lost_ && std::any_of(derived_.begin() + static_cast<std::ptrdiff_t>(from), derived_.end(),
                               [](const KnownRows::Entry* entry) { return entry->rows && entry->used; });
}

void Group::flush(bool allMarks) {
  if (lost_) throw WorkLostError("the unit of work has been lost", 0);
  std::size_t sent = 0;
  try {
    for (Mark& mark : marks_) {
      if (mark.real) continue;
      waiting_.send(sent, mark.at);
      sent = mark.at;
      if (sent == waiting_.size() && !allMarks) break;
      savepoints_.setRealSavepoint();
      mark.real = true;
    }
    waiting_.send(sent, waiting_.size());
  } catch (const ConflictError&) {
    lost_ = true;
    throw;
  } catch (const StatementError& refusal) {
    lose(refusal);
  } catch (const BusyError& busy) {
    lose(busy);
  }
  waiting_.clear();
  for (Mark& mark : marks_) mark.at = 0;
  prove();
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
    const auto found = reader_.readMany(*query, parameters);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      if (!sameRows(*entries[i]->rows, *found[i])) {
        query->derivable = false;
        loseUnit("the database holds other values than were written into the table " + query->pattern->table);
      }
      known_.setRows(*entries[i], found[i]);
      entries[i]->derived = entries[i]->used = false;
    }
  }
}

/// The rows of a result after the change; null when that cannot be told. The same ones when the change leaves
/// them as they are.
std::shared_ptr<const Rows> Group::changedRows(const KnownRows::Entry& entry, const RowChange& change) {
  const RowQuery& query = *entry.query;
  const RowShape& shape = *query.source.shape;
  if (change.isNew() || change.isDeleted() || query.pattern->furtherConditions || !query.derivable ||
      !query.source.layout.computed.empty() || comparesOneOf(*query.pattern, change))
    return nullptr;
  std::vector<std::pair<std::size_t, const Value*>> assigned;
  bool known = true;
  change.forEachAssigned([&](ColumnName column) {
    const std::size_t index = shape.find(column);
    if (index >= shape.size()) return;
    assigned.emplace_back(index, change.after(column));
    known = known && assigned.back().second != nullptr;
  });
  if (assigned.empty()) return entry.rows;
  std::size_t from = 0;
  std::size_t to = entry.rows->keys.size();
  if (!change.changesAll(*query.pattern, entry.parameters)) {
    const auto& keys = entry.rows->keys;
    from = change.key() == 0 ? to
                             : static_cast<std::size_t>(std::ranges::find(keys, change.key()) - keys.begin());
    known = known && from < to;
    to = from + 1;
  }
  if (!known) return nullptr;
  std::shared_ptr<Rows> rows;
  for (std::size_t row = from; row < to; ++row)
    for (const auto& [index, value] : assigned) {
      Value held = valueAsRead(*value, shape.kind(index));
      const std::size_t place = row * shape.size() + index;
      if (sameValue(held, entry.rows->values[place])) continue;
      if (!rows) rows = std::make_shared<Rows>(*entry.rows);
      rows->values[place] = std::move(held);
    }
  return rows ? rows : entry.rows;
}

/// Whatever was read of the row is forgotten or follows the change.
void Group::note(const RowChange& change) {
  std::vector<KnownRows::Entry*> concerned;
  known_.forEachConcerned(change, [&](KnownRows::Entry& entry) { concerned.push_back(&entry); });
  // An answer must be proved in the state for which it was given.
  if (std::ranges::any_of(concerned, [&](const auto* entry) {
        return entry->derived && entry->used && changedRows(*entry, change) != entry->rows;
      }))
    flush(false);
  for (KnownRows::Entry* entry : concerned) {
    if (!entry->rows) continue;
    auto rows = changedRows(*entry, change);
    if (rows == entry->rows) continue;
    known_.setRows(*entry, std::move(rows));
    if (!entry->rows) continue;
    entry->used = false;
    // Each time: the undoing of a part forgets what was derived in it.
    derived_.push_back(entry);
    entry->derived = true;
  }
}

std::int64_t Group::insertLater(RowSource& source, const ColumnMask& columns, std::span<const Value> values) {
  requireWriting();
  const BeforeValues nothing = [](std::size_t) { return nullptr; };
  note(RowOfSource(source, 0, true, columns, values, nothing));
  std::int64_t key = 0;
  WaitingWrite row{WaitingWrite::Kind::Insert, &source, nullptr, source.tableKey, 0, columns, {}};
  for (std::size_t i = 0; i < source.shape->size(); ++i) {
    if (!columns[i]) continue;
    if (equalCodes(source.shape->name(i), source.key.row) ||
        equalCodes(source.shape->name(i), source.key.identity))
      key = values[i].integer().value_or(0);
    row.values.push_back(values[i]);
  }
  row.key = key;
  waiting_.add(std::move(row));
  return key;
}

void Group::updateLater(RowSource& source, std::int64_t key, const ColumnMask& columns,
                        std::span<const Value> values, const BeforeValues& before) {
  requireWriting();
  note(RowOfSource(source, key, false, columns, values, before));
  WaitingWrite row{WaitingWrite::Kind::Update, &source, nullptr, source.tableKey, key, columns, {}};
  for (std::size_t i = 0; i < source.shape->size(); ++i)
    if (columns[i]) row.values.push_back(values[i]);
  waiting_.add(std::move(row));
}

void Group::executeLater(std::string_view table, PlainStatement& statement, std::vector<Value> values) {
  requireWriting();
  WaitingWrite row{WaitingWrite::Kind::Statement, nullptr, &statement, asciiLower(table), 0, {}, {}};
  if (statement.pattern)
    note(RowsOfStatement(*statement.pattern, values));
  else
    known_.forgetTable(row.table);
  row.values = std::move(values);
  ++writes_[row.table];
  waiting_.add(std::move(row));
}

void Group::requireWriting() const {
  if (notes_) throw std::logic_error("nothing is written while reads are noted");
}

std::uint64_t Group::writesTo(const std::string& table) const {
  const auto found = writes_.find(table);
  return found == writes_.end() ? 0 : found->second;
}

void Group::prepareToRead(const std::string* table) {
  if (collects_ && (table == nullptr ? !waiting_.empty() : waiting_.concern(*table))) flush(false);
}

void Group::prepareToReadRow(const RowSource& source, std::int64_t key) {
  if (collects_ && waiting_.concernRow(source.tableKey, key)) flush(false);
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
  const BeforeValues nothing = [](std::size_t) { return nullptr; };
  prepareToWrite(RowOfSource(source, 0, true, columns, values, nothing));
}

void Group::prepareToUpdate(const RowSource& source, std::int64_t key, const ColumnMask& columns,
                            std::span<const Value> values, const BeforeValues& before) {
  prepareToWrite(RowOfSource(source, key, false, columns, values, before));
}

std::shared_ptr<const Rows> Group::read(RowQuery& query, std::span<const Value> parameters, bool again) {
  if (!collects_) return reader_.read(query, parameters);
  if (notes_) {
    if (!query.pattern) return noteRead(query, parameters);
    if (const KnownRows::Entry* const known = known_.find(query, parameters)) return known->rows;
    auto rows = otherwiseKnown(query, parameters);
    return rows ? known_.add(query, parameters, std::move(rows)).rows : noteRead(query, parameters);
  }
  if (!query.pattern) {
    prepareToRead(nullptr);
    return reader_.read(query, parameters);
  }
  if (query.source.layout.aggregate) {
    prepareToRead(&query.pattern->table);
    return reader_.read(query, parameters);
  }
  KnownRows::Entry* const known = known_.find(query, parameters);
  if (known != nullptr && !again) {
    known->used = true;
    return known->rows;
  }
  if (known != nullptr) known->rows.reset();
  std::vector<const WaitingWrite*> matching;
  const auto effect = waiting_.effectOn(query, parameters, matching);
  if (effect != WaitingWrites::Effect::None && !again)
    if (auto rows = derivedRows(query, parameters, effect, matching)) {
      KnownRows::Entry& entry = known_.add(query, parameters, std::move(rows));
      entry.derived = entry.used = true;
      derived_.push_back(&entry);
      return entry.rows;
    }
  if (effect != WaitingWrites::Effect::None) flush(false);
  auto rows = again ? nullptr : otherwiseKnown(query, parameters);
  if (!rows && !again) rows = readWhole(query, parameters);
  return known_.add(query, parameters, rows ? std::move(rows) : reader_.read(query, parameters)).rows;
}

/// Reads all columns at once, where a statement does that which asks for the same rows: it will be run as
/// well. Null where there is none, or where it found several rows, whose order might differ.
std::shared_ptr<const Rows> Group::readWhole(RowQuery& query, std::span<const Value> parameters) {
  if (!query.source.shape || !query.source.layout.computed.empty()) return nullptr;
  RowQuery* const whole = statements_.wholeRows(query);
  if (whole == nullptr || !whole->source.shape || !whole->source.shape->hasAll(*query.source.shape))
    return nullptr;
  const KnownRows::Entry* const known = known_.find(*whole, parameters);
  const auto rows =
      known != nullptr ? known->rows : known_.add(*whole, parameters, reader_.read(*whole, parameters)).rows;
  return rows->keys.size() > 1 ? nullptr : columnsOf(*rows, *whole->source.shape, *query.source.shape);
}

/// A result with the same rows and at least these columns.
const KnownRows::Entry* Group::widerResult(RowQuery& query, std::span<const Value> parameters,
                                           const std::function<bool(const KnownRows::Entry&)>& wanted) {
  if (!query.source.shape || !query.source.layout.computed.empty()) return nullptr;
  const RowShape& shape = *query.source.shape;
  return known_.findAny(query, parameters, [&](const KnownRows::Entry& entry) {
    return entry.query != &query && entry.query->source.shape->hasAll(shape) && wanted(entry) &&
           sameConditions(*entry.query->pattern, entry.parameters, *query.pattern, parameters);
  });
}

/// What was read by another statement that asks for the same. Null when that is not known; of several rows
/// the order might differ.
std::shared_ptr<const Rows> Group::otherwiseKnown(RowQuery& query, std::span<const Value> parameters) {
  const KnownRows::Entry* const wider = widerResult(query, parameters, [](const KnownRows::Entry& entry) {
    return !entry.derived && entry.rows->keys.size() <= 1;
  });
  return wider == nullptr ? nullptr
                          : columnsOf(*wider->rows, *wider->query->source.shape, *query.source.shape);
}

/// From another result with the same rows, or from the rows that wait. Null when neither has all columns.
std::shared_ptr<const Rows> Group::derivedRows(RowQuery& query, std::span<const Value> parameters,
                                               WaitingWrites::Effect effect,
                                               std::span<const WaitingWrite* const> matching) {
  if (!query.derivable || !query.source.shape || !query.source.layout.computed.empty()) return nullptr;
  const RowShape& shape = *query.source.shape;
  if (const auto* const wider = widerResult(query, parameters, [&](const KnownRows::Entry& entry) {
        return entry.rows->keys.size() <= 1 || (!query.sorted && !entry.query->sorted);
      }))
    return columnsOf(*wider->rows, *wider->query->source.shape, shape);
  if (effect != WaitingWrites::Effect::Derivable || (query.sorted && matching.size() > 1)) return nullptr;
  auto rows = std::make_shared<Rows>();
  for (const WaitingWrite* row : matching) WaitingWrites::append(*row, shape, *rows);
  return rows;
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
    std::vector<const WaitingWrite*> matching;
    const bool concerned = std::ranges::any_of(distinct, [&](const auto* values) {
      return waiting_.effectOn(query, *values, matching) != WaitingWrites::Effect::None;
    });
    if (concerned) flush(false);
    const auto results = reader_.readMany(query, distinct);
    for (std::size_t i = 0; i < distinct.size(); ++i) known_.add(query, *distinct[i], results[i]);
    count += distinct.size();
  }
  return count;
}

} // namespace qx::relational
