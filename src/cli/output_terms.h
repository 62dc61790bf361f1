// What the JSON documents of the commands hold, for people and programs that read them.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace qx::cli {

enum class MemberKind : std::uint8_t { Text, Whole, Number, Truth, Object };

/// The table whose columns are members of an object, before its own.
enum class RowKind : std::uint8_t { None, Job, Position };

struct OutputObject;

/// One member of an object. What is neither `nullable` nor `optional` is always there.
struct OutputMember {
  std::string_view name;
  std::string_view meaning; ///< one sentence
  MemberKind kind = MemberKind::Text;
  const OutputObject* object = nullptr; ///< of a member that is one
  bool listed = false;                  ///< an array of such values
  bool nullable = false;
  bool optional = false;
  std::string_view unit{};  ///< of a number; empty for none
  std::string_view codes{}; ///< the table of the ERP that has the codes; empty for no code
  /// The only values; those of a number are its digits. Null for any.
  std::vector<std::string_view> (*words)() = nullptr;

private:
  template <class Part>
  constexpr OutputMember with(Part OutputMember::*part, Part content) const {
    OutputMember member = *this;
    member.*part = content;
    return member;
  }

public:
  constexpr OutputMember list() const { return with(&OutputMember::listed, true); }
  constexpr OutputMember orNull() const { return with(&OutputMember::nullable, true); }
  constexpr OutputMember sometimes() const { return with(&OutputMember::optional, true); }
  constexpr OutputMember in(std::string_view its) const { return with(&OutputMember::unit, its); }
  constexpr OutputMember from(std::string_view table) const { return with(&OutputMember::codes, table); }
  constexpr OutputMember of(std::vector<std::string_view> (*values)()) const {
    return with(&OutputMember::words, values);
  }
};

struct OutputObject {
  std::string_view name; ///< unique in an output
  std::string_view meaning;
  std::span<const OutputMember> members;
  RowKind row = RowKind::None;
};

/// A document, or a line of one that has a document a line.
struct OutputTerm {
  std::string_view name;    ///< "list", "list-line", "settings-list"
  std::string_view command; ///< what prints it: "list --json", "settings list --json"
  /// One of these.
  std::array<const OutputObject*, 2> forms{};
};

/// Every output, in the order of the commands in the help.
std::span<const OutputTerm> outputTerms();

/// The members of a row, under the names that staged objects have, and in their order. Columns that others
/// have added to the table are not among them.
std::vector<OutputMember> rowMembers(RowKind row);

} // namespace qx::cli
