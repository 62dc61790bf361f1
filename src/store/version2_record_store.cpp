#include "rules/active_connection.h"
#include "rules/german_text.h"
#include "store/entry_objects.h"
#include "store/record_store.h"
#include "store/staging_writer.h"

#include <optional>
#include <string>

namespace qx {
namespace {

/// Whether the job code belongs to a job that needs no processing any more.
bool isDone(std::int64_t code) { return code % 10 == 3 || code == qxtJobKundenVerträgedel; }

/// Each record becomes an entry object, with the starting values of one.
class Version2RecordStore final : public RecordStore {
public:
  Version2RecordStore(const RecordPlace& place, bool stores)
      : place_(place), stores_(stores), flags_(ReadyFlags::read(place.environment)) {}

  JobFileVersion version() const override { return JobFileVersion::Two; }
  FieldCount fieldCount() const override { return &qx::fieldCount; }
  /// Positions have a state of their own that nothing asks for: a preview leaves their pass out.
  int passes() const override { return stores_ ? 2 : 1; }
  int passOf(std::int64_t code) const override { return lineKind(code) == LineKind::Position ? 1 : 0; }

  void store(const JobFileItem& record, const std::vector<std::string_view>& fields) override {
    switch (lineKind(record.code)) {
    case LineKind::Customer:
      storeJob(record, fields, Kunde(place_.environment), kundeFields, customerLineOrder);
      break;
    case LineKind::Contract:
      storeJob(record, fields, Vertrag(place_.environment), vertragFields, contractLineOrder);
      break;
    case LineKind::Order:
      storeJob(record, fields, Auftrag(place_.environment), auftragFields, orderLineOrder);
      break;
    case LineKind::Position:
      storePosition(record, fields);
      break;
    case LineKind::None:
      break;
    }
  }

private:
  template <class Entry, class Record, std::size_t fields, std::size_t places>
  void storeJob(const JobFileItem& record, const std::vector<std::string_view>& texts, Entry job,
                const FieldTable<Record, fields>& table, const std::array<std::size_t, places>& order) {
    readRecord<Record>(texts, table, order, job);
    if (job.JobID.empty()) throw RecordRefused("JobID is empty");
    const auto before = replaced(static_cast<const Record&>(job));
    ++place_.pending.jobs;
    if (!before || !isDone(*before) || isDone(job.JobType)) return;
    ++place_.pending.setBack;
    place_.group.afterCommit([&observer = place_.observer, line = record.line, jobId = job.JobID] {
      observer.setBack(line, jobId);
    });
  }

  /// The code of the row that the job replaces; null when it is new.
  template <class Record>
  std::optional<std::int16_t> replaced(const Record& job) {
    Connection& connection = activeConnection(place_.environment);
    if (stores_) {
      place_.group.begin();
      return writeStaged(connection, job);
    }
    const auto row =
        connection.open(sql("Select JobType From ImportKopf where JobID = '"_sql, value(job.JobID), "'"_sql));
    if (row->eof()) return std::nullopt;
    return static_cast<std::int16_t>(row->value("JobType").integer().value_or(0));
  }

  void storePosition(const JobFileItem& record, const std::vector<std::string_view>& texts) {
    AuftragsPos position(place_.environment, flags_);
    readRecord<AuftragsPosFields>(texts, auftragsPosFields, positionLineOrder, position);
    if (position.ChildID.empty()) throw RecordRefused("ChildID is empty");
    place_.group.begin();
    writeStaged(activeConnection(place_.environment), static_cast<const AuftragsPosFields&>(position));
    ++place_.pending.positions;
    if (hasHeader(position.JobID)) return;
    ++place_.pending.withoutHeader;
    place_.group.afterCommit([&observer = place_.observer, line = record.line, jobId = position.JobID,
                              childId = position.ChildID] { observer.withoutHeader(line, jobId, childId); });
  }

  /// Positions of one job stand together, so that one look serves them all.
  bool hasHeader(const std::string& jobId) {
    if (jobId != lastJob_ || !lastJobFound_) {
      lastJob_ = jobId;
      lastJobFound_ =
          !activeConnection(place_.environment)
               .open(sql("Select JobID From ImportKopf where JobID = '"_sql, value(jobId), "'"_sql))
               ->eof();
    }
    return lastJobFound_;
  }

  RecordPlace place_;
  bool stores_;
  ReadyFlags flags_;
  std::string lastJob_;
  bool lastJobFound_ = false;
};

} // namespace

std::unique_ptr<RecordStore> version2RecordStore(const RecordPlace& place) {
  return std::make_unique<Version2RecordStore>(place, true);
}

std::unique_ptr<RecordStore> version2Preview(const RecordPlace& place) {
  return std::make_unique<Version2RecordStore>(place, false);
}

void refuseField(std::string_view name, std::string_view text) {
  constexpr std::size_t shown = 40;
  throw RecordRefused(std::string(name) + " cannot be '" + std::string(firstCharacters(text, shown)) + "'");
}

} // namespace qx
