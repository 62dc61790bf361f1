// Calls as a script writes them, and objects that a script brings along.
#pragma once

#include "automation/automation_error.h"
#include "automation/automation_object.h"
#include "model/text.h"
#include "platform/value.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::automation {

/// A value as a literal of its kind: 'text', 1% (16 bits), 2& (32 bits), 3# (double), 4@ (currency),
/// #24.11.2026#, True, Null, Empty, Missing, Nothing, or the class of an object.
inline std::string shown(const Variant& value) {
  switch (value.kind()) {
  case VariantKind::Empty:
    return "Empty";
  case VariantKind::Null:
    return "Null";
  case VariantKind::Missing:
    return "Missing";
  case VariantKind::Boolean:
    return value.as<bool>() ? "True" : "False";
  case VariantKind::Int16:
    return std::to_string(value.as<std::int16_t>()) + "%";
  case VariantKind::Int32:
    return std::to_string(value.as<std::int32_t>()) + "&";
  case VariantKind::Int64:
    return std::to_string(value.as<std::int64_t>()) + "^";
  case VariantKind::Double:
    return plainNumber(value.as<double>()) + "#";
  case VariantKind::Currency:
    return value.as<Money>().toText() + "@";
  case VariantKind::Date:
    return "#" + timeStamp(value.as<DateTime>()) + "#";
  case VariantKind::Text:
    return "'" + value.as<std::string>() + "'";
  case VariantKind::Object:
    return value.as<ObjectPointer>() ? std::string(value.as<ObjectPointer>()->className()) : "Nothing";
  case VariantKind::Reference:
    return "ByRef " + shown(value.value());
  }
  return "?";
}

/// What a call gives, or "13: Kunde.Preistyp: ..." for an error.
template <class Call>
std::string outcome(Call&& made) {
  try {
    if constexpr (std::is_void_v<decltype(made())>) {
      made();
      return "Empty";
    } else {
      return shown(made());
    }
  } catch (...) {
    const Failure failure = failureOf(std::current_exception());
    return std::to_string(static_cast<int>(failure.number)) + ": " + failure.description;
  }
}

/// Only the number of the error, or what the call gives.
template <class Call>
std::string numberOf(Call&& made) {
  const std::string all = outcome(std::forward<Call>(made));
  return all.substr(0, all.find(": "));
}

/// An object whose members are functions of the test.
class ScriptObject final : public AutomationObject {
public:
  using Function = std::function<Variant(Access access, Arguments& arguments)>;

  explicit ScriptObject(std::string name) : name_(std::move(name)) {}

  static std::shared_ptr<ScriptObject> make(std::string name) {
    return std::make_shared<ScriptObject>(std::move(name));
  }
  /// Adds a member; that of the name "" is the default member.
  ScriptObject& with(std::string_view member, Function function) {
    names_.push_back(lowerCase(member));
    functions_.push_back(std::move(function));
    return *this;
  }
  /// A property that holds what it is given.
  ScriptObject& holding(std::string_view property, Variant value = {}) {
    values[std::string(property)] = std::move(value);
    return with(property,
                [this, key = std::string(property)](Access access, Arguments& arguments) -> Variant {
                  if (allows(access, Access::MethodOrGet)) return values[key];
                  log += key + "=" + shown(arguments.positional.front()) + " ";
                  values[key] = arguments.positional.front().value();
                  return {};
                });
  }

  std::string_view className() const override { return name_; }
  std::optional<DispatchId> memberId(std::string_view name) override {
    for (std::size_t i = 0; i < names_.size(); ++i)
      if (names_[i] == lowerCase(name)) return static_cast<DispatchId>(i + 1);
    return std::nullopt;
  }
  std::optional<DispatchId> parameterId(DispatchId /*member*/, std::string_view /*name*/) override {
    return std::nullopt;
  }
  Variant invoke(DispatchId member, Access access, Arguments& arguments) override {
    const auto id = member == defaultMember ? memberId("") : std::optional(member);
    if (!id) throw AutomationError(ErrorNumber::NoSuchMember, "kein Standardmitglied");
    return functions_.at(static_cast<std::size_t>(*id) - 1)(access, arguments);
  }

  std::map<std::string, Variant> values;
  std::string log; ///< the properties set, in order

private:
  std::string name_;
  std::vector<std::string> names_;
  std::vector<Function> functions_;
};

} // namespace qx::automation
