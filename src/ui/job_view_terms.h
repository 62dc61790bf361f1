// The fixed texts and names of the job view: columns, value items and tools.
#pragma once

#include "store/job_list.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace qx {

/// The columns of the list, in their order.
enum class JobColumn : std::uint8_t {
  JobType, ///< shown as a picture
  JobID,
  Vorgang, ///< the job type as text
  Eingangsdatum,
  Kundennummer,
  Bez1,
  Bemerkung,
  FormatDatum,
  Betreff,
};

inline constexpr std::size_t jobColumnCount = 9;

struct JobColumnSpec {
  std::string_view name;              ///< of the column of the list query
  std::string_view caption;           ///< its heading
  std::optional<JobListKey> sortedBy; ///< null for a column that does not sort
};

const JobColumnSpec& columnSpec(JobColumn column);

/// The display text of a job code, for example "Auftrag (prüfen)"; the number itself for an unknown code.
std::string processText(std::int16_t jobType);
/// The meaning of a job code's picture, for example "Warnung"; empty for a code without one.
std::string_view stateText(std::int16_t jobType);
/// The meaning of a row's picture: "Warnung, freigegeben" for a released job.
std::string rowStateText(const JobListRow& row);
/// Names a job: kind, customer and name, for example "Kunden (fehler) 70301 Müller GmbH".
std::string rowName(const JobListRow& row);
/// `PROCESSING`, `WARNING`, `ERROR` or `PROCESSED`; empty for a code without a picture.
std::string_view statePicture(std::int16_t jobType);
/// Whether there is a dialog for the job.
inline bool canBeOpened(const JobListRow& row) { return !statePicture(row.jobType).empty(); }

/// The text of a cell; empty for the picture column.
std::string cellText(const JobListRow& row, JobColumn column);

/// The tools of the menu bar, in the order of `jobViewTools`.
enum class Tool : std::uint8_t {
  ProcessTransactions,
  Kunden,
  Verträge,
  KundenVerträge,
  Aufträge,
  Zubehör,
  EinzelnVerarbeiten, ///< the heading of the runs of one kind; not a command
  StopProcessing,     ///< ends a run after the current job
  OpenJob,
  Delete,
  DeleteViewDone,
  DeleteDate,
  UpdateDisplay,
  Release,  ///< the marked jobs
  TakeBack, ///< their release
  DayProtocol,
  ImportProcessTransactions,
  Export,
  ExportMarked,
  ViewWaiting,
  ViewWarnings,
  ViewError,
  ViewDone,
  Options,
  About,
  End,
};

inline constexpr std::size_t toolCount = 26;

constexpr std::size_t indexOf(Tool tool) { return static_cast<std::size_t>(tool); }

/// The visible properties of a tool. Texts are literals; the access key is marked with '&'.
struct ToolSpec {
  Tool tool;
  std::string_view name; ///< the object name in the window
  std::string_view caption;
  std::string_view tip;
  std::string_view picture{}; ///< empty for none
  std::string_view key{};     ///< the equivalent key of the list, as shown in the menu; empty for none
  bool checkable = false;
};

std::span<const ToolSpec, toolCount> jobViewTools();
inline const ToolSpec& toolSpec(Tool tool) { return jobViewTools()[indexOf(tool)]; }

} // namespace qx
