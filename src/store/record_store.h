// Stores the records of a job file, one version each.
#pragma once

#include "store/job_file_codes.h"
#include "store/job_file_record.h"
#include "store/job_file_report.h"
#include "store/job_file_text.h"
#include "store/work_group.h"

#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace qx {

/// A record whose fields cannot be stored; `what()` says why.
class RecordRefused : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// What storing works with.
struct RecordPlace {
  Environment& environment;
  WorkGroup& group;
  JobFileObserver& observer;
  JobFileCounts& pending; ///< of the open group
};

class RecordStore {
public:
  virtual ~RecordStore() = default;
  virtual JobFileVersion version() const = 0;
  virtual FieldCount fieldCount() const = 0;
  /// How often the file is read, and in which of these passes (from 0) a code's turn is.
  virtual int passes() const = 0;
  virtual int passOf(std::int64_t code) const = 0;
  /// Stores a complete record. Raises `RecordRefused`, with nothing stored, and what the connection raises.
  virtual void store(const JobFileItem& record, const std::vector<std::string_view>& fields) = 0;
  /// A record was refused or belongs to no kind.
  virtual void passedOver(std::int64_t /*code*/) {}
};

/// Refuses a field whose text does not fit its property.
[[noreturn]] void refuseField(std::string_view name, std::string_view text);

std::unique_ptr<RecordStore> version1RecordStore(const RecordPlace& place);
std::unique_ptr<RecordStore> version2RecordStore(const RecordPlace& place);

/// Stores nothing: it tells the observer of the done jobs that the version-2 store would set back.
std::unique_ptr<RecordStore> version2Preview(const RecordPlace& place);

/// Reads the fields of a record, `places` of them at least, into its properties. Raises `RecordRefused` for a
/// field that its property cannot hold. Empty numbers and truth values leave the property as it was.
template <class Record, std::size_t fields, std::size_t places>
void readRecord(const std::vector<std::string_view>& texts, const FieldTable<Record, fields>& table,
                const std::array<std::size_t, places>& order, Record& record) {
  std::string text;
  for (std::size_t i = 0; i < places; ++i) {
    if (order[i] == noProperty) continue;
    readField(texts[i], text);
    const auto& field = table[order[i]];
    if (!readFileText(text, field, record)) refuseField(field.name, text);
  }
}

} // namespace qx
