// Files below the level of streams: what the system offers beyond the standard library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace qx {

/// Who may use a new file or folder. On Windows both inherit the rights of the folder in which they lie.
enum class FileSharing : std::uint8_t { Owner, Group };

/// An open file. Members raise `std::system_error` with an error of the generic category and the file's name
/// for messages; an interrupted call is repeated.
class File {
public:
  /// Raises for a folder when it is read, on Windows already here.
  static File forReading(const std::filesystem::path& path);
  /// An existing file, which is emptied.
  static File forWriting(const std::filesystem::path& path);
  /// Creates a file with an unused name in the folder, readable by its owner only. `name` is for messages.
  /// While it is open, `removeAbandoned` leaves it alone.
  static File createdIn(const std::filesystem::path& folder, std::string name,
                        std::string_view prefix = ".qximportjob-");
  /// Another handle of a file that is open under this number.
  static File ofDescriptor(int descriptor, std::string name);

  File(File&& other) noexcept;
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  File& operator=(File&&) = delete;
  ~File();

  /// Where it lies; empty for one of `ofDescriptor`.
  const std::filesystem::path& path() const { return path_; }
  int descriptor() const { return descriptor_; }
  /// Returns the number of bytes read, 0 at the end.
  std::size_t read(char* into, std::size_t size);
  void write(std::string_view bytes);
  void rewind();
  /// What was written lasts through a power failure.
  void synchronize();
  /// Afterwards only the destructor may be called.
  void close();

private:
  File(int descriptor, std::filesystem::path path, std::string name);
  [[noreturn]] void fail() const;

  int descriptor_;
  std::filesystem::path path_;
  std::string name_;
};

/// A file of this program alone, which vanishes with the object.
class TemporaryFile {
public:
  /// Raises `std::system_error` with the name for messages.
  explicit TemporaryFile(std::string name);
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile();

  File& file() { return file_; }
  /// The name by which it can be opened as long as the object exists.
  const std::string& path() const { return path_; }

private:
  File file_;
  std::string path_;
};

/// Whether the user may write the file, and create others beside it.
bool mayWrite(const std::filesystem::path& file);

/// Creates the folder and those above it that are missing. Raises `std::system_error`.
void createFolders(const std::filesystem::path& folder, FileSharing sharing);

/// Creates an empty file; false when something of that name exists. Raises `std::system_error`.
bool createEmptyFile(const std::filesystem::path& file, FileSharing sharing);

/// Gives a file the name of another, which it replaces if there is one. Nobody sees anything between the two.
/// Raises `std::system_error`, which names the second.
void replaceFile(const std::filesystem::path& file, const std::filesystem::path& replaced);

/// Removes what `File::createdIn` has made there for programs of this user that were killed, with the
/// journals of a database. Where that fails it does no harm.
void removeAbandoned(const std::filesystem::path& folder, std::string_view prefix);

/// The names in a folder last through a power failure. A folder that may not be read is no error. Raises
/// `std::system_error`.
void synchronizeFolder(const std::filesystem::path& folder);

} // namespace qx
