// One processing run over the staged jobs.
#pragma once

#include "engine/customer_processor.h"
#include "engine/customer_proof.h"
#include "engine/event_source.h"
#include "engine/job_marks.h"
#include "engine/job_outcome.h"
#include "engine/protocol.h"
#include "engine/run_options.h"
#include "engine/run_wait.h"
#include "engine/stop_signal.h"
#include "engine/work_group.h"
#include "platform/environment.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace qx {

/// Told of every job of a run once its outcome is durable.
using OutcomeSink = std::function<void(const JobOutcome&)>;

/// What a run shares with the engine object that starts it. All of it must outlive the run.
struct RunParts {
  Environment& environment;
  EventSource& events;
  Protocol& protocol;
  CollectedErrors& errors;
  const StopSignal& stop;
  const OutcomeSink& outcomes; ///< may be empty
};

/// Takes the waiting jobs section by section, checks and writes each, and logs it.
///
/// A job's failure ends that job only. What ends the run is a store that cannot go on; the open group of jobs
/// is then rolled back and its jobs are still waiting.
class ProcessingRun {
public:
  ProcessingRun(const RunParts& parts, bool unevaluated, qxProcessState selection);

  /// Never raises.
  RunReport execute();

private:
  struct Section {
    std::string_view process; ///< kind of transaction in the protocol
    std::string_view info;
    std::array<std::int16_t, 2> codes; ///< job codes that the section takes; 0 for none
  };
  /// What became of one job, and its protocol line.
  struct JobResult {
    ProtocolLine line;
    std::string indexedCustomer; ///< whose address index is to be brought up to date; empty for none
  };
  using Handler = std::function<JobResult(JobRow&)>;

  bool orderIsBeingReadIn();
  void perform();
  void createComponents();
  void initPrices();
  void readProgramVersion();
  void resetReleasedJobs();
  void resetJob(JobRow& job);
  void processCustomers();
  void announceContracts();
  void announceOrders();
  void runSection(const Section& section, const Sql& query, const Handler& handler);
  void processJob(const Section& section, JobRow& job, const Handler& handler);
  void markLostJob(const Section& section, Recordset& jobs, const std::string& reason);
  void logJob(JobRow& job, const JobResult& result);
  bool indexCustomer(std::string_view customer, std::string_view jobId);
  JobResult processCustomer(JobRow& job);
  JobResult parkedOrFailed(const Section& section, JobRow& job, std::string_view status);
  bool park(JobRow& job, const Findings& findings);
  void close();
  void showAfterCommit(const Message& message);
  void raiseProgress(std::size_t position, std::size_t count);
  std::int64_t countWaiting(const Sql& query);
  static bool takes(const Section& section, std::int16_t jobType);

  RunParts parts_;
  Environment& environment_;
  Settings settings_;
  bool unevaluated_;
  qxProcessState selection_;
  RunOptions options_;
  MissingColumns missing_;
  JobMarks marks_;
  RunWait wait_;
  WorkGroup group_;
  RunReport report_;
  std::string programVersion_;
  std::unique_ptr<Adressindex> addressIndex_;
  std::unique_ptr<Preisfindung> prices_;
  std::size_t progressRaised_ = 0;
};

} // namespace qx
