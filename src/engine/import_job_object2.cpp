#include "engine/import_job_object2.h"

#include "engine/contract_check.h"
#include "engine/job_check.h"
#include "platform/failure.h"
#include "store/entry_objects.h"
#include "store/job_deletion.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <filesystem>
#include <system_error>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view noConnectionText = "Bitte geben Sie eine Connection an.";
constexpr std::string_view sessionFailure = "Fehler beim Verbinden mit der Warenwirtschaft: ";
constexpr std::string_view deletionFailure = "Fehler beim Löschen: ";
constexpr std::string_view viewFailure = "Fehler beim Öffnen der Importvorgänge: ";
constexpr std::string_view contractFailure = "Fehler beim Vergleichen der Verträge: ";

/// Whether the first of two connections, while it has a unit open, keeps the second from writing.
bool locksOut(const Connection& connection, const Connection& other) {
  if (!connection.ownsWork()) return false;
  const auto files = connection.files();
  const auto others = other.files();
  return std::ranges::any_of(files, [&](const std::filesystem::path& file) {
    return std::ranges::any_of(others, [&](const std::filesystem::path& another) {
      std::error_code ignored;
      return std::filesystem::equivalent(file, another, ignored);
    });
  });
}

/// Empty when it cannot be read, which has been reported then: the run asks again.
std::string currencyOf(Environment& environment) {
  try {
    return Settings(environment, SettingTrap::Nothing)[option::homeCurrency];
  } catch (const std::exception& failure) {
    if (isOutOfMemory(failure)) throw;
    return {};
  }
}

/// Marks a run as under way while it exists. Clears earlier requests to stop.
class UnderWay {
public:
  UnderWay(bool& flag, StopSignal& stop) : flag_(flag), stop_(stop) { set(true); }
  UnderWay(const UnderWay&) = delete;
  UnderWay& operator=(const UnderWay&) = delete;
  ~UnderWay() { set(false); }

private:
  void set(bool underWay) {
    flag_ = underWay;
    stop_.clear();
  }

  bool& flag_;
  StopSignal& stop_;
};

/// How long the end of a run waits for being entered: a minute, but not when somebody has stopped the run
/// because he does not want to wait.
class EntryWait final : public BusyWait {
public:
  EntryWait(Desktop& desktop, RunEnd end)
      : desktop_(desktop),
        limit_(end == RunEnd::Stopped ? std::chrono::seconds(1) : std::chrono::minutes(1)) {}
  bool goOn(std::chrono::milliseconds waited) override {
    desktop_.yield();
    return waited < limit_;
  }

private:
  Desktop& desktop_;
  std::chrono::seconds limit_;
};

} // namespace

ImportJobObject2::ImportJobObject2(Environment& environment)
    : ComboLists(environment), MasterData(environment), CustomerAddresses(environment),
      environment_(environment), settings_(environment), events_(environment.diagnostics),
      protocol_(environment), book_(environment), feed_(environment), lock_(environment) {
  const auto session = environment_.session;
  if (!session) return;
  // An unusable session is dropped.
  if (!guarded("Session", sessionFailure, [&] { adopt(session); })) environment_.session.reset();
}

ImportJobObject2::~ImportJobObject2() {
  closeLists();
  lock_.giveUp();
  if (environment_.session) disconnect(*environment_.session);
}

void ImportJobObject2::closeLists() {
  jobList_.reset();
  positionList_.reset();
}

void ImportJobObject2::disconnect(qx::Session& session) const {
  trapped(environment_.diagnostics, {"Disconnect"}, [&] { session.Disconnect(); });
}

void ImportJobObject2::showFailure(std::string_view text, std::string_view cause) const {
  showMessage(environment_, {.text = std::string(text).append(cause), .icon = MessageIcon::Critical});
}

template <class Work>
bool ImportJobObject2::guarded(std::string_view member, std::string_view text, Work&& work) const {
  return !trapped(environment_.diagnostics, {member}, work,
                  [&](const std::exception& error) { showFailure(text, germanCause(error)); });
}

/// An event handler or the message loop may call any member. No box: a unit may be open.
bool ImportJobObject2::refusedInRun(std::string_view member) const {
  if (running_) environment_.diagnostics.report({member, "refused while a processing run is under way", ""});
  return running_;
}

