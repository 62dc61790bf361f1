#include "cli/progress_bar.h"

#include "cli/terminal_text.h"

namespace qx::cli {

void ProgressBar::draw() {
  if (!terminal_) return;
  constexpr std::size_t width = 30;
  constexpr std::size_t infoWidth = 44;
  constexpr std::size_t whole = 100;
  const auto done = static_cast<std::size_t>(percent_ < 0 ? 0 : percent_) * width / whole;
  std::string line = "[" + std::string(done, '#') + std::string(width - done, '.') + "] " +
                     std::to_string(percent_) + " % " + fitted(info_, infoWidth);
  if (line == drawn_) return;
  output_ << '\r' << line << "\033[K" << std::flush;
  drawn_ = std::move(line);
}

void ProgressBar::clear() {
  if (drawn_.empty()) return;
  output_ << "\r\033[K" << std::flush;
  drawn_.clear();
}

} // namespace qx::cli
