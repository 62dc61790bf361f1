// What the dialogs of customer, contract and order jobs have in common, without a toolkit.
#pragma once

#include "engine/job_editing.h"
#include "rules/master_data.h"
#include "ui/dialog_context.h"
#include "ui/finding_list.h"
#include "ui/form.h"
#include "ui/job_grid.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class AddressDialogPresenter;

/// The part of a dialog that has a delivery and an invoice address.
class AddressPart {
public:
  virtual ~AddressPart() = default;
  /// An editor for both, with the values shown now. Pass it to `takeAddresses` when the clerk confirms.
  virtual std::unique_ptr<AddressDialogPresenter> addresses() = 0;
  virtual void takeAddresses(const AddressDialogPresenter& edited) = 0;
  /// The customer whose addresses the lookup of this control lists; "" for any other lookup.
  virtual std::string lookupContext(std::string_view control) const = 0;
};

/// Describes a kind of dialog and its parts.
struct JobDialogKind {
  std::string_view cancelButton{};          ///< object name of the button that closes without saving
  std::string_view boxTitle = defaultTitle; ///< of a box that shows the message of a picture
  bool offersRelease = true;                ///< a parked job can be released
  bool erases = false;                      ///< the dialog can delete its job
  JobGrid* grid = nullptr;                  ///< contracts of a customer, positions of an order
  std::function<void()> reloadGrid{};       ///< reads its rows again; may raise
  StepwiseChecks* checks = nullptr;         ///< checks of its rows
  AddressPart* addresses = nullptr;
};

/// What has happened to a job since its dialog read it, as far as saving has revealed.
enum class JobLoss : std::uint8_t {
  None,
  Changed, ///< another program has changed it, so the input no longer fits
  Gone,    ///< it no longer exists
};

/// The dialog of one staged job.
///
/// Nothing is written before `save`, which refuses to overwrite a job that has changed since it was read.
/// Members do not raise: failures are reported to the diagnostics and shown in `notice`; the input is kept.
class JobDialogPresenter : public Form {
public:
  JobDialogPresenter(const DialogContext& context, JobDialogKind kind);
  JobDialogPresenter(const JobDialogPresenter&) = delete;
  JobDialogPresenter& operator=(const JobDialogPresenter&) = delete;
  ~JobDialogPresenter() override;

  /// Reads the job and checks it. False when there is no such job or it cannot be read; `notice` says why.
  bool load(std::string_view jobId);

  const std::string& jobId() const { return job_.jobId; }
  std::int16_t jobType() const { return job_.jobType(); }
  /// Names the job: kind, number and name.
  virtual std::string title() const = 0;
  const JobDialogKind& kind() const { return kind_; }
  /// Why nothing may be changed, on one line; empty when it may.
  std::string readOnlyReason() const;
  /// The last failure on one line; empty without one.
  const std::string& notice() const { return notice_; }
  /// Worst first.
  std::vector<ListedFinding> findings() const { return findings_.sorted(); }
  /// The status that the job's check gives for the values shown; null while a check is outstanding.
  virtual std::optional<CheckStatus> verdict() const;
  /// Whether to offer the release: there are findings, or the job is parked.
  bool canRelease() const;
  /// Whether the next run processes the job regardless of findings.
  bool released() const;
  void release(bool on);

  /// The number of rows of the grid that are still to be checked.
  std::size_t checksLeft() const { return kind_.checks == nullptr ? 0 : kind_.checks->checksLeft(); }
  /// Checks up to `count` further rows.
  void checkMore(std::size_t count);
  /// To be called when the dialog of a row's job was closed: reads the rows again.
  void detailsClosed();
  /// Whether customer-specific fields and columns are shown.
  bool customerSpecific() const { return customerSpecific_; }

  void leave(std::size_t index) override;
  bool lookUp(std::size_t index) override;

