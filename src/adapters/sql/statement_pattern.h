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
  bool furtherConditions = false;     ///< of an update: not every row that meets those is changed

  /// Null when the statement writes in another way. It has a "?" for each parameter.
  static std::optional<WritePattern> of(std::string_view statement);
};

/// A statement that does for many sets of values what another one does for one.
struct SetStatement {
  std::string head; ///< the statement up to the values
  std::string tail; ///< and behind them; they are those of a table "qx"
  /// The parameters by which the statement finds the row that it changes: of two sets that agree in them,
  /// only one may be in it. Empty when it only adds rows.
  std::vector<std::size_t> keys;

  /// Null for a statement whose effect on one set depends on that on another.
  static std::optional<SetStatement> of(std::string_view statement);
  /// The whole text for a number of sets. `types` are those of the parameters, as casts name them.
  std::string text(std::size_t sets, std::span<const std::string> types) const;
};

/// The sets of values as rows of a table "qx" with their number in "qx_n" and the values in "qx_1", "qx_2"
/// ...
std::string valuesTable(std::size_t sets, std::span<const std::string> types);

/// A condition or term with "qx.qx_1" ... in place of its parameters, of which the first is number `first`.
std::string withValuesOfTable(std::string_view text, std::size_t& next);

/// False when the database certainly tells the two values apart, whatever the column's type and collation;
/// null equals nothing.
bool mayEqual(const Value& first, const Value& second);

/// Equal for all values that a database may hold for equal. Null when that cannot be told.
std::optional<std::string> comparisonKey(const Value& value);

} // namespace qx::relational
