#include "cli/text_source.h"

#include "platform/path_text.h"
#include "platform/terminal.h"
#include "program/program_error.h"

#include <filesystem>
#include <system_error>

namespace qx::cli {
namespace {

constexpr std::string_view nameOfInput = "standard input";
constexpr std::size_t bufferSize = std::size_t{1} << 16U;

[[noreturn]] void raise(ExitCode code, const std::system_error& failure, const std::string& name) {
  throw ProgramError(code, failure.what(), {}, {name, 0, {}});
}

/// The bytes read, 0 at the end.
std::size_t readSome(File& file, std::vector<char>& buffer, const std::string& name) {
  try {
    return file.read(buffer.data(), buffer.size());
  } catch (const std::system_error& failure) {
    raise(failure.code() == std::errc::is_a_directory ? ExitCode::BadInput : ExitCode::Failure, failure,
          name);
  }
}

std::unique_ptr<TemporaryFile> copyOf(File& input, std::vector<char>& buffer, const std::string& name) {
  const std::string nameOfCopy = "temporary file for the input";
  try {
    auto copy = std::make_unique<TemporaryFile>(nameOfCopy);
    while (const std::size_t count = readSome(input, buffer, name))
      copy->file().write({buffer.data(), count});
    copy->file().rewind();
    return copy;
  } catch (const std::system_error& failure) {
    raise(ExitCode::Failure, failure, nameOfCopy);
  }
}

std::unique_ptr<TemporaryFile> copyOfInput(std::vector<char>& buffer) {
  const std::string name(nameOfInput);
  try {
    File input = File::ofDescriptor(standardInput, name);
    return copyOf(input, buffer, name);
  } catch (const std::system_error& failure) {
    raise(ExitCode::Failure, failure, name);
  }
}

File openText(const std::string& name) {
  try {
    return File::forReading(pathOf(name));
  } catch (const std::system_error& failure) {
    raise(ExitCode::BadInput, failure, name);
  }
}

} // namespace

TextFile::TextFile(std::string_view fileName, Readings readings)
    : TextSource(std::string(fileName == "-" ? nameOfInput : fileName)), buffer_(bufferSize) {
  if (fileName == "-")
    copy_ = copyOfInput(buffer_);
  else
    opened_.emplace(openText(name()));
  std::error_code unknown;
  if (opened_ && readings == Readings::Twice && !std::filesystem::is_regular_file(pathOf(name()), unknown)) {
    copy_ = copyOf(*opened_, buffer_, name());
    opened_.reset();
  }
  if (const auto size = std::filesystem::file_size(pathOf(name()), unknown); opened_ && !unknown)
    size_ = size;
  fill();
}

void TextFile::restart() {
  (opened_ ? *opened_ : copy_->file()).rewind();
  beginAgain();
}

PipeCopy::PipeCopy() {
  std::vector<char> buffer(bufferSize);
  file_ = copyOfInput(buffer);
}

PipeCopy::PipeCopy(const std::string& pipe) {
  std::vector<char> buffer(bufferSize);
  File input = openText(pipe);
  file_ = copyOf(input, buffer, pipe);
}

std::string_view TextFile::more() {
  const std::size_t count = readSome(opened_ ? *opened_ : copy_->file(), buffer_, name());
  read_ += count;
  if (observer_) observer_(read_, size_);
  return {buffer_.data(), count};
}

void TextSource::skipBlanks() {
  while (!atEnd() && (current() == ' ' || current() == '\t' || current() == '\r' || current() == '\n'))
    advance();
}

} // namespace qx::cli
