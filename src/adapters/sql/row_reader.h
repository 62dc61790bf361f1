// Reads the results of statements, singly or many in one statement.
#pragma once

#include "adapters/sql/known_rows.h"
#include "adapters/sql/statement_cache.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace qx::relational {

class RowReader {
public:
  explicit RowReader(StatementCache& statements) : statements_(statements) {}

  std::shared_ptr<const Rows> read(RowQuery& query, std::span<const Value> parameters);
  /// One result for each set of values. A database that joins statements is asked with few of them.
  std::vector<std::shared_ptr<const Rows>> readMany(RowQuery& query,
                                                    std::span<const std::vector<Value>* const> parameters);
  /// Rows of a table by their keys, locked against other programs until the end of the unit. Missing ones are
  /// left out.
  Rows readByKey(KeysetQuery& query, std::span<const std::int64_t> keys);

private:
  void readBlock(RowQuery& query, std::span<const std::vector<Value>* const> parameters,
                 std::vector<std::shared_ptr<const Rows>>& results);

  /// Sets of values that one statement takes.
  static constexpr std::size_t mostAtOnce = 1024;

  StatementCache& statements_;
};

} // namespace qx::relational
