// An object whose members are found by name and called with values of any kind.
#pragma once

#include "automation/variant.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::automation {

/// Identifies a member of an object.
using DispatchId = std::int32_t;
inline constexpr DispatchId defaultMember = 0;
/// Gives an `Enumeration` of the object's items.
inline constexpr DispatchId enumerationMember = -4;

/// What a caller wants of a member. A caller that does not know whether it is a method or a property asks for
/// both.
enum class Access : std::uint8_t { Method = 1, Get = 2, MethodOrGet = 3, Put = 4, PutReference = 8 };

constexpr bool allows(Access wanted, Access what) {
  return (static_cast<unsigned>(wanted) & static_cast<unsigned>(what)) != 0;
}

/// The arguments of a call. That of a property that is set is the last positional one.
struct Arguments {
  std::vector<Variant> positional;
  std::vector<std::pair<DispatchId, Variant>> named; ///< by the id of the parameter
};

/// Lives as long as a caller or a running call holds it. Members raise `AutomationError`, and nothing else
/// that a caller could meet but what `failureOf` converts.
class AutomationObject : public std::enable_shared_from_this<AutomationObject> {
public:
  AutomationObject() = default;
  AutomationObject(const AutomationObject&) = delete;
  AutomationObject& operator=(const AutomationObject&) = delete;
  virtual ~AutomationObject() = default;

  virtual std::string_view className() const = 0;
  /// Names compare without regard to case, umlauts included. Null for none.
  virtual std::optional<DispatchId> memberId(std::string_view name) = 0;
  /// The id of a parameter of a member. Null for none.
  virtual std::optional<DispatchId> parameterId(DispatchId member, std::string_view name) = 0;
  /// Calls the member; `result` of a method without one is Empty.
  virtual Variant invoke(DispatchId member, Access access, Arguments& arguments) = 0;
};

/// A port that stands on an object of the host.
class OfHost {
public:
  OfHost() = default;
  OfHost(const OfHost&) = delete;
  OfHost& operator=(const OfHost&) = delete;
  virtual ~OfHost() = default;
  virtual const ObjectPointer& hostObject() const = 0;
};

/// Walks through the items that a collection had when the walk began.
class Enumeration final : public AutomationObject {
public:
  explicit Enumeration(std::vector<Variant> items)
      : items_(std::make_shared<const std::vector<Variant>>(std::move(items))) {}

  std::string_view className() const override { return "Enumeration"; }
  std::optional<DispatchId> memberId(std::string_view /*name*/) override { return std::nullopt; }
  std::optional<DispatchId> parameterId(DispatchId /*member*/, std::string_view /*name*/) override {
    return std::nullopt;
  }
  Variant invoke(DispatchId member, Access access, Arguments& arguments) override;

  /// Null behind the last item.
  std::optional<Variant> next();
  /// False, at the end, when there were fewer.
  bool skip(std::size_t count);
  void reset() { at_ = 0; }
  /// Another walk through the same items, at the same place.
  std::shared_ptr<Enumeration> clone() const;

private:
  std::shared_ptr<const std::vector<Variant>> items_;
  std::size_t at_ = 0;
};

// Calls by name, as a script makes them. A member that the object lacks raises 438.

/// Calls a method, or reads a property with arguments.
Variant call(AutomationObject& object, std::string_view member, std::vector<Variant> arguments = {});
Variant get(AutomationObject& object, std::string_view property);
void put(AutomationObject& object, std::string_view property, Variant value);

} // namespace qx::automation
