// The public engine object.
#pragma once

#include "engine/customer_check.h"
#include "engine/event_source.h"
#include "engine/findings.h"
#include "engine/hints.h"
#include "engine/job_marks.h"
#include "engine/job_outcome.h"
#include "engine/processing_run.h"
#include "engine/protocol.h"
#include "engine/run_wait.h"
#include "model/entry_records.h"
#include "platform/environment.h"
#include "rules/combo_lists.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"
#include "rules/scrambler.h"
#include "settings/settings.h"
#include "store/import_lock.h"
#include "store/run_book.h"
#include "store/state_feed.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qx {

/// The start parameters of the host.
struct StartParameters {
  std::string connect;  ///< how to connect
  std::string session;  ///< the ERP session to join
  std::string filename; ///< a job file to import once the view is open; may be empty
};

/// Through this class a host and the job view reach the staged jobs and turn them into ERP data.
///
/// The environment must outlive it; its session and connection are the environment's. Not thread-safe. Unless
/// stated otherwise, members do not raise: they trap failures, show them in a critical box and return false
/// or empty. A session already in the environment is adopted at once or, with a box, dropped if that fails.
/// The destructor releases the lock and disconnects the session, even an adopted one.
///
/// A handler of the run's events may call members. During the run `ProcessJobs` and `WWSSession` return
/// false, and connection and session do not change; this is only reported to the diagnostics.
class ImportJobObject2 : public ComboLists, private MasterData, private CustomerAddresses {
public:
  explicit ImportJobObject2(Environment& environment);
  ImportJobObject2(const ImportJobObject2&) = delete;
  ImportJobObject2& operator=(const ImportJobObject2&) = delete;
  ~ImportJobObject2();

  /// @name Object
  /// @{
  std::shared_ptr<Connection> ActiveConnection() const { return environment_.connection; }
  /// Closes the job list and the protocol and, for another connection, releases the lock. Refused with a box,
  /// without a change, for a connection with units of work on the file that the session has open through its
  /// own connection: a run would wait for itself when drawing a number.
  void ActiveConnection(std::shared_ptr<Connection> connection);
  /// Opens the job list and its positions on the connection; true when both could be opened.
  bool ConnectDB();
  /// Connects to the ERP session and adopts it; true when connected. After a refused or failed connect there
  /// is neither session nor connection.
  bool WWSSession();
  std::shared_ptr<qx::Session> Session() const { return environment_.session; }
  /// Adopts a session: its connection, personnel number and home currency. The previous one is disconnected.
  /// Nothing changes when any of them is unavailable. Null releases the session but keeps the connection.
  void Session(std::shared_ptr<qx::Session> session);
  /// Takes the single-user lock and opens the job view; unloads again when the lock is refused, which is
  /// always shown, or the view cannot be opened.
  void JobViewShow();
  /// Releases the lock if this object holds it and raises `JobViewUnload`. During a run the lock is released
  /// at its end. A lock whose row could not be deleted is still held.
  void Unload();
  /// Performs a processing run. True when it ended normally or was stopped; false when it was refused, failed
  /// or called during another. `UnEvaluated` skips the automatic check. The run is entered in the book of
  /// runs of a database that has one.
  bool ProcessJobs(bool UnEvaluated = false, qxProcessState ProcessState = qxProcessState::ProcessAll);
  /// `NoProof`: waiting jobs have yet to be checked in automatic mode. `NoProcess`: nothing can be processed.
  void VerifyProcesses(bool& NoProof, bool& NoProcess);
  bool CreateProtocol();
  void AddProtocolColumn(std::string_view Vorgang, std::string_view Nummer, std::string_view Status,
                         std::string_view VADatum, std::string_view Info,
                         std::optional<std::string_view> ProtArtikelNummern = {},
                         std::string_view ProtBez = {}, std::string_view ProtMenge = {},
                         std::string_view ProtPreis = {}, bool Neukunde = false);
  /// Deletes a job or a position by its key; never raises.
  void DelItem(std::string_view ItemName, bool DelKundenVertrag = false);
  void DelArchives();
  /// A new key of 32 hexadecimal digits; empty when none could be made.
  std::string GUID();
  /// Writes every staged job and position to a job file; a failure is shown.
  bool Export(std::string_view FileName);
  /// Reads a plain or scrambled job file into the staging tables. Jobs of the same key are overwritten. A
  /// wrong kind of file and refused records are shown.
  bool Import(std::string_view FileName);
  std::string nCommand;
  JobViewFormState ViewFormLoad = qxtViewJobForm_Nothing;
  std::string strGlobalProcErr;      ///< the failures of the last run
  std::string strGlobalKundeProcErr; ///< those of its customer jobs
  /// @}

  /// @name Lookups, beside those of `ComboLists`. Unknown codes give false, 0 or empty texts; database errors
  /// reach the caller.
  /// @{
  using CustomerAddresses::GetAdresse;
  using CustomerAddresses::KundeAngelegt;
  bool GetAdressDaten(std::string_view Kundennummer, std::string_view AdressNummer, std::string& Bez1,
                      std::string& Bez2, std::string& Bez3, std::string& Strasse, std::string& Land,
                      std::string& PLZ, std::string& Ort) const;
  bool AddAdressDaten(std::string_view Kundennummer, std::string_view AdressNummer, std::string_view Bez1,
                      std::string_view Bez2, std::string_view Bez3, std::string_view Strasse,
                      std::string_view Land, std::string_view PLZ, std::string_view Ort) const;
  using MasterData::GetBankverbindung;
  using MasterData::GetDiversKunde;
  using MasterData::GetVertragsgegenstand;
  using MasterData::VertragsgegenstandAngelegt;
  bool GetTextbaustein(std::string_view Textart, std::string_view TextNummer, std::string_view Zusatztext,
                       std::string_view SprachKZ, std::string& Kurztext, std::string& Langtext,
                       std::string& WoDrucken, std::string& Schriftart, std::int16_t& Schriftgröße,
                       std::string& Schriftstil) const;
  using MasterData::ArtikelAngelegt;
  using MasterData::GetArtikelbezeichnung;
  /// @}

