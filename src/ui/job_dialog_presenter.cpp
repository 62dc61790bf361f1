#include "ui/job_dialog_presenter.h"

#include "model/date.h"
#include "model/german_text.h"
#include "model/text.h"
#include "platform/failure.h"
#include "settings/settings.h"
#include "ui/address_dialog_presenter.h"
#include "ui/edit_codec.h"
#include "ui/lookup_bridge.h"

#include <algorithm>
#include <exception>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view eraseQuestion = "Wollen Sie diesen Importvorgang wirklich löschen?";
constexpr std::string_view releaseControl = "chkProcessWaring";
constexpr std::string_view releaseQuestion = "Der Vorgang hat Befunde und wird so nicht verarbeitet.\r\n"
                                             "Soll ihn die nächste Verarbeitung trotzdem übernehmen?";
constexpr std::string_view mendedQuestion =
    "Der Vorgang hat keine Befunde mehr, ist aber noch zurückgestellt.\r\n"
    "Soll ihn die nächste Verarbeitung übernehmen?";

constexpr std::string_view changedQuestion =
    "Der Vorgang wurde inzwischen von anderer Seite geändert. Es wurde nichts gespeichert.\r\n"
    "Soll er neu gelesen werden? Ihre Eingaben gehen dabei verloren.";
constexpr std::string_view changedNotice =
    "Von anderer Seite geändert: Diese Angaben sind überholt und können nicht mehr gespeichert werden.";
constexpr std::string_view unknownQuestion =
    "Die Verbindung zur Datenbank brach ab, bevor sie die Änderungen bestätigt hat. Es ist nicht bekannt, ob "
    "sie gespeichert sind.\r\n"
    "Soll der Vorgang neu gelesen werden? Was nicht gespeichert ist, geht dabei verloren.";
constexpr std::string_view unreachableNotice =
    "Die Datenbank ist nicht erreichbar. Ihre Eingaben stehen noch hier; es wurde nichts gespeichert.";
constexpr std::string_view moreFindings =
    "Es sind Befunde hinzugekommen. Noch einmal Speichern übernimmt den Vorgang so.";

} // namespace

JobDialogPresenter::JobDialogPresenter(const DialogContext& context, JobDialogKind kind)
    : context_(context), kind_(std::move(kind)), editing_(context.environment) {}

JobDialogPresenter::~JobDialogPresenter() = default;

bool JobDialogPresenter::load(std::string_view jobId) {
  job_ = {std::string(jobId), {}, {}};
  notice_.clear();
  outstanding_.clear();
  findings_.clearAll();
  if (!isConnected(environment())) {
    notice_ = "Die Datenbank ist nicht erreichbar.";
    return false;
  }
  customerSpecific_ = Settings(environment())[option::customerSpecific];
  build(customerSpecific_);
  const bool read = trying("Laden des Vorgangs", [&] {
    const ReadView view(activeConnection(environment()));
    job_ = editing_.read(jobId, *open(jobId));
  });
  if (!read) return false;
  if (job_.header.size() == 0) {
    notice_ = "Der Vorgang ist nicht mehr vorhanden.";
    return false;
  }
  for (const ControlSpec* spec : specs())
    if (!spec->column.empty()) at(spec->name).text = editedText(spec->kind, loaded(ColumnName(spec->column)));
  trying("Prüfen des Vorgangs", [this] { fill(); });
  markSaved();
  setReadOnly(isDone(jobType()));
  return true;
}

std::string JobDialogPresenter::readOnlyReason() const {
  if (!readOnly()) return {};
  if (jobType() == qxtJobKundenVerträgedel)
    return "Der Vertrag ist als gelöscht gekennzeichnet und kann nicht mehr geändert werden.";
  return "Der Vorgang ist erledigt und kann nicht mehr geändert werden.";
}

void JobDialogPresenter::detailsClosed() {
  if (kind_.reloadGrid) trying("Laden der Verträge", kind_.reloadGrid);
}

bool JobDialogPresenter::canRelease() const {
  const JobState state = stateOf(jobType());
  return !readOnly() && (!findings_.empty() || state == JobState::Warning || state == JobState::Error);
}

bool JobDialogPresenter::released() const { return text(releaseControl) == "1"; }

void JobDialogPresenter::release(bool on) {
  if (const auto index = find(releaseControl)) type(*index, on ? "1" : "0");
}

void JobDialogPresenter::leave(std::size_t index) {
  if (readOnly()) return;
  if (loss_ == JobLoss::None) notice_.clear();
  normalise(index);
  trying(specs()[index]->name, [&] { check(specs()[index]->name); });
}

