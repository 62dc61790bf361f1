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
#include "engine/stop_signal.h"
#include "model/entry_records.h"
#include "platform/environment.h"
#include "rules/combo_lists.h"
#include "rules/customer_addresses.h"
#include "rules/master_data.h"
#include "rules/scrambler.h"
#include "settings/settings.h"
#include "store/import_lock.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace qx {

/// What the host hands over at its start.
struct StartParameters {
  std::string connect;  ///< how to connect
  std::string session;  ///< the ERP session to join
  std::string filename; ///< a job file to read in once the view is open; may be empty
};

/// Through this class a host and the job view reach the staged jobs and turn them into ERP data.
///
/// Created on an environment that outlives it; its session and connection are the environment's. One thread.
/// Members do not raise: they catch at their end, show a critical box with the failure's description and
/// return false or empty, unless stated otherwise. A session that the environment holds already is adopted
/// at once; one that cannot be is dropped, with a box. At its end the object gives its lock back and
/// disconnects the session that it holds, an adopted one too.
///
/// A handler of the run's events may call members. While the run is under way `ProcessJobs` and `WWSSession`
/// return false, and connection and session stay as they are; only the diagnostics are told.
class ImportJobObject2 {
public:
  explicit ImportJobObject2(Environment& environment);
  ImportJobObject2(const ImportJobObject2&) = delete;
  ImportJobObject2& operator=(const ImportJobObject2&) = delete;
  ~ImportJobObject2();

  /// @name Object
  /// @{
  std::shared_ptr<Connection> ActiveConnection() const { return environment_.connection; }
  /// Closes the job list, the protocol and, when it is another connection, gives the lock back. Beside a
  /// session that works on the same file with a connection of its own, one with units of work is refused with
  /// a box and the earlier one stays: each run would wait for itself when it draws a number.
  void ActiveConnection(std::shared_ptr<Connection> connection);
  /// Opens the job list and its positions on the connection; true when both could be opened.
  bool ConnectDB();
  /// Connects to the ERP session and adopts it; true when connected. After a refused or failed connect there
  /// is neither session nor connection, whatever there was before.
  bool WWSSession();
  std::shared_ptr<qx::Session> Session() const { return environment_.session; }
  /// Adopts a session: its connection, personnel number and home currency. The one before is disconnected.
  /// When any of them cannot be had, everything stays as it was. Null lets the session go; the connection
  /// stays.
  void Session(std::shared_ptr<qx::Session> session);
  /// Takes the single-user lock and opens the job view; unloads again when it cannot have the lock, which is
  /// always said, or cannot open the view.
  void JobViewShow();
  /// Releases the lock if this object holds it and raises `JobViewUnload`. While a run is under way the lock
  /// is released at its end. A lock whose row could not be deleted is still held.
  void Unload();
  /// The processing run. True when it came to its end, also when it was stopped; false when it was refused,
  /// broke off or was called in the middle of another. `UnEvaluated` leaves the automatic check out.
  bool ProcessJobs(bool UnEvaluated = false, qxProcessState ProcessState = qxProcessState::ProcessAll);
  /// `NoProof`: jobs are waiting that the automatic mode has still to check. `NoProcess`: nothing can be
  /// processed.
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
  /// file of another kind, and any record that had to be refused, is shown.
  bool Import(std::string_view FileName);
  std::string nCommand;
  JobViewFormState ViewFormLoad = qxtViewJobForm_Nothing;
  std::string strGlobalProcErr;      ///< the failures of the last run
  std::string strGlobalKundeProcErr; ///< those of its customer jobs
  /// @}

