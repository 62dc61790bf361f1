#include "cli/kept_row.h"

#include "cli/terminal_text.h"

#include <algorithm>
#include <type_traits>

namespace qx::cli {
namespace {

Value valueOf(const StageValue& content) {
  return std::visit(
      [](const auto& held) -> Value {
        if constexpr (std::is_same_v<std::decay_t<decltype(held)>, std::monostate>)
          return Value::null();
        else
          return Value(held);
      },
      content);
}

} // namespace

KeptRow::KeptRow(Connection& connection, const Sql& emptySelect) {
  const auto rows = connection.open(emptySelect);
  for (std::size_t i = 0; i < rows->fieldCount(); ++i)
    columns_.push_back({std::string(rows->fieldName(i)), {}, 0});
}

void KeptRow::begin() {
  for (Column& column : columns_) column = {std::move(column.name), {}, 0};
}

std::optional<ValueFault> KeptRow::add(const StageProperty& property) {
  auto column = std::ranges::find(columns_, property.name, &Column::name);
  if (column == columns_.end()) column = std::ranges::find(columns_, composed(property.name), &Column::name);
  if (column == columns_.end())
    return ValueFault{FaultKind::PropertyUnknown, "the table has no such column", {}};
  if (column->line != 0) return repeatedProperty(column->line);
  const auto* text = std::get_if<std::string>(&property.value);
  if (text != nullptr && text->find('\0') != std::string::npos)
    return ValueFault{FaultKind::ForbiddenCharacter, "a text must not hold the character NUL", {}};
  column->line = property.line;
  column->content = property.value;
  return std::nullopt;
}

const KeptRow::Column* KeptRow::find(std::string_view name) const {
  const auto column = std::ranges::find(columns_, name, &Column::name);
  return column == columns_.end() ? nullptr : &*column;
}

std::string KeptRow::text(std::string_view column) const {
  const Column* found = find(column);
  const auto* text = found == nullptr ? nullptr : std::get_if<std::string>(&found->content);
  return text == nullptr ? std::string() : *text;
}

std::optional<std::int64_t> KeptRow::whole(std::string_view column) const {
  const Column* found = find(column);
  const auto* number = found == nullptr ? nullptr : std::get_if<std::int64_t>(&found->content);
  return number == nullptr ? std::nullopt : std::optional(*number);
}

std::int64_t KeptRow::line(std::string_view column) const {
  const Column* found = find(column);
  return found == nullptr ? 0 : found->line;
}

void KeptRow::fill(RowValues& row) const {
  for (const Column& column : columns_) row.set(ColumnName(column.name), valueOf(column.content));
}

} // namespace qx::cli
