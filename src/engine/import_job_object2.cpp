#include "engine/import_job_object2.h"

#include "engine/contract_check.h"
#include "engine/job_check.h"
#include "platform/german_cause.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"
#include "store/new_job_key.h"
#include "store/work_group.h"

#include <exception>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view noConnectionText = "Bitte geben Sie eine Connection an.";

} // namespace

ImportJobObject2::ImportJobObject2(Environment& environment)
    : environment_(environment), settings_(environment), events_(environment.diagnostics),
      protocol_(environment), lock_(environment), deletion_(environment), masterData_(environment),
      addresses_(environment), combos_(environment) {
  if (environment_.session) adoptSession();
}

ImportJobObject2::~ImportJobObject2() {
  jobList_.reset();
  if (!environment_.session) return;
  try {
    environment_.session->Disconnect();
  } catch (const std::exception& error) {
    environment_.diagnostics.report({"Disconnect", error.what(), ""});
  }
}

void ImportJobObject2::showFailure(std::string_view text, std::string_view cause) {
  Message message;
  message.text = text;
  message.text += cause;
  message.icon = MessageIcon::Critical;
  environment_.desktop.show(message);
}

template <class Work>
bool ImportJobObject2::guarded(std::string_view member, std::string_view text, Work&& work) {
  try {
    work();
    return true;
  } catch (const std::exception& error) {
    environment_.diagnostics.report({member, error.what(), ""});
    showFailure(text, germanCause(error));
    return false;
  }
}

void ImportJobObject2::ActiveConnection(std::shared_ptr<Connection> connection) {
  jobList_.reset();
  environment_.connection = std::move(connection);
}

bool ImportJobObject2::ConnectDB() {
  return guarded("ConnectDB", "Fehler beim Öffnen der Importvorgänge: ", [this] {
    if (!environment_.connection) throw StoreError(std::string(noConnectionText), 0);
    jobList_ =
        environment_.connection->openKeyset(sql("Select * From ImportKopf Order by Eingangsdatum"_sql));
  });
}

bool ImportJobObject2::WWSSession() {
  bool connected = false;
  guarded("WWSSession", "Fehler beim Verbinden mit der Warenwirtschaft: ", [&] {
    connected = connectSession();
    if (connected) adoptSession();
  });
  return connected;
}

bool ImportJobObject2::connectSession() {
  auto session = environment_.components.createSession();
  session->Connect(start_.session, start_.connect);
  if (session->NotConnected() && session->ErrorCode() != 0) {
    session->ShowError("Die Verbindung '" + start_.connect + "' konnte nicht hergestellt werden.");
    return false;
  }
  environment_.session = std::move(session);
  return true;
}

void ImportJobObject2::adoptSession() {
  qx::Session& session = *environment_.session;
  if (auto connection = session.connection()) ActiveConnection(std::move(connection));
  personalNr_ = session.PersonalNr();
  homeCurrency_ = settings_.getShared("Allgemein", "Landeswährung", "DM");
}

void ImportJobObject2::Session(std::shared_ptr<qx::Session> session) {
  guarded("Session", "Fehler beim Verbinden mit der Warenwirtschaft: ", [&] {
    environment_.session = std::move(session);
    if (environment_.session) adoptSession();
  });
}

void ImportJobObject2::JobViewShow() {
  if (!environment_.connection || environment_.connection->connectionString().empty()) {
    Message message;
    message.text = noConnectionText;
    environment_.desktop.show(message);
    return;
  }
  guarded("JobViewShow", "Fehler beim Öffnen der Importvorgänge: ", [this] {
    if (!lock_.held() && lock_.take().state != LockState::Taken) {
      Unload();
      return;
    }
    environment_.jobView.open();
    ViewFormLoad = qxtViewJobForm_Load;
  });
}

void ImportJobObject2::Unload() {
  guarded("Unload", "Fehler beim Schließen der Importvorgänge: ", [this] {
    if (lock_.held()) {
      lock_.releaseIfHeld();
      environment_.jobView.close();
    }
    ViewFormLoad = qxtViewJobForm_Unload;
    events_.raiseJobViewUnload();
  });
}

bool ImportJobObject2::ProcessJobs(bool UnEvaluated, qxProcessState ProcessState) {
  // Whoever took the lock away may be at work himself.
  if (lock_.confirm().state == LockState::Refused) {
    lastRun_ = {};
    lastRun_.end = RunEnd::Refused;
    return false;
  }
  ProcessingRun run({environment_, events_, protocol_, errors_, stop_, outcomes_, personalNr_, homeCurrency_},
                    UnEvaluated, ProcessState);
  lastRun_ = run.execute();
  stop_.clear();
  if (lastRun_.end == RunEnd::Refused) return false;
  strGlobalProcErr = errors_.all.text();
  strGlobalKundeProcErr = errors_.customers.text();
  if (lastRun_.end != RunEnd::Broken) return true;
  environment_.diagnostics.report({"ProcessJobs", lastRun_.failure, ""});
  showFailure("Fehler bei der Verarbeitung: ", lastRun_.germanFailure);
  return false;
}

