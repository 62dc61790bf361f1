// A text read as a stream of characters with the number of the current line.
#pragma once

#include "platform/files.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::cli {

/// A stream of characters; a derived class supplies them.
class TextSource {
public:
  /// `name` is for messages.
  explicit TextSource(std::string name) : name_(std::move(name)) {}
  TextSource(const TextSource&) = delete;
  TextSource& operator=(const TextSource&) = delete;
  virtual ~TextSource() = default;

  const std::string& name() const { return name_; }
  bool atEnd() const { return at_ == end_; }
  char current() const { return *at_; }
  void advance() {
    if (++at_ == end_) {
      countLines();
      fill();
    }
  }
  /// The line of the character that was read last; a line break counts to the line that it ends.
  std::int64_t line() {
    const std::int64_t next = nextLine();
    return last_ == '\n' ? next - 1 : next;
  }
  /// The line of the character that comes next, or of the end.
  std::int64_t nextLine() {
    countLines();
    return line_;
  }
  /// Skips to the next character that is not a blank.
  void skipBlanks();

protected:
  /// Fetches the next characters. A derived class calls it once the first ones are available.
  void fill() {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    std::string_view characters = more();
    if (std::exchange(atBeginning_, false) && characters.starts_with(byteOrderMark))
      characters.remove_prefix(byteOrderMark.size());
    at_ = counted_ = characters.data();
    end_ = at_ + characters.size();
  }
  /// The text from its beginning, which a derived class supplies again.
  void beginAgain() {
    line_ = 1;
    last_ = 0;
    atBeginning_ = true;
    fill();
  }

private:
  /// The next characters, valid until the next call; none at the end.
  virtual std::string_view more() = 0;
  /// Lines are counted when somebody asks, not with each character.
  void countLines() {
    if (counted_ == at_) return;
    line_ += std::count(counted_, at_, '\n');
    last_ = at_[-1];
    counted_ = at_;
  }

  std::string name_;
  const char* at_ = nullptr;
  const char* end_ = nullptr;
  const char* counted_ = nullptr; ///< up to where the lines are counted
  std::int64_t line_ = 1;         ///< of the character there
  char last_ = 0;                 ///< before it
  bool atBeginning_ = true;
};

/// How often a file is read.
enum class Readings : std::uint8_t { Once, Twice };

/// Reads a file, or standard input for the name "-", which is first copied to a temporary file up to its end;
/// so is a pipe that is read twice. Raises `ProgramError` when the file cannot be read.
class TextFile final : public TextSource {
public:
  explicit TextFile(std::string_view fileName, Readings readings = Readings::Once);

  /// Goes back to the beginning of a file that is read twice.
  void restart();

  /// Told how much has been read so far, and the size of the file, 0 when it is unknown.
  using Observer = std::function<void(std::uintmax_t done, std::uintmax_t total)>;
  void observe(Observer observer) { observer_ = std::move(observer); }

private:
  std::string_view more() override;

  std::unique_ptr<TemporaryFile> copy_; ///< of standard input or of a pipe
  std::optional<File> opened_;
  std::vector<char> buffer_;
  Observer observer_;
  std::uintmax_t read_ = 0;
  std::uintmax_t size_ = 0;
};

/// Standard input or a pipe, copied up to its end to a temporary file: for readers that go through a
/// file more than once. Raises `ProgramError` when it cannot be read.
class PipeCopy {
public:
  /// Of standard input.
  PipeCopy();
  explicit PipeCopy(const std::string& pipe);

  /// The name by which the file can be opened as long as the copy exists.
  const std::string& path() const { return file_->path(); }

private:
  std::unique_ptr<TemporaryFile> file_;
};

} // namespace qx::cli
