// A host whose ERP offers every component by its ProgID, and the connection with the members of ADODB's, on
// the database that $QXIMPORTJOB_DB names. The registered library processes its jobs with nothing but these.
#include "automation_erp.h"

#include "adapters/system/processes.h"
#include "adapters/system/system_sources.h"
#include "com/apartment.h"
#include "com/text.h"
#include "erp/process_identity.h"
#include "platform/path_text.h"
#include "support/ado_objects.h"

#include <array>
#include <filesystem>
#include <set>

namespace qx::com {
namespace {

using automation::AutomationErp;
using automation::call;
using automation::get;
using automation::ObjectPointer;
using automation::shown;

std::string databaseName() {
  std::wstring text(32768, L'\0');
  text.resize(GetEnvironmentVariableW(L"QXIMPORTJOB_DB", text.data(), static_cast<DWORD>(text.size())));
  return narrow(text);
}

/// The ERP's own view of the host's connection.
class ErpConnection final : public RecordingConnection, public automation::OfHost {
public:
  ErpConnection(std::shared_ptr<Connection> inner, ObjectPointer object)
      : RecordingConnection(std::move(inner)), object_(std::move(object)) {}
  const ObjectPointer& hostObject() const override { return object_; }

private:
  ObjectPointer object_;
};

/// The ERP in the process of the host.
class HostErp final : public Surroundings, public automation::HostObjects {
public:
  Environment& environment() override { return environment_; }
  Database& database() override { return database_; }
  HostObjects& hostObjects() override { return *this; }

  std::shared_ptr<Connection> connectionOf(const ObjectPointer& object) override {
    return object == ado.connection() ? connection_ : nullptr;
  }
  std::shared_ptr<Session> sessionOf(const ObjectPointer&) override { return nullptr; }
  ObjectPointer recordsetOf(const ComboRows&) override { return nullptr; }

  ObjectPointer create(std::string_view progId) {
    return progId.starts_with("ADODB.") ? ado.create(progId) : components.create(progId);
  }

private:
  std::string file_ = databaseName();

public:
  AdoDatabase ado{file_};

private:
  SqliteDatabase database_;
  SystemClock clock_;
  RecordingDesktop desktop_;
  RecordingJobView jobView_;
  RecordingDiagnostics diagnostics_;
  SystemGuidSource guids_;
  MemoryLocalSettings localSettings_;
  FixedIniFile iniFile_;
  SystemProcesses processes_;
  erp::ProcessIdentity identity_{thisMachine(), processes_};
  std::shared_ptr<Connection> connection_ =
      std::make_shared<ErpConnection>(database_.open(file_), ado.connection());
  erp::StandaloneErp parts_{
      connection_,  clock_,    desktop_,
      diagnostics_, identity_, {"pruefer", makeDate(2026, 11, 24), textOf(pathOf(file_).parent_path())}};
  Environment environment_{parts_,   desktop_,     jobView_,  clock_,      guids_,  localSettings_,
                           iniFile_, diagnostics_, identity_, connection_, nullptr, ""};
  std::shared_ptr<automation::Component> component_ =
      automation::Component::create(environment_, database_, *this);

public:
  AutomationErp components{parts_, connection_, *component_};
};

/// Offers a component under its ProgID for as long as it lives.
class Offered final : public IClassFactory {
public:
  Offered(std::shared_ptr<Apartment> apartment, HostErp& erp, std::string progId)
      : apartment_(std::move(apartment)), erp_(erp), progId_(std::move(progId)) {
    CLSID id;
    wchar_t text[40];
    EXPECT_EQ(CoCreateGuid(&id), S_OK);
    StringFromGUID2(id, text, 40);
    const std::wstring classId = text;
    EXPECT_EQ(RegSetKeyValueW(HKEY_LOCAL_MACHINE, (key() + L"\\CLSID").c_str(), nullptr, REG_SZ,
                              classId.c_str(), static_cast<DWORD>((classId.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
    EXPECT_EQ(CoRegisterClassObject(id, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_), S_OK);
  }
  Offered(const Offered&) = delete;
  Offered& operator=(const Offered&) = delete;
  ~Offered() {
    CoRevokeClassObject(cookie_);
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, key().c_str());
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
    *object = IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IClassFactory) ? this : nullptr;
    return *object == nullptr ? E_NOINTERFACE : S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** object) override {
    return apartment_->outward(erp_.create(progId_))->QueryInterface(id, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

private:
  std::wstring key() const { return L"Software\\Classes\\" + wide(progId_); }

  std::shared_ptr<Apartment> apartment_;
  HostErp& erp_;
  std::string progId_;
  DWORD cookie_ = 0;
};

} // namespace

TEST(LateBoundHost, HasItsJobsProcessedByComponentsThatAreCalledByName) {
  CoInitialize(nullptr);
  {
    HostErp* erp = nullptr;
    const auto apartment = std::make_shared<Apartment>([&](Apartment&) {
      auto made = std::make_unique<HostErp>();
      erp = made.get();
      return made;
    });
    std::vector<std::unique_ptr<Offered>> offered;
    for (const char* const progId :
         {"Norvalis.Session", "QXHProto.Protokoll", "qxPLU.clsPLU", "qxWWSVer.Version", "qxWSPro.WSProfile",
          "qxAdrIdx.Adressindex", "Norvalis.FibuUebergabeObject", "ADODB.Command", "ADODB.Recordset"})
      offered.push_back(std::make_unique<Offered>(apartment, *erp, progId));

    const ObjectPointer engine = apartment->createForeign("QXImportJob.ImportJobObject2");
    ASSERT_EQ(shown(call(*engine, "WWSSession")), "True");
    EXPECT_EQ(automation::objectOf(get(*engine, "ActiveConnection")), erp->ado.connection());
    EXPECT_EQ(shown(call(*engine, "ProcessJobs")), "True");

    EXPECT_EQ(erp->ado.begun, 0);
    EXPECT_EQ(std::set<std::string>(erp->ado.opened.begin(), erp->ado.opened.end()),
              std::set<std::string>{"3,1,3"});
    EXPECT_EQ(std::set<std::string>(erp->components.created.begin(), erp->components.created.end()),
              (std::set<std::string>{"Norvalis.FibuUebergabeObject", "Norvalis.Session", "QXHProto.Protokoll",
                                     "qxAdrIdx.Adressindex", "qxPLU.clsPLU", "qxWWSVer.Version"}));
  }
  CoUninitialize();
}

} // namespace qx::com
