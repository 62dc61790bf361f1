#include "automation/class_object.h"

#include "automation/automation_error.h"

#include <string>
#include <utility>

namespace qx::automation {
namespace {

[[noreturn]] void refuse(ErrorNumber number, const char* text) { throw AutomationError(number, text); }

[[noreturn]] void refuseCount() {
  refuse(ErrorNumber::ArgumentCount, "Die Anzahl der Argumente stimmt nicht.");
}

/// One value per parameter, in their order.
std::vector<Variant> bound(const MemberDescription& member, Arguments& given) {
  const std::size_t count = member.parameters.size();
  if (given.positional.size() > count) refuseCount();
  std::vector<Variant> values = std::move(given.positional);
  values.resize(count, Variant::missing());
  for (auto& [parameter, value] : given.named) {
    if (parameter < 0 || static_cast<std::size_t>(parameter) >= count)
      refuse(ErrorNumber::NoSuchArgument, "Es gibt kein Argument dieses Namens.");
    Variant& place = values[static_cast<std::size_t>(parameter)];
    if (!place.isMissing()) refuseCount();
    place = std::move(value);
  }
  for (std::size_t i = 0; i < count; ++i)
    if (values[i].value().isMissing() && !member.parameters[i].optional)
      throw AutomationError(ErrorNumber::ArgumentNotOptional, "Das Argument '" +
                                                                  std::string(member.parameters[i].name) +
                                                                  "' ist nicht optional.");
  return values;
}

} // namespace

ObjectPointer ObjectContext::make(const ClassTable& table, std::shared_ptr<void> target) {
  return std::make_shared<ClassObject>(shared_from_this(), table, std::move(target));
}

ObjectPointer ObjectContext::find(const ClassTable& table, const std::shared_ptr<void>& target) {
  if (!target) return nullptr;
  std::weak_ptr<AutomationObject>& known = objects_[{&table, target.get()}];
  if (auto object = known.lock()) return object;
  auto object = make(table, target);
  known = object;
  return object;
}

void ObjectContext::forget(const ClassTable& table, const void* target) {
  // Another object may have taken the place while this one was destroyed.
  const auto found = objects_.find({&table, target});
  if (found != objects_.end() && found->second.expired()) objects_.erase(found);
}

ClassObject::ClassObject(std::shared_ptr<ObjectContext> context, const ClassTable& table,
                         std::shared_ptr<void> target)
    : context_(std::move(context)), table_(table), target_(std::move(target)) {
  ++context_->live_;
}

ClassObject::~ClassObject() {
  context_->forget(table_, target_.get());
  --context_->live_;
}

std::optional<DispatchId> ClassObject::memberId(std::string_view name) {
  const Member* const member = table_.find(name);
  if (member == nullptr) return std::nullopt;
  return member->description.id;
}

std::optional<DispatchId> ClassObject::parameterId(DispatchId member, std::string_view name) {
  const Member* const found = table_.find(member);
  return found == nullptr ? std::nullopt : parameterIndex(found->description, name);
}

Variant ClassObject::invoke(DispatchId member, Access access, Arguments& arguments) {
  const ObjectPointer self = shared_from_this();
  const Member* const found = table_.find(member);
  if (found == nullptr)
    throw AutomationError(ErrorNumber::NoSuchMember,
                          std::string(table_.name()) + " hat kein solches Mitglied.");
  try {
    return perform(*found, access, arguments);
  } catch (const AutomationError& error) {
    throw AutomationError(error.number(), std::string(table_.name()) + "." +
                                              std::string(found->description.name) + ": " + error.what());
  }
}

Variant ClassObject::perform(const Member& member, Access access, Arguments& arguments) {
  const ObjectPointer self = shared_from_this();
  const MemberDescription& description = member.description;
  const bool puts = allows(access, Access::Put) || allows(access, Access::PutReference);
  if (description.isMethod ? !allows(access, Access::Method) : !puts && !allows(access, Access::Get))
    refuse(ErrorNumber::NoSuchMember, description.isMethod
                                          ? "Eine Methode kann nicht gesetzt oder gelesen werden."
                                          : "Eine Eigenschaft kann nicht aufgerufen werden.");
  CallFrame frame{*context_, self, target_.get(), {}};
  if (!puts) {
    if (!description.isMethod && !description.readable)
      refuse(ErrorNumber::WriteOnly, "Die Eigenschaft kann nicht gelesen werden.");
    frame.arguments = bound(description, arguments);
    return member.read(frame);
  }
  if (!description.writable) refuse(ErrorNumber::ReadOnly, "Die Eigenschaft kann nicht gesetzt werden.");
  if (arguments.positional.size() != 1 || !arguments.named.empty()) refuseCount();
  member.write(frame, arguments.positional.front());
  return {};
}

} // namespace qx::automation
