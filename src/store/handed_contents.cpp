#include "store/handed_contents.h"

#include <algorithm>
#include <string>

namespace qx {

std::int64_t forgetContentsBefore(Connection& connection, const Date& day) {
  const bool remembered = std::ranges::any_of(connection.tableNames(), [](const std::string& name) {
    return ColumnName(name) == ColumnName("Vorgangsinhalte");
  });
  if (!remembered) return 0;
  return connection.execute(
      sql("Delete From Vorgangsinhalte Where Zeitpunkt < '"_sql, value(dayStamp(day)), "'"_sql));
}

} // namespace qx
