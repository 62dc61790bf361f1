// Any bytes as a job file of either version, plain or scrambled.
#include "rules/scrambler.h"
#include "store/job_file_banner.h"
#include "store/job_file_record.h"
#include "store/job_file_text.h"
#include "store/job_lines.h"
#include "store/record_store.h"

#include "require.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

using namespace qx;

namespace {

constexpr std::string_view crLf = "\r\n";
/// Little more than the longest line of a banner: lines and records fall apart everywhere.
constexpr std::size_t smallReadAhead = 40;

using Item = std::tuple<JobFileItem::Kind, std::int64_t, std::int64_t, std::string, std::string>;

std::vector<Item> itemsOf(const std::string& content, FieldCount count, const Scrambler* scrambler,
                          std::size_t readAhead) {
  std::istringstream stream(content);
  JobFileLines lines(stream, "input", readAhead);
  lines.next();
  lines.unscramble(scrambler);
  JobFileRecords records(lines, count);
  std::vector<Item> items;
  while (const auto item = records.next())
    items.emplace_back(item->kind, item->line, item->code, item->text, item->reason);
  return items;
}

/// The lines after the first one, unscrambled.
std::vector<std::string> linesOf(const std::string& content, const Scrambler* scrambler) {
  std::istringstream stream(content);
  JobFileLines lines(stream, "input", content.size() + smallReadAhead);
  lines.next();
  lines.unscramble(scrambler);
  std::vector<std::string> texts;
  while (const auto line = lines.next()) texts.emplace_back(line->text);
  return texts;
}

bool beginsRecord(std::string_view line) {
  if (!line.starts_with('"')) return false;
  std::size_t at = line.starts_with("\"-") ? 2 : 1;
  const std::string_view largest = at == 2 ? "9223372036854775808" : "9223372036854775807";
  const std::size_t first = at;
  while (at < line.size() && line[at] >= '0' && line[at] <= '9') ++at;
  if (at == first || !line.substr(at).starts_with("\";\"")) return false;
  const std::size_t significant = std::min(line.find_first_not_of('0', first), at);
  const std::string_view digits = line.substr(significant, at - significant);
  return digits.size() < largest.size() || (digits.size() == largest.size() && digits <= largest);
}

/// Every line that begins a record gives one item, and so does every line outside.
void checkCounts(const std::vector<Item>& items, const std::vector<std::string>& lines) {
  std::size_t begun = 0;
  for (const std::string& line : lines)
    if (beginsRecord(line)) ++begun;
  std::size_t told = 0;
  std::int64_t before = 1;
  for (const auto& [kind, line, code, text, reason] : items) {
    require(line > before && line <= static_cast<std::int64_t>(lines.size()) + 1, "items come in order");
    before = line;
    require((kind == JobFileItem::Kind::Refused) == !reason.empty(), "what is refused has a reason");
    if (beginsRecord(lines[static_cast<std::size_t>(line - 2)]))
      ++told;
    else
      require(kind == JobFileItem::Kind::Skipped, "no record begins elsewhere");
  }
  require(told == begun, "no record is lost");
}

/// The same lines with other ends, and scrambled, are the same records.
void checkForms(const std::vector<Item>& items, const std::vector<std::string>& lines, FieldCount count) {
  static const Scrambler scrambler(defaultCodeTables());
  std::string plain = "\"" + std::string(jobFileBanner) + "\";\r\n";
  std::string scrambled = plain;
  for (const std::string& line : lines) {
    plain.append(line).append(crLf);
    for (std::size_t i = 0; i < line.size(); ++i) scrambled += scrambler.encrypted(i + 1, line[i]);
    scrambled += crLf;
  }
  require(itemsOf(plain, count, nullptr, plain.size()) == items, "line ends make no difference");
  require(itemsOf(scrambled, count, &scrambler, scrambled.size()) == items, "scrambling makes no difference");
}

template <class Record, std::size_t fields, std::size_t places>
std::string written(const Record& record, const FieldTable<Record, fields>& table,
                    const std::array<std::size_t, places>& order) {
  JobFileLineWriter writer(false);
  writer.begin();
  for (const std::size_t place : order) {
    if (place == noProperty)
      writer.add(FieldKind::Text, Value(""));
    else
      writer.add(table[place].kind,
                 table[place].visit(record, [](const auto& property) { return Value(property); }));
  }
  std::string line(writer.end());
  require(writer.replaced() == 0 && !writer.unreadable(), "what was read can be written");
  return line;
}

/// A record that was read and written is read again and written as the same line.
template <class Record, std::size_t fields, std::size_t places>
void checkRecord(const std::vector<std::string_view>& texts, const FieldTable<Record, fields>& table,
                 const std::array<std::size_t, places>& order, FieldCount count) {
  Record record;
  try {
    readRecord(texts, table, order, record);
  } catch (const RecordRefused& refused) {
    require(*refused.what() != '\0', "a refusal says why");
    return;
  }
  const std::string line = written(record, table, order);
  const std::string content = "B\r\n" + line;
  const auto items = itemsOf(content, count, nullptr, content.size());
  require(items.size() == 1 && std::get<JobFileItem::Kind>(items.front()) == JobFileItem::Kind::Record,
          "a written record is one record");
  std::vector<std::string_view> fieldsAgain;
  splitFields(std::get<3>(items.front()), fieldsAgain);
  Record again;
  try {
    readRecord(fieldsAgain, table, order, again);
  } catch (const RecordRefused&) {
    // The largest numbers are rounded beyond the largest one: 1,79769313486232E+308.
    require(line.find("E+308") != std::string::npos, "a written record is read");
    return;
  }
  require(written(again, table, order) == line, "a record that is written again is the same");
}

void checkFields(std::int64_t code, JobFileVersion version, const std::vector<std::string_view>& fields) {
  if (version == JobFileVersion::One) {
    if (code == qxtJobTypeSubItem)
      checkRecord(fields, importJobSubItemFields, version1PositionOrder, &fieldCount1);
    else
      checkRecord(fields, importJobFields, version1HeaderOrder, &fieldCount1);
    return;
  }
  switch (lineKind(code)) {
  case LineKind::Customer:
    return checkRecord(fields, kundeFields, customerLineOrder, &fieldCount);
  case LineKind::Contract:
    return checkRecord(fields, vertragFields, contractLineOrder, &fieldCount);
  case LineKind::Order:
    return checkRecord(fields, auftragFields, orderLineOrder, &fieldCount);
  case LineKind::Position:
    return checkRecord(fields, auftragsPosFields, positionLineOrder, &fieldCount);
  case LineKind::None:
    require(false, "a record has a kind");
  }
}

void readAll(const std::string& content, JobFileVersion version, const Scrambler* scrambler) {
  const FieldCount count = version == JobFileVersion::One ? &fieldCount1 : &fieldCount;
  const auto items = itemsOf(content, count, scrambler, content.size() + smallReadAhead);
  require(itemsOf(content, count, scrambler, smallReadAhead) == items,
          "how much is read makes no difference");
  const auto lines = linesOf(content, scrambler);
  checkCounts(items, lines);
  checkForms(items, lines, count);
  std::vector<std::string_view> fields;
  for (const auto& [kind, line, code, text, reason] : items) {
    if (kind != JobFileItem::Kind::Record) continue;
    splitFields(text, fields);
    require(fields.size() == count(code), "a record has the fields of its kind");
    checkFields(code, version, fields);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const Scrambler scrambler(defaultCodeTables());
  const std::string content(reinterpret_cast<const char*>(data), size);
  auto form = plainForm(content);
  if (!form) form = scrambledForm(content, scrambler);
  const JobFileForm read = form.value_or(JobFileForm());
  readAll(content, read.version, read.scrambled ? &scrambler : nullptr);
  return 0;
}