  /// @name Contracts
  /// @{
  /// The state of a contract line against the contract table: 0 new, 1 changed, 2 unchanged, 3 deleted.
  /// `JobID`, when given, receives the staged job that carries it, or "".
  std::int16_t GetVertragsZustand(std::string_view Kundennummer, std::string_view Vertragsnummer,
                                  std::string_view Artikelnummer, std::string_view Vertragsart,
                                  std::string* JobID = nullptr) const;
  /// Whether processing the contract would change what is stored.
  bool GetDiffVertrags(const VertragFields& vertrag) const;
  /// Marks the customer's stored contracts that are no longer imported; returns their number.
  std::int32_t GetDelVerträge(std::string_view Kundennummer);
  /// @}

  /// @name Rules. Their exceptions reach the caller. @{
  std::int16_t GetSteuerschlüssel(std::string_view MwStKZKunde, std::string_view MwStKZArtikel,
                                  std::string_view Datum) const;
  double GetSteuerSatz(std::string_view Steuerschlüssel) const;
  /// The amount off `Betrag` when `Param` is 1, else the rate in percent. Marks and values may be null.
  double GetGRabatt(const Value& KZRabattart, const Value& KZRabatt1, const Value& Rabatt1,
                    const Value& KZRabatt2, const Value& Rabatt2, const Value& KZRabatt3,
                    const Value& Rabatt3, const Value& Param, const Value& Betrag) const;
  static double rundenEx(double zahl, double RundenAuf, bool Aufrunden);
  static std::string intdat(const Value& SystemDatum);
  Date NowEx() const;
  double GetLagerbestand(std::string_view Artikelnummer, std::string_view Mengeneinheit, double Menge,
                         std::string& strME, bool MEUmrechnung = false) const;
  std::string MengeneinheitAlternativ(std::string_view Mengeneinheit) const;
  std::int32_t CheckKostzuord(std::string_view Belegart, std::int32_t KostID, bool ShowMessage) const;
  /// The text scrambled by the installation's code tables, and back. Raises `std::runtime_error` when they
  /// cannot be used.
  std::string Encrypt(std::string_view strText);
  std::string Decrypt(std::string_view strText);
  /// The sum of the characters' codes. Raises `std::overflow_error` when 32 bits do not hold it.
  static std::int32_t CheckSum(std::string_view strText);
  /// @}

  /// @name Settings. Failures are skipped.
  /// @{
  std::string ImpGetSetting(std::string_view AppName, std::string_view Section, std::string_view Key,
                            bool GetLocal = false) const;
  /// Always the empty text.
  std::string ImpSaveSetting(std::string_view AppName, std::string_view Section, std::string_view Key,
                             std::string_view Setting, bool SaveLocal = false) const;
  /// @}

  /// @name For C++ callers only
  /// @{
  [[nodiscard]] Subscription subscribe(EngineEvents& observer) { return events_.subscribe(observer); }
  void setStartParameters(StartParameters parameters) { start_ = std::move(parameters); }
  /// Returns and clears the file to import; empty for none.
  std::string takeFilename() { return std::exchange(start_.filename, {}); }
  /// Called for every job of a run once its outcome is durable.
  void setOutcomeSink(OutcomeSink sink) { outcomes_ = std::move(sink); }
  /// The end and the counts of the last run.
  const RunReport& lastRun() const { return lastRun_; }
  /// Ends the running run after its current job; otherwise does nothing. May be called from a signal handler.
  void requestStop() noexcept { stop_.request(); }
  bool stopRequested() const noexcept { return stop_.requested(); }
  /// Interrupts the running statement of a run; its group of jobs is rolled back and waits again. May be
  /// called from a signal handler.
  void interruptStatement() noexcept {
    if (environment_.connection) environment_.connection->interrupt();
  }
  /// Checks a staged job of any kind without writing anything. A failed check is a finding; a failure of the
  /// whole database reaches the caller.
  Findings checkJob(std::string_view jobId);
  ImportLock& importLock() { return lock_; }
  /// @}

private:
  RunReport perform(bool unevaluated, qxProcessState selection);
  bool connectSession();
  void adopt(const std::shared_ptr<qx::Session>& session);
  void dropSession();
  void disconnect(qx::Session& session) const;
  void setConnection(std::shared_ptr<Connection> connection);
  void closeLists();
  bool refusedInRun(std::string_view member) const;
  void showFailure(std::string_view text, std::string_view cause) const;
  const Scrambler& scrambler();
  /// Runs a member's work; shows and reports an exception and then returns false.
  template <class Work>
  bool guarded(std::string_view member, std::string_view text, Work&& work) const;

  Environment& environment_;
  StartParameters start_;
  Settings settings_;
  EventSource events_;
  Protocol protocol_;
  CollectedErrors errors_;
  StopSignal stop_;
  OutcomeSink outcomes_;
  RunReport lastRun_;
  RunBook book_;
  StateFeed feed_;
  ImportLock lock_;
  std::optional<Scrambler> scrambler_; ///< created on first use
  std::unique_ptr<Recordset> jobList_;
  std::unique_ptr<Recordset> positionList_;
  bool running_ = false;
  bool unloadedInRun_ = false; ///< release the lock at the end of the run
  std::string personalNr_;
  std::string homeCurrency_{option::homeCurrency.fallback};
};

} // namespace qx
