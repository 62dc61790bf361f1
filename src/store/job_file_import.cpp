#include "store/job_file_import.h"

#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "platform/path_text.h"
#include "store/job_file_banner.h"
#include "store/record_store.h"

#include <exception>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace qx {
namespace {

/// Records are cheaper than the jobs of a run. Large groups write each page of an index once instead of
/// often; the 200 ms after which a group ends keep other programs from waiting.
constexpr std::size_t recordsInGroup = 10'000;
/// Without a unit of work the message loop runs after this many records.
constexpr std::int64_t recordsBetweenYields = 1000;

/// A record that is kept until its group is committed.
struct GroupRecord {
  std::int64_t line = 0;
  std::int64_t code = 0;
  std::string text;
};

class JobFileImport {
public:
  JobFileImport(Environment& environment, std::filesystem::path file, JobFileVersion version,
                JobFileObserver& observer, BusyWait* wait)
      : environment_(environment), file_(std::move(file)), observer_(observer), feed_(environment),
        group_(environment, wait, &feed_, recordsInGroup),
        retry_(environment.clock, environment.diagnostics, "Import") {
    activeConnection(environment_);
    const StoreContext context{environment_, group_, observer_, pending_};
    store_ = version == JobFileVersion::One ? version1RecordStore(context) : version2RecordStore(context);
  }

  /// False for a file without the banner of the version.
  bool readBanner() {
    std::ifstream stream = openJobFile(file_);
    JobFileLines lines(stream, textOf(file_));
    const auto first = lines.next();
    if (!first) return false;
    auto form = plainForm(first->text);
    if (!form) {
      scrambler_ = installedScrambler(environment_);
      form = scrambledForm(first->text, *scrambler_);
    }
    if (!form || form->version != store_->version()) return false;
    textBehindBanner_ = form->textBehind;
    return true;
  }

  void readRecords() {
    if (textBehindBanner_) skip(1, "text after the banner is not read");
    total_ = std::filesystem::file_size(file_) * static_cast<std::uintmax_t>(store_->passes());
    for (int pass = 0; pass < store_->passes(); ++pass)
      if (pass == 0 || laterPasses_) readPass(pass);
    commit();
    observer_.progress(total_, total_);
  }

