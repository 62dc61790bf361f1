#include "cli/watched_folder.h"

#include "platform/files.h"
#include "platform/path_text.h"

#include <algorithm>
#include <chrono>
#include <string_view>
#include <system_error>
#include <utility>

namespace qx::cli {
namespace {

namespace fs = std::filesystem;

constexpr const char* workingFolder = "working";
constexpr const char* doneFolder = "done";
constexpr const char* rejectedFolder = "rejected";

/// A file whose end nobody has told may still grow for that long without anything happening.
constexpr std::chrono::seconds settlingTime{2};

/// The name, or one with a number in it that no file of the folder has.
fs::path unused(const fs::path& folder, const fs::path& name) {
  fs::path path = folder / name;
  for (int number = 2; fs::exists(fs::symlink_status(path)); ++number)
    path = folder / (textOf(name.stem()) + "-" + std::to_string(number) + textOf(name.extension()));
  return path;
}

void renameForGood(const fs::path& from, const fs::path& to) {
  replaceFile(from, to);
  synchronizeFolder(to.parent_path());
  synchronizeFolder(from.parent_path());
}

/// A folder without rights or on another file system is to be told before a file is staged.
void tryToMove(const fs::path& from, const fs::path& to) {
  const File probe = File::createdIn(from, textOf(from));
  const fs::path moved = to / probe.path().filename();
  std::error_code ignored;
  try {
    replaceFile(probe.path(), moved);
  } catch (const std::system_error& failure) {
    fs::remove(probe.path(), ignored);
    throw std::system_error(failure.code(), textOf(to) + ": files cannot be moved there");
  }
  fs::remove(moved, ignored);
}

} // namespace

WatchedFolder::WatchedFolder(fs::path folder) : folder_(std::move(folder)) {
  constexpr std::string_view interim = ".qximportjob-";
  removeAbandoned(folder_, interim);
  for (const char* name : {workingFolder, doneFolder, rejectedFolder}) {
    const fs::path below = folder_ / name;
    fs::create_directory(below, folder_);
    removeAbandoned(below, interim);
    tryToMove(folder_, below);
  }
}

std::vector<std::string> WatchedFolder::waiting() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_)) {
    std::error_code vanished;
    const fs::path name = entry.path().filename();
    if (name.extension() == ".json" && !name.native().starts_with('.') &&
        fs::is_regular_file(entry.symlink_status(vanished)))
      names.push_back(textOf(name));
  }
  std::ranges::sort(names);
  return names;
}

bool WatchedFolder::isSettled(const std::string& name) const {
  std::error_code vanished;
  const auto changed = fs::last_write_time(folder_ / pathOf(name), vanished);
  if (vanished) return false;
  // A moment ahead of us comes from another clock.
  const auto age = fs::file_time_type::clock::now() - changed;
  return age >= settlingTime || age <= -settlingTime;
}

TakenFile WatchedFolder::take(const std::string& name, const std::string& key) const {
  TakenFile file{key, name, folder_ / workingFolder / pathOf(key + "-" + name)};
  renameForGood(folder_ / pathOf(name), file.path);
  return file;
}

std::vector<TakenFile> WatchedFolder::taken() const {
  std::vector<TakenFile> files;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder_ / workingFolder)) {
    const std::string name = textOf(entry.path().filename());
    const std::size_t end = name.find('-');
    if (end != std::string::npos) files.push_back({name.substr(0, end), name.substr(end + 1), entry.path()});
  }
  std::ranges::sort(files, {}, &TakenFile::name);
  return files;
}

fs::path WatchedFolder::move(const TakenFile& file, const fs::path& target) const {
  renameForGood(file.path, target);
  return target.lexically_relative(folder_);
}

fs::path WatchedFolder::moveToDone(const TakenFile& file) const {
  return move(file, unused(folder_ / doneFolder, pathOf(file.name)));
}

fs::path WatchedFolder::moveToRejected(const TakenFile& file, std::string_view reason) const {
  const fs::path target = unused(folder_ / rejectedFolder, pathOf(file.name));
  const fs::path besides = pathOf(textOf(target) + ".error.txt");
  File text = File::createdIn(target.parent_path(), textOf(besides));
  const fs::path interim = text.path();
  try {
    text.write(reason);
    text.synchronize();
    text.close();
    // Whoever may read the file may read what is wrong with it.
    fs::permissions(interim, fs::status(file.path).permissions());
    replaceFile(interim, besides);
  } catch (...) {
    std::error_code ignored;
    fs::remove(interim, ignored);
    throw;
  }
  return move(file, target);
}

} // namespace qx::cli
