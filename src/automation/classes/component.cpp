#include "automation/classes/component.h"

#include "automation/automation_error.h"
#include "automation/classes/engine_object.h"
#include "automation/classes/host_combo.h"
#include "model/text.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace qx::automation {
namespace {

const std::array<const ClassTable*, 10>& classes() {
  static const std::array<const ClassTable*, 10> all{
      &ClassOf<Kunde>::table(),           &ClassOf<Vertrag>::table(),
      &ClassOf<Auftrag>::table(),         &ClassOf<AuftragsPos>::table(),
      &ClassOf<ImportJob>::table(),       &ClassOf<ImportJobSubItem>::table(),
      &ClassOf<ImportJobs>::table(),      &ClassOf<ImportJobSubItems>::table(),
      &ClassOf<ImportJobObject>::table(), &ClassOf<ImportJobObject2>::table()};
  return all;
}

[[noreturn]] void refuseNothing() {
  throw AutomationError(ErrorNumber::ObjectNotSet, "Die Objektvariable ist nicht festgelegt.");
}

} // namespace

std::span<const ClassTable* const> publicClasses() { return classes(); }

std::shared_ptr<Component> Component::create(Environment& environment, Database& database,
                                             HostObjects& host) {
  return std::shared_ptr<Component>(new Component(environment, database, host));
}

ObjectPointer Component::createObject(std::string_view className) {
  const auto is = [folded = lowerCase(className)](std::string_view name) {
    return lowerCase(name) == folded;
  };
  if (is("Kunde")) return objectFor(std::make_shared<Kunde>(environment_));
  if (is("Vertrag")) return objectFor(std::make_shared<Vertrag>(environment_));
  if (is("Auftrag")) return objectFor(std::make_shared<Auftrag>(environment_));
  if (is("AuftragsPos")) return objectFor(std::make_shared<AuftragsPos>(environment_));
  if (is("ImportJob")) return objectFor(std::make_shared<ImportJob>());
  if (is("ImportJobSubItem")) return objectFor(std::make_shared<ImportJobSubItem>());
  if (is("ImportJobs")) return objectFor(std::make_shared<ImportJobs>());
  if (is("ImportJobSubItems")) return objectFor(std::make_shared<ImportJobSubItems>());
  if (is("ImportJobObject")) return objectFor(std::make_shared<ImportJobObject>(environment_, database_));
  if (is("ImportJobObject2")) return objectFor(newEngine());
  throw AutomationError(ErrorNumber::CannotCreate,
                        "Die Klasse '" + std::string(className) + "' gibt es nicht.");
}

/// An engine that ends disconnects the session. That of the component itself ends with the component, and one
/// of the host with the last engine, for others may be working with it.
std::shared_ptr<ImportJobObject2> Component::newEngine() {
  auto made = std::make_unique<ImportJobObject2>(environment_);
  ++engines_;
  return {made.release(), [this](ImportJobObject2* engine) {
            const bool ofHost = dynamic_cast<const OfHost*>(environment_.session.get()) != nullptr;
            auto kept = --engines_ > 0 || !ofHost ? std::exchange(environment_.session, nullptr) : nullptr;
            std::unique_ptr<ImportJobObject2>(engine).reset();
            environment_.session = std::move(kept);
          }};
}

ObjectPointer Component::make(const ClassTable& table, std::shared_ptr<void> target) {
  if (&table == &ClassOf<ImportJobObject2>::table())
    return EngineObject::create(shared_from_this(), std::static_pointer_cast<ImportJobObject2>(target),
                                environment_.diagnostics);
  return ObjectContext::make(table, std::move(target));
}

std::shared_ptr<Connection> Component::connectionOf(const ObjectPointer& object) {
  if (!object) return nullptr;
  if (auto own = targetOf<Connection>(object)) return own;
  // Setting what is set already must not look like another connection.
  const auto* const current = dynamic_cast<const OfHost*>(environment_.connection.get());
  if (current != nullptr && current->hostObject() == object) return environment_.connection;
  return host_.connectionOf(object);
}

std::shared_ptr<Session> Component::sessionOf(const ObjectPointer& object) {
  if (!object) return nullptr;
  if (auto own = targetOf<Session>(object)) return own;
  const auto* const current = dynamic_cast<const OfHost*>(environment_.session.get());
  if (current != nullptr && current->hostObject() == object) return environment_.session;
  return host_.sessionOf(object);
}

std::unique_ptr<ComboTarget> Component::comboOf(const ObjectPointer& object) {
  if (!object) refuseNothing();
  return std::make_unique<HostCombo>(object, host_);
}

} // namespace qx::automation
