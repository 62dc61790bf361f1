#include "cli/check_command.h"

#include "cli/job_check.h"
#include "cli/job_query.h"
#include "cli/job_terms.h"
#include "cli/json_writer.h"

#include <functional>

namespace qx::cli {
namespace {

/// Prints the checked jobs one by one.
class CheckPrinter {
public:
  explicit CheckPrinter(const Output& output) : output_(output), json_(output.result) {
    if (output_.json) json_.beginObject().key("jobs").beginArray();
  }

  void add(const JobBrief& job, const JobFindings& findings) {
    ++checked_;
    if (findings.status != CheckStatus::Clean) ++withFindings_;
    if (output_.json)
      addJson(job, findings);
    else if (findings.status != CheckStatus::Clean)
      addText(job, findings);
  }
  void leaveOut() { ++leftOut_; }

  ExitCode finish() {
    if (output_.json)
      json_.endArray().endObject().finish();
    else
      output_.result << checked_ << " checked, " << withFindings_ << " with findings\n";
    if (leftOut_ > 0)
      output_.messages << leftOut_ << " jobs are of a kind that this version cannot check yet.\n";
    return withFindings_ > 0 ? ExitCode::Findings : ExitCode::Success;
  }

private:
  void addJson(const JobBrief& job, const JobFindings& findings) {
    json_.beginObject();
    json_.key("JobID").text(job.jobId);
    json_.key("Vorgang").text(processText(job.jobType));
    json_.key("Nummer").text(job.customer);
    json_.key("status").number(static_cast<std::int64_t>(findings.status));
    json_.key("findings").beginArray();
    for (const std::string& text : findings.texts) json_.text(text);
    json_.endArray().endObject();
  }
  void addText(const JobBrief& job, const JobFindings& findings) {
    output_.result << (findings.status == CheckStatus::Warning ? "Warnung" : "Fehler") << "  "
                   << processText(job.jobType) << " " << job.customer << "  " << job.jobId << '\n';
    for (const std::string& text : findings.texts) output_.result << "  " << text << '\n';
  }

  const Output& output_;
  JsonWriter json_;
  std::size_t checked_ = 0;
  std::size_t withFindings_ = 0;
  std::size_t leftOut_ = 0;
};

void check(const Workplace& place, const JobBrief& job, CheckPrinter& printer) {
  if (const auto findings = checkJob(place.engine, job.jobId, job.jobType))
    printer.add(job, *findings);
  else
    printer.leaveOut();
}

/// Calls back for every waiting job of any kind, customers first.
void forEachWaiting(Connection& connection, const std::function<void(const JobBrief&)>& visit) {
  for (const std::int16_t kind : {qxtjobkunden, qxtjobverträge, qxtjobkundenverträge, qxtJobAufträge}) {
    const auto rows =
        connection.openStream(sql("Select JobID, JobType, Kundennummer From ImportKopf Where JobType = "_sql,
                                  number(kind), " Order By Kundennummer"_sql));
    for (; !rows->eof(); rows->moveNext())
      visit({rows->text("JobID"), kind, rows->text("Kundennummer"), false});
  }
}

} // namespace

ExitCode CheckCommand::work(const Workplace& place) {
  const auto jobs = findJobs(place.connection(), jobIds);
  CheckPrinter printer(place.output);
  const auto checkOne = [&](const JobBrief& job) { check(place, job, printer); };
  if (jobIds.empty())
    forEachWaiting(place.connection(), checkOne);
  else
    for (const JobBrief& job : jobs) checkOne(job);
  return printer.finish();
}

} // namespace qx::cli
