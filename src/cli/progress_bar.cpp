#include "cli/progress_bar.h"

#include "cli/terminal_text.h"
#include "platform/terminal.h"

#include <algorithm>
#include <cmath>

namespace qx::cli {
namespace {

constexpr std::chrono::milliseconds interval{100};
constexpr std::size_t usualColumns = 80;

std::string amount(double count, ProgressUnit unit) {
  if (unit == ProgressUnit::Items) return std::to_string(std::llround(count));
  constexpr double tenthOfMega = 1e5;
  const long long tenths = std::llround(count / tenthOfMega);
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " MB";
}

/// "7 s", "3:05 min" or "2:30 h".
std::string spanText(double seconds) {
  constexpr std::int64_t perUnit = 60;
  const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
  if (whole < perUnit) return std::to_string(whole) + " s";
  const bool hours = whole >= perUnit * perUnit;
  const std::int64_t small = hours ? whole / perUnit : whole;
  const std::string rest = std::to_string(small % perUnit);
  return std::to_string(small / perUnit) + (rest.size() < 2 ? ":0" : ":") + rest + (hours ? " h" : " min");
}

} // namespace

ProgressBar::ProgressBar(const Output& output, ProgressUnit unit)
    : output_(output), unit_(unit), shown_(isErrorTerminal()) {
  if (!shown_) return;
  output_.messages.buffer().giveWay(this);
  if (isOutputTerminal()) output_.result.buffer().wait(true);
}

void ProgressBar::draw() {
  if (!shown_) return;
  const auto now = Clock::now();
  if (now < due_) return;
  due_ = now + interval;
  const std::size_t columns = terminalColumns(standardError).value_or(usualColumns);
  erase();
  // A character in the last column would make some terminals begin a new line.
  output_.terminal << line(columns - std::min<std::size_t>(columns, 1), now - begin_) << std::flush;
  drawn_ = true;
}

void ProgressBar::end() {
  if (!shown_) return;
  erase();
  output_.messages.buffer().giveWay(nullptr);
  output_.result.buffer().wait(false);
  shown_ = false;
}

void ProgressBar::erase() {
  if (drawn_) output_.terminal << "\r\033[K" << std::flush;
  drawn_ = false;
  output_.result.buffer().release();
}

std::string ProgressBar::line(std::size_t width, Clock::duration span) const {
  constexpr std::size_t longestBar = 30;
  constexpr std::size_t shortestBar = 10;
  constexpr std::size_t whole = 100;
  constexpr double leastSeconds = 0.1;
  const double seconds = std::chrono::duration<double>(span).count();
  std::string text;
  const std::uintmax_t done = total_ == 0 ? done_ : std::min(done_, total_);
  if (total_ > 0) text += std::to_string(done * whole / total_) + " %  ";
  text += amount(static_cast<double>(done), unit_);
  if (total_ > 0) text += " of " + amount(static_cast<double>(total_), unit_);
  if (seconds >= leastSeconds && done > 0) {
    const double rate = static_cast<double>(done) / seconds;
    text += "  " + amount(rate, unit_) + "/s";
    if (total_ > 0) text += "  " + spanText(static_cast<double>(total_ - done) / rate) + " left";
  }
  // The brackets and a blank.
  constexpr std::size_t frame = 3;
  if (total_ > 0 && text.size() + frame + shortestBar <= width) {
    const std::size_t length = std::min(longestBar, width - text.size() - frame);
    const auto full = static_cast<std::size_t>(done * length / total_);
    text.insert(0, "[" + std::string(full, '#') + std::string(length - full, '.') + "] ");
  }
  constexpr std::size_t leastInfo = 16;
  if (text.size() + leastInfo < width) text += "  " + info_;
  text = fitted(text, width);
  text.erase(text.find_last_not_of(' ') + 1);
  return text;
}

} // namespace qx::cli
