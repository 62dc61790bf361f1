#include "floor/job_run.h"

#include <chrono>
#include <utility>
#include <vector>

namespace qx::bench {
namespace {

using std::chrono::steady_clock;

constexpr int jobsAGroup = 100;
constexpr std::chrono::milliseconds timeAGroup{200};

void beginProtocol(Database& database) {
  database.execute("BEGIN IMMEDIATE");
  database
      .prepare("INSERT INTO Protokolle (ID, Titel, Art, Liste, Datum) VALUES "
               "(?, 'Verarbeitungsprotokoll ImportJob', 'Import', 'LST_ImportJob', '')")
      .bind(1, protocolId)
      .run();
  database.execute("COMMIT");
}

std::vector<std::pair<std::int64_t, std::string>> readList(Database& database, std::string_view text) {
  Statement list = database.prepare(text);
  std::vector<std::pair<std::int64_t, std::string>> keys;
  while (list.step()) keys.emplace_back(list.integer(0), list.text(1));
  return keys;
}

} // namespace

std::string dayStamp(std::string_view date) {
  std::string stamp(date.substr(6, 4));
  stamp.append(date.substr(3, 2)).append(date.substr(0, 2)).append("000000");
  return stamp;
}

void runJobs(Database& database, std::string_view list, const std::function<void(std::int64_t)>& write) {
  beginProtocol(database);
  Statement begin = database.prepare("BEGIN IMMEDIATE");
  Statement commit = database.prepare("COMMIT");
  int jobs = 0;
  steady_clock::time_point begun;
  for (const auto& [rowId, jobId] : readList(database, list)) {
    if (jobs == 0) {
      begin.run();
      begun = steady_clock::now();
    }
    write(rowId);
    if (++jobs < jobsAGroup && steady_clock::now() - begun < timeAGroup) continue;
    commit.run();
    jobs = 0;
  }
  if (jobs > 0) commit.run();
}

} // namespace qx::bench
