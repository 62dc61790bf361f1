#include "engine/collected_text.h"

#include "model/text.h"

namespace qx {
namespace {

constexpr std::size_t limit = 1U << 20U;

} // namespace

void appendLine(std::string& text, std::string_view line) {
  if (!text.empty()) text += crlf;
  text += line;
}

void CollectedText::clear() {
  text_.clear();
  leftOut_ = 0;
}

void CollectedText::add(std::string_view line) {
  if (leftOut_ > 0 || text_.size() + line.size() > limit)
    ++leftOut_;
  else
    appendLine(text_, line);
}

std::string CollectedText::text() const {
  if (leftOut_ == 0) return text_;
  std::string all = text_;
  appendLine(all, "... und " + std::to_string(leftOut_) + " weitere");
  return all;
}

} // namespace qx
