#include "ui/job_dialog.h"

#include "model/date.h"
#include "platform/german_cause.h"
#include "platform/whole_number.h"
#include "rules/german_text.h"
#include "settings/settings.h"
#include "ui/address_dialog.h"
#include "ui/lookup_bridge.h"

#include <exception>
#include <utility>

namespace qx {
namespace {

constexpr std::string_view releaseControl = "chkProcessWaring";
constexpr std::string_view releaseQuestion = "Der Vorgang hat Befunde und wird so nicht verarbeitet.\r\n"
                                             "Soll ihn die nächste Verarbeitung trotzdem übernehmen?";
constexpr std::string_view mendedQuestion =
    "Der Vorgang hat keine Befunde mehr, ist aber noch zurückgestellt.\r\n"
    "Soll ihn die nächste Verarbeitung übernehmen?";

/// How a column's value stands in its control.
std::string shown(ControlKind kind, const Value& stored) {
  switch (kind) {
  case ControlKind::Number:
    if (const auto number = stored.number()) return germanNumber(*number);
    return stored.text();
  case ControlKind::Check:
    return stored.truth().value_or(false) ? "1" : "0";
  case ControlKind::Text:
  case ControlKind::Note:
  case ControlKind::Date:
  case ControlKind::Combo:
  case ControlKind::List:
    break;
  }
  return stored.text();
}

} // namespace

JobDialog::JobDialog(const DialogContext& context) : context_(context), editing_(context.environment) {}

JobDialog::~JobDialog() = default;

bool JobDialog::load(std::string_view jobId) {
  jobId_ = jobId;
  notice_.clear();
  findings_.clearAll();
  customerSpecific_ = Settings(environment()).customerSpecific();
  build(customerSpecific_);
  bool found = false;
  trying("Laden des Vorgangs", [&] {
    const auto job = open(jobId);
    found = !job->eof();
    if (!found) {
      notice_ = "Der Vorgang ist nicht mehr vorhanden.";
      return;
    }
    jobType_ = jobCode(job->value("JobType"));
    for (const ControlSpec* spec : specs()) {
      const ColumnName column(spec->column);
      if (!spec->column.empty() && job->hasField(column))
        at(spec->name).text = shown(spec->kind, job->value(column));
    }
    fill(*job);
  });
  if (!found) return false;
  settle();
  setReadOnly(isDone(jobType_));
  return true;
}

std::unique_ptr<AddressDialog> JobDialog::addresses() { return nullptr; }

std::string JobDialog::readOnlyReason() const {
  if (!readOnly()) return {};
  if (jobType_ == qxtJobKundenVerträgedel)
    return "Der Vertrag ist als gelöscht gekennzeichnet und kann nicht mehr geändert werden.";
  return "Der Vorgang ist erledigt und kann nicht mehr geändert werden.";
}

void JobDialog::detailsClosed() {
  trying("Laden der Verträge", [this] { reloadGrid(); });
}

bool JobDialog::canRelease() const {
  const JobState state = stateOf(jobType_);
  return !readOnly() && (!findings_.empty() || state == JobState::Warning || state == JobState::Error);
}

bool JobDialog::released() const { return text(releaseControl) == "1"; }

void JobDialog::release(bool on) {
  if (const auto place = find(releaseControl)) type(*place, on ? "1" : "0");
}

void JobDialog::leave(std::size_t place) {
  if (readOnly()) return;
  normalise(place);
  trying(specs()[place]->name, [&] { check(specs()[place]->name); });
}

/// Numbers and dates take their usual form.
void JobDialog::normalise(std::size_t place) {
  const std::string typed(trimBlanks(control(place).text));
  if (specs()[place]->kind == ControlKind::Number) {
    if (const auto number = parseGermanNumber(typed)) type(place, germanNumber(*number));
  } else if (specs()[place]->kind == ControlKind::Date) {
    if (const auto date = parseGermanDate(typed)) type(place, germanDate(*date));
  }
}

bool JobDialog::lookUp(std::size_t place) {
  const ControlSpec& spec = *specs()[place];
  if (readOnly() || spec.lookup.empty()) return false;
  const std::vector<std::string> chosen = context_.lookups.open(spec.lookup, lookupContext(spec.name));
  if (chosen.empty()) return false;
  return trying(spec.lookup, [&] { takeLookup(spec.name, chosen); });
}

bool JobDialog::save() {
  if (readOnly()) return false;
  notice_.clear();
  if (const auto bad = unreadable()) {
    const ControlSpec& spec = *specs()[*bad];
    const bool number = spec.kind == ControlKind::Number;
    std::string caption(spec.caption);
    std::erase(caption, '&');
    notice_ = caption + ": '" + control(*bad).text + "' ist " +
              (number ? "keine Zahl." : "kein Datum (tt.mm.jjjj).") + " Bitte berichtigen Sie das Feld.";
    environment().desktop.show({notice_, std::string(defaultTitle), MessageIcon::Exclamation});
    return false;
  }
  const JobState state = stateOf(jobType_);
  const bool parked = state == JobState::Warning || state == JobState::Error;
  if (parked && offersRelease() && !released())
    release(environment().desktop.ask(
        {std::string(findings_.status() == CheckStatus::Clean ? mendedQuestion : releaseQuestion)}));
  if (!tellFailure("Fehler beim Speichern der Daten", [this] { store(); })) return false;
  if (!tellFailure("Fehler beim Update der Daten", [this] { storeAddresses(); })) return false;
  settle();
  return true;
}

bool JobDialog::tellFailure(std::string_view text, const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const std::exception& error) {
    environment().diagnostics.report({text, error.what(), jobId_});
    notice_ = std::string(text) + ": " + germanCause(error);
    environment().desktop.show({std::string(text), std::string(defaultTitle), MessageIcon::Critical});
    return false;
  }
}

