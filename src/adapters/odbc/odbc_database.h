// Opens databases on servers.
#pragma once

#include "platform/database.h"

#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace qx {

/// Databases that the ODBC driver manager reaches: the connection string is its own,
/// "Driver={...};Server=...".
class OdbcDatabase final : public Database {
public:
  /// `columnNames`: the columns of the component's tables as they are spelled, which live as long as the
  /// database; a server may report them in lower case.
  explicit OdbcDatabase(std::span<const std::string_view> columnNames = {}) : columnNames_(columnNames) {}

  std::string displayed(std::string_view connectionString) const override;
  std::unique_ptr<Connection> open(std::string_view connectionString) override;
  /// The database itself is made on the server; this makes it ready for the component's tables.
  std::unique_ptr<Connection> create(std::string_view connectionString) override;

private:
  std::span<const std::string_view> columnNames_;
};

} // namespace qx
