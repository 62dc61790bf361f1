#include "cli/file_staging.h"

#include "cli/json_members.h"
#include "cli/new_file.h"
#include "cli/object_texts.h"
#include "cli/progress_bar.h"
#include "cli/stage_reader.h"
#include "engine/erp_number.h"
#include "model/date.h"
#include "model/text.h"
#include "platform/conflict_retry.h"
#include "platform/path_text.h"
#include "program/busy_notice.h"
#include "store/json_writer.h"
#include "store/state_feed.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <map>
#include <ostream>
#include <string_view>
#include <system_error>
#include <unordered_set>
#include <utility>

namespace qx::cli {
namespace {

constexpr std::size_t mostFaults = 100;

/// The orders that were done before a file was staged again.
class WrittenOrders {
public:
  /// Null for none.
  explicit WrittenOrders(Connection* connection) {
    if (connection == nullptr) return;
    const auto rows = connection->openStream(
        sql("Select JobID From ImportKopf Where JobType = "_sql, number(qxtJobAufträgeDone)));
    for (; !rows->eof(); rows->moveNext()) keys_.insert(asciiLower(rows->text("JobID")));
  }

  /// Those of the file that wait again.
  std::vector<std::string> among(BulkStaging& jobs) const {
    std::vector<std::string> again;
    if (keys_.empty()) return again;
    jobs.forEach([&](const StagedJob& job) {
      if (job.result == StageResult::Replaced && job.jobType == qxtJobAufträge &&
          keys_.contains(asciiLower(job.jobId)))
        again.push_back(job.jobId);
    });
    return again;
  }

private:
  std::unordered_set<std::string> keys_;
};

StateChange storedState(Connection& connection, const std::string& jobId) {
  const auto row =
      connection.open(sql("Select * From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql));
  return {row->text("JobID"), jobCode(row->value("JobType")), erpNumber(*row), row->text("Fehlertext")};
}

/// Names the first fault and carries all of them.
[[noreturn]] void refuse(std::vector<InputFault> faults, const std::string& file, const char* nextStep) {
  const InputFault first = faults.front();
  throw ProgramError(ExitCode::BadInput, sentenceOf(first), nextStep, {file, first.line, first.property})
      .with(std::move(faults));
}

/// A file of rejected objects, which is taken away again unless the others have been staged.
class RejectsFile {
public:
  explicit RejectsFile(std::string name) : name_(std::move(name)) {
    std::error_code ignored;
    // Before the work, not after it.
    if (!name_.empty() && std::filesystem::exists(std::filesystem::symlink_status(pathOf(name_), ignored)))
      throw ProgramError(ExitCode::BadInput, name_ + ": the file exists already",
                         "Nothing was staged. Name another file for the rejected objects.");
  }
  RejectsFile(const RejectsFile&) = delete;
  RejectsFile& operator=(const RejectsFile&) = delete;
  ~RejectsFile() {
    std::error_code ignored;
    if (written_) std::filesystem::remove(pathOf(name_), ignored);
  }

  /// Writes each object with its faults in front of its own properties.
  void write(TextFile& source, const std::vector<InputFault>& faults) {
    if (name_.empty() || faults.empty()) return;
    std::map<std::int64_t, std::vector<const InputFault*>> objects;
    for (const InputFault& fault : faults) objects[fault.object].push_back(&fault);
    writeNewFile(name_, [&](std::ostream& file) {
      source.restart();
      std::size_t found = 0;
      forEachObjectText(
          source, [&](std::int64_t number) { return objects.contains(number); },
          [&](std::int64_t number, const std::string& text) {
            writeObject(file, objects[number], text);
            ++found;
          });
      if (found != objects.size())
        throw ProgramError(ExitCode::Failure, source.name() + ": the file was changed while it was read",
                           "Nothing was staged. Stage it again.");
    });
    written_ = true;
  }
  void keep() { written_ = false; }

private:
  static void writeObject(std::ostream& file, const std::vector<const InputFault*>& faults,
                          std::string_view text) {
    file << "{\"" << rejectedProperty << "\":";
    JsonWriter json(file);
    json.beginArray();
    for (const InputFault* fault : faults) writeFault(json, *fault);
    json.endArray();
    const std::string_view rest = text.substr(1);
    const bool empty = rest.find_first_not_of(" \t\r\n") == rest.find('}');
    file << (empty ? "" : ",\n ") << rest << '\n';
  }

  std::string name_;
  bool written_ = false;
};

/// One file on its way into the staging tables.
class FileStaging {
public:
  FileStaging(const CommandContext& context, const std::string& file, const StageOrder& order)
      : context_(context), order_(order), rejects_(order.rejects),
        most_(order.partial ? std::numeric_limits<std::int32_t>::max() : mostFaults), faults_(most_),
        source_(file, order.rejects.empty() ? Readings::Once : Readings::Twice),
        jobs_(context.connection().bulkStaging()), assembler_(context.environment, *jobs_, faults_) {}

  StagedJobs stage() {
    jobs_->begin();
    if (order_.unique && !jobs_->remembersContents())
      throw ProgramError(ExitCode::Failure,
                         "the database does not remember what was handed over: the table Vorgangsinhalte or "
                         "Zaehlerstaende is missing",
                         "Nothing was staged. Have both made as 'init' makes them in a new database, or "
                         "stage without --unique.");
    read();
    if (!order_.partial) refuseFaults();
    jobs_->finish();
    settleConflicts();
    copy();
    return {std::move(jobs_), sorted(), std::move(writtenBefore_)};
  }

private:
  /// What makes the whole file unreadable comes after the faults before it.
  void read() {
    ProgressBar bar(context_.output, ProgressUnit::Bytes);
    source_.observe([&](std::uintmax_t done, std::uintmax_t total) {
      bar.report(done, total);
      bar.draw();
    });
    try {
      readJobs(source_, assembler_);
    } catch (const ProgramError& unreadable) {
      if (faults_.empty() || unreadable.faults().empty()) throw;
      faults_.add(unreadable.faults().front());
      refuseFaults();
    }
    source_.observe({});
  }

  void refuseFaults() {
    if (!faults_.empty())
      refuse(sorted(), source_.name(),
             "Nothing was staged. Correct the file and stage it again; 'qximportjob schema' lists the "
             "properties.");
  }

  std::vector<InputFault> sorted() const {
    std::vector<InputFault> faults = faults_.all();
    std::ranges::stable_sort(faults, {}, &InputFault::line);
    return faults;
  }

  /// Whoever has a key that is given twice may be left out, and then it stands there only once: one kind of
  /// conflict after the other.
  void settleConflicts() {
    for (;;) {
      auto conflicts = jobs_->conflicts(static_cast<std::int64_t>(most_));
      if (conflicts.empty()) return;
      if (order_.partial) {
        const KeyConflict::Kind kind = conflicts.front().kind;
        std::erase_if(conflicts, [&](const KeyConflict& each) { return each.kind != kind; });
      }
      leaveOut(conflicts);
    }
  }

  void leaveOut(const std::vector<KeyConflict>& conflicts) {
    std::vector<std::int64_t> jobs;
    for (const KeyConflict& conflict : conflicts) {
      assembler_.conflict(conflict);
      jobs.push_back(conflict.job);
    }
    if (!order_.partial) refuseFaults();
    jobs_->leaveOut(jobs);
  }

  std::vector<KeyConflict> tryCopy(bool tryOnly) {
    StateFeed feed(context_.environment);
    if (!tryOnly) feed.prepare(&wait_);
    return doneAgainOnConflict(context_.environment, "stage", [&] {
      const auto copied = [&] {
        return jobs_->copy(
            wait_, {order_.again, tryOnly, order_.unique, timeStamp(context_.environment.clock.now())},
            static_cast<std::int64_t>(most_));
      };
      if (tryOnly) return copied();
      feed.drop();
      WorkUnit unit(context_.connection(), &wait_);
      if (order_.alongside) order_.alongside();
      auto owned = copied();
      if (owned.empty()) tellChanges(feed);
      // The mark of a file that is not staged must not stay.
      if (owned.empty() || !order_.alongside) unit.commit();
      return owned;
    });
  }

  void tellChanges(StateFeed& feed) const {
    for (const BulkStaging::ChangedJob& job : jobs_->changed()) {
      StateChange change{job.jobId, job.jobType, {}, {}};
      // One that was kept before it was deleted comes back as it was.
      if (stateOf(job.jobType) != JobState::Waiting) change = storedState(context_.connection(), job.jobId);
      feed.note(std::move(change));
    }
    feed.write();
  }

  /// In the try contents come after keys: a job that is left out repeats nothing. The rejected objects are
  /// written before the others are staged, so that none is lost.
  void copy() {
    const WrittenOrders written(order_.again ? &context_.connection() : nullptr);
    if (order_.partial) {
      for (auto owned = tryCopy(true); !owned.empty(); owned = tryCopy(true)) leaveOut(owned);
      rejects_.write(source_, faults_.all());
    }
    ProgressBar bar(context_.output);
    bar.ProcessInfo("copying rows");
    jobs_->observe([&](std::uintmax_t done, std::uintmax_t total) {
      bar.report(done, total);
      bar.draw();
    });
    const auto owned = tryCopy(order_.tryOnly);
    jobs_->observe({});
    bar.end();
    if (!owned.empty()) {
      for (const KeyConflict& conflict : owned) assembler_.conflict(conflict);
      refuseFaults();
    }
    rejects_.keep();
    writtenBefore_ = written.among(*jobs_);
  }

  const CommandContext& context_;
  const StageOrder& order_;
  RejectsFile rejects_;
  std::size_t most_;
  StageFaults faults_;
  TextFile source_;
  std::unique_ptr<BulkStaging> jobs_;
  JobAssembler assembler_;
  BusyNotice wait_{context_.output.messages};
  std::vector<std::string> writtenBefore_;
};

} // namespace

StagedJobs stageFile(const CommandContext& context, const std::string& file, const StageOrder& order) {
  return FileStaging(context, file, order).stage();
}

} // namespace qx::cli
