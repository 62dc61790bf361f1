// Statements of a test in one line each.
#pragma once

#include "erp/table_filler.h"
#include "platform/database.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Runs statements on the test's connection; each is given by its parts, as to `sql`, or as a whole.
class DatabaseAccess {
public:
  virtual Connection& connection() = 0;

  template <class... Parts>
  std::int64_t execute(const Parts&... parts) {
    return connection().execute(statement(parts...));
  }
  template <class... Parts>
  std::unique_ptr<Recordset> open(const Parts&... parts) {
    return connection().open(statement(parts...));
  }
  /// The first column of the first row; null when there is no row.
  template <class... Parts>
  Value single(const Parts&... parts) {
    const auto found = open(parts...);
    return found->eof() ? Value::null() : found->value(std::size_t{0});
  }
  template <class... Parts>
  std::string text(const Parts&... parts) {
    return single(parts...).text();
  }
  template <class... Parts>
  std::int64_t count(const Parts&... parts) {
    return single(parts...).integer().value_or(-1);
  }
  /// Every row as its values.
  template <class... Parts>
  std::vector<std::vector<Value>> rows(const Parts&... parts) {
    std::vector<std::vector<Value>> all;
    for (const auto found = open(parts...); !found->eof(); found->moveNext()) {
      auto& row = all.emplace_back();
      for (std::size_t i = 0; i < found->fieldCount(); ++i) row.push_back(found->value(i));
    }
    return all;
  }
  /// The same as texts: the values of a row joined by '|'.
  template <class... Parts>
  std::vector<std::string> listed(const Parts&... parts) {
    std::vector<std::string> lines;
    for (const auto& row : rows(parts...)) {
      std::string& line = lines.emplace_back();
      for (const Value& each : row) line += (&each == &row.front() ? "" : "|") + each.text();
    }
    return lines;
  }
  /// The first column of every row, each followed by a blank.
  template <class... Parts>
  std::string keys(const Parts&... parts) {
    std::string all;
    for (const auto& row : rows(parts...)) all += row.front().text() + " ";
    return all;
  }
  /// Adds a row; unnamed columns get their default.
  void add(std::string_view table, std::initializer_list<erp::Cell> cells) {
    erp::TableFiller(connection(), table).add(cells);
  }

protected:
  DatabaseAccess() = default;
  DatabaseAccess(const DatabaseAccess&) = default;
  DatabaseAccess& operator=(const DatabaseAccess&) = default;
  ~DatabaseAccess() = default;

private:
  template <class... Parts>
  static Sql statement(const Parts&... parts) {
    return sql(parts...);
  }
  static const Sql& statement(const Sql& whole) { return whole; }
};

} // namespace qx
