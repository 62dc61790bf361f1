// Runs a script of one of the system's script languages: script_host FILE.vbs [ARGUMENT...]
// Beside the language's own CreateObject a script has "Host":
//   Host.Echo text                 a line of standard output
//   Host.Argument(n)               the n-th argument, from 0
//   Host.Connect object, prefix    the object's events call the script's procedures of that prefix
//   Host.Disconnect object
//   Host.Raise number              an error, as an object of the script may raise it
//   Host.Create(progId)            an object, as CreateObject makes it
//   Host.TypeName(object)          the class, as its type description names it
// "WScript" is the same object, so that a script for the system's own host runs here too (Echo,
// ConnectObject, Arguments). A script error is told with its line, exit status 1. At the end the number of
// objects that a library under test keeps alive is checked through DllCanUnloadNow: exit status 3 when it is
// not 0.
#include <activscp.h>
#include <ocidl.h>
#include <olectl.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

std::wstring wide(const std::string& text) {
  std::wstring result(static_cast<std::size_t>(MultiByteToWideChar(
                          CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0)),
                      L'\0');
  MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(),
                      static_cast<int>(result.size()));
  return result;
}

std::string narrow(const wchar_t* text, std::size_t length) {
  std::string result(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length),
                                                                  nullptr, 0, nullptr, nullptr)),
                     '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(length), result.data(),
                      static_cast<int>(result.size()), nullptr, nullptr);
  return result;
}

void echo(const std::string& line) {
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputs("\n", stdout);
  std::fflush(stdout);
}

/// An object with one reference too many for its owner to go: all of them live as long as the program.
class Immortal : public IDispatch {
public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch) && !IsEqualIID(id, also_))
      return E_NOINTERFACE;
    *object = static_cast<IDispatch*>(this);
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return DISP_E_UNKNOWNNAME;
  }

protected:
  IID also_ = IID_IUnknown;
};

constexpr const wchar_t* raisedText = L"raised by the script";

IDispatch* scriptDispatch = nullptr;

/// Calls the script's procedures of a prefix.
class Sink final : public Immortal {
public:
  Sink(std::wstring prefix, ITypeInfo* events, REFIID id) : prefix_(std::move(prefix)), events_(events) {
    also_ = id;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID locale, WORD, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* details, UINT* wrong) override {
    BSTR name = nullptr;
    UINT count = 0;
    if (FAILED(events_->GetNames(member, &name, 1, &count)) || count == 0) return DISP_E_MEMBERNOTFOUND;
    const std::wstring procedure = prefix_ + name;
    SysFreeString(name);
    DISPID id = 0;
    auto* text = const_cast<wchar_t*>(procedure.c_str());
    if (FAILED(scriptDispatch->GetIDsOfNames(IID_NULL, &text, 1, locale, &id))) return DISP_E_MEMBERNOTFOUND;
    return scriptDispatch->Invoke(id, IID_NULL, locale, DISPATCH_METHOD, parameters, result, details, wrong);
  }

private:
  std::wstring prefix_;
  ITypeInfo* events_;
};

class Host final : public Immortal {
public:
  std::vector<std::wstring> arguments;

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    struct Known {
      const wchar_t* name;
      DISPID id;
    };
    static const Known known[] = {{L"Echo", 1},       {L"Argument", 2},      {L"Connect", 3},
                                  {L"Disconnect", 4}, {L"Raise", 5},         {L"TypeName", 6},
                                  {L"Create", 7},     {L"ConnectObject", 3}, {L"Arguments", 2}};
    for (const Known& it : known)
      if (_wcsicmp(names[0], it.name) == 0) {
        ids[0] = it.id;
        return S_OK;
      }
    return DISP_E_UNKNOWNNAME;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                                   EXCEPINFO* details, UINT*) override {
    std::vector<VARIANT> values(parameters->cArgs);
    for (UINT i = 0; i < parameters->cArgs; ++i) {
      VariantInit(&values[i]);
      VariantCopyInd(&values[i], &parameters->rgvarg[parameters->cArgs - 1 - i]);
    }
    const HRESULT done = perform(member, values, result, details);
    for (VARIANT& value : values) VariantClear(&value);
    return done;
  }