/// Writes numbers and dates in their usual form.
void JobDialogPresenter::normalise(std::size_t index) {
  const std::string typed(trimBlanks(control(index).text));
  const std::string usual = respelt(specs()[index]->kind, typed);
  if (usual != typed) type(index, usual);
}

bool JobDialogPresenter::lookUp(std::size_t index) {
  const ControlSpec& spec = *specs()[index];
  if (readOnly() || spec.lookup.empty()) return false;
  const std::string about = kind_.addresses == nullptr ? "" : kind_.addresses->lookupContext(spec.name);
  const std::vector<std::string> chosen = context_.lookups.open(spec.lookup, about);
  if (chosen.empty()) return false;
  return trying(spec.lookup, [&] { takeLookup(spec.name, chosen); });
}

bool JobDialogPresenter::save() {
  if (readOnly()) return false;
  notice_.clear();
  if (const auto bad = unreadable()) {
    const ControlSpec& spec = *specs()[*bad];
    std::string caption(spec.caption);
    std::erase(caption, '&');
    notice_ = caption + ": " + refusalOf(spec.kind, control(*bad).text) + " Bitte berichtigen Sie das Feld.";
    showMessage(environment(), {notice_, std::string(defaultTitle), MessageIcon::Exclamation});
    return false;
  }
  if (!isReachable()) return false;
  const JobState state = stateOf(jobType());
  const bool parked = state == JobState::Warning || state == JobState::Error;
  if (parked && kind_.offersRelease && !released()) {
    const ReleaseAnswer answer = askRelease();
    if (answer == ReleaseAnswer::Back) return false;
    release(answer == ReleaseAnswer::Release);
  }
  if (!stillLocked()) return false;
  prepareSaving();
  std::string_view failure = "Fehler beim Speichern der Daten";
  if (!edit(failure, [&] { store(failure); })) return false;
  stored();
  return true;
}

/// A job without findings is to go on; one that still has some only if the clerk says so.
ReleaseAnswer JobDialogPresenter::askRelease() const {
  const bool mended = verdict() == CheckStatus::Clean;
  const std::string_view text = mended ? mendedQuestion : releaseQuestion;
  if (context_.askRelease) return context_.askRelease(text, mended);
  return askQuestion(environment(), {std::string(text)}) ? ReleaseAnswer::Release : ReleaseAnswer::Keep;
}

/// The checks, the lock and the writing would fail one after the other.
bool JobDialogPresenter::isReachable() {
  if (isConnected(environment())) return true;
  notice_ = unreachableNotice;
  return false;
}

/// Another user may have taken over the lock, and their run would read what is saved here.
bool JobDialogPresenter::stillLocked() {
  const auto wait = makeWait(context_.wait);
  if (engine().importLock().confirm(wait.get()).state != LockState::Refused) return true;
  notice_ = "Ein anderer Benutzer bearbeitet den Import gerade. Es wurde nichts gespeichert.";
  return false;
}

bool JobDialogPresenter::edit(std::string_view& failure, const std::function<void()>& work) {
  const auto loss = [&](const std::exception& error) {
    if (const auto* lost = dynamic_cast<const JobChangedError*>(&error)) return showLoss(*lost);
    if (dynamic_cast<const CommitUnknownError*>(&error) != nullptr) {
      notice_ = germanCause(error);
      readAnewAsked_ =
          askQuestion(environment(), {std::string(unknownQuestion)}) && isConnected(environment());
      return;
    }
    notice_ = std::string(failure) + ": " + germanCause(error);
    showMessage(environment(), {std::string(failure), std::string(defaultTitle), MessageIcon::Critical});
  };
  return !trapped(
      environment().diagnostics, {"saving a job", jobId()},
      [&] { editing_.edit(job_, work, makeWait(context_.wait).get()); }, loss);
}

void JobDialogPresenter::showLoss(const JobChangedError& error) {
  loss_ = error.gone() ? JobLoss::Gone : JobLoss::Changed;
  if (!error.gone()) {
    notice_ = changedNotice;
    readAnewAsked_ = askQuestion(environment(), {std::string(changedQuestion)});
    return;
  }
  notice_ = error.what();
  showMessage(environment(), {notice_, std::string(defaultTitle), MessageIcon::Exclamation});
}

