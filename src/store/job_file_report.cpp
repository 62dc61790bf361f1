#include "store/job_file_report.h"

#include "platform/show_message.h"

namespace qx {
namespace {

constexpr std::string_view importFailureText = "Beim Importieren der Daten sind Fehler aufgetreten, es "
                                               "konnten evtl. nicht alle Daten importiert werden.";
constexpr std::string_view exportFailureText = "Beim Exportieren der Daten sind Fehler aufgetreten, es "
                                               "konnten evtl. nicht alle Daten exportiert werden.";

} // namespace

bool showImportResult(Environment& environment, const JobFileReport& report) {
  if (report.end == JobFileEnd::Complete && report.counts.refused == 0) return true;
  Message message;
  message.text = report.end == JobFileEnd::WrongBanner ? wrongBannerText : importFailureText;
  showMessage(environment, message);
  return false;
}

bool showExportResult(Environment& environment, const JobFileReport& report) {
  if (report.end == JobFileEnd::Complete) return true;
  Message message;
  message.text = exportFailureText;
  if (report.end == JobFileEnd::TargetRefused)
    message.text += " Die Datei gehört zur Datenbank und wird nicht überschrieben.";
  if (!report.backup.empty())
    message.text += " Die bisherige Datei wurde als '" + report.backup + "' aufbewahrt.";
  message.icon = MessageIcon::Information;
  showMessage(environment, message);
  return false;
}

} // namespace qx
