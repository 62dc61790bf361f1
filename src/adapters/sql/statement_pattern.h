// What a statement reads or writes, as far as its text tells.
#pragma once

#include "platform/column_name.h"
#include "platform/value.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx::relational {

/// A column and the value that a statement compares it with or gives to it.
struct ColumnTerm {
  /// How the value is known.
  enum class Source : std::uint8_t { Parameter, Literal, Unknown };

  std::string column;
  std::uint64_t columnHash = 0; ///< of `ColumnName`
  Source source = Source::Unknown;
  std::size_t parameter = 0;
  Value literal;

  /// Null when the text does not tell it.
  const Value* value(std::span<const Value> parameters) const;
};

/// A select over one table.
struct ReadPattern {
  std::string table; ///< in lower case
  /// The conditions that compare a column with a value; every row of the result meets them all.
  std::vector<ColumnTerm> equalities;
  bool furtherConditions = false;

  /// `where` is a condition with a "?" for each parameter.
  static ReadPattern of(std::string_view table, std::string_view where);
};

/// A statement that writes rows of one table.
struct WritePattern {
  enum class Kind : std::uint8_t { Insert, Update, Delete };

  Kind kind = Kind::Insert;
  std::string table; ///< in lower case
  std::vector<ColumnTerm> assigned;
  std::vector<ColumnTerm> equalities; ///< which the rows meet beforehand

  /// Null when the statement writes in another way. It has a "?" for each parameter.
  static std::optional<WritePattern> of(std::string_view statement);
};

/// False when the database certainly tells the two values apart, whatever the column's type and collation;
/// null equals nothing.
bool mayEqual(const Value& first, const Value& second);

/// Equal for all values that a database may hold for equal. Null when that cannot be told.
std::optional<std::string> comparisonKey(const Value& value);

} // namespace qx::relational
