#include "cli/new_file.h"

#include "platform/files.h"
#include "platform/path_text.h"
#include "program/program_error.h"

#include <cstddef>
#include <filesystem>
#include <streambuf>
#include <system_error>

namespace qx::cli {
namespace {

/// Raises `std::system_error` when the file cannot be written; a stream passes that on when it is told to.
class FileBuffer final : public std::streambuf {
public:
  explicit FileBuffer(File& file) : file_(file) {}

protected:
  int_type overflow(int_type character) override {
    if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
    const char c = traits_type::to_char_type(character);
    xsputn(&c, 1);
    return character;
  }
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    collected_.append(text, static_cast<std::size_t>(length));
    constexpr std::size_t portion = std::size_t{1} << 16U;
    if (collected_.size() >= portion) sync();
    return length;
  }
  int sync() override {
    file_.write(collected_);
    collected_.clear();
    return 0;
  }

private:
  File& file_;
  std::string collected_;
};

[[noreturn]] void refuseExisting(const std::string& name) {
  throw ProgramError(ExitCode::BadInput, name + ": the file exists already",
                     "Nothing was changed. Name another file.");
}

void writeTo(const std::filesystem::path& path, const std::string& name,
             const std::function<void(std::ostream& file)>& write) {
  File file = File::createdIn(std::filesystem::absolute(path).parent_path(), name);
  const std::filesystem::path interim = file.path();
  try {
    FileBuffer buffer(file);
    std::ostream stream(&buffer);
    stream.exceptions(std::ios::badbit);
    write(stream);
    stream.flush();
    file.synchronize();
    file.close();
    if (!createEmptyFile(path, FileSharing::Owner)) refuseExisting(name);
    replaceFile(interim, path);
    synchronizeFolder(std::filesystem::absolute(path).parent_path());
  } catch (...) {
    std::error_code ignored;
    std::filesystem::remove(interim, ignored);
    throw;
  }
}

} // namespace

void writeNewFile(const std::string& name, const std::function<void(std::ostream& file)>& write) {
  const std::filesystem::path path = pathOf(name);
  std::error_code ignored;
  if (name.empty() || name == "-")
    throw ProgramError(ExitCode::BadInput, "the name of a file is expected", "Nothing was changed.");
  if (std::filesystem::exists(std::filesystem::symlink_status(path, ignored))) refuseExisting(name);
  try {
    writeTo(path, name, write);
  } catch (const std::system_error& failure) {
    throw ProgramError(ExitCode::Failure, failure.what(), "Nothing was changed.");
  }
}

void writeNewFile(const std::string& name, std::string_view text) {
  writeNewFile(name, [&](std::ostream& file) { file << text; });
}

} // namespace qx::cli
