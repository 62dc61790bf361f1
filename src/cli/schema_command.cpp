#include "cli/commands.h"

#include "cli/close_words.h"
#include "cli/job_terms.h"
#include "cli/output_schema.h"
#include "cli/output_terms.h"
#include "cli/property_terms.h"
#include "cli/stage_reader.h"
#include "cli/terminal_text.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "model/key_length.h"
#include "model/required_properties.h"
#include "program/program_error.h"
#include "store/json_writer.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

/// The German forms and the ISO form, and those of a contract; which of them are days is left to `stage`.
constexpr std::string_view datePattern = "^([0-9]{1,2}\\.[0-9]{1,2}\\.([0-9]{2}|[0-9]{4})( "
                                         "[0-9]{1,2}:[0-9]{2}(:[0-9]{2})?)?|[0-9]{4}-[0-9]{2}-[0-9]{2}"
                                         "([T ].*)?|999999|00:00:00|12:00:00 AM)?$";

/// Null counts as not given.
void writeType(JsonWriter& json, std::string_view type, bool required = false) {
  json.key("type");
  if (required)
    json.text(type);
  else
    json.beginArray().text(type).text("null").endArray();
}

template <class Whole>
void writeWhole(JsonWriter& json) {
  writeType(json, "integer");
  json.key("minimum").number(std::int64_t{std::numeric_limits<Whole>::min()});
  json.key("maximum").number(std::int64_t{std::numeric_limits<Whole>::max()});
}

void writeExample(JsonWriter& json, FieldKind kind, std::string_view example) {
  if (example.empty()) return;
  json.key("examples").beginArray();
  double number = 0;
  if (kind == FieldKind::Text || kind == FieldKind::Date) {
    json.text(example);
  } else {
    std::from_chars(example.data(), example.data() + example.size(), number);
    json.number(number);
  }
  json.endArray();
}

void writeProperty(JsonWriter& json, const PropertyTerm& term, FieldKind kind, bool stored, bool required) {
  json.key(term.name).beginObject();
  json.key("description").text(term.meaning);
  switch (kind) {
  case FieldKind::Text:
    writeType(json, "string", required);
    if (required) json.key("minLength").number(std::int64_t{1});
    if (term.name == "JobID" || term.name == "ChildID")
      json.key("maxLength").number(std::int64_t{longestKey});
    break;
  case FieldKind::Date:
    writeType(json, "string");
    json.key("pattern").text(datePattern);
    break;
  case FieldKind::Int16:
    writeWhole<std::int16_t>(json);
    break;
  case FieldKind::Int32:
    writeWhole<std::int32_t>(json);
    break;
  case FieldKind::Double:
    writeType(json, "number", required);
    break;
  case FieldKind::Boolean:
    writeType(json, "boolean");
    break;
  }
  if (!term.unit.empty()) json.key("x-unit").text(term.unit);
  if (!term.codes.empty()) json.key("x-codes").text(term.codes);
  if (!stored) json.key("x-stored").boolean(false);
  writeExample(json, kind, term.example);
  json.endObject();
}

void writeRequired(JsonWriter& json, ObjectKind kind, bool isJob) {
  json.key("required").beginArray();
  if (isJob) json.text("type");
  for (const std::string_view name : requiredProperties(kind)) json.text(name);
  json.endArray();
}

template <class Table>
void writeProperties(JsonWriter& json, ObjectKind kind, const Table& table) {
  const auto required = requiredProperties(kind);
  for (const auto& field : table)
    writeProperty(json, propertyTerm(kind, field.name), field.kind, field.stored(),
                  std::ranges::find(required, field.name) != required.end());
}

template <class Table>
void writePositions(JsonWriter& json, ObjectKind kind, const Table& table) {
  json.key(positionsProperty).beginObject();
  json.key("description").text("Positions, in the order of their lines.");
  writeType(json, "array", kind == ObjectKind::OrderPosition);
  if (kind == ObjectKind::OrderPosition) json.key("minItems").number(std::int64_t{1});
  json.key("items").beginObject().key("type").text("object").key("additionalProperties").boolean(false);
  json.key("properties").beginObject();
  writeProperties(json, kind, table);
  json.endObject();
  writeRequired(json, kind, false);
  json.endObject().endObject();
}

