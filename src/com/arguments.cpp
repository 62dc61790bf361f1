#include "com/arguments.h"

#include "automation/automation_error.h"
#include "com/failure.h"
#include "com/text.h"

#include <cmath>
#include <string>
#include <utility>

namespace qx::com {
namespace {

using automation::AutomationError;
using automation::ErrorNumber;
using automation::Variant;
using automation::VariantKind;

[[noreturn]] void refuseKind() {
  throw AutomationError(ErrorNumber::TypeMismatch, "Werte dieser Art werden nicht angenommen.");
}

Variant objectIn(const std::shared_ptr<ObjectMap>& objects, IUnknown* object) {
  if (object == nullptr) return Variant::nothing();
  const auto dispatch = query<IDispatch>(object, IID_IDispatch);
  if (!dispatch) refuseKind();
  return objects->inward(dispatch.get());
}

/// 64 bits without a sign may not fit.
Variant wholeNumber(ULONGLONG number) {
  if (number <= static_cast<ULONGLONG>(INT64_MAX)) return static_cast<std::int64_t>(number);
  return static_cast<double>(number);
}

/// A decimal number of 96 bits, as the nearest double.
Variant decimalNumber(const VARIANT& value) {
  double number = 0;
  DECIMAL decimal = value.decVal;
  require(VarR8FromDec(&decimal, &number), "Die Dezimalzahl kann nicht gelesen werden.");
  return number;
}

/// The variant itself behind references of the host's own kinds.
const VARIANT* target(const VARIANT* value, OwnedVariant& copy) {
  while (value->vt == (VT_BYREF | VT_VARIANT)) value = value->pvarVal;
  if ((value->vt & VT_BYREF) == 0) return value;
  // The function only reads it.
  require(VariantCopyInd(copy.get(), const_cast<VARIANT*>(value)), "Das Argument kann nicht gelesen werden.");
  return copy.get();
}

/// Puts a value into a variable of a declared kind.
void assign(VARIANT& place, VARIANT& value) {
  const auto kind = static_cast<VARTYPE>(place.vt & ~VT_BYREF);
  // The variable's declared kind; the same rules as for an assignment in the host.
  if (value.vt != kind && !(kind == VT_UNKNOWN && value.vt == VT_DISPATCH))
    require(VariantChangeType(&value, &value, VARIANT_ALPHABOOL, kind),
            "Das Ergebnis passt nicht zur Art der Variablen.");
  switch (kind) {
  case VT_BSTR:
    SysFreeString(*place.pbstrVal);
    *place.pbstrVal = std::exchange(value.bstrVal, nullptr);
    return;
  case VT_DISPATCH:
  case VT_UNKNOWN:
    if (*place.ppunkVal != nullptr) (*place.ppunkVal)->Release();
    *place.ppunkVal = std::exchange(value.punkVal, nullptr);
    return;
  case VT_BOOL:
  case VT_I2:
  case VT_UI2:
    *place.piVal = value.iVal;
    return;
  case VT_I1:
  case VT_UI1:
    *place.pbVal = value.bVal;
    return;
  case VT_I4:
  case VT_UI4:
  case VT_INT:
  case VT_UINT:
  case VT_R4:
  case VT_ERROR:
    *place.plVal = value.lVal;
    return;
  case VT_I8:
  case VT_UI8:
  case VT_R8:
  case VT_DATE:
  case VT_CY:
    *place.pllVal = value.llVal;
    return;
  default:
    refuseKind();
  }
}

} // namespace

Variant inward(const std::shared_ptr<ObjectMap>& objects, const VARIANT& given) {
  OwnedVariant copy;
  const VARIANT& value = *target(&given, copy);
  switch (value.vt) {
  case VT_EMPTY:
    return {};
  case VT_NULL:
    return Variant::null();
  case VT_ERROR:
    if (value.scode == DISP_E_PARAMNOTFOUND) return Variant::missing();
    refuseKind();
  case VT_BOOL:
    return value.boolVal != VARIANT_FALSE;
  case VT_I1:
    return std::int16_t{value.cVal};
  case VT_UI1:
    return static_cast<std::int16_t>(value.bVal);
  case VT_I2:
    return std::int16_t{value.iVal};
  case VT_UI2:
    return static_cast<std::int32_t>(value.uiVal);
  case VT_I4:
  case VT_INT:
    return static_cast<std::int32_t>(value.lVal);
  case VT_UI4:
  case VT_UINT:
    return static_cast<std::int64_t>(value.ulVal);
  case VT_I8:
    return static_cast<std::int64_t>(value.llVal);
  case VT_UI8:
    return wholeNumber(value.ullVal);
  case VT_R4:
    return double{value.fltVal};
  case VT_R8:
    return value.dblVal;
  case VT_DECIMAL:
    return decimalNumber(value);
  case VT_CY:
    return Money::ofTenThousandths(value.cyVal.int64);
  case VT_DATE:
    return automation::momentOfSerial(value.date);
  case VT_BSTR:
    return Variant(textIn(value.bstrVal));
  case VT_DISPATCH:
    return objectIn(objects, value.pdispVal);
  case VT_UNKNOWN:
    return objectIn(objects, value.punkVal);
  default:
    refuseKind();
  }
}

void outward(ObjectMap& objects, const Variant& given, VARIANT& result) {
  const Variant& value = given.value();
  switch (value.kind()) {
  case VariantKind::Empty:
    break;
  case VariantKind::Null:
    result.vt = VT_NULL;
    break;
  case VariantKind::Missing:
    result.vt = VT_ERROR;
    result.scode = DISP_E_PARAMNOTFOUND;
    break;
  case VariantKind::Boolean:
    result.vt = VT_BOOL;
    result.boolVal = value.as<bool>() ? VARIANT_TRUE : VARIANT_FALSE;
    break;
  case VariantKind::Int16:
    result.vt = VT_I2;
    result.iVal = value.as<std::int16_t>();
    break;
  case VariantKind::Int32:
    result.vt = VT_I4;
    result.lVal = value.as<std::int32_t>();
    break;
  case VariantKind::Int64: // which script languages do not know
    result.vt = VT_R8;
    result.dblVal = static_cast<double>(value.as<std::int64_t>());
    break;
  case VariantKind::Double:
    result.vt = VT_R8;
    result.dblVal = value.as<double>();
    break;
  case VariantKind::Currency:
    result.vt = VT_CY;
    result.cyVal.int64 = value.as<Money>().tenThousandths();
    break;
  case VariantKind::Date:
    result.vt = VT_DATE;
    result.date = automation::serialOf(value.as<DateTime>());
    break;
  case VariantKind::Text:
    result.bstrVal = Bstr(value.as<std::string>()).release();
    result.vt = VT_BSTR;
    break;
  case VariantKind::Object:
    result.pdispVal = objects.outward(value.as<automation::ObjectPointer>()).release();
    result.vt = VT_DISPATCH;
    break;
  case VariantKind::Reference:
    break;
  }
}

IncomingArguments::IncomingArguments(std::shared_ptr<ObjectMap> objects, const DISPPARAMS& parameters)
    : objects_(std::move(objects)) {
  if (parameters.cNamedArgs > parameters.cArgs ||
      (parameters.cNamedArgs > 0 && parameters.rgdispidNamedArgs == nullptr))
    throw AutomationError(ErrorNumber::ArgumentCount, "Es sind mehr Namen als Argumente.");
  // They come from the last to the first, those with names before the others.
  for (UINT i = parameters.cArgs; i > parameters.cNamedArgs; --i)
    arguments_.positional.push_back(taken(parameters.rgvarg[i - 1]));
  for (UINT i = 0; i < parameters.cNamedArgs; ++i) {
    const DISPID name = parameters.rgdispidNamedArgs[i];
    if (name == DISPID_THIS) continue;
    if (name == DISPID_PROPERTYPUT)
      arguments_.positional.push_back(inward(objects_, parameters.rgvarg[i]));
    else
      arguments_.named.emplace_back(name, taken(parameters.rgvarg[i]));
  }
}

Variant IncomingArguments::taken(VARIANT& value) {
  VARIANT* place = &value;
  while (place->vt == (VT_BYREF | VT_VARIANT) && (place->pvarVal->vt & VT_BYREF) != 0) place = place->pvarVal;
  Variant now = inward(objects_, *place);
  if ((place->vt & VT_BYREF) == 0) return now;
  Variable& variable = variables_.emplace_back(Variable{place, now, now});
  // One that the host has left out is none, even by reference.
  return now.isMissing() ? now : Variant::reference(variable.now);
}

void IncomingArguments::giveBack() {
  for (Variable& variable : variables_) {
    if (variable.now == variable.before) continue;
    OwnedVariant value;
    outward(*objects_, variable.now, *value.get());
    if (variable.place->vt == (VT_BYREF | VT_VARIANT)) {
      VARIANT& whole = *variable.place->pvarVal;
      VariantClear(&whole);
      whole = *value.get();
      VariantInit(value.get());
    } else {
      assign(*variable.place, *value.get());
    }
  }
}

OutgoingArguments::OutgoingArguments(std::shared_ptr<ObjectMap> objects,
                                     const automation::Arguments& arguments, bool puts)
    : objects_(std::move(objects)) {
  const auto pass = [&](const Variant& value) {
    VARIANT& held = *held_.emplace_back().get();
    outward(*objects_, value, held);
    VARIANTARG passed = held;
    if (Variant* const variable = value.variable()) {
      passed.vt = VT_BYREF | VT_VARIANT;
      passed.pvarVal = &held;
      variables_.emplace_back(variable, &held);
    }
    passed_.push_back(passed);
  };
  for (const auto& [name, value] : arguments.named) {
    named_.push_back(name);
    pass(value);
  }
  if (puts) named_.push_back(DISPID_PROPERTYPUT);
  for (auto value = arguments.positional.rbegin(); value != arguments.positional.rend(); ++value)
    pass(*value);
  parameters_ = {passed_.data(), named_.data(), static_cast<UINT>(passed_.size()),
                 static_cast<UINT>(named_.size())};
}

void OutgoingArguments::giveBack() {
  for (const auto& [variable, held] : variables_) *variable = inward(objects_, *held);
}

} // namespace qx::com
