// Bare SQLite: a handle and its prepared statements.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace qx::bench {

/// A prepared statement. Texts that are bound must live until it has been stepped.
class Statement {
public:
  Statement(sqlite3* database, std::string_view text);

  Statement& bind(int place, std::string_view text);
  Statement& bind(int place, std::int64_t number);
  Statement& bind(int place, double number);
  /// The value of another statement's row as it stands, null included.
  Statement& bindColumn(int place, const Statement& from, int column);
  Statement& bindNull(int place);
  /// An empty text becomes null.
  Statement& bindOrNull(int place, std::string_view text);

  /// True when there is a row, which stands until `reset`.
  bool step();
  void reset();
  /// Runs a statement that yields no row that anybody wants.
  void run();

  int columnCount() const;
  std::string_view columnName(int column) const;
  std::string_view text(int column) const;
  std::int64_t integer(int column) const;
  double real(int column) const;
  bool isNull(int column) const;

private:
  struct Finalizer {
    void operator()(sqlite3_stmt* statement) const;
  };
  std::unique_ptr<sqlite3_stmt, Finalizer> statement_;
};

/// An existing database, opened with the durability and the cache that the program uses.
class Database {
public:
  explicit Database(const std::string& path);

  Statement prepare(std::string_view text) { return {handle_.get(), text}; }
  void execute(const char* text);
  std::int64_t changes() const;

private:
  struct Closer {
    void operator()(sqlite3* handle) const;
  };
  std::unique_ptr<sqlite3, Closer> handle_;
};

} // namespace qx::bench