void ImportJobObject2::VerifyProcesses(bool& NoProof, bool& NoProcess) {
  // The definition is a walk over "SELECT * FROM ImportKopf where JobType <> 40 and JobType <> 41 and
  // JobType <> 42 and JobType <> 43 and JobType <> 13 and JobType <> 33"; two searches by index answer the
  // same without reading a million rows.
  NoProof = false;
  NoProcess = false;
  guarded("VerifyProcesses", "Fehler beim Prüfen der Importvorgänge: ", [&] {
    if (!environment_.connection) throw StoreError(std::string(noConnectionText), 0);
    Connection& connection = *environment_.connection;
    const auto any = [&](const Sql& statement) {
      return connection.open(statement)->value(0).truth().value_or(false);
    };
    NoProof = settings_.isOn("AutomatischVerarbeiten") &&
              any(sql("Select Exists(Select 1 From ImportKopf Where JobType In (10, 20, 30) And "
                      "(ProcessWarning Is Null Or ProcessWarning = 0)) As found"_sql));
    NoProcess = !any(sql("Select Exists(Select 1 From ImportKopf Where JobType In (10, 20, 30)) Or "
                         "Exists(Select 1 From ImportKopf Where ProcessWarning = 1 And "
                         "JobType In (11, 12, 21, 22, 31, 32)) As found"_sql));
  });
}

bool ImportJobObject2::CreateProtocol() {
  bool created = false;
  guarded("CreateProtocol", "Verarbeitungsprotokoll konnte nicht erzeugt werden. ", [&] {
    created = protocol_.create([this](const Message& message) { environment_.desktop.show(message); });
  });
  return created;
}

void ImportJobObject2::AddProtocolColumn(std::string_view Vorgang, std::string_view Nummer,
                                         std::string_view Status, std::string_view VADatum,
                                         std::string_view Info,
                                         std::optional<std::string_view> ProtArtikelNummern,
                                         std::string_view ProtBez, std::string_view ProtMenge,
                                         std::string_view ProtPreis, bool Neukunde) {
  ProtocolLine line{Vorgang,           std::string(Nummer), Status,  std::string(VADatum),
                    std::string(Info), std::nullopt,        Neukunde};
  if (ProtArtikelNummern)
    line.articles = {std::string(*ProtArtikelNummern), std::string(ProtBez), std::string(ProtMenge),
                     std::string(ProtPreis)};
  guarded("AddProtocolColumn", "Fehler beim Erzeugen der Protokollzeile. ", [&] {
    protocol_.add(line, [this](const Message& message) { environment_.desktop.show(message); });
  });
}

void ImportJobObject2::DelItem(std::string_view ItemName, bool DelKundenVertrag) {
  guarded("DelItem", "Fehler beim Löschen: ", [&] { deletion_.DelItem(ItemName, DelKundenVertrag); });
}

void ImportJobObject2::DelArchives() {
  // Between two groups the window around it is drawn.
  guarded("DelArchives", "Fehler beim Löschen: ", [&] {
    WorkGroup group(environment_, nullptr);
    group.begin();
    deletion_.DelArchives([&group] {
      group.endJob();
      group.begin();
    });
    group.finish();
  });
}

bool ImportJobObject2::Export(std::string_view FileName) {
  return tellExport(environment_, exportJobFile(environment_, FileName, JobFileVersion::Two));
}

bool ImportJobObject2::Import(std::string_view FileName) {
  return tellImport(environment_, importJobFile(environment_, FileName, JobFileVersion::Two));
}

std::string ImportJobObject2::GUID() { return newJobKey(environment_); }

Findings ImportJobObject2::proveCustomerJob(std::string_view jobId) {
  return CustomerProof(environment_, settings_.isOn("KundeAdressProof")).prove(jobId);
}

std::int32_t ImportJobObject2::GetDelVerträge(std::string_view Kundennummer) {
  std::int32_t marked = 0;
  guarded("GetDelVerträge", "Fehler beim Kennzeichnen der Verträge: ", [&] {
    marked = ContractComparison(environment_).markUncarried(Kundennummer);
  });
  return marked;
}

Findings ImportJobObject2::checkJob(std::string_view jobId) { return JobCheck(environment_).check(jobId); }

std::string ImportJobObject2::ImpGetSetting(std::string_view AppName, std::string_view Section,
                                            std::string_view Key, bool GetLocal) const {
  return settings_.get(AppName, Section, Key, GetLocal);
}

std::string ImportJobObject2::ImpSaveSetting(std::string_view AppName, std::string_view Section,
                                             std::string_view Key, std::string_view Setting,
                                             bool SaveLocal) const {
  settings_.save(AppName, Section, Key, Setting, SaveLocal);
  return {};
}

} // namespace qx
