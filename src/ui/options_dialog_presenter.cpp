#include "ui/options_dialog_presenter.h"

#include "model/german_text.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "ui/dialog_context.h"

#include <algorithm>
#include <array>
#include <exception>

namespace qx {
namespace {

constexpr auto windowOptions =
    std::to_array<const OptionSpec*>({&option::keepPosition, &option::keepSize, &option::mayChange});
constexpr auto checkOptions =
    std::to_array<const OptionSpec*>({&option::checkStaged, &option::automatic, &option::warnOfStock,
                                      &option::checkCreditLimit, &option::compareAddresses});
constexpr auto customerOptions = std::to_array<const OptionSpec*>(
    {&option::createGroups, &option::createReps, &option::createPayments, &option::createBanks});
constexpr auto contractOptions =
    std::to_array<const OptionSpec*>({&option::deletedContracts, &option::changedContracts});
constexpr auto orderOptions = std::to_array<const OptionSpec*>(
    {&option::readyForDelivery, &option::readyForInvoice, &option::costAssignment, &option::createCosts});
constexpr auto deletionOptions = std::to_array<const OptionSpec*>(
    {&option::mayDelete, &option::purgeCustomers, &option::purgeContracts, &option::purgeOrders});
constexpr auto paymentOptions = std::to_array<const OptionSpec*>(
    {&option::ZAVSRG, &option::ZAVS, &option::VAZA, &option::ZAKunde, &option::VAKunde});
constexpr auto freightOptions = std::to_array<const OptionSpec*>(
    {&option::abGewicht, &option::VSabGewicht, &option::FrachtTransport, &option::FrachtGebuehr});
constexpr auto specialOptions = std::to_array<const OptionSpec*>(
    {&option::linesReadyForDelivery, &option::linesReadyForInvoice, &option::NeukundenRabatt});

constexpr std::array groups{
    OptionGroup{"Fenster", windowOptions},
    OptionGroup{"Prüfung", checkOptions},
    OptionGroup{"Kunden", customerOptions},
    OptionGroup{"Verträge", contractOptions},
    OptionGroup{"Aufträge", orderOptions},
    OptionGroup{"Löschen", deletionOptions},
    OptionGroup{"Zahlungs- und Versandarten", paymentOptions, true},
    OptionGroup{"Fracht", freightOptions, true},
    OptionGroup{"Aufträge und Kunden", specialOptions, true},
};

/// A check box is ticked when the option counts as on.
std::string shownValue(const OptionSpec& option, const std::string& stored) {
  if (!option.isCheck()) return stored;
  const auto state = checkState(option, stored);
  if (!state && option.threeStates) return "";
  return state.value_or(false) ? "1" : "0";
}

/// Without a window that shows the wait, another program is waited for no longer than this.
class OptionsWait final : public BusyWait {
public:
  bool goOn(std::chrono::milliseconds waited) override { return waited < std::chrono::seconds(5); }
};

} // namespace

std::span<const OptionGroup> optionGroups() { return groups; }

void OptionsDialogPresenter::load() {
  fields_.clear();
  ended_ = false;
  confirmed_ = settings_[option::confirmed];
  customerSpecific_ = settings_[option::customerSpecific];
  for (const OptionSpec* const option : allOptions()) {
    if (option->control.empty() || (option->customerSpecific && !customerSpecific_)) continue;
    const auto stored = settings_.read(*option);
    const std::string shown = shownValue(*option, stored.value_or(""));
    fields_.push_back(
        {option, shown, stored.has_value(), stored.has_value(), shown, stored.value_or("").empty()});
  }
  followCostAssignment();
}

const OptionField* OptionsDialogPresenter::field(std::string_view control) const {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const OptionField& held) { return held.option->control == control; });
  return found == fields_.end() ? nullptr : &*found;
}

std::string OptionsDialogPresenter::notice() const {
  const auto unread =
      std::count_if(fields_.begin(), fields_.end(), [](const auto& f) { return !f.readable; });
  if (unread == 0) return {};
  if (static_cast<std::size_t>(unread) == fields_.size())
    return "Die Optionen konnten nicht gelesen werden und bleiben, wie sie sind.";
  return "Einige Optionen konnten nicht gelesen werden; sie sind gesperrt und bleiben, wie sie sind.";
}

OptionField* OptionsDialogPresenter::editable(std::string_view control) {
  const auto found = std::find_if(fields_.begin(), fields_.end(),
                                  [&](const OptionField& held) { return held.option->control == control; });
  return found == fields_.end() || !found->enabled ? nullptr : &*found;
}

