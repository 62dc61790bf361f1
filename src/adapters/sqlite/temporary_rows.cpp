#include "adapters/sqlite/temporary_rows.h"

#include "adapters/sql/dialect.h"
#include "adapters/sql/spelling.h"
#include "adapters/sql/translation.h"
#include "platform/database_error.h"

#include <algorithm>
#include <string>
#include <utility>

namespace qx::sqlite {
namespace {

relational::RowShape shapeOf(relational::Driver& driver, const std::string& table) {
  const auto select =
      driver.prepare("SELECT * FROM " + table + " WHERE 0 = 1", relational::StatementLife::Once);
  return {*select, {0, true, {}}, driver.dialect(), relational::Spelling()};
}

} // namespace

TemporaryRows::TemporaryRows(relational::Driver& driver, std::string_view table)
    : shape_(shapeOf(driver, relational::quotedName(table, driver.dialect()))), values_(shape_.size()),
      bound_(shape_.size()) {
  std::string names;
  std::string parameters;
  for (std::size_t i = 0; i < shape_.size(); ++i) {
    names.append(i == 0 ? "" : ", ").append(relational::quotedName(shape_.name(i), driver.dialect()));
    parameters.append(i == 0 ? "?" : ", ?");
  }
  insert_ = driver.prepare("INSERT INTO " + relational::quotedName(table, driver.dialect()) + " (" + names +
                               ") VALUES (" + parameters + ")",
                           relational::StatementLife::Cached);
}

std::size_t TemporaryRows::place(ColumnName column) const {
  const std::size_t index = shape_.find(column);
  if (index >= shape_.size())
    throw StatementError("the table has no column '" + std::string(column.text()) + "'", 0, "42703");
  return index;
}

void TemporaryRows::set(ColumnName column, Value value) { values_[place(column)] = std::move(value); }

void TemporaryRows::add() {
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const bool null = values_[i].isNull();
    if (!null || bound_[i]) insert_->bind(i, values_[i]);
    bound_[i] = !null;
  }
  insert_->run();
  std::ranges::fill(values_, Value());
}

void KeyRepetition::add(std::string_view key) { hashes_.push_back(foldedNameHash(key)); }

bool KeyRepetition::possible() {
  std::ranges::sort(hashes_);
  return std::ranges::adjacent_find(hashes_) != hashes_.end();
}

} // namespace qx::sqlite
