// The library as a compiled client meets it: counts of references, typed variables, the type library, sinks,
// other threads. $QXIMPORTJOB_DB names a database with demo data; the classes are registered.
#include <dispex.h>
#include <oaidl.h>
#include <ocidl.h>
#include <olectl.h>
#include <windows.h>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

/// A value that is cleared at the end.
struct Value : VARIANT {
  Value() { VariantInit(this); }
  explicit Value(const wchar_t* text) : Value() {
    vt = VT_BSTR;
    bstrVal = SysAllocString(text);
  }
  explicit Value(LONG number) : Value() {
    vt = VT_I4;
    lVal = number;
  }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(this); }
};

/// An argument that stays the caller's.
VARIANT text(const wchar_t* content) {
  VARIANT argument;
  argument.vt = VT_BSTR;
  argument.bstrVal = SysAllocString(content);
  return argument;
}

class Client : public ::testing::Test {
protected:
  Client() { CoInitialize(nullptr); }
  ~Client() override {
    EXPECT_TRUE(idle());
    CoUninitialize();
  }

  static bool idle() {
    const HMODULE library = GetModuleHandleW(L"QXImportJob.dll");
    const auto canUnload = reinterpret_cast<HRESULT(STDAPICALLTYPE*)()>(
        reinterpret_cast<void*>(GetProcAddress(library, "DllCanUnloadNow")));
    return canUnload() == S_OK;
  }
  /// Lets calls from outside and timers have their turn until the condition holds, 10 seconds at most.
  template <class Condition>
  static void waitUntil(Condition&& holds) {
    for (int tries = 0; tries < 1000 && !holds(); ++tries) {
      MSG message;
      while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) DispatchMessageW(&message);
      Sleep(10);
    }
  }
  static IDispatch* create(const wchar_t* name) {
    CLSID id;
    IDispatch* object = nullptr;
    const std::wstring progId = std::wstring(L"QXImportJob.") + name;
    EXPECT_EQ(CLSIDFromProgID(progId.c_str(), &id), S_OK);
    EXPECT_EQ(
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&object)),
        S_OK);
    return object;
  }
  static DISPID idOf(IDispatch* object, const wchar_t* name) {
    DISPID id = DISPID_UNKNOWN;
    auto* member = const_cast<wchar_t*>(name);
    object->GetIDsOfNames(IID_NULL, &member, 1, LOCALE_NEUTRAL, &id);
    return id;
  }
  /// Calls with the arguments from the first to the last; those are cleared.
  static HRESULT call(IDispatch* object, const wchar_t* name, std::vector<VARIANT> arguments, VARIANT* result,
                      EXCEPINFO* details = nullptr, WORD flags = DISPATCH_METHOD | DISPATCH_PROPERTYGET) {
    std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
    DISPID put = DISPID_PROPERTYPUT;
    const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{reversed.data(), puts ? &put : nullptr, static_cast<UINT>(reversed.size()),
                          puts ? 1U : 0U};
    const HRESULT done = object->Invoke(idOf(object, name), IID_NULL, LOCALE_NEUTRAL, flags, &parameters,
                                        result, details, nullptr);
    for (VARIANT& argument : arguments) VariantClear(&argument);
    return done;
  }
  static IConnectionPoint* pointOf(IDispatch* engine) {
    IProvideClassInfo2* info = nullptr;
    IConnectionPointContainer* container = nullptr;
    IConnectionPoint* point = nullptr;
    IID events;
    EXPECT_EQ(engine->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(&info)), S_OK);
    EXPECT_EQ(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events), S_OK);
    info->Release();
    EXPECT_EQ(engine->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)),
              S_OK);
    EXPECT_EQ(container->FindConnectionPoint(events, &point), S_OK);
    container->Release();
    return point;
  }
};

