// The options dialog without a toolkit: what it loads, how its controls depend on each other, what it saves.
#pragma once

#include "platform/database.h"
#include "platform/environment.h"
#include "settings/settings.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Options grouped under a heading.
struct OptionGroup {
  std::string_view caption;
  std::span<const OptionSpec* const> options;
  bool customerSpecific = false; ///< on the second page
};

/// The groups from top to bottom; each control is in exactly one.
std::span<const OptionGroup> optionGroups();

/// One control and its value.
struct OptionField {
  const OptionSpec* option = nullptr;
  std::string value; ///< of a check box "1" or "0", or "" for an unset one with three states
  bool enabled = true;
  bool readable = true; ///< false when the store could not be read: shown disabled and never written
  std::string loaded;   ///< the value as it was read
  bool absent = false;  ///< nothing was stored

  bool isCheck() const { return option->isCheck(); }
  bool checked() const { return value == "1"; }
};

/// Opened with `load`, ended with `close`, which saves unless `cancel` was called before. A setting that the
/// store refuses is reported to the diagnostics and skipped.
class OptionsDialogPresenter {
public:
  explicit OptionsDialogPresenter(Environment& environment)
      : environment_(environment), settings_(environment) {}

  /// Reads every option that is shown. Without customer-specific mode the second page is neither read nor
  /// written.
  void load();
  bool customerSpecific() const { return customerSpecific_; }
  /// In the order of loading and saving.
  const std::vector<OptionField>& fields() const { return fields_; }
  /// The field of a control; null for one that is not shown.
  const OptionField* field(std::string_view control) const;
  /// A line about options that could not be read and therefore cannot be changed; empty without any.
  std::string notice() const;

  /// The clerk ticks or unticks; other fields may change with it. Does nothing for a disabled control.
  void check(std::string_view control, bool on);
  /// Unsets an option with three states.
  void unset(std::string_view control);
  void type(std::string_view control, std::string_view text);

  void cancel() { ended_ = true; }
  /// Writes `AppSettings` = "1" and every field that was changed, the first confirmation also those that
  /// have never been stored; once. What belongs to the workplace comes first, the rest is one unit of work
  /// on a connection of our own, which waits for another program as long as `wait` says (null: some
  /// seconds). False when the clerk was told why it cannot be: the dialog stays open.
  bool close(BusyWait* wait = nullptr);
  /// The control for whose text `close` was refused; empty when it was not for a control.
  std::string_view wrongControl() const { return wrongControl_; }

private:
  OptionField* editable(std::string_view control);
  void followCostAssignment();
  bool numbersAreReadable();
  bool mustBeWritten(const OptionField& held) const;
  void saveShared(BusyWait* wait);
  void save(const Settings& settings, OptionStore store) const;

  Environment& environment_;
  Settings settings_;
  std::vector<OptionField> fields_;
  std::string_view wrongControl_;
  bool customerSpecific_ = false;
  bool confirmed_ = false; ///< the options have been confirmed before
  bool ended_ = false;
};

} // namespace qx
