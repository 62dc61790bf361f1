#include "cli/table.h"

#include <algorithm>
#include <utility>

namespace qx::cli {
namespace {

constexpr std::string_view gap = "  ";

std::size_t widthOf(const std::vector<TableColumn>& columns, const std::vector<bool>& missing,
                    std::size_t TableColumn::*width) {
  std::size_t sum = 0;
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (!missing[i]) sum += (sum == 0 ? 0 : gap.size()) + columns[i].*width;
  return sum;
}

} // namespace

Table::Table(const Output& output, std::vector<TableColumn> columns)
    : output_(output), columns_(std::move(columns)), missing_(columns_.size()) {
  if (!output.columns) return;
  const std::size_t wanted = *output.columns;
  for (std::size_t i = columns_.size(); i-- > 0 && widthOf(columns_, missing_, &TableColumn::least) > wanted;)
    missing_[i] = columns_[i].mayBeMissing;
  std::size_t width = widthOf(columns_, missing_, &TableColumn::width);
  const auto shrink = [&](TableColumn& column, std::size_t least) {
    const std::size_t less =
        std::min(width - std::min(width, wanted), column.width - std::min(column.width, least));
    column.width -= less;
    width -= less;
  };
  // The last column first, then the others from right to left, and every one on a terminal that is too
  // narrow.
  TableColumn& last = columns_.back();
  shrink(last, std::max(last.width / 2, last.least));
  for (std::size_t i = columns_.size() - 1; i-- > 0;)
    if (!missing_[i]) shrink(columns_[i], columns_[i].least);
  shrink(last, last.least);
  for (std::size_t i = columns_.size(); i-- > 0;)
    if (!missing_[i]) shrink(columns_[i], 1);
  if (width < wanted) last.width += wanted - width;
}

void Table::head() {
  std::vector<TableCell> titles;
  for (const TableColumn& column : columns_) titles.push_back({std::string(column.title), Style::Plain});
  row(titles);
}

void Table::row(const std::vector<TableCell>& cells) {
  // Blanks are printed before the next text only, so that no line ends with them.
  std::string blanks;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    if (missing_[i]) continue;
    std::string text =
        fitted(cells[i].text, columns_[i].width, output_.columns ? columns_[i].fitting : Fitting::Whole);
    const std::size_t shown = text.find_last_not_of(' ') + 1;
    const std::size_t padding = text.size() - shown;
    text.resize(shown);
    if (!text.empty()) {
      output_.result << blanks;
      output_.result.print(text, cells[i].style);
      blanks.clear();
    }
    blanks.append(padding, ' ').append(gap);
  }
  output_.result << '\n';
}

} // namespace qx::cli
