#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "engine/job_check.h"
#include "model/text.h"
#include "store/json_writer.h"

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>

namespace qx::cli {
namespace {

/// Prints the checked jobs one by one.
class CheckPrinter {
public:
  explicit CheckPrinter(const Output& output) : output_(output), json_(output.result) {}

  void add(const JobBrief& job, const Findings& findings) {
    begin();
    ++checked_;
    if (findings.status() != CheckStatus::Clean) ++withFindings_;
    if (std::ranges::any_of(findings, &Finding::isHint)) ++withHints_;
    if (output_.json)
      addJson(job, findings);
    else if (!findings.empty())
      addText(job, findings);
  }

  /// Closes a begun document with the reason why it is incomplete; false when none was begun.
  bool breakOff(std::string_view reason) {
    if (!output_.json || !begun_) return false;
    json_.endArray().key("error").text(reason).endObject().finish();
    return true;
  }

  ExitCode finish() {
    begin();
    if (output_.json)
      json_.endArray().endObject().finish();
    else
      output_.result << checked_ << " checked, " << withFindings_ << " with findings"
                     << (withHints_ > 0 ? ", " + std::to_string(withHints_) + " with hints" : "") << '\n';
    return withFindings_ > 0 ? ExitCode::Findings : ExitCode::Success;
  }

private:
  void begin() {
    if (output_.json && !begun_) json_.beginObject().key("jobs").beginArray();
    begun_ = true;
  }
  void addJson(const JobBrief& job, const Findings& findings) {
    json_.beginObject();
    json_.key("JobID").text(job.jobId);
    json_.key("Vorgang").text(processText(job.jobType));
    json_.key("Nummer").text(job.number);
    writeCheck(json_, findings);
    json_.endObject();
  }
  void addText(const JobBrief& job, const Findings& findings) {
    const std::string_view severity = severityWord(findings.status());
    output_.result.print(severity, statusStyle(severity));
    output_.result << "  " << processText(job.jobType) << " " << oneLine(job.number) << "  "
                   << oneLine(job.jobId) << '\n';
    for (const std::string& line : findings.lines()) output_.result << "  " << line << '\n';
  }

  const Output& output_;
  JsonWriter json_;
  bool begun_ = false;
  std::size_t checked_ = 0;
  std::size_t withFindings_ = 0;
  std::size_t withHints_ = 0;
};

/// Calls back for every waiting job of any kind, customers first.
void forEachWaiting(Connection& connection, const std::function<void(const JobBrief&)>& visit) {
  for (const std::int16_t kind : {qxtjobkunden, qxtjobverträge, qxtjobkundenverträge, qxtJobAufträge}) {
    const auto rows = connection.openStream(
        sql("Select JobID, JobType, Kundennummer, Vertragsnummer From ImportKopf Where JobType = "_sql,
            number(kind), " Order By Kundennummer"_sql));
    for (; !rows->eof(); rows->moveNext()) visit(briefOf(*rows));
  }
}

} // namespace

ExitCode CheckCommand::work(const CommandContext& context) {
  const auto jobs = findJobs(context.connection(), jobIds);
  CheckPrinter printer(context.output);
  JobCheck checker(context.environment, true);
  const auto checkOne = [&](const JobBrief& job) { printer.add(job, checker.check(job.jobId)); };
  try {
    if (jobIds.empty())
      forEachWaiting(context.connection(), checkOne);
    else
      for (const JobBrief& job : jobs) checkOne(job);
  } catch (const DatabaseError& error) {
    if (!printer.breakOff(error.what())) throw;
    return ExitCode::Failure;
  }
  return printer.finish();
}

} // namespace qx::cli
