// The connection strings of ODBC.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::odbc {

/// "Keyword=value;Keyword={value};...". Keywords are compared without regard to case.
class ConnectionString {
public:
  /// Raises `std::invalid_argument`, which names the part, for a text that is none.
  explicit ConnectionString(std::string_view text);

  bool has(std::string_view keyword) const;
  /// The value without braces; empty without one.
  std::string_view value(std::string_view keyword) const;
  /// Replaces the value, or appends it.
  void set(std::string_view keyword, std::string_view value);
  std::string text() const;
  /// The text without passwords, for messages.
  std::string displayed() const;

private:
  struct Part {
    std::string keyword;
    std::string value;
  };

  const Part* find(std::string_view keyword) const;

  std::vector<Part> parts_;
};

} // namespace qx::odbc
