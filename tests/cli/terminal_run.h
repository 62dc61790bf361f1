// Runs the program at a terminal and keeps what stands on its screen.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// What a terminal shows that knows line feeds, the way back to the first column and the deletion of a line.
class Screen {
public:
  explicit Screen(std::size_t columns) : columns_(columns) {}

  void print(std::string_view bytes);
  /// From the first line on, the one with the cursor last.
  const std::vector<std::string>& lines() const { return lines_; }
  /// How often a text has run into the next line.
  int wraps() const { return wraps_; }
  /// How often a bar was drawn.
  int bars() const { return bars_; }
  /// What came after ESC.
  const std::map<std::string, int>& sequences() const { return sequences_; }

private:
  void character(std::string_view bytes);

  std::size_t columns_;
  std::size_t column_ = 0;
  std::vector<std::string> lines_{""};
  std::string begun_;
  int wraps_ = 0;
  int bars_ = 0;
  std::map<std::string, int> sequences_;
};

struct TerminalResult {
  int status = -1;
  Screen screen;
  std::string bytes;
};

/// Runs the program with both outputs at a terminal of this size.
TerminalResult runAtTerminal(const std::vector<std::string>& arguments,
                             const std::map<std::string, std::string>& variables, std::size_t columns = 80);

} // namespace qx
