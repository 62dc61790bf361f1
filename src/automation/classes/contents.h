// How the types of this component travel through automation.
#pragma once

#include "automation/classes/class_tables.h"
#include "automation/classes/component.h"
#include "automation/member.h"
#include "rules/combo_lists.h"

#include <memory>
#include <string_view>

namespace qx::automation {

template <>
struct EnumerationOf<JobTypeConstants> {
  static constexpr std::string_view name = "JobTypeConstants";
};
template <>
struct EnumerationOf<qxProcessState> {
  static constexpr std::string_view name = "qxProcessState";
};
template <>
struct EnumerationOf<JobViewFormState> {
  static constexpr std::string_view name = "JobViewFormState";
};

/// A contract entry object, of which the member needs the properties only.
template <>
struct Passed<const VertragFields&> : Passed<const Vertrag&> {};

/// A drop-down list of the host.
template <>
struct Passed<ComboTarget&> {
  static constexpr Type type{TypeKind::Object, {}};
  static constexpr bool comesBack = false;

  std::unique_ptr<ComboTarget> held;

  void read(ObjectContext& context, const Variant& given) {
    held = componentOf(context).comboOf(objectOf(given));
  }
  ComboTarget& pass() const { return *held; }
};

/// The component's own or one that stands on an object of the host.
template <>
struct Content<std::shared_ptr<Connection>> {
  static constexpr Type type{TypeKind::Object, {}};
  static std::shared_ptr<Connection> read(ObjectContext& context, const Variant& value) {
    return componentOf(context).connectionOf(objectOf(value));
  }
  static Variant write(ObjectContext& context, const std::shared_ptr<Connection>& connection) {
    return componentOf(context).objectOfPort(connection);
  }
};
template <>
struct Content<std::shared_ptr<Session>> {
  static constexpr Type type{TypeKind::Object, {}};
  static std::shared_ptr<Session> read(ObjectContext& context, const Variant& value) {
    return componentOf(context).sessionOf(objectOf(value));
  }
  static Variant write(ObjectContext& context, const std::shared_ptr<Session>& session) {
    return componentOf(context).objectOfPort(session);
  }
};

} // namespace qx::automation
