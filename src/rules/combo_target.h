// The port to a drop-down list of codes, independent of any toolkit.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace qx {

/// The rows of a drop-down list, each a text and a code.
struct ComboRows {
  std::array<std::string, 2> columns;
  std::vector<std::array<std::string, 2>> rows;
};

/// A drop-down list with two columns.
class ComboTarget {
public:
  virtual ~ComboTarget() = default;
  /// Replaces the rows and clears the selection.
  virtual void setRowSource(ComboRows rows) = 0;
  virtual void hideColumn(int index) = 0;
  virtual void setColumnHeaders(bool shown) = 0;
  /// Selects a row by its 0-based position.
  virtual void setBookmark(std::size_t row) = 0;
};

} // namespace qx
