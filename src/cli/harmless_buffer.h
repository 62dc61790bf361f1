// Keeps control characters away from a terminal.
#pragma once

#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

namespace qx::cli {

/// How a text stands out on a terminal with colours.
enum class Style : std::uint8_t { Plain, Good, Warning, Bad, Faint };

/// The priorities of the system's log.
enum class Priority : std::uint8_t { Error = 3, Warning = 4, Information = 6 };

/// A line at the end of the terminal that is drawn again and again.
class LiveLine {
public:
  virtual ~LiveLine() = default;
  /// Takes the line off the terminal, for other text to be printed.
  virtual void erase() = 0;
};

/// Forwards text to another buffer, which must outlive it, with every control character but line feed and tab
/// replaced by a blank; the marks that reverse the direction of a text count as such. Texts of jobs are
/// untrusted: an escape sequence could move the cursor or rewrite the screen. JSON is unaffected, because it
/// escapes these characters.
class HarmlessBuffer final : public std::streambuf {
public:
  explicit HarmlessBuffer(std::streambuf* target) : target_(target) {}

  void setTarget(std::streambuf* target) { target_ = target; }
  /// Whether anything was forwarded.
  bool used() const { return used_; }
  /// An escape sequence of the program's own.
  void sequence(std::string_view bytes);
  /// From now on each line begins with a mark of its priority.
  void markLines(Priority priority);
  /// Erases the line before any text, as long as it is not null.
  void giveWay(LiveLine* line) { line_ = line; }
  /// Text waits for `release` as long as `waits`.
  void wait(bool waits);
  /// Forwards what waits, up to the last end of a line. False when there is nothing.
  bool release();

protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override { return waits_ ? 0 : target_->pubsync(); }

private:
  void take(char c, std::string& clean);
  bool put(std::string_view text);
  bool forward(std::string_view text);

  std::streambuf* target_;
  LiveLine* line_ = nullptr;
  std::string waiting_;
  /// The beginning of a character of several bytes that may be a control character.
  std::string begun_;
  Priority priority_ = Priority::Information;
  bool used_ = false;
  bool waits_ = false;
  bool marks_ = false;
  bool atLineStart_ = true;
};

/// A stream on the buffer of another one. It flushes as that one does.
class HarmlessStream final : public std::ostream {
public:
  explicit HarmlessStream(std::ostream& target) : std::ostream(nullptr), buffer_(target.rdbuf()) {
    rdbuf(&buffer_);
    setf(target.flags() & std::ios::unitbuf);
  }

  HarmlessBuffer& buffer() { return buffer_; }
  /// Whether anything was written to it.
  bool used() const { return buffer_.used(); }

  /// Styles show from now on.
  void useColors() { colors_ = true; }
  /// Lines begin with their priority from now on, `setPriority` changes it.
  void markPriorities(Priority usual) {
    marked_ = true;
    setPriority(usual);
  }
  void setPriority(Priority priority) {
    if (marked_) buffer_.markLines(priority);
  }
  void print(std::string_view text, Style style);

private:
  HarmlessBuffer buffer_;
  bool colors_ = false;
  bool marked_ = false;
};

} // namespace qx::cli
