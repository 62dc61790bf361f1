// The tables of the public classes: what a compiled client has built in must not change.
#include "automation/classes/class_tables.h"
#include "automation/classes/component.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace qx::automation {
namespace {

std::string_view typeName(const Type& type) {
  switch (type.kind) {
  case TypeKind::None:
    return "none";
  case TypeKind::Boolean:
    return "boolean";
  case TypeKind::Int16:
    return "int16";
  case TypeKind::Int32:
    return "int32";
  case TypeKind::Double:
    return "double";
  case TypeKind::Date:
    return "date";
  case TypeKind::Text:
    return "text";
  case TypeKind::Any:
    return "any";
  case TypeKind::Object:
    return type.of.empty() ? "object" : type.of;
  case TypeKind::Enumeration:
    return type.of;
  }
  return {};
}

void print(std::ostream& out, const std::vector<ParameterDescription>& parameters) {
  out << '(';
  for (const ParameterDescription& each : parameters)
    out << (&each == parameters.data() ? "" : ", ") << (each.optional ? "optional " : "")
        << (each.byReference ? "byref " : "") << each.name << " as " << typeName(each.type);
  out << ')';
}

/// A line per member: its id, how it is reached and what it takes and gives.
std::string listing() {
  std::ostringstream out;
  for (const ClassTable* const table : publicClasses()) {
    out << table->name() << '\n';
    for (const Member& member : table->members()) {
      const MemberDescription& it = member.description;
      out << "  " << it.id << ' '
          << (it.isMethod   ? "call"
              : it.readable ? it.writable ? "get put" : "get"
                            : "put")
          << ' ' << it.name;
      if (it.isMethod) print(out, it.parameters);
      if (it.type.kind != TypeKind::None) out << " as " << typeName(it.type);
      out << '\n';
    }
    for (const EventDescription& event : table->events()) {
      out << "  event " << event.id << ' ' << event.name;
      print(out, event.parameters);
      out << '\n';
    }
  }
  for (const EnumerationTable& each : publicEnumerations()) {
    out << each.name << '\n';
    for (const auto& constant : each.constants)
      out << "  " << constant.name << " = " << constant.value << '\n';
  }
  return out.str();
}

} // namespace

TEST(ClassTables, KeepTheIdsAndKindsThatClientsHaveBuiltIn) {
  std::ifstream kept(QXIMPORTJOB_DISPATCH_IDS);
  std::istringstream present(listing());
  std::string expected;
  for (std::string line; std::getline(present, line);) {
    std::getline(kept, expected);
    ASSERT_EQ(line, expected) << "tests/automation/dispatch_ids.txt holds what clients rely on";
  }
  EXPECT_FALSE(std::getline(kept, expected)) << expected << " is gone";
}

TEST(ClassTables, DescribeEveryOperation) {
  for (const ClassTable* const table : publicClasses()) {
    EXPECT_TRUE(table->help().ends_with('.')) << table->name();
    for (const Member& member : table->members()) {
      const MemberDescription& it = member.description;
      EXPECT_TRUE(!it.isMethod || it.help.ends_with('.')) << it.name;
    }
  }
}

} // namespace qx::automation
