// A drop-down list of codes as the rules see it, without any toolkit.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace qx {

/// What a drop-down list is bound to: rows of a text and a code.
struct ComboRows {
  std::array<std::string, 2> columns;
  std::vector<std::array<std::string, 2>> rows;
};

/// A drop-down list with two columns.
class ComboTarget {
public:
  virtual ~ComboTarget() = default;
  /// Replaces what the list holds; nothing is selected afterwards.
  virtual void setRowSource(ComboRows rows) = 0;
  virtual void hideColumn(int index) = 0;
  virtual void setColumnHeaders(bool shown) = 0;
  /// Selects the row of this 0-based position.
  virtual void setBookmark(std::size_t row) = 0;
};

} // namespace qx
