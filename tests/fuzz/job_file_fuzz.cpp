// Any bytes as a job file of either version, plain or scrambled.
#include "rules/german_text.h"
#include "store/job_file_banner.h"
#include "store/job_file_codes.h"
#include "store/job_file_record.h"
#include "store/job_file_writer.h"
#include "store/record_store.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>

using namespace qx;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

void readFields(const JobFileItem& item, JobFileVersion version,
                const std::vector<std::string_view>& fields) {
  KundeFields kunde;
  VertragFields vertrag;
  AuftragFields auftrag;
  AuftragsPosFields position;
  ImportJob job;
  ImportJobSubItem subItem;
  if (version == JobFileVersion::One) {
    if (item.code == qxtJobTypeSubItem)
      readRecord(fields, importJobSubItemFields, version1PositionOrder, subItem);
    else
      readRecord(fields, importJobFields, version1HeaderOrder, job);
    return;
  }
  switch (lineKind(item.code)) {
  case LineKind::Customer:
    readRecord(fields, kundeFields, customerLineOrder, kunde);
    break;
  case LineKind::Contract:
    readRecord(fields, vertragFields, contractLineOrder, vertrag);
    break;
  case LineKind::Order:
    readRecord(fields, auftragFields, orderLineOrder, auftrag);
    break;
  case LineKind::Position:
    readRecord(fields, auftragsPosFields, positionLineOrder, position);
    break;
  case LineKind::None:
    break;
  }
}

/// What was read as a text is written as the same bytes again, quotes left out.
void writeAgain(std::string_view field) {
  std::string text;
  readField(field, text);
  JobFileLineWriter writer(false);
  writer.begin();
  writer.add(FieldKind::Text, Value(text));
  const std::string_view line = writer.end();
  std::string plain(field);
  std::erase(plain, '"');
  require(writer.replaced() == 0 && line == "\"" + plain + "\";\r\n");
}

void readAll(const std::string& content, JobFileVersion version, const Scrambler* scrambler) {
  std::istringstream stream(content);
  JobFileLines lines(stream, "input");
  lines.next();
  lines.unscramble(scrambler);
  const FieldCount count = version == JobFileVersion::One ? &fieldCount1 : &fieldCount;
  JobFileRecords records(lines, count);
  std::vector<std::string_view> fields;
  std::int64_t lastLine = 1;
  while (const auto item = records.next()) {
    require(item->line > lastLine);
    lastLine = item->line;
    if (item->kind != JobFileItem::Kind::Record) continue;
    splitFields(item->text, fields);
    require(fields.size() >= count(item->code) && fields.size() <= mostFields);
    for (const std::string_view field : fields) writeAgain(field);
    try {
      readFields(*item, version, fields);
    } catch (const RecordRefused&) {
      continue;
    }
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
