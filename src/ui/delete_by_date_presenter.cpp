#include "ui/delete_by_date_presenter.h"

#include "platform/german_cause.h"
#include "platform/show_message.h"
#include "store/work_group.h"

#include <exception>

namespace qx {

Date monthBefore(const Date& date) {
  const Date sameDay = date - std::chrono::months{1};
  return sameDay.ok() ? sameDay : Date(sameDay.year() / sameDay.month() / std::chrono::last);
}

Date DeleteByDatePresenter::proposedDate() {
  try {
    return monthBefore(engine_.NowEx());
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"session date for deleting by date", failure.what(), {}});
    return monthBefore(environment_.clock.now().date);
  }
}

std::optional<Date> DeleteByDatePresenter::confirmedDate(std::string_view day) {
  constexpr std::string_view title = "Erledigte Vorgänge löschen";
  const auto date = parseGermanDate(day);
  if (!date) {
    showMessage(environment_, {"'" + std::string(day) + "' ist kein Datum (tt.mm.jjjj).", std::string(title),
                               MessageIcon::Exclamation});
    return std::nullopt;
  }
  std::size_t jobs = 0;
  try {
    JobDeletion& deletion = engine_.jobDeletion();
    const std::int64_t refused = deletion.refusedStatements();
    jobs = deletion.doneBefore(*date).size();
    if (deletion.refusedStatements() != refused) throw StatementError("Die Datenbank hat das abgelehnt.", 0);
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"counting the done jobs", failure.what(), {}});
    showMessage(environment_, {"Die erledigten Vorgänge können nicht gelesen werden: " + germanCause(failure),
                               std::string(title), MessageIcon::Critical});
    return std::nullopt;
  }
  const std::string before = " vor dem " + germanDate(*date) + " eingegangen.";
  if (jobs == 0) {
    showMessage(environment_,
                {"Kein erledigter Vorgang ist" + before, std::string(title), MessageIcon::Information});
    return std::nullopt;
  }
  const std::string question =
      jobs == 1 ? "Ein erledigter Vorgang ist" + before + "\r\nSoll er endgültig gelöscht werden?"
                : std::to_string(jobs) + " erledigte Vorgänge sind" + before +
                      "\r\nSollen sie endgültig gelöscht werden?";
  if (!askQuestion(environment_, {question, std::string(title), MessageIcon::None})) return std::nullopt;
  return date;
}

void DeleteByDatePresenter::deleteBefore(const Date& date, BusyWait* wait) {
  try {
    WorkGroup group(environment_, wait);
    group.begin();
    engine_.jobDeletion().deleteDoneBefore(date, [&group] {
      group.endJob();
      group.begin();
    });
    group.finish();
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"deleting by date", failure.what(), {}});
    Message message;
    message.text = "Fehler beim Löschen: " + germanCause(failure);
    message.icon = MessageIcon::Critical;
    showMessage(environment_, message);
  }
}

} // namespace qx
