// Takes the jobs of one section of a run, one after the other.
#pragma once

#include "engine/findings.h"
#include "engine/job_row.h"
#include "engine/run_context.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace qx {

inline constexpr std::string_view statusDone = "Erledigt";
inline constexpr std::string_view statusWarning = "Warnung";
inline constexpr std::string_view statusError = "Fehler";

/// Which jobs a section takes and how it announces itself.
struct Section {
  std::string_view process; ///< kind of transaction in the protocol
  std::string_view info;
  std::array<std::int16_t, 2> codes{}; ///< job codes that it takes; 0 for none
  ColumnName numberField;              ///< what the protocol names an unwritten job by

  bool takes(std::int16_t jobType) const {
    return jobType != 0 && (jobType == codes[0] || jobType == codes[1]);
  }
};

/// What became of one job, as its protocol line tells it.
struct JobResult {
  bool leftOut = false; ///< the section leaves the job as it is: no line, not counted
  ProtocolLine line{};
  Findings findings{};           ///< why it was refused, or what is worth knowing though it was written
  std::string indexedCustomer{}; ///< whose address index is to be brought up to date; empty for none

  /// The hints of a job that was written; in the protocol they stand behind its information.
  void addHints(Findings hints);
};

/// Takes jobs in groups of units of work. A group that is lost is taken again job by job. Of the job that
/// loses its unit when it is alone the part that lost it is given up: its writing, then it is marked as
/// failed; its protocol line or index entry, then it stands without. One that cannot even be marked is left
/// waiting and named; the run goes on behind it.
class SectionRunner {
public:
  struct Handler {
    std::function<JobResult(JobRow&)> process;
    /// Marks a job as failed and records all that belongs to a failure, whatever the reason came from.
    std::function<JobResult(JobRow&, std::string_view reason)> fail;
  };

  explicit SectionRunner(RunContext& run) : run_(run) {}

  /// The component that keeps the address index; without one every entry counts as not written.
  void setAddressIndex(std::unique_ptr<Adressindex> index) { addressIndex_ = std::move(index); }
  void run(const Section& section, const Sql& query, const Handler& handler);
  /// The result of a job with what every protocol line says; its number is that of the section's field.
  static JobResult result(const Section& section, const JobRow& job, std::string_view status);
  /// The same of a job that was parked or failed: its reasons are the protocol's info.
  static JobResult refused(const Section& section, const JobRow& job, std::string_view status,
                           Findings findings = {});

private:
  /// What a job was at when its unit was lost.
  enum class Step : std::uint8_t { Writing, Marking, Logging, Indexing, Committing };

  /// What is given up of the job at hand, and the loss that made it so.
  struct Attempt {
    std::size_t at = static_cast<std::size_t>(-1); ///< the job's place
    Step step = Step::Writing;
    std::optional<WorkLostError> writing;
    std::optional<WorkLostError> line;
    std::optional<WorkLostError> index;
  };

  void take(const Section& section, Recordset& jobs, std::size_t at, const Handler& handler);
  std::optional<JobResult> processJob(const Handler& handler, Recordset& jobs);
  std::optional<JobResult> markFailed(const Handler& handler, Recordset& jobs, const std::string& reason);
  bool takesAgain(const WorkLostError& loss);
  void leave(Recordset& jobs, std::size_t at, const WorkLostError& loss);
  void logJob(const JobRow& job, const JobResult& result);
  bool addLine(const ProtocolLine& line);
  bool indexCustomer(std::string_view customer, std::string_view jobId);
  void raiseProgress(std::size_t position, std::size_t count);

  RunContext& run_;
  std::unique_ptr<Adressindex> addressIndex_;
  Attempt attempt_;
  std::size_t progressRaised_ = 0;
};

} // namespace qx
