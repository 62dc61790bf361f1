#include "ui/qt/job_view_dialogs.h"

#include "ui/qt/job_dialog_window.h"
#include "ui/qt/options_window.h"
#include "ui/qt/qt_desktop.h"
#include "ui/qt/small_windows.h"

#include <utility>

namespace qx {

JobViewDialogs dialogsOf(const DialogContext& context, std::string schemaVersion) {
  JobViewDialogs dialogs;
  dialogs.openJob = [&context](QWidget* parent, std::string_view jobId, const JobPlace& place) {
    return showJobDialog(parent, context, jobId, place);
  };
  dialogs.options = [&context](QWidget* parent) {
    OptionsWindow(context.environment, parent, context.wait).exec();
  };
  dialogs.deleteDate = [&context](QWidget* parent) {
    DeleteDateWindow(context.environment, context.engine, parent, askDeletionInBox).exec();
  };
  dialogs.about = [&context, version = std::move(schemaVersion)](QWidget* parent) {
    AboutWindow(context.environment, version, parent).exec();
  };
  dialogs.report = [](QWidget* parent, std::string_view title, std::string_view text) {
    ErrorWindow(text, parent, title).exec();
  };
  dialogs.askDeletion = askDeletionInBox;
  return dialogs;
}

} // namespace qx