/// A sink of the client that does what the test says.
class Sink final : public IDispatch {
public:
  explicit Sink(std::function<HRESULT(DISPID, DISPPARAMS*)> react) : react_(std::move(react)) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = nullptr;
    if (!IsEqualIID(id, IID_IUnknown) && !IsEqualIID(id, IID_IDispatch)) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID member, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*,
                                   EXCEPINFO*, UINT*) override {
    return react_(member, parameters);
  }

  ULONG references = 0;

private:
  std::function<HRESULT(DISPID, DISPPARAMS*)> react_;
};

} // namespace

TEST_F(Client, FindsEveryMemberOfTheTypeLibraryByItsName) {
  int members = 0;
  for (const wchar_t* name :
       {L"Kunde", L"Vertrag", L"Auftrag", L"AuftragsPos", L"ImportJob", L"ImportJobSubItem", L"ImportJobs",
        L"ImportJobSubItems", L"ImportJobObject", L"ImportJobObject2"}) {
    IDispatch* object = create(name);
    ITypeInfo* type = nullptr;
    ASSERT_EQ(object->GetTypeInfo(0, LOCALE_NEUTRAL, &type), S_OK);
    TYPEATTR* attributes = nullptr;
    type->GetTypeAttr(&attributes);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    for (UINT i = 0; i < attributes->cFuncs; ++i) {
      FUNCDESC* function = nullptr;
      BSTR names[12] = {};
      UINT count = 0;
      type->GetFuncDesc(i, &function);
      // Those of IDispatch itself.
      if (function->memid >= 0x60000000) {
        type->ReleaseFuncDesc(function);
        continue;
      }
      type->GetNames(function->memid, names, 12, &count);
      EXPECT_EQ(idOf(object, names[0]), function->memid);
      ++members;
      // The names of the parameters are those that calls by name use.
      for (UINT parameter = 1; parameter < count && function->invkind == INVOKE_FUNC; ++parameter) {
        LPOLESTR pair[] = {names[0], names[parameter]};
        DISPID ids[2];
        EXPECT_EQ(object->GetIDsOfNames(IID_NULL, pair, 2, LOCALE_NEUTRAL, ids), S_OK);
        EXPECT_EQ(ids[1], static_cast<DISPID>(parameter - 1));
      }
      for (UINT n = 0; n < count; ++n) SysFreeString(names[n]);
      type->ReleaseFuncDesc(function);
    }
    type->ReleaseTypeAttr(attributes);
    type->Release();

    IProvideClassInfo* info = nullptr;
    ITypeInfo* classType = nullptr;
    BSTR className = nullptr;
    ASSERT_EQ(object->QueryInterface(IID_IProvideClassInfo, reinterpret_cast<void**>(&info)), S_OK);
    ASSERT_EQ(info->GetClassInfo(&classType), S_OK);
    classType->GetDocumentation(MEMBERID_NIL, &className, nullptr, nullptr, nullptr);
    EXPECT_EQ(std::wstring(className), name);
    SysFreeString(className);
    classType->Release();
    info->Release();
    object->Release();
  }
  // As tests/automation/dispatch_ids.txt lists them; what can be read and set counts twice.
  EXPECT_EQ(members, 362 + 265);
}

TEST_F(Client, TakesAnswersInVariablesOfTheirDeclaredKind) {
  IDispatch* engine = create(L"ImportJobObject2");
  BSTR name = SysAllocString(L"before");
  VARIANT_BOOL noProof = VARIANT_FALSE;
  VARIANT any;
  VariantInit(&any);
  VARIANT byText{};
  byText.vt = VT_BYREF | VT_BSTR;
  byText.pbstrVal = &name;
  VARIANT byVariant{};
  byVariant.vt = VT_BYREF | VT_VARIANT;
  byVariant.pvarVal = &any;
  Value result;
  ASSERT_EQ(call(engine, L"GetAdressDaten",
                 {text(L"70001"), text(L""), byText, byVariant, text(L""), text(L""), text(L""), text(L""),
                  text(L"")},
                 &result),
            S_OK);
  EXPECT_EQ(result.vt, VT_BOOL);
  EXPECT_EQ(result.boolVal, VARIANT_TRUE);
  EXPECT_NE(std::wstring(name), L"before");
  EXPECT_EQ(any.vt, VT_BSTR);
  SysFreeString(name);
  VariantClear(&any);

  VARIANT byBool{};
  byBool.vt = VT_BYREF | VT_BOOL;
  byBool.pboolVal = &noProof;
  LONG number = 1;
  VARIANT byNumber{};
  byNumber.vt = VT_BYREF | VT_I4;
  byNumber.plVal = &number;
  ASSERT_EQ(call(engine, L"VerifyProcesses", {byBool, byNumber}, nullptr), S_OK);
  EXPECT_EQ(noProof, VARIANT_TRUE);
  EXPECT_EQ(number, 0);
  engine->Release();
}

