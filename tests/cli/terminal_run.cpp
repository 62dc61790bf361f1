#include "terminal_run.h"

#include <array>
#include <pty.h>
#include <stdexcept>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qx {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> list;
  for (std::string& text : texts) list.push_back(text.data());
  list.push_back(nullptr);
  return list;
}

bool endsSequence(char c) { return c >= '@' && c <= '~' && c != '['; }

} // namespace

void Screen::print(std::string_view bytes) {
  for (const char c : bytes) {
    if (!begun_.empty()) {
      begun_ += c;
      if (!endsSequence(c)) continue;
      ++sequences_[begun_.substr(1)];
      if (begun_ == "\033[K") {
        lines_.back().resize(0);
      }
      begun_.clear();
    } else if (c == '\033') {
      begun_ = c;
    } else if (c == '\n') {
      lines_.emplace_back();
    } else if (c == '\r') {
      column_ = 0;
    } else {
      character({&c, 1});
    }
  }
}

/// Bytes behind the first one of a character take no column.
void Screen::character(std::string_view bytes) {
  const bool begins = (static_cast<unsigned char>(bytes.front()) & 0xC0U) != 0x80;
  if (begins && column_ == columns_) {
    ++wraps_;
    lines_.emplace_back();
    column_ = 0;
  }
  if (bytes == "[" && column_ == 0) ++bars_;
  lines_.back() += bytes;
  if (begins) ++column_;
}

TerminalResult runAtTerminal(const std::vector<std::string>& arguments,
                             const std::map<std::string, std::string>& variables, std::size_t columns) {
  std::vector<std::string> words{QXIMPORTJOB_PROGRAM};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<std::string> settings{"TERM=xterm"};
  for (const auto& [key, setting] : variables) settings.push_back(key + "=" + setting);
  auto argumentList = pointersTo(words);
  auto settingList = pointersTo(settings);
  winsize size{};
  size.ws_row = 24;
  size.ws_col = static_cast<unsigned short>(columns);
  int master = -1;
  const pid_t child = forkpty(&master, nullptr, nullptr, &size);
  if (child < 0) throw std::runtime_error("no terminal");
  if (child == 0) {
    execve(argumentList.front(), argumentList.data(), settingList.data());
    _exit(127);
  }
  TerminalResult result{-1, Screen(columns), {}};
  std::array<char, 4096> buffer{};
  // A terminal whose program has ended answers with an error.
  for (ssize_t count = 0; (count = read(master, buffer.data(), buffer.size())) > 0;)
    result.bytes.append(buffer.data(), static_cast<std::size_t>(count));
  close(master);
  result.screen.print(result.bytes);
  int status = 0;
  waitpid(child, &status, 0);
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return result;
}

} // namespace qx
