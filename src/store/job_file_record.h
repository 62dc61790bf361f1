// The records of a job file: one or more physical lines that hold one job or position.
#pragma once

#include "store/job_file_line.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// A line of a job file never has more fields.
inline constexpr std::size_t mostFields = 66;

/// The next item of the file.
struct JobFileItem {
  enum class Kind : std::uint8_t {
    Record,  ///< complete: it has the fields of its kind
    Skipped, ///< a record of no kind, or a line outside a record
    Refused, ///< a record that is defective; `reason` says why
  };
  Kind kind = Kind::Skipped;
  std::int64_t line = 0;   ///< its first physical line
  std::int64_t code = 0;   ///< the first field; 0 for a line outside a record
  std::string_view text;   ///< of a record: its lines joined with CR LF
  std::string_view reason; ///< of a refused record
};

/// How many fields a record of this code has; 0 for a code that the file does not hold.
using FieldCount = std::size_t (*)(std::int64_t code);

/// Joins lines to records. A line that begins with a number in quotes and another field always begins a
/// record; the record continues until it ends like a field and has the fields of its kind. It is refused when
/// it is cut off (by a new record, the end of the file, more than 66 fields or `longestRecord`) or has more
/// fields than its kind; reading continues with the next record.
class JobFileRecords {
public:
  /// `lines` is positioned after the banner and must outlive the reader.
  JobFileRecords(JobFileLines& lines, FieldCount fieldCount) : lines_(lines), fieldCount_(fieldCount) {}

  /// The next item, valid until the next call; null at the end of the file.
  std::optional<JobFileItem> next();

private:
  enum class State : std::uint8_t {
    Outside,
    Open,     ///< the record continues
    Ignoring, ///< following lines belong to a dropped record
  };

  std::optional<JobFileItem> take(const PhysicalLine& line);
  std::optional<JobFileItem> begin(const PhysicalLine& line, std::int64_t code);
  std::optional<JobFileItem> goOn(const PhysicalLine& line);
  std::optional<JobFileItem> judge(std::string_view text);
  JobFileItem refuse(std::string_view reason, State next);
  JobFileItem item(JobFileItem::Kind kind) const;

  JobFileLines& lines_;
  FieldCount fieldCount_;
  State state_ = State::Outside;
  std::int64_t firstLine_ = 0;
  std::int64_t code_ = 0;
  std::size_t fields_ = 0;
  std::string text_;                    ///< of a record with more than one line
  std::optional<PhysicalLine> waiting_; ///< begins the next record
};

/// The fields of a record without their semicolons; quotes and code page as in the file.
void splitFields(std::string_view record, std::vector<std::string_view>& fields);

/// A field's text in UTF-8. All double quotes are removed, even those of the value: the format has no
/// escapes.
void readField(std::string_view field, std::string& text);

} // namespace qx
