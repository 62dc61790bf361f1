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
  std::string_view caption;           ///< what the clerk reads above it
  std::optional<JobListKey> sortedBy; ///< null for a column whose header leaves the order as it is
};

const JobColumnSpec& columnSpec(JobColumn column);

/// The display text of a job code, as "Auftrag (prüfen)"; the number itself for a code without one.
std::string processText(std::int16_t jobType);
/// What the picture of a job code means, as "Warnung"; empty for a code without a picture.
std::string_view stateText(std::int16_t jobType);
/// `PROCESSING`, `WARNING`, `ERROR` or `PROCESSED`; empty for a code without a picture.
std::string_view statePicture(std::int16_t jobType);

/// The text of a cell; empty for the picture column.
std::string cellText(const JobListRow& row, JobColumn column);

/// One tool of the menu bar. Texts are literals; the access key is marked with '&'.
struct ToolSpec {
  std::string_view name;
  std::string_view caption;
  std::string_view tip;
  std::string_view picture; ///< empty for none
  std::string_view key;     ///< the key of the list that does the same, as shown in the menu; empty for none
  bool checkable = false;
};

/// The name of the tool that ends a run after the current job.
inline constexpr std::string_view stopTool = "StopProcessing";
/// The name of the tool that opens the current job.
inline constexpr std::string_view openTool = "OpenJob";

std::span<const ToolSpec> jobViewTools();
/// The place of a tool in `jobViewTools`; null for an unknown name.
std::optional<std::size_t> findTool(std::string_view name);

} // namespace qx
