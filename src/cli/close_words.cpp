#include "cli/close_words.h"

#include "model/text.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace qx::cli {
namespace {

/// How many bytes must be changed, left out, added or exchanged with their neighbour.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before;
  std::vector<std::size_t> previous(b.size() + 1);
  std::iota(previous.begin(), previous.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::vector<std::size_t> row(b.size() + 1, i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({previous[j] + 1, row[j - 1] + 1, previous[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        row[j] = std::min(row[j], before[j - 2] + 1);
    }
    before = std::move(previous);
    previous = std::move(row);
  }
  return previous.back();
}

} // namespace

std::string closestWord(std::string_view typed, const std::vector<std::string>& known) {
  const std::string word = lowerCase(typed);
  // One slip in three letters.
  std::size_t least = word.size() / 3 + 1;
  std::string closest;
  for (const std::string& candidate : known) {
    const std::size_t differing = distance(word, lowerCase(candidate));
    if (differing >= least) continue;
    least = differing;
    closest = candidate;
  }
  return closest;
}

} // namespace qx::cli
