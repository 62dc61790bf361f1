#include "adapters/sql/upsert.h"

namespace qx::relational {
namespace {

Sql namesOf(std::span<const ColumnValue> row) {
  Sql names;
  for (const ColumnValue& each : row)
    names.append(&each == &row.front() ? sql(name(each.column)) : sql(", "_sql, name(each.column)));
  return names;
}

Sql valuesOf(std::span<const ColumnValue> row) {
  Sql values;
  for (const ColumnValue& each : row)
    values.append(&each == &row.front() ? sql("'"_sql, SqlText{each.value}, "'"_sql)
                                        : sql(", '"_sql, SqlText{each.value}, "'"_sql));
  return values;
}

/// "a = 1, b = 2" with another separator.
Sql equations(std::span<const ColumnValue> row, const Sql& separator) {
  Sql all;
  for (const ColumnValue& each : row) {
    if (&each != &row.front()) all.append(separator);
    all.append(sql(name(each.column), " = '"_sql, SqlText{each.value}, "'"_sql));
  }
  return all;
}

} // namespace

Sql putOnConflict(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  Sql changes;
  for (const ColumnValue& each : row.subspan(keys))
    changes.append(&each == &row[keys]
                       ? sql(name(each.column), " = excluded."_sql, name(each.column))
                       : sql(", "_sql, name(each.column), " = excluded."_sql, name(each.column)));
  Sql statement = sql("INSERT INTO "_sql, name(table), " ("_sql);
  statement.append(namesOf(row)).append(sql(") VALUES ("_sql)).append(valuesOf(row));
  statement.append(sql(") ON CONFLICT ("_sql)).append(namesOf(row.first(keys)));
  return statement.append(sql(") DO UPDATE SET "_sql)).append(changes);
}

Sql putByMerge(std::string_view table, std::span<const ColumnValue> row, std::size_t keys) {
  // The lock holds the place of a row that is not there yet.
  Sql statement =
      sql("MERGE "_sql, name(table), " WITH (HOLDLOCK) USING (SELECT 1 AS one) AS source ON "_sql);
  statement.append(equations(row.first(keys), sql(" AND "_sql)));
  statement.append(sql(" WHEN MATCHED THEN UPDATE SET "_sql));
  statement.append(equations(row.subspan(keys), sql(", "_sql)));
  statement.append(sql(" WHEN NOT MATCHED THEN INSERT ("_sql)).append(namesOf(row));
  return statement.append(sql(") VALUES ("_sql)).append(valuesOf(row)).append(sql(");"_sql));
}

} // namespace qx::relational
