// Tables on a terminal of any width, or in a file.
#pragma once

#include "cli/command.h"
#include "cli/terminal_text.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

struct TableColumn {
  std::string_view title;
  std::size_t width;         ///< usual
  std::size_t least;         ///< on a narrow terminal
  bool mayBeMissing = false; ///< there, when even the least widths are too many
  Fitting fitting = Fitting::Cut;
};

struct TableCell {
  std::string text;
  Style style = Style::Plain;
};

/// Prints rows as they come. On a terminal a line is as wide as that, its texts are cut and the last column
/// takes what is left; elsewhere texts are whole, and those that fit stand below each other. Of a text its
/// first line is shown.
class Table {
public:
  Table(const Output& output, std::vector<TableColumn> columns);

  void head();
  /// A cell for each column.
  void row(const std::vector<TableCell>& cells);

private:
  const Output& output_;
  std::vector<TableColumn> columns_;
  std::vector<bool> missing_;
};

} // namespace qx::cli
