#include "described_outputs.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>
#include <rapidjson/schema.h>
#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>

namespace qx {
namespace {

bool holds(const std::vector<std::string>& arguments, std::string_view wanted) {
  return std::ranges::find(arguments, wanted) != arguments.end();
}

/// "settings-list" of the words `--db FILE settings list --json`.
std::string outputName(const std::vector<std::string>& arguments) {
  std::vector<std::string> words;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (argument == "--db" || argument == "--user" || argument == "--date" || argument == "--color")
      ++i;
    else if (!argument.starts_with('-'))
      words.push_back(argument);
  }
  if (words.empty()) return {};
  std::string name = words.front();
  const bool grouped = name == "settings" || name == "lock" || (name == "protocol" && holds(words, "purge"));
  if (grouped && words.size() > 1) name += "-" + words[1];
  if (holds(arguments, "--watch")) name += "-watch";
  return holds(arguments, "--json=lines") ? name + "-line" : name;
}

std::string printedSchema(const std::string& name) {
  const std::string command = "'" QXIMPORTJOB_PROGRAM "' schema --output '" + name + "' 2>&1";
  const std::unique_ptr<FILE, int (*)(FILE*)> program(popen(command.c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> part{};
  while (const std::size_t length = std::fread(part.data(), 1, part.size(), program.get()))
    text.append(part.data(), length);
  return text;
}

/// The schema with its definitions in their places, since the validator does not follow all references.
/// Columns that others may have added are not allowed.
nlohmann::ordered_json wholeSchema(nlohmann::ordered_json schema) {
  using Pointer = nlohmann::ordered_json::json_pointer;
  constexpr std::string_view reference = "/$ref";
  auto definitions = schema["$defs"];
  schema.erase("$defs");
  for (auto& definition : definitions) definition["additionalProperties"] = false;
  const auto replaceFirst = [&] {
    const auto flat = schema.flatten();
    for (const auto& [path, target] : flat.items())
      if (path.ends_with(reference)) {
        const auto name = Pointer(target.get<std::string>().substr(1)).back();
        schema[Pointer(path.substr(0, path.size() - reference.size()))] = definitions.at(name);
        return true;
      }
    return false;
  };
  while (replaceFirst()) {
  }
  return schema;
}

/// Null when there is none.
const rapidjson::SchemaDocument* schemaOf(const std::string& name) {
  static std::mutex mutex;
  static std::map<std::string, std::unique_ptr<rapidjson::SchemaDocument>> known;
  const std::scoped_lock lock(mutex);
  const auto [found, isNew] = known.try_emplace(name);
  if (!isNew) return found->second.get();
  const auto schema = nlohmann::ordered_json::parse(printedSchema(name), nullptr, false);
  if (schema.is_discarded()) return nullptr;
  rapidjson::Document document;
  document.Parse(wholeSchema(schema).dump().c_str());
  found->second = std::make_unique<rapidjson::SchemaDocument>(document);
  return found->second.get();
}

void expectDocument(const std::vector<std::string>& arguments, const std::string& text) {
  rapidjson::Document document;
  if (document.Parse(text.data(), text.size()).HasParseError()) return;
  const bool failed = document.IsObject() && document.MemberCount() > 0 &&
                      std::string_view(document.MemberBegin()->name.GetString()) == "error";
  const std::string name = failed ? "error" : outputName(arguments);
  const rapidjson::SchemaDocument* schema = schemaOf(name);
  if (schema == nullptr) {
    ADD_FAILURE() << "no schema of the output '" << name << "'";
    return;
  }
  rapidjson::SchemaValidator validator(*schema);
  if (document.Accept(validator)) return;
  rapidjson::StringBuffer place;
  validator.GetInvalidDocumentPointer().StringifyUriFragment(place);
  ADD_FAILURE() << "the schema of '" << name << "' has another " << place.GetString() << " ("
                << validator.GetInvalidSchemaKeyword() << "):\n"
                << text;
}

} // namespace

void expectDescribed(const std::vector<std::string>& arguments, std::string_view output) {
  if (holds(arguments, "--json=lines")) {
    std::istringstream lines{std::string(output)};
    for (std::string line; std::getline(lines, line);) expectDocument(arguments, line);
  } else if (holds(arguments, "--json")) {
    expectDocument(arguments, std::string(output));
  }
}

} // namespace qx
