// What a class offers to automation: its members with their arguments, for calls, the type library and the
// documents alike.
#pragma once

#include "automation/automation_object.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace qx::automation {

class ObjectContext;

enum class TypeKind : std::uint8_t {
  None,    ///< nothing is returned
  Boolean, ///< of an argument that is left out: False
  Int16,
  Int32,
  Double,
  Date,
  Text,
  Any,         ///< a value of any kind
  Object,      ///< of the class `of`; any class when that is empty
  Enumeration, ///< of the enumeration `of`, 32 bits
};

struct Type {
  TypeKind kind = TypeKind::None;
  std::string_view of = {};
};

struct ParameterDescription {
  std::string_view name;
  Type type = {};
  bool optional = false;    ///< left out, it is 0, False or empty
  bool byReference = false; ///< declared so; whether anything comes back is the member's affair
};

struct MemberDescription {
  std::string_view name;
  std::string_view help; ///< one English sentence; empty for the plain properties of a record
  DispatchId id = 0;
  bool isMethod = false;
  bool readable = false; ///< of a property
  bool writable = false; ///< of a property
  bool hidden = false;   ///< not for people: the walk through a collection
  Type type = {};        ///< of the property or result
  std::vector<ParameterDescription> parameters = {};
};

/// A call as the function behind a member sees it.
struct CallFrame {
  ObjectContext& context;
  const ObjectPointer& self;
  void* target;
  /// One per parameter, in order; Missing for one that was left out, a reference where the caller gave one.
  std::vector<Variant> arguments;
};

struct Member {
  MemberDescription description;
  std::function<Variant(CallFrame& frame)> read;                     ///< a method, or a property that is read
  std::function<void(CallFrame& frame, const Variant& value)> write; ///< null when it cannot be set
};

/// An event that a class raises, with an id of its own in the outgoing interface.
struct EventDescription {
  std::string_view name;
  std::string_view help;
  DispatchId id = 0;
  std::vector<ParameterDescription> parameters;
};

/// A public class. Tables live as long as the program and never change.
class ClassTable {
public:
  /// Ids that are not given are those behind the last one, from 1 on.
  ClassTable(std::string_view name, std::string_view help, std::vector<Member> members,
             std::vector<EventDescription> events = {});

  std::string_view name() const { return name_; }
  std::string_view help() const { return help_; }
  const std::vector<Member>& members() const { return members_; }
  const std::vector<EventDescription>& events() const { return events_; }
  /// Null for none.
  const Member* find(std::string_view member) const;
  const Member* find(DispatchId id) const;

private:
  std::string_view name_;
  std::string_view help_;
  std::vector<Member> members_;
  std::vector<EventDescription> events_;
  std::unordered_map<std::string, std::size_t> names_;
  std::unordered_map<DispatchId, std::size_t> ids_;
};

/// The index of a parameter; null for none.
std::optional<DispatchId> parameterIndex(const MemberDescription& member, std::string_view name);

/// An id that the table is to assign.
inline constexpr DispatchId nextId = -1;

/// The table of a class: specialised, as a static member `table()`, where the class is known.
template <class Target>
struct ClassOf;

} // namespace qx::automation
