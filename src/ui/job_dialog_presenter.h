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
  /// The editor of both, made on what is shown now. Hand it back to `takeAddresses` when the clerk agrees.
  virtual std::unique_ptr<AddressDialogPresenter> addresses() = 0;
  virtual void takeAddresses(const AddressDialogPresenter& edited) = 0;
  /// Whose addresses the lookup of this control lists; "" for any other lookup.
  virtual std::string lookupContext(std::string_view control) const = 0;
};

/// What a kind of dialog is and which parts it has.
struct JobDialogKind {
  std::string_view cancelButton{};          ///< object name of the button that closes without saving
  std::string_view boxTitle = defaultTitle; ///< of a box that shows the message of a picture
  bool offersRelease = true;                ///< a parked job goes on by a release only
  bool erases = false;                      ///< the dialog can delete its job
  JobGrid* grid = nullptr;                  ///< contracts of a customer, positions of an order
  std::function<void()> reloadGrid{};       ///< reads its rows again; may raise
  StepwiseChecks* checks = nullptr;         ///< those of its rows
  AddressPart* addresses = nullptr;
};

/// What has become of a job since its dialog read it, as far as saving has shown.
enum class JobLoss : std::uint8_t {
  None,
  Changed, ///< another program has changed it: what the clerk typed fits no longer
  Gone,    ///< it is no longer there
};

/// The dialog of one staged job.
///
/// Nothing is written before `save`, which stores onto the job as it was read only. Members do not raise:
/// what fails is told to the diagnostics and stands in `notice`; what the clerk typed stays.
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
  /// One line on what went wrong last; empty otherwise.
  const std::string& notice() const { return notice_; }
  /// Worst first.
  std::vector<ListedFinding> findings() const { return findings_.sorted(); }
  /// The answer of the job's check to what is shown; null while a check is outstanding, for nobody knows it
  /// then.
  virtual std::optional<CheckStatus> verdict() const;
  /// Whether the release is worth offering: there are findings, or the job stands at a warning or an error.
  bool canRelease() const;
  /// The next run takes the job whatever the check finds.
  bool released() const;
  void release(bool on);

  /// Rows of the grid that are still to be checked.
  std::size_t checksLeft() const { return kind_.checks == nullptr ? 0 : kind_.checks->checksLeft(); }
  /// Checks up to `count` further rows.
  void checkMore(std::size_t count);
  /// The dialog of a row's own job was closed: the grid shows what that one has saved.
  void detailsClosed();
  /// The installation's own mode, with fields and columns of its own.
  bool customerSpecific() const { return customerSpecific_; }

  void leave(std::size_t index) override;
  bool lookUp(std::size_t index) override;

  /// Runs the checks that are left. False when there are findings now that are not among those that the clerk
  /// has seen; `notice` says so.
  bool nothingNewSince(const std::vector<ListedFinding>& seen);
  /// Writes the job. False when it could not be written; the message was shown then and the input stays.
  bool save();
  JobLoss loss() const { return loss_; }
  /// The clerk wants to see the job as another program has left it.
  bool readAnewAsked() const { return readAnewAsked_; }
  bool canErase() const { return kind_.erases && !readOnly(); }
  /// Deletes the job after a question. True when it is gone.
  bool erase();

protected:
  /// @name What the kinds of dialog fill in; all of it may raise.
  /// @{
  virtual bool isDone(std::int16_t jobType) const = 0;
  /// The header row of the job.
  virtual std::unique_ptr<Recordset> open(std::string_view jobId) = 0;
  /// Fills the controls that have no column of their own and runs every check, each by `checking`.
  virtual void fill() = 0;
  /// Runs the checks of one control, each by `checking`.
  virtual void check(std::string_view control) = 0;
  /// Puts what a lookup gave into the controls; their checks run afterwards.
  virtual void takeLookup(std::string_view control, const std::vector<std::string>& chosen) = 0;
  /// Makes the checks that are left and asks what is to be asked, before the work of saving begins.
  virtual void prepareSaving() = 0;
  /// Writes everything. `failure` is what the clerk reads when it raises.
  virtual void store(std::string_view& failure) = 0;
  /// What was written counts as stored from now on.
  virtual void stored() = 0;
  /// @}

  /// What a column of the job holds, as it was read and is shown.
  virtual Value loaded(ColumnName column) const { return job_.header.at(0, column); }
  /// The same with what the clerk has typed.
  virtual Value current(ColumnName column) const;
  /// Every field of the job as it is shown.
  JobFields fields() const {
    return [this](ColumnName column) { return current(column); };
  }
  /// A finding with a picture beside its control; both go when what it speaks of is fine.
  void report(bool fine, Finding finding);
  /// The same for these rules of a check.
  void report(const Findings& found, std::initializer_list<Rule> rules);
  /// Runs a step; a failure is told to the diagnostics and the notice. False then.
  bool trying(std::string_view where, const std::function<void()>& step);
  /// The same for a check, which counts as outstanding until it comes to its end.
  void checking(std::string_view name, const std::function<void()>& check);
  /// A check that cannot be made, told to the diagnostics already.
  void tellUnchecked(const std::string& cause);
  /// Runs the work as one unit on the job as it was read. A failure is told with the text that `failure`
  /// then holds. False then.
  bool edit(std::string_view& failure, const std::function<void()>& work);
  /// Lists what an earlier processing wrote into the job.
  void reportFailure(bool counts = false);
  /// What the controls changed in the columns behind them.
  std::vector<ColumnChange> changes() const;
  /// The value of a control as its column stores it; null for an empty one.
  static Value columnValue(const ControlSpec& spec, const ControlState& control);
  /// A control whose text is no number or date; null when all can be read.
  std::optional<std::size_t> unreadable() const;
  const JobEditing& editing() const { return editing_; }
  /// As it stands in the database.
  const ReadJob& job() const { return job_; }
  /// The text of a column there.
  std::string staged(ColumnName column) const { return job_.header.at(0, column).text(); }

  /// Waits for a program that writes. False when the clerk has given up.
  bool awaitDatabase() const { return qx::awaitDatabase(environment(), makeWait(context_.wait).get()); }
  Environment& environment() const { return context_.environment; }
  ImportJobObject2& engine() const { return context_.engine; }
  MasterData masterData() const { return MasterData(environment()); }
  const DialogContext& context() const { return context_; }
  FindingList findings_;

private:
  bool stillLocked();
  void tellLoss(const JobChangedError& error);
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
