// Deletes staged jobs: one, all that are done, and those received before a date.
#pragma once

#include "platform/environment.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Called after each job of a set, so that the caller can end one unit of work and begin the next.
using AfterJob = std::function<void()>;

/// Deletion on the shared connection.
///
/// A statement that the database refuses is told to the diagnostics and the next one still runs; on a host's
/// connection so is every other database failure. On a connection of our own a failure of the store itself
/// (`StoreError`, `BusyError`, `WorkLostError`) reaches the caller. There each job is one unit of work unless
/// the caller has one open.
class JobDeletion {
public:
  explicit JobDeletion(Environment& environment) : environment_(environment) {}

  /// Deletes the job or the position of this key. With `DelKundenVertrag`, when it is a customer job, also
  /// the customer-contract jobs of the customer, but not those that are done.
  void DelItem(std::string_view ItemName, bool DelKundenVertrag = false);
  /// Deletes every done job of any kind.
  void DelArchives(const AfterJob& afterJob = {});
  /// The keys of the done jobs received before the date. A job without a readable date is not among them and
  /// is told to the diagnostics.
  std::vector<std::string> doneBefore(const Date& date);
  /// Deletes them.
  void deleteDoneBefore(const Date& date, const AfterJob& afterJob = {});
  /// Deletes the job of this key if it still is done.
  void deleteDone(std::string_view jobId);
  /// Deletes the jobs of these keys that still are done when their turn comes.
  void deleteDone(const std::vector<std::string>& jobIds, const AfterJob& afterJob = {});

  /// How many job headers this object has deleted.
  std::int64_t deletedHeaders() const { return deletedHeaders_; }

  /// How many statements the database has refused.
  std::int64_t refusedStatements() const { return refusedStatements_; }
  /// How many done jobs stayed because their date of receipt cannot be read.
  std::int64_t undatedJobs() const { return undatedJobs_; }

  /// The first column of a select, "" left out; empty when the database refuses the select.
  std::vector<std::string> jobIds(const Sql& select);

private:
  std::int64_t deleteContractsOf(std::string_view customer, std::string_view job);
  std::int64_t deleteRows(std::string_view key);
  bool isDone(std::string_view jobId);
  template <class Step>
  void skipping(std::string_view where, std::string_view job, Step&& step);
  template <class Work>
  void inUnit(Work&& work);

  Environment& environment_;
  std::int64_t deletedHeaders_ = 0;
  std::int64_t refusedStatements_ = 0;
  std::int64_t undatedJobs_ = 0;
};

} // namespace qx
