// The list of staged jobs as the job view shows it.
#pragma once

#include "platform/database.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Which states are listed.
struct JobListFilter {
  bool waiting = true;
  bool done = false;
  bool warnings = true;
  bool errors = true;

  friend bool operator==(const JobListFilter&, const JobListFilter&) = default;
};

/// The sort key of the list. `Eingangsdatum` and `FormatDatum` are the same day in two forms.
enum class JobListKey : std::uint8_t { Eingangsdatum, JobType, FormatDatum, Kundennummer, Bez1, Betreff };

struct JobListOrder {
  JobListKey key = JobListKey::Eingangsdatum;
  bool descending = true;

  friend bool operator==(const JobListOrder&, const JobListOrder&) = default;
};

/// One job of the list. Null columns are empty texts.
struct JobListRow {
  std::int16_t jobType = 0;
  std::string jobId;
  std::string received;     ///< `Eingangsdatum` as stored
  std::string customer;     ///< `Kundennummer`
  std::string name;         ///< `Bez1`
  std::string remark;       ///< `Bemerkung`
  std::string subject;      ///< `Betreff`
  std::optional<Date> date; ///< `FormatDatum`: the day of receipt, null when it is no date
  bool released = false;    ///< the next run takes it whatever was found; not read with the list

  friend bool operator==(const JobListRow&, const JobListRow&) = default;
};

/// How many customer, contract and order jobs have each state.
struct JobCounts {
  std::int64_t waiting = 0;
  std::int64_t warnings = 0;
  std::int64_t errors = 0;
  std::int64_t done = 0;

  friend bool operator==(const JobCounts&, const JobCounts&) = default;
};

/// The keys of some jobs.
using JobKeys = std::set<std::string, std::less<>>;

/// A list holds at most this many jobs: the first ones in its order.
inline constexpr std::size_t jobListLimit = 2000;

/// The statement behind the list.
Sql jobListQuery(const JobListFilter& filter, const JobListOrder& order);

/// The jobs of the list. Here and below database errors reach the caller.
std::vector<JobListRow> readJobList(Connection& connection, const JobListFilter& filter,
                                    const JobListOrder& order);

/// A search for jobs by words, each of which is in the name, the customer number or the subject, in any case.
class JobSearch {
public:
  JobSearch() = default;
  explicit JobSearch(std::string_view text);

  /// Whether there are no words, so that every job matches.
  bool empty() const { return words_.empty(); }
  bool matches(const JobListRow& row) const;
  const std::vector<std::string>& words() const { return words_; }

private:
  std::vector<std::string> words_; ///< in lower case
};

/// All jobs of the filter that match, the first `jobListLimit` of them; with `among` only jobs of these keys.
std::vector<JobListRow> findJobs(Connection& connection, const JobListFilter& filter,
                                 const JobListOrder& order, const JobSearch& search,
                                 const JobKeys* among = nullptr);

JobCounts countJobs(Connection& connection);

/// `Fehlertext` of a job; empty when there is no such job.
std::string readJobReasons(Connection& connection, std::string_view jobId);

} // namespace qx
