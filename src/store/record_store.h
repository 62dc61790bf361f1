// Stores the records of a job file, one version each.
#pragma once

#include "store/job_file_record.h"
#include "store/job_file_report.h"
#include "store/job_file_text.h"
#include "store/job_lines.h"
#include "store/work_group.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace qx {

/// The fields of a record cannot be stored; `what()` says why.
class RecordRefused : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Distinguishes the first record of a key from later ones; keys compare as in the database.
class SeenKeys {
public:
  bool isFirst(std::string_view key);

private:
  std::unordered_set<std::uint64_t> hashes_; ///< the keys of a large file would fill the memory
};

/// The context of storing records.
struct StoreContext {
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
  virtual bool isHeader(std::int64_t code) const = 0;
  /// Stores a complete record. Raises `RecordRefused`, with nothing stored, and what the connection raises.
  virtual void store(const JobFileItem& record, const std::vector<std::string_view>& fields) = 0;
  /// Whether a done job (first code) is reset when a job of the second code overwrites it.
  virtual bool setsBack(std::int64_t before, std::int64_t after) const = 0;
  /// The reason to report for a skipped record that somebody may miss; "" for all others.
  virtual std::string_view whySkipped(std::int64_t /*code*/) const { return {}; }
  /// What later records build on, and the way back to it before records are stored again.
  virtual std::string place() const { return {}; }
  virtual void goTo(const std::string& /*place*/) {}
  /// A record was refused or belongs to no kind.
  virtual void passedOver(std::int64_t /*code*/) {}
};

/// Refuses a field whose text does not fit its property.
[[noreturn]] void refuseField(std::string_view name, std::string_view text);

/// Refuses an unusable key: empty, with NUL, or of more than 32 characters.
void checkKey(std::string_view name, std::string_view key);

std::unique_ptr<RecordStore> version1RecordStore(const StoreContext& context);
std::unique_ptr<RecordStore> version2RecordStore(const StoreContext& context);

/// Reads the fields of a record, at least as many as are named, into its properties. Raises `RecordRefused`
/// for a field that its property cannot hold. Empty numbers and truth values leave the property unchanged.
template <class Record, std::size_t fields, std::size_t named>
void readRecord(const std::vector<std::string_view>& texts, const FieldTable<Record, fields>& table,
                const std::array<std::size_t, named>& order, Record& record) {
  std::string text;
  for (std::size_t i = 0; i < named; ++i) {
    if (order[i] == noProperty) continue;
    readField(texts[i], text);
    const auto& field = table[order[i]];
    if (!readFileText(text, field, record)) refuseField(field.name, text);
  }
}

} // namespace qx
