#include "store/job_file_record.h"

#include "model/code_page.h"

#include <algorithm>
#include <charconv>
#include <memory>

namespace qx {
namespace {

constexpr std::string_view fieldEnd = "\";";

/// The number in the first field of a line that begins a record.
std::optional<std::int64_t> recordCode(std::string_view line) {
  if (!line.starts_with('"')) return std::nullopt;
  std::int64_t code = 0;
  const char* const last = std::to_address(line.end());
  const auto [end, error] = std::from_chars(std::next(line.data()), last, code);
  if (error != std::errc() || !std::string_view(end, last).starts_with("\";\"")) return std::nullopt;
  return code;
}

std::size_t countFields(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::count(text, ';'));
}

} // namespace

std::optional<JobFileItem> JobFileRecords::next() {
  for (;;) {
    std::optional<PhysicalLine> line = waiting_;
    waiting_.reset();
    if (!line) line = lines_.next();
    if (!line) break;
    if (auto found = take(*line)) return found;
  }
  if (state_ != State::Open) return std::nullopt;
  return refuse("the file ends before the record does", State::Outside);
}

std::optional<JobFileItem> JobFileRecords::take(const PhysicalLine& line) {
  const auto code = recordCode(line.text);
  if (code && state_ == State::Open) {
    waiting_ = line;
    return refuse("the record has too few fields", State::Outside);
  }
  if (code) return begin(line, *code);
  switch (state_) {
  case State::Open:
    return goOn(line);
  case State::Ignoring:
    return std::nullopt;
  case State::Outside:
    break;
  }
  firstLine_ = line.number;
  code_ = 0;
  return item(JobFileItem::Kind::Skipped);
}

std::optional<JobFileItem> JobFileRecords::begin(const PhysicalLine& line, std::int64_t code) {
  firstLine_ = line.number;
  code_ = code;
  if (fieldCount_(code) == 0) {
    state_ = State::Ignoring;
    return item(JobFileItem::Kind::Skipped);
  }
  if (line.overlong || line.text.size() > longestRecord)
    return refuse("the record is longer than 16 MiB", State::Ignoring);
  fields_ = countFields(line.text);
  if (auto found = judge(line.text)) return found;
  text_ = line.text;
  state_ = State::Open;
  return std::nullopt;
}

std::optional<JobFileItem> JobFileRecords::goOn(const PhysicalLine& line) {
  if (line.overlong || text_.size() + 2 + line.text.size() > longestRecord)
    return refuse("the record is longer than 16 MiB", State::Ignoring);
  fields_ += countFields(line.text);
  text_ += "\r\n";
  text_ += line.text;
  return judge(text_);
}

/// Whether the record is complete or too long; null when it continues. Blanks after its end are ignored.
std::optional<JobFileItem> JobFileRecords::judge(std::string_view text) {
  text.remove_suffix(text.size() - (text.find_last_not_of(" \t") + 1));
  const bool ends = text.ends_with(fieldEnd);
  if (fields_ > mostFields)
    return refuse("the record has more than 66 fields", ends ? State::Outside : State::Ignoring);
  if (!ends || fields_ < fieldCount_(code_)) return std::nullopt;
  if (fields_ > fieldCount_(code_))
    return refuse("the record has more fields than its kind: a value holds the separator", State::Outside);
  state_ = State::Outside;
  JobFileItem record = item(JobFileItem::Kind::Record);
  record.text = text;
  return record;
}

JobFileItem JobFileRecords::refuse(std::string_view reason, State next) {
  state_ = next;
  JobFileItem refused = item(JobFileItem::Kind::Refused);
  refused.reason = reason;
  return refused;
}

JobFileItem JobFileRecords::item(JobFileItem::Kind kind) const { return {kind, firstLine_, code_, {}, {}}; }

void splitFields(std::string_view record, std::vector<std::string_view>& fields) {
  fields.clear();
  while (!record.empty()) {
    const std::size_t end = record.find(';');
    fields.push_back(record.substr(0, end));
    record.remove_prefix(end == std::string_view::npos ? record.size() : end + 1);
  }
}

void readField(std::string_view field, std::string& text) {
  text.clear();
  while (!field.empty()) {
    const std::size_t quote = field.find('"');
    appendTextFromCodePage(text, field.substr(0, quote));
    field.remove_prefix(quote == std::string_view::npos ? field.size() : quote + 1);
  }
}

} // namespace qx
