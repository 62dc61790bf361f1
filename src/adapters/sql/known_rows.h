// The results that the statements of a unit of work would read again unchanged.
#pragma once

#include "adapters/sql/statement_cache.h"
#include "platform/column_name.h"
#include "platform/value.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qx::relational {

/// The rows of a result as they were read: their keys (0 where there is none) and one value per column.
struct Rows {
  std::vector<std::int64_t> keys;
  std::vector<Value> values;
};

/// Whether readers cannot tell the values apart.
inline bool sameValue(const Value& first, const Value& second) {
  return first == second || (first.isNull() == second.isNull() && first.text() == second.text());
}

/// What is known of a row that is written. Null: the value is not known.
class RowChange {
public:
  RowChange() = default;
  RowChange(const RowChange&) = delete;
  RowChange& operator=(const RowChange&) = delete;
  virtual ~RowChange() = default;

  virtual std::string_view table() const = 0; ///< in lower case
  /// Of the row that is changed; 0 when it is not known or the row is new.
  virtual std::int64_t key() const = 0;
  virtual bool isNew() const = 0;
  virtual bool isDeleted() const { return false; }
  /// Whether it changes each row that belongs to the result, as far as texts tell.
  virtual bool changesAll(const ReadPattern& /*read*/, std::span<const Value> /*parameters*/) const {
    return false;
  }
  virtual const Value* before(ColumnName column) const = 0;
  virtual bool assigns(ColumnName column) const = 0;
  /// Of an assigned column.
  virtual const Value* after(ColumnName column) const = 0;
  /// Calls `visit` with each assigned column.
  virtual void forEachAssigned(const std::function<void(ColumnName)>& visit) const = 0;
};

/// Whether two terms compare the same column with the same value.
bool sameCondition(const ColumnTerm& first, std::span<const Value> firstParameters, const ColumnTerm& second,
                   std::span<const Value> secondParameters);

/// Whether rows that a statement writes may belong to a result, before or afterwards.
bool concerns(const ReadPattern& read, std::span<const Value> parameters, const RowChange& change);

/// Remembers results by statement and values, and finds those that a written row may concern.
class KnownRows {
public:
  struct Entry {
    RowQuery* query = nullptr;
    std::vector<Value> parameters;
    std::shared_ptr<const Rows> rows; ///< null once it is forgotten
    bool derived = false;             ///< holds what was written but not read
    bool used = false;                ///< was an answer since it has been derived
    std::uint64_t since = 0;          ///< when the rows came, as `now` counts
  };

  /// Counts the changes of what is known.
  std::uint64_t now() const { return now_; }

  /// Null when the result is not known.
  Entry* find(const RowQuery& query, std::span<const Value> parameters);
  /// A result whose conditions accept the same values as those of the query, and which is wanted.
  Entry* findAny(const RowQuery& query, std::span<const Value> parameters,
                 const std::function<bool(const Entry&)>& wanted);
  /// The query must read one table.
  Entry& add(RowQuery& query, std::span<const Value> parameters, std::shared_ptr<const Rows> rows);
  /// Calls `visit` with each result to which the row may belong, before or after the change.
  void forEachConcerned(const RowChange& change, const std::function<void(Entry&)>& visit);
  void setRows(Entry& entry, std::shared_ptr<const Rows> rows);
  void forgetTable(std::string_view table);
  /// Forgets what came after this moment.
  void forgetSince(std::uint64_t moment);
  void clear();
  std::size_t size() const { return entries_.size(); }

private:
  /// Results are found by one condition, where it can be told which values it accepts.
  struct Table {
    struct Column {
      std::string name;
      std::unordered_map<std::string, std::vector<Entry*>> byValue;
    };
    std::unordered_map<std::uint64_t, Column> columns; ///< by the hash of the name
    std::vector<Entry*> others;
  };

  std::unordered_multimap<std::uint64_t, Entry> entries_;
  std::unordered_map<std::string, Table> tables_;
  std::uint64_t now_ = 0;
};

} // namespace qx::relational
