// Objects of the public classes, and what those of one component share.
#pragma once

#include "automation/class_table.h"

#include <atomic>
#include <cstddef>
#include <map>
#include <memory>
#include <utility>

namespace qx::automation {

/// What the objects of one component share. It lives as long as one of them does.
///
/// An object of the component has one automation object at a time, so that a caller who gets it twice gets
/// the same one. Not thread-safe but for `liveObjects`.
class ObjectContext : public std::enable_shared_from_this<ObjectContext> {
public:
  ObjectContext() = default;
  ObjectContext(const ObjectContext&) = delete;
  ObjectContext& operator=(const ObjectContext&) = delete;
  virtual ~ObjectContext() = default;

  /// The automation object of a target; `Nothing` for null.
  template <class Target>
  ObjectPointer objectFor(const std::shared_ptr<Target>& target) {
    return find(ClassOf<Target>::table(), target);
  }
  /// How many automation objects of this component exist.
  std::size_t liveObjects() const { return live_; }

protected:
  /// The object of a class for a target that has none yet.
  virtual ObjectPointer make(const ClassTable& table, std::shared_ptr<void> target);

private:
  friend class ClassObject;
  ObjectPointer find(const ClassTable& table, const std::shared_ptr<void>& target);
  void forget(const ClassTable& table, const void* target);

  std::map<std::pair<const ClassTable*, const void*>, std::weak_ptr<AutomationObject>> objects_;
  std::atomic<std::size_t> live_ = 0;
};

/// An object of a public class. While one of its members runs it stays alive, whatever the caller releases.
class ClassObject : public AutomationObject {
public:
  ClassObject(std::shared_ptr<ObjectContext> context, const ClassTable& table, std::shared_ptr<void> target);
  ClassObject(const ClassObject&) = delete;
  ClassObject& operator=(const ClassObject&) = delete;
  ~ClassObject() override;

  const ClassTable& table() const { return table_; }
  /// Null when it is of another class.
  template <class Target>
  std::shared_ptr<Target> target() const {
    if (&ClassOf<Target>::table() != &table_) return nullptr;
    return std::static_pointer_cast<Target>(target_);
  }

  std::string_view className() const override { return table_.name(); }
  std::optional<DispatchId> memberId(std::string_view name) override;
  std::optional<DispatchId> parameterId(DispatchId member, std::string_view name) override;
  Variant invoke(DispatchId member, Access access, Arguments& arguments) override;

protected:
  ObjectContext& context() { return *context_; }

private:
  Variant perform(const Member& member, Access access, Arguments& arguments);

  std::shared_ptr<ObjectContext> context_; ///< outlives the target
  const ClassTable& table_;
  std::shared_ptr<void> target_;
};

/// The target of an automation object; null when it is of another class or not of this component.
template <class Target>
std::shared_ptr<Target> targetOf(const ObjectPointer& object) {
  const auto* const own = dynamic_cast<const ClassObject*>(object.get());
  return own == nullptr ? nullptr : own->target<Target>();
}

} // namespace qx::automation