void ImportJobObject2::ActiveConnection(std::shared_ptr<Connection> connection) {
  if (refusedInRun("ActiveConnection")) return;
  guarded("ActiveConnection", "Die Verbindung kann nicht verwendet werden: ", [&] {
    const auto other = connection && environment_.session ? environment_.session->connection()
                                                          : std::shared_ptr<Connection>();
    if (other && other != connection && locksOut(*connection, *other))
      throw StoreError("Die Sitzung arbeitet mit einer anderen Verbindung zu derselben Datenbank.", 0);
    setConnection(std::move(connection));
  });
}

/// Nothing of the previous connection is kept: neither rows nor protocol nor its lock.
void ImportJobObject2::setConnection(std::shared_ptr<Connection> connection) {
  closeLists();
  protocol_.forget();
  if (connection != environment_.connection) lock_.giveUp();
  environment_.connection = std::move(connection);
}

bool ImportJobObject2::ConnectDB() {
  closeLists();
  const bool opened = guarded("ConnectDB", viewFailure, [this] {
    if (!environment_.connection) throw StoreError(std::string(noConnectionText), 0);
    jobList_ =
        environment_.connection->openKeyset(sql("Select * From ImportKopf Order by Eingangsdatum"_sql));
    positionList_ = environment_.connection->openKeyset(sql("Select * From ImportPos"_sql));
  });
  if (!opened) closeLists();
  return opened;
}

bool ImportJobObject2::WWSSession() {
  if (refusedInRun("WWSSession")) return false;
  bool connected = false;
  guarded("WWSSession", sessionFailure, [&] { connected = connectSession(); });
  if (connected) return true;
  dropSession();
  setConnection(nullptr);
  return false;
}

bool ImportJobObject2::connectSession() {
  const auto session = environment_.components.createSession();
  session->Connect(start_.session, start_.connect);
  if (session->NotConnected() && session->ErrorCode() != 0) {
    session->ShowError("Die Verbindung '" + start_.connect + "' konnte nicht hergestellt werden.");
    return false;
  }
  try {
    adopt(session);
  } catch (const std::exception&) {
    disconnect(*session);
    throw;
  }
  return true;
}

/// Reads everything before setting anything, so that a failing session changes nothing.
void ImportJobObject2::adopt(const std::shared_ptr<qx::Session>& session) {
  auto connection = session->connection();
  std::string number = session->PersonalNr();
  Environment itsOwn = environment_;
  itsOwn.session = session;
  std::string currency = currencyOf(itsOwn);
  if (environment_.session != session) dropSession();
  environment_.session = session;
  if (connection) setConnection(std::move(connection));
  personalNr_ = std::move(number);
  homeCurrency_ = std::move(currency);
}

void ImportJobObject2::dropSession() {
  if (environment_.session) disconnect(*environment_.session);
  environment_.session.reset();
  personalNr_.clear();
  homeCurrency_ = option::homeCurrency.fallback;
}

void ImportJobObject2::Session(std::shared_ptr<qx::Session> session) {
  if (refusedInRun("Session")) return;
  if (session)
    guarded("Session", sessionFailure, [&] { adopt(session); });
  else
    dropSession();
}

void ImportJobObject2::JobViewShow() {
  if (!environment_.connection || environment_.connection->connectionString().empty()) {
    showMessage(environment_, {std::string(noConnectionText)});
    return;
  }
  bool opened = false;
  guarded("JobViewShow", viewFailure, [&] {
    const LockOutcome lock = lock_.held() ? LockOutcome{LockState::Taken, {}, {}} : lock_.take();
    if (lock.state == LockState::Unavailable) showFailure(viewFailure, lock.germanReason);
    if (lock.state != LockState::Taken) return;
    environment_.jobView.open();
    opened = true;
  });
  if (opened)
    ViewFormLoad = qxtViewJobForm_Load;
  else
    Unload();
}

void ImportJobObject2::Unload() {
  guarded("Unload", "Fehler beim Schließen der Importvorgänge: ", [this] {
    if (!lock_.held()) return;
    // A run continues without its view, but not without the lock.
    unloadedInRun_ = running_;
    if (!running_) lock_.releaseIfHeld();
    environment_.jobView.close();
  });
  ViewFormLoad = qxtViewJobForm_Unload;
  events_.raiseJobViewUnload();
}