private:
  HRESULT perform(DISPID member, std::vector<VARIANT>& values, VARIANT* result, EXCEPINFO* details) {
    if (values.empty()) return DISP_E_BADPARAMCOUNT;
    switch (member) {
    case 1: {
      const HRESULT changed = VariantChangeType(&values[0], &values[0], VARIANT_ALPHABOOL, VT_BSTR);
      if (FAILED(changed)) return changed;
      echo(narrow(values[0].bstrVal, SysStringLen(values[0].bstrVal)));
      return S_OK;
    }
    case 2: {
      VariantChangeType(&values[0], &values[0], 0, VT_I4);
      const std::wstring& text = arguments.at(static_cast<std::size_t>(values[0].lVal));
      result->vt = VT_BSTR;
      result->bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
      return S_OK;
    }
    case 3:
      return connect(values[0].pdispVal, values.at(1).bstrVal);
    case 4:
      return disconnect(values[0].pdispVal);
    case 5:
      VariantChangeType(&values[0], &values[0], 0, VT_I4);
      details->scode = MAKE_HRESULT(1, FACILITY_CONTROL, values[0].lVal);
      details->bstrDescription = SysAllocString(raisedText);
      return DISP_E_EXCEPTION;
    case 6: {
      ITypeInfo* type = nullptr;
      BSTR name = nullptr;
      if (FAILED(values[0].pdispVal->GetTypeInfo(0, 0, &type)) ||
          FAILED(type->GetDocumentation(MEMBERID_NIL, &name, nullptr, nullptr, nullptr)))
        return E_FAIL;
      type->Release();
      result->vt = VT_BSTR;
      result->bstrVal = name;
      return S_OK;
    }
    case 7: {
      CLSID id;
      const HRESULT known = CLSIDFromProgID(values[0].bstrVal, &id);
      if (FAILED(known)) return known;
      result->vt = VT_DISPATCH;
      return CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&result->pdispVal));
    }
    default:
      return DISP_E_MEMBERNOTFOUND;
    }
  }

  HRESULT point(IDispatch* object, IConnectionPoint** found, IID& events) {
    IProvideClassInfo2* info = nullptr;
    if (object == nullptr ||
        FAILED(object->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&info))))
      return E_NOINTERFACE;
    HRESULT done = info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events);
    info->Release();
    IConnectionPointContainer* container = nullptr;
    if (done == S_OK)
      done = object->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container));
    if (done != S_OK) return E_NOINTERFACE;
    done = container->FindConnectionPoint(events, found);
    container->Release();
    return done;
  }
  HRESULT connect(IDispatch* object, const wchar_t* prefix) {
    IConnectionPoint* place = nullptr;
    IID events;
    HRESULT done = point(object, &place, events);
    if (FAILED(done)) return done;
    ITypeInfo* own = nullptr;
    ITypeLib* library = nullptr;
    ITypeInfo* type = nullptr;
    UINT index = 0;
    object->GetTypeInfo(0, 0, &own);
    own->GetContainingTypeLib(&library, &index);
    own->Release();
    done = library->GetTypeInfoOfGuid(events, &type);
    library->Release();
    DWORD cookie = 0;
    if (SUCCEEDED(done)) done = place->Advise(new Sink(prefix, type, events), &cookie);
    place->Release();
    if (SUCCEEDED(done)) cookies_[object].push_back(cookie);
    return done;
  }
  HRESULT disconnect(IDispatch* object) {
    IConnectionPoint* place = nullptr;
    IID events;
    HRESULT done = point(object, &place, events);
    if (FAILED(done)) return done;
    for (const DWORD cookie : cookies_[object]) done = place->Unadvise(cookie);
    cookies_[object].clear();
    place->Release();
    return done;
  }

  std::map<IDispatch*, std::vector<DWORD>> cookies_;
};

Host host;
int status = 0;

class Site final : public IActiveScriptSite {
public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IActiveScriptSite)) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) override {
    *locale = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR, DWORD wanted, IUnknown** item, ITypeInfo**) override {
    if ((wanted & SCRIPTINFO_IUNKNOWN) == 0) return TYPE_E_ELEMENTNOTFOUND;
    *item = &host;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override {
    EXCEPINFO details{};
    DWORD context = 0;
    ULONG line = 0;
    LONG column = 0;
    error->GetExceptionInfo(&details);
    if (details.bstrDescription != nullptr && std::wstring(details.bstrDescription) == raisedText) {
      SysFreeString(details.bstrSource);
      SysFreeString(details.bstrDescription);
      SysFreeString(details.bstrHelpFile);
      return S_OK; // on purpose
    }
    error->GetSourcePosition(&context, &line, &column);
    std::fflush(stdout);
    std::fprintf(stderr, "line %lu: error 0x%08lX %s\n", line + 1, static_cast<unsigned long>(details.scode),
                 details.bstrDescription == nullptr
                     ? ""
                     : narrow(details.bstrDescription, SysStringLen(details.bstrDescription)).c_str());
    SysFreeString(details.bstrSource);
    SysFreeString(details.bstrDescription);
    SysFreeString(details.bstrHelpFile);
    status = 1;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE OnEnterScript() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override { return S_OK; }
};

Site site;

bool run(const std::wstring& language, const std::wstring& text) {
  CLSID engineId;
  IActiveScript* script = nullptr;
  IActiveScriptParse* parse = nullptr;
  if (FAILED(CLSIDFromProgID(language.c_str(), &engineId)) ||
      FAILED(CoCreateInstance(engineId, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                              reinterpret_cast<void**>(&script))) ||
      FAILED(script->QueryInterface(__uuidof(IActiveScriptParse), reinterpret_cast<void**>(&parse))))
    return false;
  parse->InitNew();
  script->SetScriptSite(&site);
  for (const wchar_t* const name : {L"Host", L"WScript"}) script->AddNamedItem(name, SCRIPTITEM_ISVISIBLE);
  script->GetScriptDispatch(nullptr, &scriptDispatch);
  script->SetScriptState(SCRIPTSTATE_CONNECTED);
  if (FAILED(parse->ParseScriptText(text.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE,
                                    nullptr, nullptr)))
    status = 1;
  scriptDispatch->Release();
  script->Close();
  parse->Release();
  script->Release();
  return true;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
  if (count < 2) {
    std::fputs("usage: script_host FILE.vbs [ARGUMENT...]\n", stderr);
    return 2;
  }
  const std::wstring file = arguments[1];
  host.arguments.assign(arguments + 2, arguments + count);
  std::ifstream in(std::filesystem::path(file), std::ios::binary);
  const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (text.empty()) {
    std::fputs("the script cannot be read\n", stderr);
    return 2;
  }
  CoInitialize(nullptr);
  const bool isBasic = file.size() > 4 && file.substr(file.size() - 4) == L".vbs";
  if (!run(isBasic ? L"VBScript" : L"JScript", wide(text))) {
    std::fputs("the script language is not installed\n", stderr);
    return 2;
  }
  if (HMODULE library = GetModuleHandleW(L"QXImportJob.dll")) {
    const auto idle = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(library, "DllCanUnloadNow")));
    if (idle() != S_OK) {
      std::fputs("the library still holds objects\n", stderr);
      status = 3;
    }
  }
  CoUninitialize();
  return status;
}