  /// Runs the remaining checks. False when there are findings that the clerk has not seen yet; `notice` says
  /// so.
  bool nothingNewSince(const std::vector<ListedFinding>& seen);
  /// Writes the job. False when it could not be written; a message has been shown and the input is kept.
  bool save();
  JobLoss loss() const { return loss_; }
  /// Whether the clerk wants to read the job again as another program has left it.
  bool readAnewAsked() const { return readAnewAsked_; }
  bool canErase() const { return kind_.erases && !readOnly(); }
  /// Asks and then deletes the job. True when it was deleted.
  bool erase();

protected:
  /// @name Implemented by the kinds of dialog; all may raise.
  /// @{
  virtual bool isDone(std::int16_t jobType) const = 0;
  /// The header row of the job.
  virtual std::unique_ptr<Recordset> open(std::string_view jobId) = 0;
  /// Fills the controls that have no column of their own and runs every check, each by `checking`.
  virtual void fill() = 0;
  /// Runs the checks of one control, each by `checking`.
  virtual void check(std::string_view control) = 0;
  /// Puts the chosen values of a lookup into the controls and checks them.
  virtual void takeLookup(std::string_view control, const std::vector<std::string>& chosen) = 0;
  /// Makes the remaining checks and asks any questions, before the unit of work of saving begins.
  virtual void prepareSaving() = 0;
  /// Writes everything. `failure` is the message for the clerk when it raises.
  virtual void store(std::string_view& failure) = 0;
  /// Called after saving: the values shown are now the stored ones.
  virtual void stored() = 0;
  /// @}

  /// The value of a column of the job as it was read.
  virtual Value loaded(ColumnName column) const { return job_.header.at(0, column); }
  /// The same with the clerk's input.
  virtual Value current(ColumnName column) const;
  /// Every field of the job as shown.
  JobFields fields() const {
    return [this](ColumnName column) { return current(column); };
  }
  /// Lists the finding and shows a picture beside its control, or removes both when `fine`.
  void report(bool fine, Finding finding);
  /// The same for these rules, of which `found` holds those that are broken.
  void report(const Findings& found, std::initializer_list<Rule> rules);
  /// Runs a step. A failure is reported to the diagnostics and in `notice`; false then.
  bool trying(std::string_view where, const std::function<void()>& step);
  /// The same for a check, which counts as outstanding until it succeeds.
  void checking(std::string_view name, const std::function<void()>& check);
  /// Shows that a check cannot be made; the diagnostics know already.
  void showUnchecked(const std::string& cause);
  /// Runs the work as one unit if the job is unchanged since it was read. Shows a failure with the text that
  /// `failure` then holds; false then.
  bool edit(std::string_view& failure, const std::function<void()>& work);
  /// Lists the reasons that earlier processing stored in the job.
  void reportFailure(bool counts = false);
  /// The changed columns of the controls.
  std::vector<ColumnChange> changes() const;
  /// The value of a control as its column stores it; null for an empty one.
  static Value columnValue(const ControlSpec& spec, const ControlState& control);
  /// A control whose text is not a valid number or date; null when there is none.
  std::optional<std::size_t> unreadable() const;
  const JobEditing& editing() const { return editing_; }
  /// As stored in the database.
  const ReadJob& job() const { return job_; }
  /// The stored text of a column.
  std::string staged(ColumnName column) const { return job_.header.at(0, column).text(); }

  /// Waits while another program writes. False when the clerk has given up.
  bool awaitDatabase() const { return qx::awaitDatabase(environment(), makeWait(context_.wait).get()); }
  Environment& environment() const { return context_.environment; }
  ImportJobObject2& engine() const { return context_.engine; }
  MasterData masterData() const { return MasterData(environment()); }
  const DialogContext& context() const { return context_; }
  FindingList findings_;

private:
  bool isReachable();
  ReleaseAnswer askRelease() const;
  bool stillLocked();
  void showLoss(const JobChangedError& error);
  void normalise(std::size_t index);

  DialogContext context_;
  JobDialogKind kind_;
  JobEditing editing_;
  bool customerSpecific_ = false;
  ReadJob job_;
  std::set<std::string, std::less<>> outstanding_; ///< checks that could not be made
  JobLoss loss_ = JobLoss::None;
  bool readAnewAsked_ = false;
  std::string notice_;
};

} // namespace qx
