#include "automation_lists.h"

#include "automation/classes/class_tables.h"

#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace qx {
namespace {

using automation::ClassTable;
using automation::Member;
using automation::MemberDescription;
using automation::ParameterDescription;
using automation::Type;
using automation::TypeKind;

std::string kindName(const Type& type) {
  switch (type.kind) {
  case TypeKind::None:
    return "";
  case TypeKind::Boolean:
    return "truth value";
  case TypeKind::Int16:
    return "16-bit number";
  case TypeKind::Int32:
    return "32-bit number";
  case TypeKind::Double:
    return "number";
  case TypeKind::Date:
    return "date";
  case TypeKind::Text:
    return "text";
  case TypeKind::Any:
    return "any value";
  case TypeKind::Object:
    return type.of.empty() ? "object" : "`" + std::string(type.of) + "`";
  case TypeKind::Enumeration:
    return "`" + std::string(type.of) + "`";
  }
  return {};
}

std::string_view leftOut(const Type& type) {
  switch (type.kind) {
  case TypeKind::Boolean:
    return "False";
  case TypeKind::Text:
    return "\"\"";
  default:
    return "0";
  }
}

std::string arguments(const std::vector<ParameterDescription>& parameters) {
  std::string all;
  for (const ParameterDescription& each : parameters) {
    all += (all.empty() ? "`" : "; `") + std::string(each.name) + "` " + kindName(each.type);
    if (each.byReference) all += ", by reference";
    if (each.optional) all += ", optional (" + std::string(leftOut(each.type)) + ")";
  }
  return all;
}

/// Properties that need no sentence, those of one kind in a row.
void printPlainProperties(const ClassTable& table) {
  std::vector<std::pair<std::string, std::string>> rows;
  for (const Member& member : table.members()) {
    const MemberDescription& it = member.description;
    if (!it.help.empty()) continue;
    const std::string kind = kindName(it.type);
    auto row = rows.begin();
    while (row != rows.end() && row->first != kind) ++row;
    if (row == rows.end()) row = rows.insert(rows.end(), {kind, ""});
    row->second += (row->second.empty() ? "`" : ", `") + std::string(it.name) + "`";
  }
  if (rows.empty()) return;
  std::cout << "\n| value | properties, to read and to set |\n|---|---|\n";
  for (const auto& [kind, names] : rows) std::cout << "| " << kind << " | " << names << " |\n";
}

std::string_view manner(const MemberDescription& it) {
  if (it.isMethod) return "";
  if (!it.writable) return " (read)";
  return it.readable ? " (read, set)" : " (set)";
}

void printClass(const ClassTable& table) {
  std::cout << "### " << table.name() << "\n\n" << table.help() << '\n';
  bool begun = false;
  for (const Member& member : table.members()) {
    const MemberDescription& it = member.description;
    if (it.help.empty() || it.hidden) continue;
    if (!begun) std::cout << "\n| member | arguments | gives | |\n|---|---|---|---|\n";
    begun = true;
    std::cout << "| `" << it.name << '`' << manner(it) << " | " << arguments(it.parameters) << " | "
              << kindName(it.type) << " | " << it.help << " |\n";
  }
  printPlainProperties(table);
  if (!table.events().empty()) {
    std::cout << "\n| event | arguments | |\n|---|---|---|\n";
    for (const auto& event : table.events())
      std::cout << "| `" << event.name << "` | " << arguments(event.parameters) << " | " << event.help
                << " |\n";
  }
  std::cout << '\n';
}

void printEnumerations() {
  std::cout << "=== enumerations\n\n| enumeration | constants | |\n|---|---|---|\n";
  for (const automation::EnumerationTable& each : automation::publicEnumerations()) {
    std::cout << "| `" << each.name << "` | ";
    for (const auto& constant : each.constants)
      std::cout << (&constant == each.constants.data() ? "`" : ", `") << constant.name << "` "
                << constant.value;
    std::cout << " | " << each.help << " |\n";
  }
  std::cout << '\n';
}

/// As the tests run it.
void printScript() {
  std::cout << "=== script\n```vb\n" << std::ifstream(QXIMPORTJOB_SCRIPT).rdbuf() << "```\n";
}

} // namespace

void printAutomationLists() {
  std::cout << "=== automation classes\n\n";
  for (const ClassTable* const table : automation::publicClasses()) printClass(*table);
  printEnumerations();
  printScript();
}

} // namespace qx