bool ImportJobObject2::ProcessJobs(bool UnEvaluated, qxProcessState ProcessState) {
  if (refusedInRun("ProcessJobs")) return false;
  // Whoever took the lock may be working.
  const bool refused = lock_.confirm().state == LockState::Refused;
  {
    const UnderWay underWay(running_, stop_);
    RunWait wait(events_, environment_.diagnostics, stop_, environment_.desktop);
    book_.begin(&wait);
    feed_.renew();
    RunReport report;
    report.end = RunEnd::Refused;
    if (!refused) report = perform(UnEvaluated, ProcessState);
    lastRun_ = std::move(report);
    EntryWait shortWait(environment_.desktop, lastRun_.end);
    trapped(environment_.diagnostics, {"book of runs"}, [&] { book_.end(entryOf(lastRun_), &shortWait); });
  }
  if (std::exchange(unloadedInRun_, false)) lock_.releaseIfHeld();
  if (lastRun_.end == RunEnd::Refused) return false;
  strGlobalProcErr = errors_.all.text();
  strGlobalKundeProcErr = errors_.customers.text();
  if (lastRun_.end != RunEnd::Broken) return true;
  environment_.diagnostics.report({"ProcessJobs", lastRun_.failure, ""});
  showFailure("Fehler bei der Verarbeitung: ", lastRun_.germanFailure);
  return false;
}

RunReport ImportJobObject2::perform(bool unevaluated, qxProcessState selection) {
  errors_.clear();
  RunContext run{environment_, events_,     protocol_,     errors_,     stop_,    outcomes_,
                 feed_,        personalNr_, homeCurrency_, unevaluated, selection};
  return ProcessingRun(run).execute();
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
    const bool unchecked =
        settings_[option::automatic] &&
        any(sql("Select Case When Exists(Select 1 From ImportKopf Where JobType In (10, 20, 30) And "
                "(ProcessWarning Is Null Or ProcessWarning = 0)) Then 1 Else 0 End As found"_sql));
    NoProcess = !any(sql("Select Case When Exists(Select 1 From ImportKopf Where JobType In (10, 20, 30)) Or "
                         "Exists(Select 1 From ImportKopf Where ProcessWarning = 1 And "
                         "JobType In (11, 12, 21, 22, 31, 32)) Then 1 Else 0 End As found"_sql));
    NoProof = unchecked;
  });
}

bool ImportJobObject2::CreateProtocol() {
  bool created = false;
  guarded("CreateProtocol", "Verarbeitungsprotokoll konnte nicht erzeugt werden. ", [&] {
    created = protocol_.create([this](const Message& message) { showMessage(environment_, message); });
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
    protocol_.add(line, [this](const Message& message) { showMessage(environment_, message); });
  });
}

void ImportJobObject2::DelItem(std::string_view ItemName, bool DelKundenVertrag) {
  guarded("DelItem", deletionFailure, [&] { JobDeletion(environment_).DelItem(ItemName, DelKundenVertrag); });
}

void ImportJobObject2::DelArchives() {
  guarded("DelArchives", deletionFailure, [&] {
    JobDeletion deletion(environment_);
    deletion.DelArchives();
    if (!deletion.left().empty()) showFailure(deletionFailure, deletion.germanLeft());
  });
}

bool ImportJobObject2::Export(std::string_view FileName) {
  return showExportResult(environment_, exportJobFile(environment_, FileName, JobFileVersion::Two));
}

bool ImportJobObject2::Import(std::string_view FileName) {
  return showImportResult(environment_, importJobFile(environment_, FileName, JobFileVersion::Two));
}

std::string ImportJobObject2::GUID() { return newJobKey(environment_); }

std::int16_t ImportJobObject2::GetVertragsZustand(std::string_view Kundennummer,
                                                  std::string_view Vertragsnummer,
                                                  std::string_view Artikelnummer,
                                                  std::string_view Vertragsart, std::string* JobID) const {
  std::string job;
  ContractState state = ContractState::New;
  const ContractKey key{std::string(Kundennummer), std::string(Vertragsnummer), std::string(Artikelnummer),
                        std::string(Vertragsart)};
  if (!guarded("GetVertragsZustand", contractFailure,
               [&] { state = ContractComparison(environment_).state(key, job); }))
    job.clear();
  if (JobID != nullptr) *JobID = std::move(job);
  return static_cast<std::int16_t>(state);
}

bool ImportJobObject2::GetDiffVertrags(const VertragFields& vertrag) const {
  bool differs = false;
  guarded("GetDiffVertrags", contractFailure,
          [&] { differs = ContractComparison(environment_).differs(fieldsOf(vertrag)); });
  return differs;
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
