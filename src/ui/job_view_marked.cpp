// What the job view does with the marked jobs, and the deletion of others.
#include "ui/job_view_presenter.h"

#include "store/job_deletion.h"
#include "ui/counted.h"
#include "ui/job_view_busy.h"

#include <algorithm>
#include <set>
#include <utility>

namespace qx {
namespace {

/// The jobs and the contracts that are deleted with them, each once.
std::vector<std::string> withContracts(Environment& environment, const std::vector<std::string>& jobs) {
  JobDeletion deletion(environment);
  std::vector<std::string> all = jobs;
  JobKeys known(jobs.begin(), jobs.end());
  for (const std::string& job : jobs)
    for (const std::string& contract : deletion.contractsOf(job))
      if (known.insert(contract).second) all.push_back(contract);
  return all;
}

} // namespace

std::vector<std::size_t> JobViewPresenter::targets() const {
  if (state_.marked.size() > 1) return state_.marked;
  if (!state_.current) return {};
  return {*state_.current};
}

std::vector<std::string> JobViewPresenter::keysOf(const std::vector<std::size_t>& rows) const {
  std::vector<std::string> keys;
  for (const std::size_t row : rows)
    if (!state_.rows[row].jobId.empty()) keys.push_back(state_.rows[row].jobId);
  return keys;
}

std::string JobViewPresenter::deletionQuestion(const std::vector<std::size_t>& rows) {
  const bool single = rows.size() == 1;
  std::string text =
      single ? "Wollen Sie diesen Importvorgang wirklich löschen?\r\n" + rowName(state_.rows[rows.front()])
             : "Wollen Sie diese " + grouped(whole(rows.size())) + " Importvorgänge wirklich löschen?";
  std::set<std::string> contracts;
  skip("contracts", [&] {
    for (const std::size_t row : rows)
      if (kindOf(state_.rows[row].jobType) == qxtjobkunden)
        contracts.merge([&] {
          const auto keys = contractsWithCustomer(activeConnection(environment_), state_.rows[row].customer);
          return std::set<std::string>(keys.begin(), keys.end());
        }());
  });
  if (contracts.empty()) return text;
  const bool one = contracts.size() == 1;
  return text + "\r\n" + (one ? "Dabei wird " : "Dabei werden ") +
         counted(whole(contracts.size()), "Vertrag", "Verträge") + (single ? " des Kunden" : " der Kunden") +
         " gelöscht.";
}

void JobViewPresenter::erase() {
  const auto rows = targets();
  const auto jobs = keysOf(rows);
  if (jobs.empty()) return;
  // Shows the job that the question is about.
  windows_.showCurrent();
  skip("delete", [&] {
    const auto consent = mayDelete({deletionQuestion(rows), "Wirklich löschen?", MessageIcon::None},
                                   withContracts(environment_, jobs));
    if (!consent || !databaseIsFree()) return;
    if (jobs.size() == 1) {
      engine_.DelItem(jobs.front(), true);
      if (!consent.file.empty()) state_.result = deletionResult("1 Vorgang gelöscht", consent);
      return refreshAndShow();
    }
    std::string left;
    {
      const Busy busy(*this, Work::Files, "Die Vorgänge werden gelöscht...");
      JobDeletion deletion(environment_);
      trapped(
          environment_.diagnostics, {"delete"}, [&] { deletion.delItems(jobs, true); },
          [&](const std::exception& failure) { left = germanCause(failure); });
      if (left.empty()) left = deletion.germanLeft();
      state_.marked.clear();
      refresh();
      state_.result =
          deletionResult(counted(deletion.deletedHeaders(), "Vorgang", "Vorgänge") + " gelöscht", consent);
    }
    if (!left.empty())
      environment_.desktop.show({.text = "Fehler beim Löschen: " + left, .icon = MessageIcon::Critical});
  });
  if (closeAsked_) windows_.closeWindow();
}

void JobViewPresenter::setRelease(bool released) {
  std::vector<std::string> jobs;
  const auto rows = targets();
  for (const std::size_t row : rows)
    if (isParked(state_.rows[row].jobType) && state_.rows[row].released != released)
      jobs.push_back(state_.rows[row].jobId);
  if (jobs.empty()) return;
  windows_.showCurrent();
  const bool one = jobs.size() == 1;
  std::string question;
  if (one)
    question = released ? "Soll die nächste Verarbeitung diesen Vorgang trotz seiner Befunde übernehmen?\r\n"
                        : "Soll die Freigabe dieses Vorgangs zurückgenommen werden?\r\n";
  else
    question = (released ? "Soll die nächste Verarbeitung diese " : "Soll die Freigabe dieser ") +
               grouped(whole(jobs.size())) +
               (released ? " Vorgänge trotz ihrer Befunde übernehmen?" : " Vorgänge zurückgenommen werden?");
  if (one) {
    const auto row = std::ranges::find(state_.rows, jobs.front(), &JobListRow::jobId);
    question += rowName(*row);
  }
  skip("release", [&] {
    if (!environment_.desktop.ask({question, std::string(released ? "Freigeben" : "Freigabe zurücknehmen")}))
      return;
    if (!databaseIsFree()) return;
    const auto wait = windows_.databaseWait();
    const std::size_t changed = qx::setReleased(environment_, jobs, released, wait.get());
    state_.result = jobsInWords(changed) + (released ? " freigegeben" : " nicht mehr freigegeben");
    refreshAndShow();
  });
}

void JobViewPresenter::exportMarked() {
  JobKeys keys;
  skip("contracts", [&] {
    for (const std::size_t row : targets()) {
      const JobListRow& job = state_.rows[row];
      keys.insert(job.jobId);
      if (kindOf(job.jobType) != qxtjobkunden) continue;
      for (std::string& contract : contractsWithCustomer(activeConnection(environment_), job.customer))
        keys.insert(std::move(contract));
    }
  });
  if (!keys.empty()) exportJobs(&keys);
}

/// The question names how many would go.
void JobViewPresenter::purge() {
  std::vector<std::string> jobs;
  if (!skip("done jobs", [&] { jobs = JobDeletion(environment_).doneJobs(); })) return;
  if (jobs.empty()) {
    state_.result = "Es gibt keine erledigten Vorgänge.";
    return compose();
  }
  const std::string question =
      jobs.size() == 1
          ? "Ein Vorgang ist erledigt.\r\nSoll er endgültig gelöscht werden?"
          : grouped(whole(jobs.size())) + " Vorgänge sind erledigt.\r\nSollen sie endgültig gelöscht werden?";
  const auto consent = mayDelete({question, "Erledigte Vorgänge löschen", MessageIcon::None}, jobs);
  if (!consent || !databaseIsFree()) return;
  {
    const Busy busy(*this, Work::Files, "Erledigte Vorgänge werden gelöscht...");
    const std::int64_t before = state_.counts.done;
    engine_.DelArchives();
    refresh();
    state_.result = deletionResult(
        counted(before - state_.counts.done, "erledigter Vorgang", "erledigte Vorgänge") + " gelöscht",
        consent);
  }
  if (closeAsked_) windows_.closeWindow();
}

DeletionConsent JobViewPresenter::mayDelete(const Message& question, const std::vector<std::string>& jobs) {
  return askBeforeDeletion(
      environment_, [this](const Message& asked) { return windows_.askDeletion(asked); }, question, jobs);
}

void JobViewPresenter::purgeByDate() {
  const std::int64_t before = state_.counts.done;
  skip("DeleteDate", [this] { windows_.deleteDate(); });
  refresh();
  if (const std::int64_t deleted = before - state_.counts.done; deleted > 0)
    state_.result = counted(deleted, "erledigter Vorgang", "erledigte Vorgänge") + " gelöscht";
  compose();
}

} // namespace qx
