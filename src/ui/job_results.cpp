#include "ui/job_results.h"

#include "platform/path_text.h"
#include "ui/counted.h"

namespace qx {
namespace {

std::string nameOf(std::string_view file) { return textOf(pathOf(file).filename()); }

/// "95 Vorgänge und 131 Positionen".
std::string contents(const JobFileCounts& counts) {
  return counted(counts.jobs, "Vorgang", "Vorgänge") + " und " +
         counted(counts.positions, "Position", "Positionen");
}

bool isWhole(const JobFileReport& report) { return report.end == JobFileEnd::Complete; }
bool hasContents(const JobFileReport& report) { return isWhole(report) || report.end == JobFileEnd::Failed; }

} // namespace

std::string runResult(const RunReport& run, std::int64_t waiting) {
  if (run.end == RunEnd::Refused) return "Es wurde nichts verarbeitet.";
  std::string text;
  if (run.end == RunEnd::Stopped) text = "Angehalten: ";
  if (run.end == RunEnd::Broken) text = "Abgebrochen: ";
  text += grouped(whole(run.done)) + " erledigt, " + grouped(whole(run.warning)) + " zurückgestellt, " +
          grouped(whole(run.error)) + " Fehler, " + grouped(waiting) + (waiting == 1 ? " wartet" : " warten");
  if (run.protocolErrors > 0)
    text += "; " + counted(whole(run.protocolErrors), "Eintrag fehlt", "Einträge fehlen") +
            " in Protokoll oder Adressindex";
  return text;
}

std::string importResult(std::string_view file, const JobFileReport& report) {
  if (!hasContents(report)) return {};
  const JobFileCounts& counts = report.counts;
  std::string text = contents(counts) + " eingelesen aus " + nameOf(file);
  if (counts.setBack > 0) text += ", " + counted(counts.setBack, "Vorgang", "Vorgänge") + " zurückgesetzt";
  if (counts.refused > 0) text += ", " + counted(counts.refused, "Zeile", "Zeilen") + " abgelehnt";
  return isWhole(report) ? text : "Abgebrochen: " + text;
}

std::string exportResult(std::string_view file, const JobFileReport& report) {
  if (!hasContents(report)) return {};
  const std::string text = contents(report.counts) + " geschrieben nach " + nameOf(file);
  return isWhole(report) ? text : "Abgebrochen: " + text;
}

std::string checkResult(std::size_t checked, std::size_t withFindings, std::int64_t waiting) {
  if (waiting == 0) return "Es wartet kein Vorgang.";
  if (checked == 0) return "Es wurde kein Vorgang geprüft; " + grouped(waiting) + " warten";
  const bool all = whole(checked) >= waiting;
  return grouped(whole(withFindings)) + " von " + grouped(whole(checked)) +
         (all ? " wartenden" : " geprüften") + " Vorgängen " + (withFindings == 1 ? "hat" : "haben") +
         " Befunde" + (all ? "" : "; " + grouped(waiting) + " warten");
}

} // namespace qx
