// Keeps control characters away from a terminal.
#pragma once

#include <ostream>
#include <streambuf>

namespace qx::cli {

/// Passes text on to another buffer, which must outlive it, with a blank in place of every control character
/// but line feed and tab. Texts of jobs come from strangers: an escape sequence among them would move the
/// cursor or rewrite what stands on the screen. JSON passes unchanged, it spells these characters out.
class HarmlessBuffer final : public std::streambuf {
public:
  explicit HarmlessBuffer(std::streambuf* target) : target_(target) {}

protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override { return target_->pubsync(); }

private:
  bool put(const char* text, std::streamsize length) { return target_->sputn(text, length) == length; }

  std::streambuf* target_;
  /// The first byte of a character of two is kept back: U+0080 to U+009F begin with it and are control
  /// characters as well.
  bool held_ = false;
};

/// A stream on the buffer of another one. It flushes as that one does.
class HarmlessStream final : public std::ostream {
public:
  explicit HarmlessStream(std::ostream& target) : std::ostream(nullptr), buffer_(target.rdbuf()) {
    rdbuf(&buffer_);
    setf(target.flags() & std::ios::unitbuf);
  }

private:
  HarmlessBuffer buffer_;
};

} // namespace qx::cli
