#include "cli/findings_json.h"

#include <string>
#include <vector>

namespace qx::cli {
namespace {

void writeTexts(JsonWriter& json, std::string_view name, const std::vector<std::string>& texts) {
  json.key(name).beginArray();
  for (const std::string& text : texts) json.text(text);
  json.endArray();
}

void writeDetail(JsonWriter& json, const Finding& finding) {
  json.beginObject();
  json.key("code").text(terms(finding.rule).code);
  json.key("severity").number(static_cast<std::int64_t>(finding.severity));
  json.key("field");
  if (finding.fieldName().empty())
    json.null();
  else
    json.text(finding.fieldName());
  json.key("position");
  if (finding.position == FindingPosition())
    json.null();
  else
    json.beginObject()
        .key("ChildID")
        .text(finding.position.key)
        .key("Positionsnummer")
        .text(finding.position.number)
        .endObject();
  json.key("value").text(finding.value);
  json.key("stored").text(finding.stored);
  json.key("text").text(anyText(finding));
  json.endObject();
}

} // namespace

void writeDetails(JsonWriter& json, const Findings& findings) {
  writeTexts(json, "hints", findings.hints());
  json.key("details").beginArray();
  for (const Finding& finding : findings) writeDetail(json, finding);
  json.endArray();
}

void writeCheck(JsonWriter& json, const Findings& findings) {
  json.key("status").number(static_cast<std::int64_t>(findings.status()));
  writeTexts(json, "findings", findings.texts());
  writeDetails(json, findings);
}

} // namespace qx::cli
