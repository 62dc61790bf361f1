#include "cli/output_schema.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <vector>

namespace qx::cli {
namespace {

std::string_view typeOf(MemberKind kind) {
  switch (kind) {
  case MemberKind::Text:
    return "string";
  case MemberKind::Whole:
    return "integer";
  case MemberKind::Number:
    return "number";
  case MemberKind::Truth:
    return "boolean";
  case MemberKind::Object:
    break;
  }
  return "object";
}

void writeReference(JsonWriter& json, const OutputObject& object) {
  json.key("$ref").text("#/$defs/" + std::string(object.name));
}

void writeWords(JsonWriter& json, const OutputMember& member, bool orNull) {
  json.key("enum").beginArray();
  for (const std::string_view word : member.words()) {
    if (member.kind == MemberKind::Whole) {
      std::int64_t digits = 0;
      std::from_chars(word.data(), word.data() + word.size(), digits);
      json.number(digits);
    } else {
      json.text(word);
    }
  }
  if (orNull) json.null();
  json.endArray();
}

/// Members of a schema that describe one value, of a member or of its array.
void writeValue(JsonWriter& json, const OutputMember& member, bool orNull) {
  if (member.kind == MemberKind::Object) {
    if (!orNull) return writeReference(json, *member.object);
    json.key("anyOf").beginArray().beginObject();
    writeReference(json, *member.object);
    json.endObject().beginObject().key("type").text("null").endObject().endArray();
    return;
  }
  json.key("type");
  if (orNull)
    json.beginArray().text(typeOf(member.kind)).text("null").endArray();
  else
    json.text(typeOf(member.kind));
  if (member.words != nullptr) writeWords(json, member, orNull);
}

void writeMember(JsonWriter& json, const OutputMember& member) {
  json.key(member.name).beginObject().key("description").text(member.meaning);
  if (member.listed) {
    json.key("type");
    if (member.nullable)
      json.beginArray().text("array").text("null").endArray();
    else
      json.text("array");
    json.key("items").beginObject();
    writeValue(json, member, false);
    json.endObject();
  } else {
    writeValue(json, member, member.nullable);
  }
  if (!member.unit.empty()) json.key("x-unit").text(member.unit);
  if (!member.codes.empty()) json.key("x-codes").text(member.codes);
  json.endObject();
}

std::vector<OutputMember> membersOf(const OutputObject& object) {
  std::vector<OutputMember> members = rowMembers(object.row);
  members.insert(members.end(), object.members.begin(), object.members.end());
  return members;
}

void writeObject(JsonWriter& json, const OutputObject& object, const std::vector<OutputMember>& members) {
  json.key(object.name).beginObject().key("description").text(object.meaning).key("type").text("object");
  json.key("properties").beginObject();
  for (const OutputMember& member : members) writeMember(json, member);
  json.endObject().key("required").beginArray();
  for (const OutputMember& member : members)
    if (!member.optional) json.text(member.name);
  json.endArray().key("additionalProperties");
  if (object.row == RowKind::None) {
    json.boolean(false);
  } else {
    json.beginObject().key("description").text("A column that others have added to the table.");
    json.key("type")
        .beginArray()
        .text("string")
        .text("number")
        .text("boolean")
        .text("null")
        .endArray()
        .endObject();
  }
  json.endObject();
}

} // namespace

void writeSchemaHead(JsonWriter& json, std::string_view subject, std::string_view title) {
  json.key("$schema").text("https://json-schema.org/draft/2020-12/schema");
  json.key("$id").text("urn:qximportjob:" + std::string(subject) + ":" + std::to_string(schemaVersion));
  json.key("title").text(title).key("x-version").number(schemaVersion);
}

void writeOutputSchema(JsonWriter json, const OutputTerm& output) {
  std::vector<const OutputObject*> objects;
  for (const OutputObject* form : output.forms)
    if (form != nullptr) objects.push_back(form);
  const std::size_t forms = objects.size();
  json.beginObject();
  writeSchemaHead(json, "output:" + std::string(output.name), "qximportjob " + std::string(output.command));
  if (forms == 1) {
    writeReference(json, *objects.front());
  } else {
    json.key("oneOf").beginArray();
    for (std::size_t i = 0; i < forms; ++i) {
      json.beginObject();
      writeReference(json, *objects[i]);
      json.endObject();
    }
    json.endArray();
  }
  json.key("$defs").beginObject();
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const std::vector<OutputMember> members = membersOf(*objects[i]);
    writeObject(json, *objects[i], members);
    for (const OutputMember& member : members)
      if (member.object != nullptr && std::ranges::find(objects, member.object) == objects.end())
        objects.push_back(member.object);
  }
  json.endObject().endObject().finish();
}

} // namespace qx::cli
