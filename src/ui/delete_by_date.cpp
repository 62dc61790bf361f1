#include "ui/delete_by_date.h"

#include "store/work_group.h"

#include <exception>

namespace qx {

Date monthBefore(const Date& date) {
  const Date sameDay = date - std::chrono::months{1};
  return sameDay.ok() ? sameDay : Date(sameDay.year() / sameDay.month() / std::chrono::last);
}

Date DeleteByDate::proposedDate() {
  try {
    return monthBefore(engine_.NowEx());
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"session date for deleting by date", failure.what(), {}});
    return monthBefore(environment_.clock.now().date);
  }
}

void DeleteByDate::deleteBefore(const Date& date) {
  try {
    WorkGroup group(environment_, nullptr);
    group.begin();
    engine_.jobDeletion().deleteDoneBefore(date, [&group] {
      group.endJob();
      group.begin();
    });
    group.finish();
  } catch (const std::exception& failure) {
    environment_.diagnostics.report({"deleting by date", failure.what(), {}});
    Message message;
    message.text = std::string("Fehler beim Löschen: ") + failure.what();
    message.icon = MessageIcon::Critical;
    environment_.desktop.show(message);
  }
}

} // namespace qx
