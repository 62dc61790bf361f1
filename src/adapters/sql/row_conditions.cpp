#include "adapters/sql/row_conditions.h"

#include "model/text.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace qx::relational {
namespace {

/// An upper bound of all texts with the prefix: the prefix and the last code point.
std::string endOf(std::string_view prefix) { return std::string(prefix) + "\xF4\x8F\xBF\xBF"; }

Sql range(const Sql& text, std::string_view prefix, bool afterPrefix) {
  Sql condition;
  if (!afterPrefix) condition.append(text).append(sql(" >= '"_sql, value(prefix), "' And "_sql));
  return condition.append(text).append(sql(" < '"_sql, value(endOf(prefix)), "'"_sql));
}

Sql bound(const Value& content) {
  if (content.kind() == ValueKind::Integer) return sql(number(*content.integer()));
  return sql("'"_sql, value(content.text()), "'"_sql);
}

} // namespace

Sql beginsByRange(const Sql& text, std::string_view prefix, bool afterPrefix) {
  return sql("("_sql).append(range(text, prefix, afterPrefix)).append(sql(")"_sql));
}

Sql beginsByRangeAndStart(const Sql& text, std::string_view prefix, bool afterPrefix) {
  return sql("("_sql)
      .append(range(text, prefix, afterPrefix))
      .append(sql(" And left("_sql))
      .append(text)
      .append(sql(", "_sql, number(static_cast<std::int64_t>(characterCount(prefix))), ") = '"_sql,
                  value(prefix), "')"_sql));
}

Sql beginsLike(const Sql& text, std::string_view prefix, bool /*afterPrefix*/) {
  std::string pattern;
  for (const char c : prefix) {
    if (c == '%' || c == '_' || c == '[' || c == '\\') pattern += '\\';
    pattern += c;
  }
  return sql("("_sql).append(text).append(sql(" Like '"_sql, value(pattern + '%'), "' Escape '\\')"_sql));
}

Sql comesAfterAsRow(std::span<const ColumnValue> position) {
  Sql columns;
  Sql values;
  for (const ColumnValue& each : position) {
    const bool first = &each == &position.front();
    columns.append(first ? sql(name(each.column)) : sql(", "_sql, name(each.column)));
    values.append(first ? Sql() : sql(", "_sql)).append(bound(each.value));
  }
  return sql("("_sql).append(columns).append(sql(") > ("_sql)).append(values).append(sql(")"_sql));
}

/// "a >= 1 And (a > 1 Or (a = 1 And b > 2))": the first bound is what an index is searched by.
Sql comesAfterByColumns(std::span<const ColumnValue> position) {
  const auto compared = [](const ColumnValue& each, const Sql& sign) {
    return sql(name(each.column)).append(sign).append(bound(each.value));
  };
  Sql condition = compared(position.back(), sql(" > "_sql));
  for (std::size_t i = position.size() - 1; i-- > 0;)
    condition = compared(position[i], sql(" >= "_sql))
                    .append(sql(" And ("_sql))
                    .append(compared(position[i], sql(" > "_sql)))
                    .append(sql(" Or ("_sql))
                    .append(compared(position[i], sql(" = "_sql)))
                    .append(sql(" And "_sql))
                    .append(condition)
                    .append(sql("))"_sql));
  return condition;
}

} // namespace qx::relational
