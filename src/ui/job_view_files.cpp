// The job view reads and writes job files.
#include "ui/job_view_presenter.h"

#include "store/job_file_export.h"
#include "store/job_file_import.h"
#include "ui/import_report.h"
#include "ui/job_results.h"
#include "ui/job_view_busy.h"

namespace qx {
namespace {

constexpr std::string_view fileFilter = "EDI (*.edi)|*.edi";

} // namespace

void JobViewPresenter::importChosen() {
  std::optional<std::string> file;
  skip("file choice",
       [&] { file = environment_.desktop.chooseFile("Vorgänge einlesen", fileFilter, FileUse::Reading); });
  if (file && !file->empty()) importFile(*file);
}

void JobViewPresenter::importFile(std::string_view file) {
  std::string told;
  {
    const Busy busy(*this, Work::Files, "Die Datei wird eingelesen...");
    if (maySetBack(file) && databaseIsFree()) told = readFile(file);
    verifyAndRefresh();
  }
  if (!told.empty()) skip("import report", [&] { windows_.report("Vorgänge einlesen", told); });
  if (closeAsked_) windows_.closeWindow();
}

/// Done jobs that an import resets would be written to the ERP a second time: the clerk decides.
bool JobViewPresenter::maySetBack(std::string_view file) {
  ImportReport ahead;
  previewSetBacks(environment_, file, JobFileVersion::Two, ahead);
  if (!ahead.setsBack()) return true;
  bool wanted = false;
  skip("import question", [&] {
    wanted = environment_.desktop.ask({ahead.question(), "Vorgänge einlesen", MessageIcon::None});
  });
  return wanted;
}

/// Imports a job file; returns what the clerk has to know about it.
std::string JobViewPresenter::readFile(std::string_view file) {
  ImportReport read;
  const JobFileReport report = importJobFile(environment_, file, JobFileVersion::Two, &read);
  showImportResult(environment_, report);
  state_.result = importResult(file, report);
  return read.text(file, report);
}

void JobViewPresenter::exportChosen() { exportJobs(nullptr); }

void JobViewPresenter::exportJobs(const JobKeys* only) {
  std::optional<std::string> file;
  skip("file choice",
       [&] { file = environment_.desktop.chooseFile("Vorgänge ausgeben", fileFilter, FileUse::Writing); });
  if (!file || file->empty()) return;
  {
    const Busy busy(*this, Work::Files, "Die Datei wird geschrieben...");
    const JobFileReport report = exportJobFile(environment_, *file, JobFileVersion::Two, nullptr, only);
    showExportResult(environment_, report);
    state_.result = exportResult(*file, report);
  }
  if (closeAsked_) windows_.closeWindow();
}

} // namespace qx
