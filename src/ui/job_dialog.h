// What the dialogs of customer, contract and order jobs have in common, without a toolkit.
#pragma once

#include "engine/import_job_object2.h"
#include "engine/job_editing.h"
#include "ui/finding_list.h"
#include "ui/form.h"
#include "ui/job_grid.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

class AddressDialog;
class LookupBridge;

/// What every dialog works with; all of it outlives the dialog.
struct DialogContext {
  Environment& environment;
  ImportJobObject2& engine;
  LookupBridge& lookups;
};

/// The dialog of one staged job.
///
/// Nothing is written before `save`. Members do not raise: what fails is told to the diagnostics and stands
/// in `notice`; what the clerk typed stays.
class JobDialog : public Form {
public:
  explicit JobDialog(const DialogContext& context);
  JobDialog(const JobDialog&) = delete;
  JobDialog& operator=(const JobDialog&) = delete;
  ~JobDialog() override;

  /// Reads the job and checks it. False when there is no such job or it cannot be read; `notice` says why.
  bool load(std::string_view jobId);

  const std::string& jobId() const { return jobId_; }
  std::int16_t jobType() const { return jobType_; }
  /// Names the job: kind, number and name.
  virtual std::string title() const = 0;
  /// The object name of the button that closes without saving.
  virtual std::string_view cancelButton() const = 0;
  /// The title of a box that shows the message of a picture.
  virtual std::string_view boxTitle() const { return defaultTitle; }
  /// Why nothing may be changed, on one line; empty when it may.
  std::string readOnlyReason() const;
  /// One line on what went wrong last; empty otherwise.
  const std::string& notice() const { return notice_; }
  /// Worst first.
  std::vector<Finding> findings() const { return findings_.sorted(); }
  /// Whether the release is worth offering: there are findings, or the job stands at a warning or an error.
  bool canRelease() const;
  /// The next run takes the job whatever the check finds.
  bool released() const;
  void release(bool on);

  /// The contracts of a customer or the positions of an order; null for none.
  virtual JobGrid* grid() { return nullptr; }
  /// Positions still to be checked.
  virtual std::size_t checksLeft() const { return 0; }
  /// Checks up to `count` further positions.
  virtual void checkMore(std::size_t /*count*/) {}
  /// The dialog of a row's own job was closed: the grid shows what that one has saved.
  void detailsClosed();
  /// The installation's own mode, with fields and columns of its own.
  bool customerSpecific() const { return customerSpecific_; }
  /// The editor of the job's delivery and invoice address, made on what is shown now; null for none. Hand it
  /// back to `takeAddresses` when the clerk agrees.
  virtual std::unique_ptr<AddressDialog> addresses();
  virtual void takeAddresses(const AddressDialog& /*edited*/) {}

  void leave(std::size_t place) override;
  bool lookUp(std::size_t place) override;

  /// Writes the job. False when it could not be written; the message was shown then and the input stays.
  bool save();
  /// Whether the dialog can delete its job.
  virtual bool canErase() const { return false; }
  /// Deletes the job after a question. True when it is gone.
  virtual bool erase() { return false; }

protected:
  /// @name What the kinds of dialog fill in; all of it may raise.
  /// @{
  virtual bool isDone(std::int16_t jobType) const = 0;
  /// The header row of the job.
  virtual std::unique_ptr<Recordset> open(std::string_view jobId) = 0;
  /// Fills the controls that have no column of their own and runs every check. `job` stands on the header.
  virtual void fill(Recordset& job) = 0;
  /// Runs the checks of one control.
  virtual void check(std::string_view control) = 0;
  /// Puts what a lookup gave into the controls; their checks run afterwards.
  virtual void takeLookup(std::string_view control, const std::vector<std::string>& chosen) = 0;
  /// What a lookup of this control is about: a customer number or "".
  virtual std::string lookupContext(std::string_view /*control*/) const { return {}; }
  /// Reads the grid's rows again.
  virtual void reloadGrid() {}
  /// Whether a job that stands at a warning or an error goes on by a release only.
  virtual bool offersRelease() const { return true; }
  /// Writes everything but the address blocks.
  virtual void store() = 0;
  /// Writes the address blocks.
  virtual void storeAddresses() {}
  /// @}

  /// A finding with a picture beside its control. A clean severity removes both.
  void report(std::string_view code, std::string_view control, CheckStatus severity, std::string text = {});
  /// Runs a step; a failure is told to the diagnostics and the notice. False then.
  bool trying(std::string_view where, const std::function<void()>& step);
  /// Lists what an earlier processing wrote into the job.
  void reportFailure(Recordset& job);
  /// What the controls changed in the columns behind them.
  std::vector<ColumnChange> changes() const;
  /// The value of a control as its column stores it; null for an empty one.
  static Value stored(const ControlSpec& spec, const ControlState& control);
  /// A control whose text is no number or date; null when all can be read.
  std::optional<std::size_t> unreadable() const;
  const JobEditing& editing() const { return editing_; }
  ReadJob readJob() const { return {jobId_, jobType_}; }
  void setJobType(std::int16_t jobType) { jobType_ = jobType; }

  Environment& environment() const { return context_.environment; }
  ImportJobObject2& engine() const { return context_.engine; }
  const DialogContext& context() const { return context_; }
  FindingList findings_;

private:
  bool tellFailure(std::string_view text, const std::function<void()>& work);
  void normalise(std::size_t place);

  DialogContext context_;
  JobEditing editing_;
  bool customerSpecific_ = false;
  std::string jobId_;
  std::int16_t jobType_ = 0;
  std::string notice_;
};

} // namespace qx
