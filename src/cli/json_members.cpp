#include "cli/json_members.h"

#include "cli/job_terms.h"
#include "engine/erp_number.h"
#include "model/entry_records.h"

#include <algorithm>

namespace qx::cli {
namespace {

void writeDetail(JsonWriter& json, const Finding& finding) {
  json.beginObject();
  json.key("code").text(terms(finding.rule).code);
  json.key("severity").number(static_cast<std::int64_t>(finding.severity));
  json.key("field").textOrNull(finding.fieldName());
  json.key("position");
  if (finding.position == FindingPosition()) {
    json.null();
  } else {
    json.beginObject().key("ChildID").text(finding.position.key);
    json.key("Positionsnummer").text(finding.position.number).endObject();
  }
  json.key("value").text(finding.value);
  json.key("stored").text(finding.stored);
  json.key("text").text(anyText(finding));
  json.endObject();
}

} // namespace

void writeDetails(JsonWriter& json, const Findings& findings) {
  json.key("hints").texts(findings.hints());
  json.key("details").beginArray();
  for (const Finding& finding : findings) writeDetail(json, finding);
  json.endArray();
}

void writeCheck(JsonWriter& json, const Findings& findings) {
  json.key("checkStatus").number(static_cast<std::int64_t>(findings.status()));
  json.key("findings").texts(findings.texts());
  writeDetails(json, findings);
}

std::string_view propertyName(std::string_view column) {
  const auto* const renamed = std::ranges::find(kundeFields, column, &Field<KundeFields>::column);
  return renamed == kundeFields.end() ? column : renamed->name;
}

void writeColumns(JsonWriter& json, Recordset& row, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) json.key(propertyName(row.fieldName(i))).value(row.value(i));
}

void writeOutcome(JsonWriter& json, Recordset& header) {
  writeOutcome(json, jobCode(header.value("JobType")), erpNumber(header));
}

void writeOutcome(JsonWriter& json, std::int16_t jobType, std::string_view number) {
  json.key("state").textOrNull(stateWord(jobType));
  json.key("kind").textOrNull(kindWord(jobType));
  json.key("number").textOrNull(stateOf(jobType) == JobState::Done ? number : std::string_view());
}

void writeFault(JsonWriter& json, const InputFault& fault) {
  const auto numberOrNull = [&](std::int64_t number) {
    if (number == 0)
      json.null();
    else
      json.number(number);
  };
  json.beginObject().key("line");
  numberOrNull(fault.line);
  json.key("object");
  numberOrNull(fault.object);
  json.key("property").textOrNull(fault.property);
  json.key("code").text(fault.code);
  json.key("message").text(fault.message);
  json.key("hint").textOrNull(fault.hint).endObject();
}

void writeLeft(JsonWriter& json, const std::map<std::string, std::string>& left) {
  if (left.empty()) return;
  json.key("left").beginArray();
  for (const auto& [jobId, reason] : left)
    json.beginObject().key("JobID").text(jobId).key("reason").text(reason).endObject();
  json.endArray();
}

} // namespace qx::cli
