#include "adapters/sql/row_reader.h"

#include "adapters/sql/dialect.h"

#include <algorithm>
#include <bit>

namespace qx::relational {

std::shared_ptr<const Rows> RowReader::read(RowQuery& query, std::span<const Value> parameters) {
  auto rows = std::make_shared<Rows>();
  Statement& select = *query.select;
  select.bindAll(parameters);
  const StatementUse use(select);
  // Read the shape after the first step, which recompiles the statement when the schema has changed.
  bool more = select.step();
  statements_.completeShape(query.source, select);
  const RowShape& shape = *query.source.shape;
  if (more) rows->values.reserve(shape.size());
  while (more) {
    rows->keys.push_back(
        query.source.layout.hidden > 0 ? select.column(0, ColumnKind::Plain).integer().value_or(0) : 0);
    shape.appendRow(select, rows->values);
    more = select.step();
  }
  return rows;
}

std::vector<std::shared_ptr<const Rows>>
RowReader::readMany(RowQuery& query, std::span<const std::vector<Value>* const> parameters) {
  std::vector<std::shared_ptr<const Rows>> results;
  results.reserve(parameters.size());
  if (!statements_.driver().dialect().joinsStatements || parameters.size() == 1) {
    for (const std::vector<Value>* each : parameters) results.push_back(read(query, *each));
    return results;
  }
  const std::size_t most = std::bit_floor(std::min(mostAtOnce, setsAtOnce(query.parameterCount)));
  for (std::size_t at = 0; at < parameters.size(); at += most)
    readBlock(query, parameters.subspan(at, std::min(most, parameters.size() - at)), results);
  return results;
}

/// One statement joins the table with the values of all.
void RowReader::readBlock(RowQuery& query, std::span<const std::vector<Value>* const> parameters,
                          std::vector<std::shared_ptr<const Rows>>& results) {
  ManyQuery& many = statements_.many(query, parameters.size());
  const std::size_t width = query.parameterCount;
  std::vector<Value> values;
  values.reserve(many.rows * width);
  for (const std::vector<Value>* each : parameters) values.insert(values.end(), each->begin(), each->end());
  // Null equals nothing.
  values.resize(many.rows * width);
  std::vector<std::shared_ptr<Rows>> found(parameters.size());
  for (auto& rows : found) rows = std::make_shared<Rows>();
  many.select->bindAll(values);
  const StatementUse use(*many.select);
  bool more = many.select->step();
  if (!many.shape) many.shape.emplace(statements_.shapeOf(*many.select, many.layout));
  if (!query.source.shape) query.source.shape = many.shape->without(1);
  while (more) {
    const auto at = static_cast<std::size_t>(many.select->column(0, ColumnKind::Plain).integer().value_or(0));
    if (at < found.size()) {
      Rows& rows = *found[at];
      rows.keys.push_back(query.source.layout.hidden > 0
                              ? many.select->column(1, ColumnKind::Plain).integer().value_or(0)
                              : 0);
      many.shape->appendRow(*many.select, rows.values);
    }
    more = many.select->step();
  }
  results.insert(results.end(), found.begin(), found.end());
}

Rows RowReader::readByKey(KeysetQuery& query, std::span<const std::int64_t> keys) {
  Rows rows;
  for (std::size_t at = 0; at < keys.size(); at += mostAtOnce) {
    const auto block = keys.subspan(at, std::min(mostAtOnce, keys.size() - at));
    ManyQuery& many = statements_.many(query, block.size());
    std::vector<Value> values(block.begin(), block.end());
    values.resize(many.rows);
    many.select->bindAll(values);
    const StatementUse use(*many.select);
    bool more = many.select->step();
    statements_.completeShape(query.source, *many.select);
    const RowShape& shape = *query.source.shape;
    while (more) {
      rows.keys.push_back(many.select->column(0, ColumnKind::Plain).integer().value_or(0));
      shape.appendRow(*many.select, rows.values);
      more = many.select->step();
    }
  }
  return rows;
}

} // namespace qx::relational
