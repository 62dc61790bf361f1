// Collects the texts of many failures, within bounds.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace qx {

/// Appends a line to a text, with a line break unless the text is empty.
void appendLine(std::string& text, std::string_view line);

/// Collects lines up to about one megabyte and then only counts them, so that a run over many refused jobs
/// does not exhaust memory.
class CollectedText {
public:
  void clear();
  void add(std::string_view line);
  /// The lines, and a final one with the number of omitted ones.
  std::string text() const;

private:
  std::string text_;
  std::size_t leftOut_ = 0;
};

} // namespace qx
