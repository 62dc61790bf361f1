// Keeps control characters away from a terminal.
#pragma once

#include <ostream>
#include <streambuf>

namespace qx::cli {

/// Forwards text to another buffer, which must outlive it, with every control character but line feed and tab
/// replaced by a blank. Texts of jobs are untrusted: an escape sequence could move the cursor or rewrite the
/// screen. JSON is unaffected, because it escapes these characters.
class HarmlessBuffer final : public std::streambuf {
public:
  explicit HarmlessBuffer(std::streambuf* target) : target_(target) {}

  /// Whether anything was forwarded.
  bool used() const { return used_; }

protected:
  int_type overflow(int_type character) override;
  std::streamsize xsputn(const char* text, std::streamsize length) override;
  int sync() override { return target_->pubsync(); }

private:
  bool put(const char* text, std::streamsize length) {
    used_ = used_ || length > 0;
    return target_->sputn(text, length) == length;
  }

  std::streambuf* target_;
  bool used_ = false;
  /// Held back until the second byte arrives: U+0080 to U+009F begin with it and are control characters as
  /// well.
  bool held_ = false;
};

/// A stream on the buffer of another one. It flushes as that one does.
class HarmlessStream final : public std::ostream {
public:
  explicit HarmlessStream(std::ostream& target) : std::ostream(nullptr), buffer_(target.rdbuf()) {
    rdbuf(&buffer_);
    setf(target.flags() & std::ios::unitbuf);
  }

  /// Whether anything was written to it.
  bool used() const { return buffer_.used(); }

private:
  HarmlessBuffer buffer_;
};

} // namespace qx::cli
