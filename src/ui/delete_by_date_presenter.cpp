#include "ui/delete_by_date_presenter.h"

#include "platform/failure.h"
#include "store/job_deletion.h"
#include "ui/counted.h"

#include <exception>
#include <string>
#include <vector>

namespace qx {

Date monthBefore(const Date& date) {
  const Date sameDay = date - std::chrono::months{1};
  return sameDay.ok() ? sameDay : Date(sameDay.year() / sameDay.month() / std::chrono::last);
}

Date DeleteByDatePresenter::proposedDate() {
  std::optional<Date> today;
  trapped(environment_.diagnostics, {"session date for deleting by date"}, [&] { today = engine_.NowEx(); });
  return monthBefore(today.value_or(environment_.clock.now().date));
}

std::optional<Date> DeleteByDatePresenter::confirmedDate(std::string_view day) {
  constexpr std::string_view title = "Erledigte Vorgänge löschen";
  const auto date = parseGermanDate(day);
  if (!date) {
    showMessage(environment_, {"'" + std::string(day) + "' ist kein Datum (tt.mm.jjjj).", std::string(title),
                               MessageIcon::Exclamation});
    return std::nullopt;
  }
  std::vector<std::string> jobs;
  if (trapped(
          environment_.diagnostics, {"counting the done jobs"},
          [&] {
            JobDeletion deletion(environment_);
            jobs = deletion.doneBefore(*date);
            if (deletion.refusals() > 0) throw StatementError("Die Datenbank hat das abgelehnt.", 0);
          },
          [&](const std::exception& failure) {
            showMessage(environment_,
                        {"Die erledigten Vorgänge können nicht gelesen werden: " + germanCause(failure),
                         std::string(title), MessageIcon::Critical});
          }))
    return std::nullopt;
  const std::string before = " vor dem " + germanDate(*date) + " eingegangen.";
  if (jobs.empty()) {
    showMessage(environment_,
                {"Kein erledigter Vorgang ist" + before, std::string(title), MessageIcon::Information});
    return std::nullopt;
  }
  const std::string question =
      jobs.size() == 1 ? "Ein erledigter Vorgang ist" + before + "\r\nSoll er endgültig gelöscht werden?"
                       : grouped(whole(jobs.size())) + " erledigte Vorgänge sind" + before +
                             "\r\nSollen sie endgültig gelöscht werden?";
  if (!askBeforeDeletion(environment_, ask_, {question, std::string(title), MessageIcon::None}, jobs))
    return std::nullopt;
  return date;
}

void DeleteByDatePresenter::deleteBefore(const Date& date, BusyWait* wait) {
  std::string cause;
  trapped(
      environment_.diagnostics, {"deleting by date"},
      [&] {
        JobDeletion deletion(environment_, wait);
        deletion.deleteDoneBefore(date);
        cause = deletion.germanLeft();
      },
      [&](const std::exception& failure) { cause = germanCause(failure); });
  if (cause.empty()) return;
  showMessage(environment_, {.text = "Fehler beim Löschen: " + cause, .icon = MessageIcon::Critical});
}

} // namespace qx
