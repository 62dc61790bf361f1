// Deleting the done jobs received before a day, without a toolkit.
#pragma once

#include "engine/import_job_object2.h"

#include <optional>
#include <string_view>

namespace qx {

/// The same day one month earlier; the last day of that month when it has no such day.
Date monthBefore(const Date& date);

/// Works on an environment and its engine, which outlive it. Members do not raise.
class DeleteByDatePresenter {
public:
  DeleteByDatePresenter(Environment& environment, ImportJobObject2& engine)
      : environment_(environment), engine_(engine) {}

  /// One month before the session's date; before the workstation's when that cannot be told.
  Date proposedDate();
  /// The day of a text, after a question that names it and the number of done jobs received before it. Null
  /// when it is not confirmed; a text that is no day, and a day before which nothing is done, are told.
  std::optional<Date> confirmedDate(std::string_view day);
  /// Deletes the done jobs received before the day. A failure is shown, and so are the jobs that the database
  /// refuses to delete; what was deleted until then stays deleted. Waits for other programs as `wait` says.
  void deleteBefore(const Date& date, BusyWait* wait = nullptr);

private:
  Environment& environment_;
  ImportJobObject2& engine_;
};

} // namespace qx
