#include "adapters/sql/upsert.h"

namespace qx::relational {

Sql upsert(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  Sql columns;
  Sql values;
  Sql key;
  Sql changes;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::string_view column = row[i].column;
    columns.append(i == 0 ? sql(name(column)) : sql(", "_sql, name(column)));
    values.append(i == 0 ? sql("'"_sql, SqlText{row[i].value}, "'"_sql)
                         : sql(", '"_sql, SqlText{row[i].value}, "'"_sql));
    if (i < keys)
      key.append(i == 0 ? sql(name(column)) : sql(", "_sql, name(column)));
    else
      changes.append(i == keys ? sql(name(column), " = excluded."_sql, name(column))
                               : sql(", "_sql, name(column), " = excluded."_sql, name(column)));
  }
  Sql statement = sql("INSERT INTO "_sql, name(table), " ("_sql);
  statement.append(columns).append(sql(") VALUES ("_sql)).append(values);
  statement.append(sql(") ON CONFLICT ("_sql)).append(key);
  return statement.append(sql(") DO UPDATE SET "_sql)).append(changes);
}

} // namespace qx::relational
