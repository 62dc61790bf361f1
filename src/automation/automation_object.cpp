#include "automation/automation_object.h"

#include "automation/automation_error.h"

#include <algorithm>
#include <string>

namespace qx::automation {
namespace {

DispatchId idOf(AutomationObject& object, std::string_view member) {
  if (const auto id = object.memberId(member)) return *id;
  throw AutomationError(ErrorNumber::NoSuchMember,
                        std::string(object.className()) + " kennt '" + std::string(member) + "' nicht.");
}

} // namespace

Variant Enumeration::invoke(DispatchId /*member*/, Access /*access*/, Arguments& /*arguments*/) {
  throw AutomationError(ErrorNumber::NoSuchMember, "Eine Aufzählung hat keine Mitglieder.");
}

std::optional<Variant> Enumeration::next() {
  if (at_ == items_->size()) return std::nullopt;
  return (*items_)[at_++];
}

bool Enumeration::skip(std::size_t count) {
  const std::size_t left = items_->size() - at_;
  at_ += std::min(count, left);
  return count <= left;
}

std::shared_ptr<Enumeration> Enumeration::clone() const {
  auto copy = std::make_shared<Enumeration>(std::vector<Variant>());
  copy->items_ = items_;
  copy->at_ = at_;
  return copy;
}

Variant call(AutomationObject& object, std::string_view member, std::vector<Variant> arguments) {
  Arguments given{std::move(arguments), {}};
  return object.invoke(idOf(object, member), Access::MethodOrGet, given);
}

Variant get(AutomationObject& object, std::string_view property) {
  Arguments none;
  return object.invoke(idOf(object, property), Access::Get, none);
}

void put(AutomationObject& object, std::string_view property, Variant value) {
  const bool isObject = value.kind() == VariantKind::Object;
  Arguments given{{std::move(value)}, {}};
  object.invoke(idOf(object, property), isObject ? Access::PutReference : Access::Put, given);
}

} // namespace qx::automation
