// One processing run over the staged jobs.
#pragma once

#include "engine/contract_preparation.h"
#include "engine/run_context.h"
#include "engine/section_runner.h"
#include "rules/price_component.h"
#include "store/job_deletion.h"

#include <exception>
#include <string>
#include <vector>

namespace qx {

/// Takes the waiting jobs section by section, checks and writes each, and logs it.
///
/// A job's failure ends that job only. What ends the run is a store that cannot go on; the open group of jobs
/// is then rolled back and its jobs are still waiting.
class ProcessingRun {
public:
  explicit ProcessingRun(RunContext& run);

  /// Never raises. The context serves one run.
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
  std::vector<std::string> keysOfReleasedJobs(std::size_t count);
  void resetJob(JobRow& job, const std::string& jobId);
  void processCustomers();
  void prepareContracts();
  void processContracts();
  void processOrders();
  bool selects(qxProcessState section) const;
  void collectJobsLeft() noexcept;
  void announceCashOnDelivery() noexcept;
  void close();
  void cleanUpProtocol();
  void purge();

  RunContext& run_;
  Environment& environment_;
  Settings settings_;
  PurgeOptions purgeOptions_;
  SectionRunner sections_;
  PriceComponent prices_;
  UnpreparedContracts unprepared_;
};

} // namespace qx
