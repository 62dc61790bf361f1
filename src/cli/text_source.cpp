#include "cli/text_source.h"

#include "program/program_error.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace qx::cli {
namespace {

constexpr std::string_view standardInput = "standard input";
constexpr std::size_t bufferSize = std::size_t{1} << 16U;

[[noreturn]] void raise(ExitCode code, const std::string& name) {
  throw ProgramError(code, name + ": " + std::strerror(errno), {}, {name, 0, {}});
}

/// The bytes read, 0 at the end.
std::size_t readSome(int file, std::vector<char>& buffer, const std::string& name) {
  for (;;) {
    const ssize_t count = read(file, buffer.data(), buffer.size());
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno == EISDIR) raise(ExitCode::BadInput, name);
    if (errno != EINTR) raise(ExitCode::Failure, name);
  }
}

void writeAll(int file, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t count = write(file, data, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) raise(ExitCode::Failure, "temporary file for the input");
    data += count;
    size -= static_cast<std::size_t>(count);
  }
}

/// A file without a name that is deleted when it is closed.
int temporaryFile() {
  std::error_code error;
  std::filesystem::path folder = std::filesystem::temp_directory_path(error);
  if (error) folder = "/tmp";
  std::string name = (folder / "qximportjob-XXXXXX").string();
  const int file = mkostemp(name.data(), O_CLOEXEC);
  if (file < 0) raise(ExitCode::Failure, "temporary file for the input");
  unlink(name.c_str());
  return file;
}

int copyOf(int input, std::vector<char>& buffer, const std::string& name) {
  const int file = temporaryFile();
  while (const std::size_t count = readSome(input, buffer, name)) writeAll(file, buffer.data(), count);
  if (lseek(file, 0, SEEK_SET) != 0) raise(ExitCode::Failure, name);
  return file;
}

} // namespace

TextFile::TextFile(std::string_view fileName)
    : TextSource(std::string(fileName == "-" ? standardInput : fileName)), buffer_(bufferSize) {
  if (fileName == "-")
    file_ = copyOf(STDIN_FILENO, buffer_, name());
  else
    file_ = ::open(name().c_str(), O_RDONLY | O_CLOEXEC);
  if (file_ < 0) raise(ExitCode::BadInput, name());
  try {
    fill();
  } catch (...) {
    close(file_);
    throw;
  }
}

TextFile::~TextFile() { close(file_); }

PipeCopy::PipeCopy() {
  std::vector<char> buffer(bufferSize);
  file_ = copyOf(STDIN_FILENO, buffer, std::string(standardInput));
}

PipeCopy::PipeCopy(const std::string& pipe) {
  std::vector<char> buffer(bufferSize);
  const int input = ::open(pipe.c_str(), O_RDONLY | O_CLOEXEC);
  if (input < 0) raise(ExitCode::BadInput, pipe);
  try {
    file_ = copyOf(input, buffer, pipe);
  } catch (...) {
    close(input);
    throw;
  }
  close(input);
}

PipeCopy::~PipeCopy() { close(file_); }

std::string_view TextFile::more() { return {buffer_.data(), readSome(file_, buffer_, name())}; }

void TextSource::skipBlanks() {
  while (!atEnd() && (current() == ' ' || current() == '\t' || current() == '\r' || current() == '\n'))
    advance();
}

} // namespace qx::cli
