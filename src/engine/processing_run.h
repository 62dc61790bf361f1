// One processing run over the staged jobs.
#pragma once

#include "engine/contract_preparation.h"
#include "engine/event_source.h"
#include "engine/job_marks.h"
#include "engine/job_outcome.h"
#include "engine/order_options.h"
#include "engine/protocol.h"
#include "engine/run_options.h"
#include "engine/run_wait.h"
#include "engine/section_runner.h"
#include "engine/stop_signal.h"
#include "platform/environment.h"
#include "store/archive_purge.h"
#include "store/work_group.h"

#include <cstddef>
#include <exception>
#include <memory>
#include <string>

namespace qx {

/// What a run shares with the engine object that starts it. All of it must outlive the run.
struct RunParts {
  Environment& environment;
  EventSource& events;
  Protocol& protocol;
  CollectedErrors& errors;
  const StopSignal& stop;
  const OutcomeSink& outcomes; ///< may be empty
  std::string personnelNumber; ///< of the session's user
  std::string homeCurrency;
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
  void perform();
  void breakOff(const std::exception& error) noexcept;
  void countWaiting();
  void createComponents();
  void initPrices();
  bool orderIsBeingReadIn();
  void readProgramVersion();
  void readOptions();
  void resetReleasedJobs();
  void nameReleasedJobsLeft(const std::string& reason);
  static void resetJob(JobRow& job);
  void processCustomers();
  void prepareContracts();
  void processContracts();
  void processOrders();
  bool selects(qxProcessState section) const;
  void announceCashOnDelivery() noexcept;
  void close();
  void cleanUpProtocol();
  void purge();

  RunParts parts_;
  Environment& environment_;
  Settings settings_;
  bool unevaluated_;
  qxProcessState selection_;
  RunOptions options_;
  OrderOptions orderOptions_;
  PurgeOptions purgeOptions_;
  RunReport report_;
  MissingColumns missing_;
  RunWait wait_;
  WorkGroup group_;
  JobMarks marks_;
  SectionRunner sections_;
  std::string programVersion_;
  std::unique_ptr<Preisfindung> prices_;
  UnpreparedContracts unprepared_;
  std::string cashOnDelivery_; ///< numbers of the heavy orders that are paid to the carrier
};

} // namespace qx