  /// @name Lookups. Unknown codes give false, 0 or empty texts; database errors reach the caller.
  /// @{
  bool KundeAngelegt(std::string_view Kundennummer, std::string_view AdressNummer = {}) const;
  std::string GetAdresse(std::string_view Kundennummer, std::string_view AdressNummer = {}) const;
  bool GetAdressDaten(std::string_view Kundennummer, std::string_view AdressNummer, std::string& Bez1,
                      std::string& Bez2, std::string& Bez3, std::string& Strasse, std::string& Land,
                      std::string& PLZ, std::string& Ort) const;
  bool AddAdressDaten(std::string_view Kundennummer, std::string_view AdressNummer, std::string_view Bez1,
                      std::string_view Bez2, std::string_view Bez3, std::string_view Strasse,
                      std::string_view Land, std::string_view PLZ, std::string_view Ort) const;
  std::string GetBankverbindung(std::string_view BLZ) const;
  bool GetDiversKunde(std::string_view Kundennummer) const;
  bool VertragsgegenstandAngelegt(std::string_view Vertragsgegenstand) const;
  std::string GetVertragsgegenstand(std::string_view VertragsgegenstandNr) const;
  bool GetTextbaustein(std::string_view Textart, std::string_view TextNummer, std::string_view Zusatztext,
                       std::string_view SprachKZ, std::string& Kurztext, std::string& Langtext,
                       std::string& WoDrucken, std::string& Schriftart, std::int16_t& Schriftgröße,
                       std::string& Schriftstil) const;
  std::string GetArtikelbezeichnung(std::string_view Artikelnummer) const;
  bool ArtikelAngelegt(std::string_view Artikelnummer) const;
  bool FillComboVersandart(ComboTarget& combo, std::string_view current) const;
  bool FillComboZahlungsart(ComboTarget& combo, std::string_view current) const;
  bool FillComboKundengruppe(ComboTarget& combo, std::string_view current) const;
  bool FillComboPreisliste(ComboTarget& combo, std::string_view current) const;
  bool FillComboWährung(ComboTarget& combo, std::string_view current) const;
  bool FillComboVertragsart(ComboTarget& combo, std::string_view current) const;
  bool FillComboVertreter(ComboTarget& combo, std::string_view current) const;
  bool FillComboZahlungsbed(ComboTarget& combo, std::string_view current) const;
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
  /// Marks the stored contracts of the customer that the import no longer carries; their number.
  std::int32_t GetDelVerträge(std::string_view Kundennummer);
  /// @}

  /// @name Rules. What they raise reaches the caller.
  /// @{
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
  /// The file to be read in, once: it is forgotten with this call. Empty for none.
  std::string takeFilename() { return std::exchange(start_.filename, {}); }
  /// Told of every job of a run once its outcome is durable.
  void setOutcomeSink(OutcomeSink sink) { outcomes_ = std::move(sink); }
  /// The end and the counts of the last run.
  const RunReport& lastRun() const { return lastRun_; }
  /// Ends the run that is under way after its current job; before and after a run it does nothing. May be
  /// called from a signal handler.
  void requestStop() noexcept { stop_.request(); }
  bool stopRequested() const noexcept { return stop_.requested(); }
  /// Ends the statement that a run is stuck in; its group of jobs is rolled back and waits again. May be
  /// called from a signal handler.
  void interruptStatement() noexcept {
    if (environment_.connection) environment_.connection->interrupt();
  }
  /// Checks a staged job of any kind without writing anything. A check that fails is a finding; a store that
  /// cannot go on reaches the caller.
  Findings checkJob(std::string_view jobId);
  ImportLock& importLock() { return lock_; }
  /// @}

private:
  bool connectSession();
  void adopt(const std::shared_ptr<qx::Session>& session);
  void dropSession();
  void disconnect(qx::Session& session) const;
  void setConnection(std::shared_ptr<Connection> connection);
  void closeLists();
  bool refusedInRun(std::string_view member) const;
  void showFailure(std::string_view text, std::string_view cause) const;
  const Scrambler& scrambler();
  /// Runs a member's work; shows and reports what it raises, and returns false then.
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
  ImportLock lock_;
  MasterData masterData_;
  CustomerAddresses addresses_;
  ComboLists combos_;
  std::optional<Scrambler> scrambler_; ///< made when it is first needed
  std::unique_ptr<Recordset> jobList_;
  std::unique_ptr<Recordset> positionList_;
  bool running_ = false;
  bool unloadedInRun_ = false; ///< the lock is to be released at the end of the run
  std::string personalNr_;
  std::string homeCurrency_{defaultHomeCurrency};
};

} // namespace qx