void OptionsDialogPresenter::check(std::string_view control, bool on) {
  if (OptionField* const changed = editable(control)) changed->value = on ? "1" : "0";
  if (control == option::costAssignment.control) followCostAssignment();
}

void OptionsDialogPresenter::unset(std::string_view control) {
  OptionField* const changed = editable(control);
  if (changed != nullptr && changed->option->threeStates) changed->value.clear();
}

void OptionsDialogPresenter::type(std::string_view control, std::string_view text) {
  if (OptionField* const changed = editable(control)) changed->value = text;
}

void OptionsDialogPresenter::followCostAssignment() {
  const OptionField* const assignment = field(option::costAssignment.control);
  for (OptionField& creation : fields_) {
    if (creation.option != &option::createCosts) continue;
    // Without the assignment it is unknown whether this is allowed.
    creation.readable = creation.readable && assignment->readable;
    creation.enabled = creation.readable && assignment->checked();
    if (creation.readable && !assignment->checked()) creation.value = "0";
  }
}

bool OptionsDialogPresenter::close(BusyWait* wait) {
  if (ended_ || fields_.empty()) return true;
  if (!numbersAreReadable() || !isConnected(environment_)) return false;
  try {
    save(settings_, OptionStore::Local);
    saveShared(wait);
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"options could not be written", failure.what(), {}});
    const bool unknown = dynamic_cast<const CommitUnknownError*>(&failure) != nullptr;
    showMessage(environment_,
                {(unknown ? "" : "Die Optionen wurden nicht gespeichert. ") + germanCause(failure) +
                     "\nIhre Angaben stehen noch im Fenster. Drücken Sie OK, um es noch einmal "
                     "zu versuchen.",
                 std::string(defaultTitle), MessageIcon::Critical});
    return false;
  }
  ended_ = true;
  return true;
}

/// Checks the fields to be written and reports the first that is invalid.
bool OptionsDialogPresenter::numbersAreReadable() {
  wrongControl_ = {};
  for (const OptionField& held : fields_) {
    if (held.option->rule != OptionRule::Number || held.value.empty() || !mustBeWritten(held)) continue;
    std::string text(held.option->caption);
    std::erase(text, '&');
    text += " '" + held.value + "' ";
    if (const auto readings = readingsOf(held.value))
      text += "kann " + germanNumber(readings->thousands) + " oder " + germanNumber(readings->decimals) +
              " bedeuten. Geben Sie bitte eines davon ein.";
    else if (!parseTypedNumber(held.value))
      text += "ist keine Zahl. Bitte berichtigen Sie das Feld.";
    else
      continue;
    wrongControl_ = held.option->control;
    showMessage(environment_, {std::move(text), std::string(defaultTitle), MessageIcon::Exclamation});
    return false;
  }
  return true;
}

/// An untouched field keeps its stored text. Only the first confirmation also stores what has never been
/// stored.
bool OptionsDialogPresenter::mustBeWritten(const OptionField& held) const {
  return held.readable && (held.value != held.loaded || (!confirmed_ && held.absent));
}

void OptionsDialogPresenter::saveShared(BusyWait* wait) {
  const auto isShared = [](const OptionField& held) { return !held.option->isLocal(); };
  // The first start only ends when the shared options could be confirmed.
  const bool confirms =
      std::ranges::all_of(fields_, [&](const OptionField& held) { return held.readable || !isShared(held); });
  if (!confirms && std::ranges::none_of(fields_, [&](const OptionField& held) {
        return isShared(held) && mustBeWritten(held);
      }))
    return;
  const Settings settings(environment_, SettingTrap::Refusals);
  const auto write = [&] {
    if (confirms) settings.save(option::confirmed, "1");
    save(settings, OptionStore::Shared);
  };
  const auto connection = environment_.session ? environment_.connection : nullptr;
  if (!connection) return write();
  OptionsWait brief;
  doneAgainOnConflict(environment_, "Options", [&] {
    WorkUnit unit(*connection, wait != nullptr ? wait : &brief, Join::IfOpen);
    write();
    unit.commit();
  });
}

void OptionsDialogPresenter::save(const Settings& settings, OptionStore store) const {
  for (const OptionField& held : fields_)
    if (held.option->store == store && mustBeWritten(held)) settings.save(*held.option, held.value);
}

} // namespace qx