void JobDialogPresenter::checkMore(std::size_t count) {
  if (kind_.checks == nullptr) return;
  kind_.checks->checkMore(count);
  if (const std::string failure = kind_.checks->failure(); !failure.empty()) showUnchecked(failure);
}

bool JobDialogPresenter::erase() {
  if (!canErase() || !isReachable()) return false;
  if (!askQuestion(environment(), {std::string(eraseQuestion) + "\r\n" + title(), "Wirklich löschen?"}))
    return false;
  std::string_view failure = "Fehler beim Löschen des Vorgangs";
  return edit(failure, [this] { editing_.deleteHeader(jobId()); });
}

bool JobDialogPresenter::nothingNewSince(const std::vector<ListedFinding>& seen) {
  checkMore(checksLeft());
  for (const ListedFinding& finding : findings_.sorted()) {
    const auto same = [&](const ListedFinding& other) {
      return other.code() == finding.code() && other.item() == finding.item() &&
             other.found.severity == finding.found.severity;
    };
    if (finding.found.isHint() || std::ranges::any_of(seen, same)) continue;
    notice_ = moreFindings;
    return false;
  }
  return true;
}

Value JobDialogPresenter::current(ColumnName column) const {
  Value before = loaded(column);
  for (std::size_t index = 0; index < specs().size(); ++index) {
    const ControlSpec& spec = *specs()[index];
    if (!spec.column.empty() && ColumnName(spec.column) == column &&
        control(index).text != editedText(spec.kind, before))
      return columnValue(spec, control(index));
  }
  return before;
}

void JobDialogPresenter::report(bool fine, Finding finding) {
  mark(terms(finding.rule).dialog.control, fine ? CheckStatus::Clean : finding.severity, dialogText(finding));
  findings_.report(fine, std::move(finding));
}

void JobDialogPresenter::report(const Findings& found, std::initializer_list<Rule> rules) {
  for (const Rule rule : rules) mark(terms(rule).dialog.control, CheckStatus::Clean);
  for (const Finding& each : found)
    if (std::ranges::find(rules, each.rule) != rules.end())
      mark(terms(each.rule).dialog.control, each.severity, dialogText(each));
  findings_.report(found, rules);
}

void JobDialogPresenter::reportFailure(bool counts) {
  const std::string failure = staged("Fehlertext");
  if (!failure.empty()) findings_.report(false, Finding(Rule::EarlierReasons, failure), counts);
}

bool JobDialogPresenter::trying(std::string_view where, const std::function<void()>& step) {
  return !trapped(environment().diagnostics, {where, jobId()}, step,
                  [this](const std::exception& error) { showUnchecked(germanCause(error)); });
}

void JobDialogPresenter::checking(std::string_view name, const std::function<void()>& check) {
  if (trying(name, check))
    outstanding_.erase(std::string(name));
  else
    outstanding_.emplace(name);
}

void JobDialogPresenter::showUnchecked(const std::string& cause) {
  notice_ = "Die Prüfung ist nicht möglich: " + cause;
}

std::optional<CheckStatus> JobDialogPresenter::verdict() const {
  const bool unmade = !outstanding_.empty() || (kind_.checks != nullptr && !kind_.checks->failure().empty());
  return unmade ? std::nullopt : std::optional(findings_.status());
}

std::vector<ColumnChange> JobDialogPresenter::changes() const {
  std::vector<ColumnChange> changes;
  for (std::size_t index = 0; index < specs().size(); ++index) {
    const ControlSpec& spec = *specs()[index];
    if (!spec.column.empty() && control(index).text != storedText(index))
      changes.push_back({ColumnName(spec.column), columnValue(spec, control(index))});
  }
  return changes;
}

Value JobDialogPresenter::columnValue(const ControlSpec& spec, const ControlState& control) {
  if (spec.kind == ControlKind::Check) return Value(std::int64_t{control.text == "1" ? 1 : 0});
  if (control.text.empty()) return Value::null();
  if (isNumeric(spec.kind)) {
    if (const auto number = parseEnteredNumber(control.text)) return Value(*number);
  }
  if (spec.kind == ControlKind::List) {
    if (const auto code = Value(control.text).integer()) return Value(*code);
  }
  return Value(control.text);
}

std::optional<std::size_t> JobDialogPresenter::unreadable() const {
  for (std::size_t index = 0; index < specs().size(); ++index) {
    const std::string& typed = control(index).text;
    if (typed.empty() || typed == storedText(index)) continue;
    if (!refusalOf(specs()[index]->kind, typed).empty()) return index;
  }
  return std::nullopt;
}

} // namespace qx
