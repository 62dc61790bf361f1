// Texts of many failures in one, within bounds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qx {

/// Appends to a text, separated from what stands there by a line break; nothing before the first.
void appendLine(std::string& text, std::string_view line);

/// Collects lines up to about one megabyte and then only counts them, so that a run over many refused jobs
/// keeps its memory.
class CollectedText {
public:
  void clear();
  void add(std::string_view line);
  /// The lines, and one more that says how many were left out.
  std::string text() const;

private:
  std::string text_;
  std::size_t leftOut_ = 0;
};

} // namespace qx