void JobDialog::report(std::string_view code, std::string_view control, CheckStatus severity,
                       std::string text) {
  mark(control, severity, text);
  findings_.report({std::string(code), "", severity, std::move(text), std::string(control), ""});
}

void JobDialog::reportFailure(Recordset& job) {
  const std::string failure = job.hasField("Fehlertext") ? job.text("Fehlertext") : std::string();
  if (!failure.empty())
    findings_.report({std::string(processingErrorCode), "", CheckStatus::Warning,
                      "Fehler beim verarbeiten: " + failure, std::string(releaseControl), ""});
}

bool JobDialog::trying(std::string_view where, const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const std::exception& error) {
    environment().diagnostics.report({where, error.what(), jobId_});
    notice_ = "Die Prüfung ist nicht möglich: " + germanCause(error);
    return false;
  }
}

std::vector<ColumnChange> JobDialog::changes() const {
  std::vector<ColumnChange> changes;
  for (std::size_t place = 0; place < specs().size(); ++place) {
    const ControlSpec& spec = *specs()[place];
    if (!spec.column.empty() && control(place).text != storedText(place))
      changes.push_back({ColumnName(spec.column), stored(spec, control(place))});
  }
  return changes;
}

Value JobDialog::stored(const ControlSpec& spec, const ControlState& control) {
  if (spec.kind == ControlKind::Check) return Value(std::int64_t{control.text == "1" ? 1 : 0});
  if (control.text.empty()) return Value::null();
  if (spec.kind == ControlKind::Number) {
    if (const auto number = parseGermanNumber(control.text)) return Value(*number);
  }
  if (spec.kind == ControlKind::List) {
    if (const auto code = Value(control.text).integer()) return Value(*code);
  }
  return Value(control.text);
}

std::optional<std::size_t> JobDialog::unreadable() const {
  for (std::size_t place = 0; place < specs().size(); ++place) {
    const std::string& typed = control(place).text;
    if (typed.empty() || typed == storedText(place)) continue;
    const ControlKind kind = specs()[place]->kind;
    if (kind == ControlKind::Number && !parseGermanNumber(typed)) return place;
    if (kind == ControlKind::Date && !parseGermanDate(typed)) return place;
  }
  return std::nullopt;
}

} // namespace qx
