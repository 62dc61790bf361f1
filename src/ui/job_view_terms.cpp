#include "ui/job_view_terms.h"

#include "model/job_codes.h"

#include <algorithm>

namespace qx {
namespace {

constexpr std::array<JobColumnSpec, jobColumnCount> columnSpecs{{
    {"JobType", "Status", {}},
    {"JobID", "Schlüssel", {}},
    {"Vorgang", "Vorgang", JobListKey::JobType},
    {"Eingangsdatum", "Eingang", JobListKey::FormatDatum},
    {"Kundennummer", "Kunde", JobListKey::Kundennummer},
    {"Bez1", "Name", JobListKey::Bez1},
    {"Bemerkung", "Bemerkung", {}},
    {"FormatDatum", "Datum", {}},
    {"Betreff", "Betreff", JobListKey::Betreff},
}};

struct StateItem {
  std::string_view suffix;
  std::string_view meaning;
  std::string_view picture;
};

constexpr std::array<StateItem, 4> stateItems{{
    {"", "Wartend", "PROCESSING"},
    {" (prüfen)", "Warnung", "WARNING"},
    {" (fehler)", "Fehler", "ERROR"},
    {" (erledigt)", "Erledigt", "PROCESSED"},
}};

constexpr std::array<std::string_view, 3> kinds{"Kunden", "Vertrag", "Auftrag"};

/// The items of the codes 10 to 33; null for any other.
const StateItem* itemOf(std::int16_t jobType) {
  const auto state = static_cast<std::size_t>(stateOf(jobType));
  if (jobType < qxtjobkunden || jobType > qxtJobAufträgeDone || state >= stateItems.size()) return nullptr;
  return &stateItems[state];
}

constexpr std::array tools{
    ToolSpec{Tool::ProcessTransactions, "ProcessTransactions", "&Alle Vorgänge verarbeiten",
             "Prüft alle wartenden Vorgänge und schreibt sie in die Warenwirtschaft", "tool-process", "F9"},
    ToolSpec{Tool::Kunden, "mnuKunden", "&Kunden", "Verarbeitet nur die Kunden"},
    ToolSpec{Tool::Verträge, "mnuVerträge", "&Verträge", "Verarbeitet nur die Verträge"},
    ToolSpec{Tool::KundenVerträge, "mnuKundenVerträge", "Kunden &und Verträge",
             "Verarbeitet die Kunden und dann die Verträge"},
    ToolSpec{Tool::Aufträge, "mnuAufträge", "Auf&träge", "Verarbeitet nur die Aufträge"},
    ToolSpec{Tool::Zubehör, "mnuZubehör", "&Zubehöraufträge", "Verarbeitet nur die Zubehöraufträge"},
    ToolSpec{Tool::EinzelnVerarbeiten, "mnuEinzelnVerarbeiten", "&Einzeln verarbeiten",
             "Verarbeitet die Vorgänge einer Art"},
    ToolSpec{Tool::StopProcessing, "StopProcessing", "A&nhalten",
             "Hält nach dem aktuellen Vorgang an; die übrigen bleiben wartend", "tool-stop"},
    ToolSpec{Tool::OpenJob, "OpenJob", "&Öffnen", "Öffnet den gewählten Vorgang zum Prüfen und Berichtigen",
             "", "Eingabe"},
    ToolSpec{Tool::Delete, "Delete", "&Löschen", "Löscht die markierten Vorgänge", "tool-delete", "Entf"},
    ToolSpec{Tool::DeleteViewDone, "DeleteViewDone", "&Erledigte löschen", "Löscht alle erledigten Vorgänge"},
    ToolSpec{Tool::DeleteDate, "DeleteDate", "Erledigte vor &Datum löschen...",
             "Löscht die erledigten Vorgänge, die vor einem Tag eingegangen sind"},
    ToolSpec{Tool::UpdateDisplay, "UpdateDisplay", "Vorgänge &prüfen",
             "Prüft die wartenden Vorgänge und sagt, wie viele Befunde haben; ändert nichts", "tool-check"},
    ToolSpec{Tool::Release, "Release", "Frei&geben",
             "Lässt die nächste Verarbeitung die markierten Vorgänge trotz ihrer Befunde übernehmen"},
    ToolSpec{Tool::TakeBack, "TakeBack", "Freigabe &zurücknehmen",
             "Nimmt die Freigabe der markierten Vorgänge zurück"},
    ToolSpec{Tool::DayProtocol, "DayProtocol", "P&rotokoll des Tages...",
             "Zeigt, was heute aus den Vorgängen geworden ist"},
    ToolSpec{Tool::ImportProcessTransactions, "ImportProcessTransactions", "&Einlesen...",
             "Liest eine Datei mit Vorgängen ein", "tool-import"},
    ToolSpec{Tool::Export, "Export", "&Ausgeben...", "Schreibt alle Vorgänge in eine Datei", "tool-export"},
    ToolSpec{Tool::ExportMarked, "ExportMarked", "&Markierte ausgeben...",
             "Schreibt die markierten Vorgänge in eine Datei, Kunden mit ihren Verträgen"},
    ToolSpec{Tool::ViewWaiting, "ViewWaiting", "&Wartend", "Zeigt die wartenden Vorgänge", "PROCESSING", "",
             true},
    ToolSpec{Tool::ViewWarnings, "ViewWarnings", "War&nungen", "Zeigt die Vorgänge mit Warnungen", "WARNING",
             "", true},
    ToolSpec{Tool::ViewError, "ViewError", "&Fehler", "Zeigt die Vorgänge mit Fehlern", "ERROR", "", true},
    ToolSpec{Tool::ViewDone, "ViewDone", "&Erledigt", "Zeigt die erledigten Vorgänge", "PROCESSED", "", true},
    ToolSpec{Tool::Options, "Options", "&Optionen...",
             "Legt fest, wie Vorgänge geprüft und verarbeitet werden", "tool-options"},
    ToolSpec{Tool::About, "About", "&Info...", "Zeigt die Version des Programms", "", "F2"},
    ToolSpec{Tool::End, "End", "&Beenden", "Schließt das Fenster und gibt den Import für andere frei"},
};

constexpr bool inOrder() {
  for (std::size_t i = 0; i < tools.size(); ++i)
    if (indexOf(tools[i].tool) != i) return false;
  return true;
}
static_assert(tools.size() == toolCount && inOrder());

} // namespace

const JobColumnSpec& columnSpec(JobColumn column) { return columnSpecs[static_cast<std::size_t>(column)]; }

std::string processText(std::int16_t jobType) {
  const StateItem* item = itemOf(jobType);
  if (item == nullptr) return std::to_string(jobType);
  return std::string(kinds[static_cast<std::size_t>(jobType / 10 - 1)]) + std::string(item->suffix);
}

std::string_view stateText(std::int16_t jobType) {
  const StateItem* item = itemOf(jobType);
  return item == nullptr ? std::string_view() : item->meaning;
}

std::string_view statePicture(std::int16_t jobType) {
  const StateItem* item = itemOf(jobType);
  return item == nullptr ? std::string_view() : item->picture;
}

std::string rowStateText(const JobListRow& row) {
  return std::string(stateText(row.jobType)) + (row.released ? ", freigegeben" : "");
}

std::string rowName(const JobListRow& row) {
  std::string text = processText(row.jobType);
  for (const std::string& part : {row.customer, row.name})
    if (!part.empty()) text += " " + part;
  return row.customer.empty() && row.name.empty() ? text + " " + row.jobId : text;
}

std::string cellText(const JobListRow& row, JobColumn column) {
  switch (column) {
  case JobColumn::JobType:
    break;
  case JobColumn::JobID:
    return row.jobId;
  case JobColumn::Vorgang:
    return processText(row.jobType);
  case JobColumn::Eingangsdatum:
    return row.received;
  case JobColumn::Kundennummer:
    return row.customer;
  case JobColumn::Bez1:
    return row.name;
  case JobColumn::Bemerkung:
    return row.remark;
  case JobColumn::FormatDatum:
    return row.date ? germanDate(*row.date) : std::string();
  case JobColumn::Betreff:
    return row.subject;
  }
  return {};
}

std::span<const ToolSpec, toolCount> jobViewTools() { return tools; }

} // namespace qx
