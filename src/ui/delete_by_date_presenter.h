// Deleting the done jobs received before a day, without a toolkit.
#pragma once

#include "engine/import_job_object2.h"
#include "ui/deletion_question.h"

#include <optional>
#include <string_view>
#include <utility>

namespace qx {

/// The same day one month earlier; the last day of that month when it has no such day.
Date monthBefore(const Date& date);

/// Environment and engine must outlive it. Members do not raise.
class DeleteByDatePresenter {
public:
  DeleteByDatePresenter(Environment& environment, ImportJobObject2& engine, AskDeletion ask = {})
      : environment_(environment), engine_(engine), ask_(std::move(ask)) {}

  /// One month before the session's date, or before the workstation's when that is unavailable.
  Date proposedDate();
  /// The day of a text, after a question with the day and the number of done jobs received before it. Null
  /// when not confirmed; an invalid day, or one without such jobs, shows a message. Saves the jobs first
  /// where the clerk wants that.
  std::optional<Date> confirmedDate(std::string_view day);
  /// Deletes the done jobs received before the day. Shows a failure and the jobs that the database refuses to
  /// delete; earlier deletions are kept. Waits for other programs as long as `wait` decides.
  void deleteBefore(const Date& date, BusyWait* wait = nullptr);

private:
  Environment& environment_;
  ImportJobObject2& engine_;
  AskDeletion ask_;
};

} // namespace qx
