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
    ToolSpec{"ProcessTransactions", "&Alle Vorgänge verarbeiten",
             "Prüft alle wartenden Vorgänge und schreibt sie in die Warenwirtschaft", "tool-process", "F9"},
    ToolSpec{"mnuKunden", "&Kunden", "Verarbeitet nur die Kunden", "", ""},
    ToolSpec{"mnuVerträge", "&Verträge", "Verarbeitet nur die Verträge", "", ""},
    ToolSpec{"mnuKundenVerträge", "Kunden &und Verträge", "Verarbeitet die Kunden und dann die Verträge", "",
             ""},
    ToolSpec{"mnuAufträge", "Auf&träge", "Verarbeitet nur die Aufträge", "", ""},
    ToolSpec{"mnuZubehör", "&Zubehöraufträge", "Verarbeitet nur die Zubehöraufträge", "", ""},
    ToolSpec{"mnuEinzelnVerarbeiten", "&Einzeln verarbeiten", "Verarbeitet die Vorgänge einer Art", "", ""},
    ToolSpec{stopTool, "A&nhalten", "Hält nach dem aktuellen Vorgang an; die übrigen bleiben wartend",
             "tool-stop", ""},
    ToolSpec{openTool, "&Öffnen", "Öffnet den gewählten Vorgang zum Prüfen und Berichtigen", "", "Eingabe"},
    ToolSpec{"Delete", "&Löschen", "Löscht den gewählten Vorgang", "tool-delete", "Entf"},
    ToolSpec{"DeleteViewDone", "&Erledigte löschen", "Löscht alle erledigten Vorgänge", "", ""},
    ToolSpec{"DeleteDate", "Erledigte bis &Datum löschen...",
             "Löscht die erledigten Vorgänge, die vor einem Tag eingegangen sind", "", ""},
    ToolSpec{"UpdateDisplay", "Vorgänge &prüfen", "Liest die Liste neu und prüft den gewählten Vorgang",
             "tool-check", ""},
    ToolSpec{"ImportProcessTransactions", "&Einlesen...", "Liest eine Datei mit Vorgängen ein", "tool-import",
             ""},
    ToolSpec{"Export", "&Ausgeben...", "Schreibt alle Vorgänge in eine Datei", "tool-export", ""},
    ToolSpec{"ViewWaiting", "&Wartend", "Zeigt die wartenden Vorgänge", "PROCESSING", "", true},
    ToolSpec{"ViewWarnings", "War&nungen", "Zeigt die Vorgänge mit Warnungen", "WARNING", "", true},
    ToolSpec{"ViewError", "&Fehler", "Zeigt die Vorgänge mit Fehlern", "ERROR", "", true},
    ToolSpec{"ViewDone", "&Erledigt", "Zeigt die erledigten Vorgänge", "PROCESSED", "", true},
    ToolSpec{"Options", "&Optionen...", "Legt fest, wie Vorgänge geprüft und verarbeitet werden",
             "tool-options", ""},
    ToolSpec{"About", "&Info...", "Zeigt die Version des Programms", "", "F2"},
    ToolSpec{"End", "&Beenden", "Schließt das Fenster und gibt den Import für andere frei", "", ""},
};

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

std::span<const ToolSpec> jobViewTools() { return tools; }

std::optional<std::size_t> findTool(std::string_view name) {
  const auto* const found = std::ranges::find(tools, name, &ToolSpec::name);
  return found == tools.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - tools.begin()));
}

} // namespace qx