  /// Reports which done jobs the import would reset. Nothing is stored.
  void findSetBack() {
    eachItem([this](const JobFileItem& item, std::uintmax_t /*bytesRead*/) {
      if (item.kind != JobFileItem::Kind::Record || !store_->isHeader(item.code)) return;
      splitFields(item.text, fields_);
      std::string jobId;
      readField(fields_.at(1), jobId);
      const auto row =
          activeConnection(environment_)
              .open(sql("Select JobType From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql));
      if (!row->eof() && store_->setsBack(row->value("JobType").integer().value_or(0), item.code))
        observer_.setBack(item.line, jobId);
    });
  }

  /// Commits what is open.
  void commit() {
    repeating([this] {
      storeRecords();
      group_.finish();
    });
    keepPending();
  }
  const JobFileCounts& counts() const { return counts_; }

private:
  /// Calls `visit` with each item after the banner and the number of bytes read so far.
  template <class Visit>
  void eachItem(Visit visit) {
    std::ifstream stream = openJobFile(file_);
    JobFileLines lines(stream, textOf(file_));
    lines.next();
    lines.unscramble(scrambler_ ? &*scrambler_ : nullptr);
    JobFileRecords records(lines, store_->fieldCount());
    while (const auto item = records.next()) visit(*item, lines.bytesRead());
  }

  void readPass(int pass) {
    eachItem([&](const JobFileItem& item, std::uintmax_t bytesRead) {
      reportProgress(pass, bytesRead);
      if (store_->passOf(item.code) == pass)
        take(item);
      else
        laterPasses_ = true;
      yieldOutsideUnits();
    });
  }

  void take(const JobFileItem& item) {
    switch (item.kind) {
    case JobFileItem::Kind::Skipped:
      skip(item.line, store_->whySkipped(item.code));
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
    records_.push_back({item.line, item.code, std::string(item.text)});
    bool committed = false;
    repeating([&] {
      storeRecords();
      committed = group_.endJob();
    });
    if (committed) keepPending();
  }

  /// When the open group has to give way to another program, the step runs again, with the whole group to
  /// store.
  template <class Step>
  void repeating(Step&& step) {
    while (true) {
      try {
        return step();
      } catch (const ConflictError& conflict) {
        group_.abandon();
        retry_.pause(conflict);
      }
      stored_ = 0;
      store_->goTo(groupPlace_);
      // Keys that were counted once stay counted.
      pending_.setBack = 0;
      pending_.withoutHeader = 0;
    }
  }

  /// Those of the open group that are not stored yet; a refused one is no longer part of the group.
  void storeRecords() {
    while (stored_ < records_.size()) {
      if (storeOne(records_[stored_]))
        ++stored_;
      else
        records_.erase(records_.begin() + static_cast<std::ptrdiff_t>(stored_));
    }
  }

  bool storeOne(const GroupRecord& record) {
    const JobFileItem item{JobFileItem::Kind::Record, record.line, record.code, record.text, {}};
    splitFields(item.text, fields_);
    try {
      store_->store(item, fields_);
      return true;
    } catch (const RecordRefused& refused) {
      refuse(item, refused.what());
    } catch (const StatementError& refused) {
      refuse(item, refused.what());
    }
    return false;
  }

  /// Without a reason it is only counted.
  void skip(std::int64_t line, std::string_view reason) {
    ++counts_.skipped;
    if (reason.empty()) return;
    reportToDiagnostics(line, reason);
    observer_.skipped(line, reason);
  }

  void reportToDiagnostics(std::int64_t line, std::string_view reason) {
    const std::string text = textOf(file_) + ", line " + std::to_string(line) + ": " + std::string(reason);
    environment_.diagnostics.report({"Import", text, {}});
  }

  void refuse(const JobFileItem& item, std::string_view reason) {
    ++counts_.refused;
    store_->passedOver(item.code);
    reportToDiagnostics(item.line, reason);
    observer_.refused(item.line, reason);
  }

  void keepPending() {
    counts_ += pending_;
    pending_ = {};
    records_.clear();
    stored_ = 0;
    groupPlace_ = store_->place();
    retry_.reset();
  }

  void reportProgress(int pass, std::uintmax_t bytes) {
    if (bytes == reportedBytes_) return;
    reportedBytes_ = bytes;
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
  JobFileCounts counts_;
  JobFileCounts pending_;
  StateFeed feed_;
  WorkGroup group_;
  ConflictRetry retry_;
  std::vector<GroupRecord> records_; ///< of the open group
  std::size_t stored_ = 0;           ///< how many of them are stored
  std::string groupPlace_;           ///< where the group began
  std::unique_ptr<RecordStore> store_;
  std::optional<Scrambler> scrambler_;
  std::vector<std::string_view> fields_;
  std::uintmax_t total_ = 0;
  std::uintmax_t reportedBytes_ = 0;
  std::int64_t sinceYield_ = 0;
  bool textBehindBanner_ = false;
  bool laterPasses_ = false; ///< something was left for them
};

void keep(JobFileReport& report, const std::exception& failure) {
  report.failure = plainCause(failure);
  report.germanFailure = germanCause(failure);
}

/// Reads what is readable. When the database fails, the open unit is lost; after any other failure everything
/// stored before it is kept.
void readRecords(JobFileImport& job, JobFileReport& report) {
  try {
    job.readRecords();
    report.end = JobFileEnd::Complete;
  } catch (const DatabaseError& failure) {
    keep(report, failure);
  } catch (const std::exception& failure) {
    keep(report, failure);
    job.commit();
  }
}

} // namespace

JobFileReport importJobFile(Environment& environment, std::string_view fileName, JobFileVersion version,
                            JobFileObserver* observer, BusyWait* wait) {
  JobFileReport report;
  JobFileObserver nobody;
  try {
    const std::filesystem::path file = pathOf(fileName);
    report.failure = whyNoJobFile(file);
    if (!report.failure.empty()) {
      report.end = JobFileEnd::NoFile;
    } else {
      JobFileImport job(environment, file, version, observer == nullptr ? nobody : *observer, wait);
      if (job.readBanner()) {
        readRecords(job, report);
      } else {
        report.end = JobFileEnd::WrongBanner;
        report.failure =
            textOf(file) + ": no job file of version " + std::to_string(static_cast<int>(version));
      }
      report.counts = job.counts();
    }
  } catch (const std::exception& failure) {
    keep(report, failure);
  }
  if (report.end != JobFileEnd::Complete) environment.diagnostics.report({"Import", report.failure, {}});
  return report;
}

void previewSetBacks(Environment& environment, std::string_view fileName, JobFileVersion version,
                     JobFileObserver& observer) {
  try {
    JobFileImport job(environment, pathOf(fileName), version, observer, nullptr);
    if (job.readBanner()) job.findSetBack();
  } catch (const std::exception& failure) {
    // The import that follows meets the same failure and reports it.
    environment.diagnostics.report({"Import", failure.what(), {}});
  }
}

} // namespace qx
