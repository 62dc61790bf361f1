#include "com/failure.h"

#include "com/pointer.h"
#include "com/text.h"

#include <cstdio>
#include <string>

namespace qx::com {
namespace {

using automation::ErrorNumber;
using automation::Failure;

/// The code in which hosts find the number again.
HRESULT codeOf(ErrorNumber number) {
  return MAKE_HRESULT(SEVERITY_ERROR, FACILITY_CONTROL, static_cast<unsigned>(number));
}

/// A fault of the call itself has a code of the system's own.
HRESULT resultOf(ErrorNumber number) {
  switch (number) {
  case ErrorNumber::NoSuchMember:
    return DISP_E_MEMBERNOTFOUND;
  case ErrorNumber::NoSuchArgument:
    return DISP_E_UNKNOWNNAME;
  case ErrorNumber::ArgumentNotOptional:
    return DISP_E_PARAMNOTOPTIONAL;
  case ErrorNumber::ArgumentCount:
    return DISP_E_BADPARAMCOUNT;
  case ErrorNumber::OutOfMemory:
    return E_OUTOFMEMORY;
  default:
    return codeOf(number);
  }
}

void setErrorObject(const Failure& failure, std::string_view source) {
  Pointer<ICreateErrorInfo> making;
  if (FAILED(CreateErrorInfo(making.receive()))) return;
  making->SetGUID(IID_IDispatch);
  making->SetSource(Bstr(source).get());
  making->SetDescription(Bstr(failure.description).get());
  if (const auto made = query<IErrorInfo>(making.get(), IID_IErrorInfo)) SetErrorInfo(0, made.get());
}

} // namespace

HRESULT report(const std::exception_ptr& exception, std::string_view source, EXCEPINFO* details) noexcept {
  const Failure failure = automation::failureOf(exception);
  try {
    setErrorObject(failure, source);
    if (details == nullptr) return resultOf(failure.number);
    *details = {};
    details->bstrSource = Bstr(source).release();
    details->bstrDescription = Bstr(failure.description).release();
    // Where there is a description, scripts find the number itself.
    details->scode = codeOf(failure.number);
    return DISP_E_EXCEPTION;
  } catch (...) {
    return resultOf(failure.number);
  }
}

void require(HRESULT result, std::string_view what) {
  if (SUCCEEDED(result)) return;
  char code[16];
  std::snprintf(code, sizeof code, "0x%08lX", static_cast<unsigned long>(result));
  const auto number = HRESULT_FACILITY(result) == FACILITY_CONTROL
                          ? static_cast<ErrorNumber>(HRESULT_CODE(result))
                          : ErrorNumber::Failed;
  throw automation::AutomationError(number, std::string(what) + " (" + code + ")",
                                    static_cast<std::int32_t>(result));
}

} // namespace qx::com
