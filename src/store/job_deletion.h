// Deletes staged jobs: one, all that are done, those received before a date, and as the options say.
#pragma once

#include "platform/environment.h"
#include "settings/settings.h"
#include "store/state_feed.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Deletion on the shared connection.
///
/// A job that the database refuses to delete stays as a whole and is reported to the diagnostics; on a host's
/// connection every database failure is handled so. On a connection of our own any other database failure
/// reaches the caller.
///
/// A set of jobs is committed in groups, for which no unit of work may be open. A job whose deletion rolls
/// back the unit stays, and the others of its group are deleted one by one. Other programs and the message
/// loop get their turn between groups.
///
/// The feed is told of jobs that are deleted by name, not of done ones that are cleared away: those have been
/// told of as done.
class JobDeletion {
public:
  /// Asked before each job of a set; false ends the deletion there.
  using GoOn = std::function<bool()>;

  /// `wait` decides how long the start of a unit waits for another program; null for the connection's limit.
  explicit JobDeletion(Environment& environment, BusyWait* wait = nullptr)
      : environment_(environment), wait_(wait), feed_(environment) {}

  /// Deletes the job or the position of this key, as a part of the unit of work that is open. With
  /// `DelKundenVertrag`, when it is a customer job, also the customer-contract jobs of the customer, but not
  /// those that are done.
  void DelItem(std::string_view ItemName, bool DelKundenVertrag = false);
  /// The same for a set.
  void delItems(const std::vector<std::string>& jobIds, bool withContracts);
  /// Deletes every done job of any kind.
  void DelArchives() { deleteDone(doneJobs()); }
  /// The keys of these jobs.
  std::vector<std::string> doneJobs();
  /// The keys of the done jobs received before the date. A job without a readable date is left out and
  /// reported to the diagnostics.
  std::vector<std::string> doneBefore(const Date& date);
  /// Deletes them.
  void deleteDoneBefore(const Date& date) { deleteDone(doneBefore(date)); }
  /// Deletes the jobs of these keys that are still done when reached. False when it was stopped.
  bool deleteDone(const std::vector<std::string>& jobIds, const GoOn& goOn = {});

  /// How many job headers this object has deleted.
  std::int64_t deletedHeaders() const { return deletedHeaders_; }
  /// The jobs that the database refused to delete, with its reasons.
  const std::map<std::string, std::string>& left() const { return left_; }
  /// A German sentence that names the first of them; "" when there is none.
  std::string germanLeft() const;
  /// How many jobs or selections of jobs the database has refused to delete.
  std::int64_t refusals() const { return static_cast<std::int64_t>(left_.size()) + refusedSelections_; }
  /// How many done jobs stayed because their date of receipt cannot be read.
  std::int64_t undatedJobs() const { return undatedJobs_; }
  /// The first hundred of them.
  const std::vector<std::string>& undated() const { return undated_; }
  /// The keys of the contract jobs that go with this job.
  std::vector<std::string> contractsOf(std::string_view jobId);

  /// The non-empty values of a select's first column; none when the database refuses the select.
  std::vector<std::string> jobIds(const Sql& select);

private:
  template <class Take>
  bool inGroups(const std::vector<std::string>& jobIds, const GoOn& goOn, StateFeed* feed, Take&& take);
  template <class Work>
  std::int64_t part(std::string_view job, Work&& work);
  template <class Select>
  void selecting(std::string_view where, Select&& select);
  std::unique_ptr<Recordset> header(std::string_view jobId);
  std::int64_t deleteItem(std::string_view key, bool withContracts);
  std::int64_t deleteContractsOf(std::string_view customer, std::vector<StateChange>& gone);
  std::int64_t deleteRows(std::string_view key);

  Environment& environment_;
  BusyWait* wait_;
  StateFeed feed_;
  std::int64_t deletedHeaders_ = 0;
  std::map<std::string, std::string> left_;
  std::int64_t refusedSelections_ = 0;
  std::int64_t undatedJobs_ = 0;
  std::vector<std::string> undated_;
};

/// Which done jobs are removed; each option only when its setting reads exactly "1".
struct PurgeOptions {
  bool customers = false; ///< `KundeDelete`
  bool contracts = false; ///< `VTDelete`
  bool orders = false;    ///< `AuftragDelete`

  static PurgeOptions read(const Settings& settings);
};

/// Deletes done customers, then done customer contracts, then done orders. Done contract jobs without a
/// customer are not among them, on purpose. Shows the text of each active pass once, before its deletions.
/// False when it was stopped early.
bool purgeArchives(JobDeletion& deletion, const PurgeOptions& options,
                   const std::function<void(std::string_view text)>& progress, const JobDeletion::GoOn& goOn);

} // namespace qx