template <class Table, class Positions>
void writeJob(JsonWriter& json, ObjectKind kind, std::string_view type, std::string_view title,
              const Table& table, Positions&& positions) {
  json.beginObject().key("title").text(title).key("type").text("object");
  json.key("additionalProperties").boolean(false).key("properties").beginObject();
  json.key("type").beginObject().key("const").text(type).endObject();
  json.key(rejectedProperty).beginObject().key("description");
  json.text("What 'stage --rejects' has written; it is passed over.").endObject();
  writeProperties(json, kind, table);
  positions();
  json.endObject();
  writeRequired(json, kind, true);
  if (kind == ObjectKind::Customer) {
    json.key("anyOf").beginArray();
    for (const std::string_view name : customerNames) {
      json.beginObject().key("required").beginArray().text(name).endArray();
      json.key("properties").beginObject().key(name).beginObject();
      json.key("type").text("string").key("minLength").number(std::int64_t{1});
      json.endObject().endObject().endObject();
    }
    json.endArray();
  }
  json.endObject();
}

void writeKind(JsonWriter& json, std::int16_t kind) {
  switch (kind) {
  case qxtjobkunden:
    return writeJob(json, ObjectKind::Customer, "Kunde", "Customer job", kundeFields, [] {});
  case qxtJobAufträge:
    return writeJob(json, ObjectKind::Order, "Auftrag", "Order job", auftragFields,
                    [&] { writePositions(json, ObjectKind::OrderPosition, auftragsPosFields); });
  default:
    return writeJob(json, ObjectKind::Contract, "Vertrag", "Contract job", vertragFields,
                    [&] { writePositions(json, ObjectKind::ContractPosition, importJobSubItemFields); });
  }
}

void listOutputs(const Output& target) {
  constexpr std::size_t nameWidth = 18;
  if (!target.json) {
    for (const OutputTerm& term : outputTerms())
      target.result << fitted(term.name, nameWidth) << term.command << '\n';
    return;
  }
  JsonWriter json(target.result);
  json.beginObject().key("outputs").beginArray();
  for (const OutputTerm& term : outputTerms())
    json.beginObject().key("name").text(term.name).key("command").text(term.command).endObject();
  json.endArray().endObject().finish();
}

} // namespace

void SchemaCommand::prepare() {
  if (output) prepareOutput();
  if (kind.empty()) return;
  if (output)
    throw ProgramError(ExitCode::BadInput, "KIND is one of the input, --output one of the output",
                       "Omit one of them.");
  const auto known = kindFromText(kind);
  if (!known)
    throw ProgramError(ExitCode::BadInput, "'" + kind + "' is not a kind of job",
                       "Kinds are kunde, vertrag and auftrag.");
  // Both kinds of contract are of the same type.
  kinds_ = {*known == qxtjobkundenverträge ? std::int16_t{qxtjobverträge} : *known};
}

void SchemaCommand::prepareOutput() {
  // As the words of the command, too: "settings list".
  std::ranges::replace(*output, ' ', '-');
  if (output->empty()) return;
  std::vector<std::string> known;
  for (const OutputTerm& term : outputTerms()) {
    if (term.name == *output) return;
    known.emplace_back(term.name);
  }
  const std::string meant = closestWord(*output, known);
  throw ProgramError(ExitCode::BadInput,
                     "there is no output '" + *output + "'" +
                         (meant.empty() ? "" : "; did you mean '" + meant + "'?"),
                     "'qximportjob schema --output' lists the outputs.");
}

void SchemaCommand::describeOutput(std::ostream& result) const {
  writeOutputSchema(JsonWriter(result), *std::ranges::find(outputTerms(), *output, &OutputTerm::name));
}

ExitCode SchemaCommand::run(Installation& /*installation*/, const Output& target) {
  if (output) {
    if (output->empty())
      listOutputs(target);
    else
      describeOutput(target.result);
    return ExitCode::Success;
  }
  JsonWriter json(target.result);
  json.beginObject();
  writeSchemaHead(json, "input" + (kind.empty() ? "" : ":" + std::string(kindWord(kinds_.front()))),
                  "Jobs for qximportjob stage");
  json.key("$defs").beginObject();
  json.key("job").beginObject().key("oneOf").beginArray();
  for (const std::int16_t each : kinds_)
    json.beginObject().key("$ref").text("#/$defs/" + std::string(kindWord(each))).endObject();
  json.endArray().endObject();
  for (const std::int16_t each : kinds_) writeKind(json.key(kindWord(each)), each);
  json.endObject();
  json.key("anyOf").beginArray();
  json.beginObject().key("$ref").text("#/$defs/job").endObject();
  json.beginObject().key("type").text("array").key("items").beginObject();
  json.key("$ref").text("#/$defs/job").endObject().endObject();
  json.endArray().endObject().finish();
  return ExitCode::Success;
}

} // namespace qx::cli
