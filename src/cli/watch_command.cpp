#include "cli/commands.h"

#include "cli/file_staging.h"

#include "cli/watched_folder.h"
#include "model/text.h"
#include "platform/folder_watch.h"
#include "platform/path_text.h"
#include "platform/stop_requests.h"
#include "store/entry_objects.h"
#include "store/json_writer.h"
#include "store/staged_files.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

constexpr std::chrono::seconds retryAfter{10};
constexpr std::chrono::seconds lookAfter{30};
/// As long as a file is not finished whose end may go unnoticed.
constexpr std::chrono::seconds lookSoon{1};

/// The key under which a file is taken.
class NewKey final : public DatabaseCommand {
public:
  std::string key;

protected:
  ExitCode work(const CommandContext& context) override {
    key = newJobKey(context.environment);
    return key.empty() ? ExitCode::Failure : ExitCode::Success;
  }
};

/// Stages a taken file unless that was done before the program ended the last time.
class TakenFileCommand final : public DatabaseCommand {
public:
  TakenFileCommand(StagedFile file, std::string path, StageOrder order, const std::vector<std::string>& moved)
      : file_(std::move(file)), path_(std::move(path)), order_(std::move(order)), moved_(moved) {}

  /// Whether the file itself was looked at.
  bool begun() const { return begun_; }
  bool before() const { return before_; }
  const StageCounts& counts() const { return counts_; }

protected:
  ExitCode work(const CommandContext& context) override {
    Connection& connection = context.connection();
    before_ = isStagedFile(connection, file_.key);
    if (before_) return ExitCode::Success;
    begun_ = true;
    order_.alongside = [&] {
      for (const std::string& key : moved_) removeStagedFile(connection, key);
      enterStagedFile(connection, file_, timeStamp(context.environment.clock.now()));
    };
    counts_ = stageFile(context, path_, order_).jobs->counts();
    return ExitCode::Success;
  }

private:
  StagedFile file_;
  std::string path_;
  StageOrder order_;
  const std::vector<std::string>& moved_; ///< keys of earlier files, which lie where they stay
  bool begun_ = false;
  bool before_ = false;
  StageCounts counts_;
};

/// An error as it is told beside a file: every fault on a line of its own.
std::string reasonText(const ProgramError& error) {
  std::string text;
  for (const InputFault& fault : error.faults())
    text += "line " + std::to_string(fault.line) + ": " + sentenceOf(fault) + '\n';
  if (text.empty()) text = std::string(error.what()) + '\n';
  if (!error.nextStep().empty()) text += error.nextStep() + '\n';
  return text;
}

/// Stages what is finished in one folder, one file after the other in the order of their names.
class Watch {
public:
  Watch(Installation& installation, const Output& output, const std::string& folder, StageOrder order)
      : installation_(installation), output_(output), order_(std::move(order)),
        watch_(std::filesystem::absolute(pathOf(folder))), folder_(std::filesystem::absolute(pathOf(folder))),
        requests_([](void* watch) { static_cast<FolderWatch*>(watch)->interrupt(); }, &watch_) {}

  /// Everything that is finished now. Raises `ProgramError` for what is not the fault of a file.
  void takeAll() {
    unfinished_ = false;
    for (const TakenFile& file : folder_.taken()) stage(file);
    for (const std::string& name : folder_.waiting()) {
      if (watch_.interrupted()) return;
      if (name.size() > WatchedFolder::longestName) {
        leave(name);
        continue;
      }
      const bool finished = finished_.contains(name) || folder_.isSettled(name);
      if (!finished || isBeingWritten(folder_.path() / pathOf(name))) {
        unfinished_ = true;
        continue;
      }
      finished_.erase(name);
      NewKey key;
      if (key.run(installation_, output_) != ExitCode::Success)
        throw ProgramError(ExitCode::Failure, "the system gives no key for the file " + name);
      stage(folder_.take(name, key.key));
    }
    finished_.clear();
  }

  /// Until the program is asked to end.
  void keepOn() {
    std::string told;
    while (!watch_.interrupted()) {
      std::optional<ProgramError> failure;
      exitCodeOf(
          [&] {
            takeAll();
            return ExitCode::Success;
          },
          [&](const ProgramError& error) { failure.emplace(error); });
      if (failure && told != failure->what()) {
        output_.messages << "qximportjob: " << oneLine(failure->what()) << '\n'
                         << "The watch goes on and tries again every " << retryAfter.count() << " seconds."
                         << std::endl;
        told = failure->what();
      } else if (!failure) {
        told.clear();
      }
      await(failure ? retryAfter : unfinished_ ? lookSoon : lookAfter);
    }
  }

  bool unfinished() const { return unfinished_; }
  bool rejected() const { return rejected_ || !left_.empty(); }

private:
  void await(std::chrono::seconds limit) {
    if (watch_.interrupted()) return;
    FolderEvents events = watch_.wait(limit);
    if (events.gone)
      throw ProgramError(ExitCode::Failure, textOf(folder_.path()) + ": the watched folder is gone",
                         "Start the command again when it is back.");
    for (std::string& name : events.finished) finished_.insert(std::move(name));
  }

