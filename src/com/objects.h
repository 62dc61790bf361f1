// The objects of both sides: ours as the host sees them, the host's as we see them.
#pragma once

#include "automation/automation_object.h"
#include "com/pointer.h"
#include "com/windows_headers.h"

#include <map>
#include <memory>

namespace qx::com {

/// Knows the object of the other side for each object that is alive, so that both sides can compare them.
/// Belongs to one apartment and is used on its thread alone.
class ObjectMap : public std::enable_shared_from_this<ObjectMap> {
public:
  ObjectMap() = default;
  ObjectMap(const ObjectMap&) = delete;
  ObjectMap& operator=(const ObjectMap&) = delete;
  virtual ~ObjectMap() = default;

  /// Our object as the host sees it, with a reference for the caller; null for null. An object of the host
  /// comes back as itself.
  Pointer<IDispatch> outward(const automation::ObjectPointer& object);
  /// An object as we see it; null for null.
  automation::ObjectPointer inward(IDispatch* object);

  void forgetOutward(const automation::AutomationObject* object) { ours_.erase(object); }
  void forgetInward(IUnknown* identity);

protected:
  /// A new object for the host, with one reference.
  virtual IDispatch* make(const automation::ObjectPointer& object) = 0;

private:
  std::map<const automation::AutomationObject*, IDispatch*>
      ours_; ///< no references: they leave by themselves
  std::map<IUnknown*, std::weak_ptr<automation::AutomationObject>> theirs_;
};

/// By this interface we recognise our own objects.
extern const IID ownObjectId;

struct OwnObject : IUnknown {
  virtual const automation::ObjectPointer& content() const = 0;
  virtual const ObjectMap& map() const = 0;

protected:
  ~OwnObject() = default;
};

/// An object of the host. Its members are found anew at each call.
class HostObject final : public automation::AutomationObject {
public:
  HostObject(std::weak_ptr<ObjectMap> map, IDispatch* object, IUnknown* identity);
  HostObject(const HostObject&) = delete;
  HostObject& operator=(const HostObject&) = delete;
  ~HostObject() override;

  IDispatch* dispatch() const { return object_.get(); }

  std::string_view className() const override { return name_; }
  std::optional<automation::DispatchId> memberId(std::string_view name) override;
  std::optional<automation::DispatchId> parameterId(automation::DispatchId member,
                                                    std::string_view name) override;
  automation::Variant invoke(automation::DispatchId member, automation::Access access,
                             automation::Arguments& arguments) override;

private:
  /// The map of the apartment, without which nothing is called; the apartment may own this object.
  std::shared_ptr<ObjectMap> map() const;

  std::weak_ptr<ObjectMap> map_;
  Pointer<IDispatch> object_;
  Pointer<IDispatchEx> expando_; ///< of script objects, which know more through it; else null
  Pointer<IUnknown> identity_;
  std::string name_;
  std::map<automation::DispatchId, std::string> members_; ///< that were asked for, by their names
};

} // namespace qx::com
