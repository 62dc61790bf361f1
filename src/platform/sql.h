// Statements of fixed fragments and values, which never mix.
#pragma once

#include "platform/value.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The text of a fragment as part of a type.
template <std::size_t N>
struct SqlLiteral {
  char characters[N]{};
  consteval SqlLiteral(const char (&text)[N]) {
    for (std::size_t i = 0; i < N; ++i) characters[i] = text[i];
  }
};

/// A fixed piece of a statement, made by `"..."_sql`. Its text is part of its type.
template <SqlLiteral literal>
struct SqlFragment {
  static constexpr std::string_view text{literal.characters, sizeof(literal.characters) - 1};
};

template <SqlLiteral literal>
consteval SqlFragment<literal> operator""_sql() {
  return {};
}

/// A value between single quotes in the statement's text.
struct SqlText {
  Value content;
};
/// A number without quotes in the statement's text.
struct SqlNumber {
  std::int64_t content;
};
/// The name of a table or column that is known at run time only; adapters quote it.
struct SqlName {
  std::string_view content;
};

inline SqlText value(std::string_view text) { return {Value(text)}; }
/// Printed as the empty text and bound as null when the text is empty.
inline SqlText nullable(std::string_view text) { return {text.empty() ? Value::null() : Value(text)}; }
inline SqlNumber number(std::int64_t whole) { return {whole}; }
inline SqlName name(std::string_view identifier) { return {identifier}; }

enum class SqlSlot : std::uint8_t { Fixed, Text, Number, Name };

/// One element of a statement's shape: a fixed text or a placeholder for a value.
struct SqlPiece {
  SqlSlot slot;
  std::string_view text; ///< of a fixed piece only
};

/// The values-free form of a statement part; its address identifies it for the life of the program.
struct SqlShape {
  std::span<const SqlPiece> pieces;
};

namespace detail {

template <class Part>
struct PieceOf;
template <SqlLiteral literal>
struct PieceOf<SqlFragment<literal>> {
  static constexpr SqlPiece piece{SqlSlot::Fixed, SqlFragment<literal>::text};
};
template <>
struct PieceOf<SqlText> {
  static constexpr SqlPiece piece{SqlSlot::Text, {}};
};
template <>
struct PieceOf<SqlNumber> {
  static constexpr SqlPiece piece{SqlSlot::Number, {}};
};
template <>
struct PieceOf<SqlName> {
  static constexpr SqlPiece piece{SqlSlot::Name, {}};
};

template <class... Parts>
struct ShapeOf {
  static constexpr std::array<SqlPiece, sizeof...(Parts)> pieces{PieceOf<Parts>::piece...};
  static constexpr SqlShape shape{pieces};

  /// A text value must be between a fragment that ends in a quote and one that begins with a quote; other
  /// values must not.
  static constexpr bool quotesFit() {
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (pieces[i].slot == SqlSlot::Fixed) continue;
      const bool before = i > 0 && pieces[i - 1].slot == SqlSlot::Fixed && pieces[i - 1].text.ends_with('\'');
      const bool after = i + 1 < pieces.size() && pieces[i + 1].slot == SqlSlot::Fixed &&
                         pieces[i + 1].text.starts_with('\'');
      const bool quoted = before && after;
      if (quoted != (pieces[i].slot == SqlSlot::Text)) return false;
    }
    return true;
  }
};

} // namespace detail

/// A statement: fixed fragments from the source code and values from outside.
///
/// `text()` is the plain concatenation, values raw between the fixed quotes, for logs and for late-bound
/// hosts; adapters never execute it but bind the values. Nothing from outside can become part of the
/// statement.
class Sql {
public:
  Sql() = default;

  /// Appends a part, for statements that are composed at run time.
  Sql& append(const Sql& part);

  std::string text() const;
  /// The shapes of the joined parts, by address: equal spans mean statements that differ only in values and
  /// names.
  std::span<const SqlShape* const> shapes() const { return shapes_; }
  /// The values of all text and number placeholders, in order.
  std::span<const Value> values() const { return values_; }
  /// The names, in order.
  std::span<const std::string> names() const { return names_; }

private:
  template <class... Parts>
  friend Sql sql(const Parts&... parts);

  template <SqlLiteral literal>
  void add(const SqlFragment<literal>& /*fixed*/) {}
  void add(const SqlText& text) { values_.push_back(text.content); }
  void add(const SqlNumber& whole) { values_.emplace_back(whole.content); }
  void add(const SqlName& identifier) { names_.emplace_back(identifier.content); }

  std::vector<const SqlShape*> shapes_;
  std::vector<Value> values_;
  std::vector<std::string> names_;
};

/// Builds a statement: `sql("SELECT * From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql)`.
template <class... Parts>
Sql sql(const Parts&... parts) {
  using Shape = detail::ShapeOf<Parts...>;
  static_assert(Shape::quotesFit(), "a text value, and only a text value, stands between single quotes");
  Sql statement;
  statement.shapes_.push_back(&Shape::shape);
  statement.values_.reserve(sizeof...(Parts) / 2);
  (statement.add(parts), ...);
  return statement;
}

} // namespace qx
