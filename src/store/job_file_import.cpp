#include "store/job_file_import.h"

#include "rules/active_connection.h"
#include "store/job_file_banner.h"
#include "store/record_store.h"

#include <exception>
#include <optional>
#include <utility>

namespace qx {
namespace {

/// Records are cheaper than the jobs of a run. Large groups write each page of an index once instead of
/// often; the 200 ms after which a group ends keep other programs from waiting.
constexpr std::size_t recordsInGroup = 10'000;
/// Without a unit of work the message loop runs after so many records.
constexpr std::int64_t recordsBetweenYields = 1000;

using StoreMaker = std::unique_ptr<RecordStore> (*)(const RecordPlace&);

class JobFileImport {
public:
  JobFileImport(Environment& environment, std::filesystem::path file, StoreMaker storeFor,
                JobFileObserver& observer, BusyWait* wait, bool tellsRefused = true)
      : environment_(environment), file_(std::move(file)), observer_(observer), tellsRefused_(tellsRefused),
        group_(environment, wait, recordsInGroup) {
    activeConnection(environment_);
    store_ = storeFor({environment_, group_, observer_, pending_});
  }

  /// False for a file that has not the banner of the version.
  bool readBanner() {
    std::ifstream stream = openJobFile(file_);
    JobFileLines lines(stream, file_.string());
    const auto first = lines.next();
    if (!first) return false;
    auto form = plainForm(first->text);
    if (!form) {
      scrambler_ = installedScrambler(environment_);
      form = scrambledForm(first->text, *scrambler_);
    }
    return form && form->version == store_->version();
  }

  void readRecords() {
    total_ = std::filesystem::file_size(file_) * static_cast<std::uintmax_t>(store_->passes());
    for (int pass = 0; pass < store_->passes(); ++pass)
      if (pass == 0 || laterPasses_) readPass(pass);
    commit();
    observer_.progress(total_, total_);
  }

  /// Commits what is open.
  void commit() {
    group_.finish();
    keepPending();
  }
  const JobFileCounts& counts() const { return counts_; }

private:
  void readPass(int pass) {
    std::ifstream stream = openJobFile(file_);
    JobFileLines lines(stream, file_.string());
    lines.next();
    lines.unscramble(scrambler_ ? &*scrambler_ : nullptr);
    JobFileRecords records(lines, store_->fieldCount());
    while (const auto item = records.next()) {
      tellProgress(pass, lines.bytesRead());
      if (store_->passOf(item->code) == pass)
        take(*item);
      else
        laterPasses_ = true;
      yieldOutsideUnits();
    }
  }

  void take(const JobFileItem& item) {
    switch (item.kind) {
    case JobFileItem::Kind::Skipped:
      ++counts_.skipped;
      store_->passedOver(item.code);
      break;
    case JobFileItem::Kind::Refused:
      refuse(item, item.reason);
      break;
    case JobFileItem::Kind::Record:
      storeRecord(item);
      break;
    }
  }

  void storeRecord(const JobFileItem& item) {
    splitFields(item.text, fields_);
    try {
      store_->store(item, fields_);
    } catch (const RecordRefused& refused) {
      refuse(item, refused.what());
      return;
    } catch (const StatementError& refused) {
      refuse(item, refused.what());
    }
    if (group_.endJob()) keepPending();
  }

  void refuse(const JobFileItem& item, std::string_view reason) {
    ++counts_.refused;
    store_->passedOver(item.code);
    if (!tellsRefused_) return;
    const std::string text =
        file_.string() + ", line " + std::to_string(item.line) + ": " + std::string(reason);
    environment_.diagnostics.report({"Import", text, {}});
    observer_.refused(item.line, reason);
  }

  void keepPending() {
    counts_ += pending_;
    pending_ = {};
  }

  void tellProgress(int pass, std::uintmax_t bytes) {
    if (bytes == toldBytes_) return;
    toldBytes_ = bytes;
    observer_.progress(
        total_ / static_cast<std::uintmax_t>(store_->passes()) * static_cast<std::uintmax_t>(pass) + bytes,
        total_);
  }

  void yieldOutsideUnits() {
    if (++sinceYield_ < recordsBetweenYields || activeConnection(environment_).inWork()) return;
    sinceYield_ = 0;
    environment_.desktop.yield();
  }

  Environment& environment_;
  std::filesystem::path file_;
  JobFileObserver& observer_;
  bool tellsRefused_;
  JobFileCounts counts_;
  JobFileCounts pending_;
  WorkGroup group_;
  std::unique_ptr<RecordStore> store_;
  std::optional<Scrambler> scrambler_;
  std::vector<std::string_view> fields_;
  std::uintmax_t total_ = 0;
  std::uintmax_t toldBytes_ = 0;
  std::int64_t sinceYield_ = 0;
  bool laterPasses_ = false; ///< something was left for them
};

/// Reads what is readable. A database that cannot go on takes its open unit with it; after every other
/// failure what was stored before it is kept.
void readRecords(JobFileImport& job, JobFileReport& report) {
  try {
    job.readRecords();
    report.end = JobFileEnd::Complete;
  } catch (const DatabaseError& failure) {
    report.failure = failure.what();
  } catch (const std::exception& failure) {
    report.failure = failure.what();
    job.commit();
  }
}

bool anyJobDone(Environment& environment) {
  const auto found = activeConnection(environment)
                         .open(sql("Select Exists(Select 1 From ImportKopf Where Right(JobType,1) = '3' Or "
                                   "JobType = 44) as found"_sql));
  return found->value(0).truth().value_or(false);
}

bool isFile(const std::filesystem::path& file, std::string& problem) {
  std::error_code failure;
  const auto status = std::filesystem::status(file, failure);
  if (std::filesystem::is_regular_file(status)) return true;
  problem = file.string() + ": ";
  if (std::filesystem::is_directory(status))
    problem += "it is a directory";
  else if (std::filesystem::exists(status))
    problem += "it is no plain file";
  else
    problem += failure ? failure.message() : "there is no such file";
  return false;
}

} // namespace

JobFileReport importJobFile(Environment& environment, std::string_view fileName, JobFileVersion version,
                            JobFileObserver* observer, BusyWait* wait) {
  JobFileReport report;
  JobFileObserver nobody;
  try {
    const std::filesystem::path file = pathOf(fileName);
    if (!isFile(file, report.failure)) {
      report.end = JobFileEnd::NoFile;
    } else {
      JobFileImport job(environment, file,
                        version == JobFileVersion::One ? version1RecordStore : version2RecordStore,
                        observer == nullptr ? nobody : *observer, wait);
      if (job.readBanner()) {
        readRecords(job, report);
      } else {
        report.end = JobFileEnd::WrongBanner;
        report.failure =
            file.string() + ": no job file of version " + std::to_string(static_cast<int>(version));
      }
      report.counts = job.counts();
    }
  } catch (const std::exception& failure) {
    report.failure = failure.what();
  }
  if (report.end != JobFileEnd::Complete) environment.diagnostics.report({"Import", report.failure, {}});
  return report;
}

void previewSetBacks(Environment& environment, std::string_view fileName, JobFileObserver& observer) {
  try {
    const std::filesystem::path file = pathOf(fileName);
    std::string problem;
    if (!isFile(file, problem) || !anyJobDone(environment)) return;
    JobFileImport job(environment, file, version2Preview, observer, nullptr, false);
    if (job.readBanner()) job.readRecords();
  } catch (const std::exception& failure) {
    environment.diagnostics.report(
        {"Import", std::string("the file cannot be looked through: ") + failure.what(), {}});
  }
}

} // namespace qx
