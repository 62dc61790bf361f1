#include "store/job_file_report.h"

namespace qx {
namespace {

constexpr std::string_view importFailureText = "Beim Importieren der Daten sind Fehler aufgetreten, es "
                                               "konnten evtl. nicht alle Daten importiert werden.";
constexpr std::string_view exportFailureText = "Beim Exportieren der Daten sind Fehler aufgetreten, es "
                                               "konnten evtl. nicht alle Daten exportiert werden.";

} // namespace

bool showImportResult(Environment& environment, const JobFileReport& report) {
  if (report.end == JobFileEnd::Complete && report.counts.refused == 0) return true;
  showMessage(environment,
              {std::string(report.end == JobFileEnd::WrongBanner ? wrongBannerText : importFailureText)});
  return false;
}

bool showExportResult(Environment& environment, const JobFileReport& report) {
  if (report.end == JobFileEnd::Complete) return true;
  std::string text(exportFailureText);
  if (report.end == JobFileEnd::TargetRefused)
    text += " Die Datei gehört zur Datenbank und wird nicht überschrieben.";
  if (!report.backup.empty()) text += " Die bisherige Datei wurde als '" + report.backup + "' aufbewahrt.";
  showMessage(environment, {.text = text, .icon = MessageIcon::Information});
  return false;
}

} // namespace qx
