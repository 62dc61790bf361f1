// Values on their way between a host and our members.
#pragma once

#include "automation/automation_object.h"
#include "com/objects.h"
#include "com/windows_headers.h"

#include <deque>
#include <memory>

namespace qx::com {

/// An owned value of the host's kind.
class OwnedVariant {
public:
  OwnedVariant() { VariantInit(&value_); }
  OwnedVariant(const OwnedVariant&) = delete;
  OwnedVariant& operator=(const OwnedVariant&) = delete;
  ~OwnedVariant() { VariantClear(&value_); }
  VARIANT* get() { return &value_; }

private:
  VARIANT value_{};
};

/// A value of the host, without references. Raises `AutomationError` 13 for a kind that no member takes.
automation::Variant inward(const std::shared_ptr<ObjectMap>& objects, const VARIANT& value);
/// A value for the host in an empty `result`, which then owns it.
void outward(ObjectMap& objects, const automation::Variant& value, VARIANT& result);

/// The arguments of a host's call. Its variables are read at the beginning and, where a member has assigned
/// to them, written by `giveBack`.
class IncomingArguments {
public:
  IncomingArguments(std::shared_ptr<ObjectMap> objects, const DISPPARAMS& parameters);

  automation::Arguments& arguments() { return arguments_; }
  void giveBack();

private:
  struct Variable {
    VARIANT* place;
    automation::Variant before;
    automation::Variant now;
  };
  automation::Variant taken(VARIANT& value);

  std::shared_ptr<ObjectMap> objects_;
  automation::Arguments arguments_;
  std::deque<Variable> variables_; ///< references into it stay valid
};

/// The arguments of a call of ours. Variables of the call are passed by reference and written by `giveBack`.
class OutgoingArguments {
public:
  OutgoingArguments(std::shared_ptr<ObjectMap> objects, const automation::Arguments& arguments, bool puts);

  DISPPARAMS* parameters() { return &parameters_; }
  void giveBack();

private:
  std::shared_ptr<ObjectMap> objects_;
  std::deque<OwnedVariant> held_;
  std::vector<VARIANTARG> passed_; ///< from the last to the first
  std::vector<DISPID> named_;
  std::vector<std::pair<automation::Variant*, VARIANT*>> variables_;
  DISPPARAMS parameters_{};
};

} // namespace qx::com
