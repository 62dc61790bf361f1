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

/// The jobs that a section processes, and how it announces itself.
struct Section {
  std::string_view transaction; ///< its kind in the protocol
  std::string_view info;
  std::array<std::int16_t, 2> codes{}; ///< job codes that it processes; 0 for none
  ColumnName numberField;              ///< by which the protocol identifies an unwritten job

  bool takes(std::int16_t jobType) const {
    return jobType != 0 && (jobType == codes[0] || jobType == codes[1]);
  }
};

/// The result of one job, as recorded in its protocol line.
struct JobResult {
  bool leftOut = false; ///< the section ignores the job: no line, not counted
  ProtocolLine line{};
  Findings findings{};           ///< why it was refused, or hints about a job that was written
  std::string indexedCustomer{}; ///< customer whose address index must be updated; empty for none

  /// The hints about a job that was written; the protocol shows them after its information.
  void addHints(Findings hints);
};

/// Processes jobs in groups, one unit of work per group. A group whose unit is lost is repeated job by job.
/// When a job on its own loses its unit again, the step that lost it is given up: if that was the writing,
/// the job is marked as failed; if it was the protocol line or the index entry, the job does without. A job
/// that cannot even be marked stays waiting and is named; the run continues with the next one.
class SectionRunner {
public:
  struct Handler {
    std::function<JobResult(JobRow&)> process;
    /// Marks a job as failed and records the failure, whatever caused it.
    std::function<JobResult(JobRow&, std::string_view reason)> fail;
    /// Does what processing the job will read, without deciding anything: it may find less than there is. As
    /// often as `lookahead` says, since what is read next may depend on what was found.
    std::function<void(const JobRow&)> foresee{};
    int lookahead = 1;
  };

  explicit SectionRunner(RunContext& run) : run_(run) {}

  /// The address index component; without one every entry counts as not written.
  void setAddressIndex(std::unique_ptr<Adressindex> index) { addressIndex_ = std::move(index); }
  void run(const Section& section, const Sql& query, const Handler& handler);
  /// A result with the columns common to all protocol lines; the number comes from the section's field.
  static JobResult result(const Section& section, const JobRow& job, std::string_view status);
  /// The same for a job that was parked or failed; its reasons become the protocol's information.
  static JobResult refused(const Section& section, const JobRow& job, std::string_view status,
                           Findings findings = {});

private:
  /// The step a job had reached when its unit was lost.
  enum class Step : std::uint8_t { Writing, Marking, Logging, Indexing, Committing };

  /// The step of the current job that is given up, and the loss that caused it.
  struct Attempt {
    std::size_t at = static_cast<std::size_t>(-1); ///< index of the job
    Step step = Step::Writing;
    std::optional<WorkLostError> writing;
    std::optional<WorkLostError> line;
    std::optional<WorkLostError> index;
  };

  void foresee(Recordset& jobs, std::size_t first, std::size_t count, const Handler& handler);
  void foreseeJob(Recordset& jobs, const Handler& handler);
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