  /// The files behind it go on.
  void leave(const std::string& name) {
    if (left_.insert(name).second)
      output_.messages << "qximportjob: " << oneLine(name) << ": the name is longer than "
                       << WatchedFolder::longestName << " bytes; the file is left where it is" << std::endl;
  }

  void stage(const TakenFile& file) {
    TakenFileCommand command({file.key, textOf(folder_.path()), file.name}, textOf(file.path), order_,
                             moved_);
    std::optional<ProgramError> failure;
    exitCodeOf([&] { return command.run(installation_, output_); },
               [&](const ProgramError& error) { failure.emplace(error); });
    if (failure && !(command.begun() && failure->code() == ExitCode::BadInput)) throw ProgramError(*failure);
    if (failure) {
      rejected_ = true;
      const std::string reason = reasonText(*failure);
      tell(file, folder_.moveToRejected(file, reason), "rejected", nullptr, failure->location().line,
           failure->what());
      return;
    }
    const auto target = folder_.moveToDone(file);
    if (!command.before()) moved_.clear();
    moved_.push_back(file.key);
    tell(file, target, "done", command.before() ? nullptr : &command.counts(), 0, {});
  }

  /// One line for each file. `counts` is null when the file had been staged before.
  void tell(const TakenFile& file, const std::filesystem::path& target, std::string_view state,
            const StageCounts* counts, std::int64_t line, std::string_view reason) {
    if (output_.json) {
      JsonWriter json(output_.result);
      json.beginObject().key("file").text(file.name).key("state").text(state);
      json.key("movedTo").text(textOf(target));
      if (counts != nullptr) {
        json.key("staged").number(counts->staged).key("skipped").number(counts->skipped);
        if (counts->repeated > 0) json.key("repeated").number(counts->repeated);
      }
      if (!reason.empty()) {
        json.key("error").text(reason).key("line");
        if (line == 0)
          json.null();
        else
          json.number(line);
      }
      json.endObject().finish();
    } else {
      output_.result << state << (state == "done" ? "      " : "  ") << oneLine(file.name);
      if (counts != nullptr) {
        output_.result << "  " << counts->staged << " staged, " << counts->skipped << " skipped";
        if (counts->repeated > 0) output_.result << ", " << counts->repeated << " repeated";
      } else if (reason.empty()) {
        output_.result << "  staged before";
      } else if (line != 0) {
        output_.result << "  line " << line << ": " << oneLine(reason);
      } else {
        output_.result << "  " << oneLine(reason);
      }
      output_.result << std::endl;
    }
    if (!output_.result) throw ProgramError(ExitCode::Failure, "standard output could not be written");
  }

  Installation& installation_;
  const Output& output_;
  StageOrder order_;
  FolderWatch watch_; ///< before the first look into the folder, so that nothing is missed
  WatchedFolder folder_;
  StopRequests requests_;
  std::set<std::string> finished_; ///< names of files whose end was noticed
  std::vector<std::string> moved_;
  bool unfinished_ = false;
  bool rejected_ = false;
  std::set<std::string> left_; ///< names that are too long
};

[[noreturn]] void refuseFolder(const std::system_error& failure, const std::string& folder) {
  if (failure.code() == std::errc::operation_would_block)
    throw ProgramError(ExitCode::Refused, folder + ": another program watches this folder",
                       "Nothing was staged. One program watches a folder.");
  if (failure.code() == std::errc::function_not_supported)
    throw ProgramError(ExitCode::BadInput, "stage --watch is not part of the program for this system",
                       "Stage each file by itself.");
  if (failure.code() == std::errc::cross_device_link)
    throw ProgramError(
        ExitCode::BadInput, failure.what(),
        "The folders working, done and rejected lie on the file system of the watched folder.");
  const bool wrongName =
      failure.code() == std::errc::no_such_file_or_directory || failure.code() == std::errc::not_a_directory;
  throw ProgramError(wrongName ? ExitCode::BadInput : ExitCode::Failure, failure.what(),
                     "Name a folder in which this user may create folders and move files.");
}

} // namespace

void WatchCommand::prepare() {
  if (folder.empty())
    throw ProgramError(ExitCode::BadInput, "the name of the folder is empty",
                       "Name a folder behind --watch.");
}

ExitCode WatchCommand::run(Installation& installation, const Output& output) {
  if (output.json && !output.jsonLines)
    throw ProgramError(ExitCode::BadInput, "stage --watch prints a document a line", "Give --json=lines.");
  // Without a database no file is to be taken.
  installation.open();
  std::unique_ptr<Watch> watch;
  try {
    watch =
        std::make_unique<Watch>(installation, output, folder, StageOrder{.again = again, .unique = unique});
  } catch (const std::system_error& failure) {
    refuseFolder(failure, folder);
  }
  if (!once) {
    watch->keepOn();
    return ExitCode::Success;
  }
  watch->takeAll();
  if (watch->unfinished()) output.messages << "Files that are still being written were left.\n";
  return watch->rejected() ? ExitCode::Findings : ExitCode::Success;
}

} // namespace qx::cli
