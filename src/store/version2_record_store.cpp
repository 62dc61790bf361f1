#include "model/key_length.h"
#include "model/text.h"
#include "platform/environment.h"
#include "store/entry_objects.h"
#include "store/record_store.h"
#include "store/staging_writer.h"

#include <string>

namespace qx {
namespace {

/// Whether the job code belongs to a job that needs no processing any more.
bool isDone(std::int64_t code) { return code % 10 == 3 || code == qxtJobKundenVerträgedel; }

/// Each record becomes an entry object, with the starting values of one.
class Version2RecordStore final : public RecordStore {
public:
  explicit Version2RecordStore(const StoreContext& context)
      : context_(context), flags_(ReadyFlags::read(context.environment)) {}

  JobFileVersion version() const override { return JobFileVersion::Two; }
  FieldCount fieldCount() const override { return &qx::fieldCount; }
  int passes() const override { return 2; }
  int passOf(std::int64_t code) const override { return lineKind(code) == LineKind::Position ? 1 : 0; }

  void store(const JobFileItem& record, const std::vector<std::string_view>& fields) override {
    switch (lineKind(record.code)) {
    case LineKind::Customer:
      storeJob(record, fields, Kunde(context_.environment), kundeFields, customerLineOrder);
      break;
    case LineKind::Contract:
      storeJob(record, fields, Vertrag(context_.environment), vertragFields, contractLineOrder);
      break;
    case LineKind::Order:
      storeJob(record, fields, Auftrag(context_.environment), auftragFields, orderLineOrder);
      break;
    case LineKind::Position:
      storePosition(record, fields);
      break;
    case LineKind::None:
      break;
    }
  }

  bool isHeader(std::int64_t code) const override { return qx::isHeader(lineKind(code)); }
  bool setsBack(std::int64_t before, std::int64_t after) const override {
    return isDone(before) && !isDone(after);
  }
  std::string_view whySkipped(std::int64_t code) const override {
    return code == qxtJobTypeSubItem ? "a position of code 1001 is not read" : std::string_view();
  }

private:
  template <class Entry, class Record, std::size_t fields, std::size_t named>
  void storeJob(const JobFileItem& record, const std::vector<std::string_view>& texts, Entry job,
                const FieldTable<Record, fields>& table, const std::array<std::size_t, named>& order) {
    readRecord<Record>(texts, table, order, job);
    checkKey("JobID", job.JobID);
    context_.group.begin();
    const auto before = writeStaged(activeConnection(context_.environment), static_cast<const Record&>(job));
    if (before && *before != job.JobType)
      context_.group.changed({job.JobID, job.JobType, {}, job.Fehlertext});
    if (jobs_.isFirst(job.JobID)) ++context_.pending.jobs;
    if (!before || !setsBack(*before, job.JobType)) return;
    ++context_.pending.setBack;
    context_.group.afterCommit([&observer = context_.observer, line = record.line, jobId = job.JobID] {
      observer.setBack(line, jobId);
    });
  }

  void storePosition(const JobFileItem& record, const std::vector<std::string_view>& texts) {
    AuftragsPos position(context_.environment, flags_);
    readRecord<AuftragsPosFields>(texts, auftragsPosFields, positionLineOrder, position);
    checkKey("ChildID", position.ChildID);
    context_.group.begin();
    writeStaged(activeConnection(context_.environment), static_cast<const AuftragsPosFields&>(position));
    if (positions_.isFirst(position.ChildID)) ++context_.pending.positions;
    if (hasHeader(position.JobID)) return;
    ++context_.pending.withoutHeader;
    context_.group.afterCommit(
        [&observer = context_.observer, line = record.line, jobId = position.JobID,
         childId = position.ChildID] { observer.withoutHeader(line, jobId, childId); });
  }

  /// Positions of one job are adjacent, so one lookup serves them all.
  bool hasHeader(const std::string& jobId) {
    if (jobId != lastJob_ || !lastJobFound_) {
      lastJob_ = jobId;
      lastJobFound_ =
          !activeConnection(context_.environment)
               .open(sql("Select JobID From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql))
               ->eof();
    }
    return lastJobFound_;
  }

  StoreContext context_;
  ReadyFlags flags_;
  SeenKeys jobs_;
  SeenKeys positions_;
  std::string lastJob_;
  bool lastJobFound_ = false;
};

} // namespace

std::unique_ptr<RecordStore> version2RecordStore(const StoreContext& context) {
  return std::make_unique<Version2RecordStore>(context);
}

void refuseField(std::string_view name, std::string_view text) {
  constexpr std::size_t shown = 40;
  throw RecordRefused(std::string(name) + " cannot be '" + std::string(firstCharacters(text, shown)) + "'");
}

bool SeenKeys::isFirst(std::string_view key) {
  TextHash hash;
  for (const char c : key) hash.add(asciiLower(c));
  return hashes_.insert(hash.value()).second;
}

void checkKey(std::string_view name, std::string_view key) {
  const auto refuse = [&](std::string_view what) {
    throw RecordRefused(std::string(name) + std::string(what));
  };
  if (key.empty()) refuse(" is empty");
  if (key.find('\0') != std::string_view::npos) refuse(" holds the character NUL");
  if (firstCharacters(key, longestKey).size() < key.size()) refuse(" has more than 32 characters");
}

} // namespace qx
