#include "adapters/sql/column_lists.h"

namespace qx::relational {

std::vector<std::string> fieldNames(Connection& connection, const Sql& select) {
  const auto rows = connection.open(select);
  std::vector<std::string> names;
  for (std::size_t i = 0; i < rows->fieldCount(); ++i) names.emplace_back(rows->fieldName(i));
  return names;
}

Sql joinedBy(const std::vector<std::string>& names, const std::function<Sql(const std::string&)>& term) {
  Sql list;
  for (const std::string& column : names) {
    if (&column != &names.front()) list.append(sql(", "_sql));
    list.append(term(column));
  }
  return list;
}

Sql nameAlone(const std::string& column) { return sql(name(column)); }

} // namespace qx::relational