TEST_F(Client, IsToldOfErrorsInBothWays) {
  IDispatch* engine = create(L"ImportJobObject2");
  EXCEPINFO details{};
  Value result;
  EXPECT_EQ(call(engine, L"intdat", {text(L"kein Datum")}, &result, &details), DISP_E_EXCEPTION);
  EXPECT_EQ(details.scode, static_cast<SCODE>(0x800A0005));
  EXPECT_EQ(std::wstring(details.bstrSource), L"QXImportJob.ImportJobObject2");
  EXPECT_EQ(std::wstring(details.bstrDescription),
            L"Das Argument ist ungültig ('kein Datum' is not a date).");
  IErrorInfo* error = nullptr;
  BSTR description = nullptr;
  ASSERT_EQ(GetErrorInfo(0, &error), S_OK);
  error->GetDescription(&description);
  EXPECT_EQ(std::wstring(description), details.bstrDescription);
  SysFreeString(description);
  error->Release();
  SysFreeString(details.bstrSource);
  SysFreeString(details.bstrDescription);
  EXPECT_EQ(call(engine, L"KundeAngelegt", {}, &result), DISP_E_PARAMNOTOPTIONAL);
  VARIANT array{};
  array.vt = VT_ARRAY | VT_I4;
  array.parray = SafeArrayCreateVector(VT_I4, 0, 1);
  EXPECT_EQ(call(engine, L"KundeAngelegt", {array}, &result), static_cast<HRESULT>(0x800A000D));
  DISPPARAMS none{};
  EXPECT_EQ(engine->Invoke(4711, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
            DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(engine->Invoke(1, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr), E_POINTER);
  DISPID name = 0;
  LPOLESTR noName = nullptr;
  DISPPARAMS moreNames{nullptr, &name, 0, 1};
  EXPECT_EQ(engine->Invoke(idOf(engine, L"Unload"), IID_NULL, 0, DISPATCH_METHOD, &moreNames, nullptr,
                           nullptr, nullptr),
            DISP_E_BADPARAMCOUNT);
  EXPECT_EQ(engine->GetIDsOfNames(IID_NULL, &noName, 1, 0, &name), E_POINTER);
  engine->Release();
}

TEST_F(Client, PassesTextsOfAnyLengthAndWithAnyCharacterButNul) {
  IDispatch* customer = create(L"Kunde");
  const auto put = [&](const std::wstring& content) {
    VARIANT argument;
    argument.vt = VT_BSTR;
    argument.bstrVal = SysAllocStringLen(content.data(), static_cast<UINT>(content.size()));
    return call(customer, L"Bemerkung", {argument}, nullptr, nullptr, DISPATCH_PROPERTYPUT);
  };
  const auto read = [&](const wchar_t* property) {
    Value found;
    EXPECT_EQ(call(customer, property, {}, &found), S_OK);
    return found.vt == VT_BSTR ? std::wstring(found.bstrVal, SysStringLen(found.bstrVal)) : L"?";
  };
  // 16 MiB in the encodings of both sides.
  std::wstring huge(8U << 20U, L'ß');
  huge += L"Ende";
  ASSERT_EQ(put(huge), S_OK);
  EXPECT_TRUE(read(L"Bemerkung") == huge);
  EXPECT_NE(read(L"FormatItemCSV").find(L"ßEnde"), std::wstring::npos);
  EXPECT_EQ(idOf(customer, huge.c_str()), DISPID_UNKNOWN);
  ASSERT_EQ(put(L"kurz \xD83D\xDE00 \xD83D."), S_OK);
  EXPECT_EQ(read(L"Bemerkung"), L"kurz \xD83D\xDE00 \xFFFD.") << "half a pair is no character";
  EXPECT_EQ(put(std::wstring(L"a\0b", 3)), static_cast<HRESULT>(0x800A0005));
  EXPECT_EQ(read(L"Bemerkung"), L"kurz \xD83D\xDE00 \xFFFD.");

  IDispatch* engine = create(L"ImportJobObject2");
  BSTR withNul = SysAllocStringLen(L"7\0001", 3);
  VARIANT byText{};
  byText.vt = VT_BYREF | VT_BSTR;
  byText.pbstrVal = &withNul;
  Value known;
  EXPECT_EQ(call(engine, L"KundeAngelegt", {byText}, &known), static_cast<HRESULT>(0x800A0005));
  SysFreeString(withNul);
  EXPECT_EQ(call(engine, L"KundeAngelegt", {text(huge.c_str())}, &known), S_OK);
  EXPECT_EQ(known.boolVal, VARIANT_FALSE);
  engine->Release();
  customer->Release();
}

TEST_F(Client, MayReleaseEverythingWhileAnEventIsRaised) {
  IDispatch* customer = create(L"Kunde");
  call(customer, L"Kundennummer", {text(L"47200")}, nullptr, nullptr, DISPATCH_PROPERTYPUT);
  call(customer, L"Bez1", {text(L"Ereignis")}, nullptr, nullptr, DISPATCH_PROPERTYPUT);
  IDispatch* engine = create(L"ImportJobObject2");
  ASSERT_EQ(call(customer, L"AddItem", {}, nullptr), S_OK);
  customer->Release();
  IConnectionPoint* point = pointOf(engine);
  DWORD cookie = 0;
  int heard = 0;
  Sink sink([&](DISPID event, DISPPARAMS* parameters) -> HRESULT {
    if (event != 2) return E_FAIL; // raises
    EXPECT_EQ(parameters->cArgs, 1U);
    EXPECT_EQ(parameters->rgvarg[0].vt, VT_I2);
    ++heard;
    if (point == nullptr) return S_OK;
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    point->Release();
    point = nullptr;
    engine->Release();
    return S_OK;
  });
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  Value everything;
  EXPECT_EQ(call(engine, L"ProcessJobs", {}, &everything), S_OK);
  EXPECT_EQ(everything.boolVal, VARIANT_TRUE);
  EXPECT_EQ(heard, 1);
  EXPECT_EQ(sink.references, 0U);
}

TEST_F(Client, ListsWhoListens) {
  IDispatch* engine = create(L"ImportJobObject2");
  IConnectionPoint* point = pointOf(engine);
  Sink sink([](DISPID, DISPPARAMS*) { return S_OK; });
  DWORD first = 0;
  DWORD second = 0;
  ASSERT_EQ(point->Advise(&sink, &first), S_OK);
  ASSERT_EQ(point->Advise(&sink, &second), S_OK);
  EXPECT_NE(first, second);
  IEnumConnections* all = nullptr;
  ASSERT_EQ(point->EnumConnections(&all), S_OK);
  CONNECTDATA data[3];
  ULONG count = 0;
  EXPECT_EQ(all->Next(3, data, &count), S_FALSE);
  ASSERT_EQ(count, 2U);
  EXPECT_EQ(data[1].dwCookie, second);
  for (ULONG i = 0; i < count; ++i) data[i].pUnk->Release();
  all->Release();
  EXPECT_EQ(point->Unadvise(first), S_OK);
  EXPECT_EQ(point->Unadvise(first), static_cast<HRESULT>(CONNECT_E_NOCONNECTION));
  EXPECT_EQ(call(engine, L"Unload", {}, nullptr), S_OK);
  EXPECT_EQ(point->Unadvise(second), S_OK);
  point->Release();
  engine->Release();
  EXPECT_EQ(sink.references, 0U);
}

TEST_F(Client, IsRefusedOnAnotherThread) {
  IDispatch* engine = create(L"ImportJobObject2");
  const DISPID id = idOf(engine, L"GUID");
  HRESULT direct = S_OK;
  std::thread([&] {
    DISPPARAMS none{};
    Value result;
    direct = engine->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &none, &result, nullptr, nullptr);
    engine->Release(); // counting is for every thread
  }).join();
  EXPECT_EQ(direct, static_cast<HRESULT>(0x800A0005));
}

TEST_F(Client, HasAComponentOfItsOwnOnEachThread) {
  IDispatch* order = create(L"Auftrag");
  Value mine;
  call(order, L"JobID", {}, &mine);
  std::wstring others = L"?";
  std::thread([&] {
    CoInitialize(nullptr);
    IDispatch* position = create(L"AuftragsPos");
    Value key;
    call(position, L"JobID", {}, &key);
    others = key.bstrVal == nullptr ? L"" : key.bstrVal;
    position->Release();
    CoUninitialize();
  }).join();
  EXPECT_EQ(others, L"");
  IDispatch* position = create(L"AuftragsPos");
  Value key;
  call(position, L"JobID", {}, &key);
  EXPECT_EQ(std::wstring(key.bstrVal), mine.bstrVal);
  position->Release();
  order->Release();
}

TEST_F(Client, IsCalledFromAnotherApartmentThroughItsOwnThread) {
  IDispatch* engine = create(L"ImportJobObject2");
  IStream* stream = nullptr;
  ASSERT_EQ(CoMarshalInterThreadInterfaceInStream(IID_IDispatch, engine, &stream), S_OK);
  HRESULT called = E_FAIL;
  Value key;
  std::atomic<bool> over = false;
  std::thread other([&] {
    CoInitialize(nullptr);
    IDispatch* proxy = nullptr;
    called = CoGetInterfaceAndReleaseStream(stream, IID_IDispatch, reinterpret_cast<void**>(&proxy));
    if (SUCCEEDED(called)) {
      called = call(proxy, L"GUID", {}, &key);
      proxy->Release();
    }
    CoUninitialize();
    over = true;
  });
  waitUntil([&] { return over.load(); });
  other.join();
  EXPECT_EQ(called, S_OK);
  ASSERT_EQ(key.vt, VT_BSTR);
  EXPECT_EQ(SysStringLen(key.bstrVal), 32U);
  engine->Release();
}

TEST_F(Client, KeepsTheLibraryAndOtherEnginesWhenAnEngineIsReleased) {
  IDispatch* first = create(L"ImportJobObject2");
  IDispatch* second = create(L"ImportJobObject2");
  first->Release();
  CoFreeUnusedLibraries();
  EXPECT_FALSE(idle());
  Value opened;
  EXPECT_EQ(call(second, L"ConnectDB", {}, &opened), S_OK);
  EXPECT_EQ(opened.boolVal, VARIANT_TRUE);
  Value setting;
  EXPECT_EQ(
      call(second, L"ImpSaveSetting", {text(L"QXImportJob"), text(L"Zwei"), text(L"A"), text(L"ä")}, nullptr),
      S_OK);
  EXPECT_EQ(call(second, L"ImpGetSetting", {text(L"QXImportJob"), text(L"Zwei"), text(L"A")}, &setting),
            S_OK);
  EXPECT_EQ(std::wstring(setting.bstrVal), L"ä") << "the session is still connected";
  second->Release();
}

TEST_F(Client, OpensTheWindowOfTheJobsAsAProgramBesideTheLibrary) {
  IDispatch* engine = create(L"ImportJobObject2");
  IConnectionPoint* point = pointOf(engine);
  int unloaded = 0;
  Sink sink([&](DISPID event, DISPPARAMS*) -> HRESULT {
    unloaded += event == 1 ? 1 : 0;
    return S_OK;
  });
  DWORD cookie = 0;
  ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
  std::wstring file(32768, L'\0');
  file.resize(GetModuleFileNameW(GetModuleHandleW(L"QXImportJob.dll"), file.data(), 32768));
  file.replace(file.rfind(L'\\') + 1, std::wstring::npos, L"qximportjob-view.exe");
  const auto mark = [&](const wchar_t* ending) {
    CloseHandle(CreateFileW((file + ending).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  };
  const auto show = [&] {
    VARIANT view;
    VariantInit(&view);
    VARIANT argument{};
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = &view;
    EXPECT_EQ(call(engine, L"JobViewShow", {argument}, nullptr), S_OK);
    EXPECT_EQ(view.pdispVal, engine);
    VariantClear(&view);
    Value state;
    call(engine, L"ViewFormLoad", {}, &state);
    return state.lVal;
  };
  mark(L".open");
  EXPECT_EQ(show(), 1);
  EXPECT_EQ(unloaded, 0);
  DeleteFileW((file + L".open").c_str());
  waitUntil([&] { return unloaded > 0; });
  EXPECT_EQ(unloaded, 1);
  mark(L".refuse");
  EXPECT_EQ(show(), 2);
  EXPECT_EQ(unloaded, 2);
  wchar_t given[1024] = L"";
  if (FILE* const log = _wfopen((file + L".log").c_str(), L"r, ccs=UTF-16LE")) {
    EXPECT_NE(std::fgetws(given, 1024, log), nullptr);
    std::fclose(log);
  }
  std::wstring database(1024, L'\0');
  database.resize(GetEnvironmentVariableW(L"QXIMPORTJOB_DB", database.data(), 1024));
  EXPECT_EQ(std::wstring(given), database + L"|0;" + database + L"|0;");
  EXPECT_EQ(point->Unadvise(cookie), S_OK);
  point->Release();
  // Released elsewhere while the window is open: its observer goes with the next look.
  DeleteFileW((file + L".refuse").c_str());
  mark(L".open");
  EXPECT_EQ(show(), 1);
  std::thread([&] { engine->Release(); }).join();
  DeleteFileW((file + L".open").c_str());
  const ULONGLONG until = GetTickCount64() + 600;
  waitUntil([&] { return GetTickCount64() > until; });
  EXPECT_EQ(unloaded, 2);
}

// Run alone: the program ends with it, and its status is what counts.
TEST(ClientInAHurry, DISABLED_EndsWithObjectsAlive) {
  CoInitialize(nullptr);
  CLSID id;
  ASSERT_EQ(CLSIDFromProgID(L"QXImportJob.ImportJobObject2", &id), S_OK);
  const auto leave = [&] {
    CoInitialize(nullptr);
    IDispatch* engine = nullptr;
    ASSERT_EQ(
        CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, reinterpret_cast<void**>(&engine)),
        S_OK);
    DISPID member = DISPID_UNKNOWN;
    auto* name = const_cast<wchar_t*>(L"ConnectDB");
    DISPPARAMS none{};
    Value opened;
    EXPECT_EQ(engine->GetIDsOfNames(IID_NULL, &name, 1, LOCALE_NEUTRAL, &member), S_OK);
    EXPECT_EQ(engine->Invoke(member, IID_NULL, 0, DISPATCH_METHOD, &none, &opened, nullptr, nullptr), S_OK);
    EXPECT_EQ(opened.boolVal, VARIANT_TRUE);
    CoUninitialize();
  };
  std::thread(leave).join();
  leave();
  CoUninitialize();
}
