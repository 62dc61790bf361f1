#include "platform/environment.h"
#include "store/record_store.h"

#include <string>

namespace qx {
namespace {

/// Done in the sense of either version, which share the table; a failed version-1 job is negative.
bool isDoneInEitherVersion(std::int64_t code) { return code > 0 && (code % 10 == 1 || code % 10 == 3); }

/// A header precedes its positions. Existing rows are overwritten, others added.
class Version1RecordStore final : public RecordStore {
public:
  explicit Version1RecordStore(const StoreContext& context) : context_(context) {}

  JobFileVersion version() const override { return JobFileVersion::One; }
  FieldCount fieldCount() const override { return &fieldCount1; }
  int passes() const override { return 1; }
  int passOf(std::int64_t /*code*/) const override { return 0; }

  void store(const JobFileItem& record, const std::vector<std::string_view>& fields) override {
    if (record.code == qxtJobTypeSubItem)
      storePosition(fields);
    else
      storeJob(record, fields);
  }

  bool isHeader(std::int64_t code) const override { return isVersion1Header(code); }
  bool setsBack(std::int64_t before, std::int64_t after) const override {
    return isDoneInEitherVersion(before) && !isDoneInEitherVersion(after);
  }

  /// The positions of a header that was not stored must not be added to the previous one.
  void passedOver(std::int64_t code) override {
    if (code != 0 && code != qxtJobTypeSubItem) header_.clear();
  }

  std::string place() const override { return header_; }
  void goTo(const std::string& place) override { header_ = place; }

private:
  void storeJob(const JobFileItem& record, const std::vector<std::string_view>& fields) {
    ImportJob job;
    readRecord(fields, importJobFields, version1HeaderOrder, job);
    checkKey("JobID", job.JobID);
    context_.group.begin();
    const auto row = openVersion1Header(connection(), job.JobID);
    const std::int64_t before = row->eof() ? 0 : row->value("JobType").integer().value_or(0);
    if (row->eof()) {
      row->addNew();
      row->set("JobID", job.JobID);
    }
    updateVersion1(*row, job);
    if (before != 0 && before != job.JobType)
      context_.group.changed({job.JobID, job.JobType, {}, job.Fehlertext});
    header_ = job.JobID;
    if (jobs_.isFirst(job.JobID)) ++context_.pending.jobs;
    if (!setsBack(before, job.JobType)) return;
    ++context_.pending.setBack;
    context_.group.afterCommit([&observer = context_.observer, line = record.line, jobId = job.JobID] {
      observer.setBack(line, jobId);
    });
  }

  void storePosition(const std::vector<std::string_view>& fields) {
    ImportJobSubItem position;
    readRecord(fields, importJobSubItemFields, version1PositionOrder, position);
    checkKey("ChildID", position.ChildID);
    if (header_.empty() || position.JobID != header_)
      throw RecordRefused("the position does not follow its header");
    context_.group.begin();
    const auto row = openVersion1Position(connection(), position.ChildID);
    // The file marks every position as one of this version; one of an order stays what it is.
    if (row->eof())
      row->addNew();
    else if (row->value("JobType").integer() == qxtJobAuftragsPos)
      position.JobType = qxtJobAuftragsPos;
    updateVersion1(*row, position);
    if (positions_.isFirst(position.ChildID)) ++context_.pending.positions;
  }

  Connection& connection() const { return activeConnection(context_.environment); }

  StoreContext context_;
  SeenKeys jobs_;
  SeenKeys positions_;
  std::string header_; ///< the key of the last header that was stored
};

} // namespace

std::unique_ptr<RecordStore> version1RecordStore(const StoreContext& context) {
  return std::make_unique<Version1RecordStore>(context);
}

} // namespace qx
