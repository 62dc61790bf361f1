#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/progress_bar.h"
#include "cli/stage_reader.h"
#include "model/text.h"
#include "platform/bulk_staging.h"
#include "platform/conflict_retry.h"
#include "program/busy_notice.h"
#include "store/json_writer.h"

#include <memory>
#include <ostream>
#include <string>
#include <unordered_set>
#include <vector>

namespace qx::cli {
namespace {

std::string reasonOf(const KeyConflict& conflict, std::string_view field) {
  const std::string key = "the " + std::string(field) + " '" + conflict.key + "' ";
  switch (conflict.kind) {
  case KeyConflict::Kind::OtherOwner:
    return key + "belongs to the job '" + conflict.owner + "'";
  case KeyConflict::Kind::OtherName:
    return "a position gives the JobID '" + conflict.owner + "' of another job";
  case KeyConflict::Kind::JobTwice:
  case KeyConflict::Kind::PositionTwice:
    break;
  }
  return key + "stands already in object " + std::to_string(conflict.otherJob) + " on line " +
         std::to_string(conflict.otherLine);
}

[[noreturn]] void refuse(const KeyConflict& conflict, const std::string& file) {
  const bool ofPosition =
      conflict.kind == KeyConflict::Kind::PositionTwice || conflict.kind == KeyConflict::Kind::OtherOwner;
  const std::string field = ofPosition ? "ChildID" : "JobID";
  throw ProgramError(
      ExitCode::BadInput, "object " + std::to_string(conflict.job) + ": " + reasonOf(conflict, field),
      "Nothing was staged. Give every job and position its own key.", {file, conflict.line, field});
}

/// The orders that were done before a file was staged again.
class WrittenOrders {
public:
  /// Null for none.
  explicit WrittenOrders(Connection* connection) {
    if (connection == nullptr) return;
    const auto rows = connection->openStream(
        sql("Select JobID From ImportKopf Where JobType = "_sql, number(qxtJobAufträgeDone)));
    for (; !rows->eof(); rows->moveNext()) keys_.insert(asciiLower(rows->text("JobID")));
  }

  /// Those of the file that wait again.
  std::vector<std::string> among(BulkStaging& jobs) const {
    std::vector<std::string> again;
    if (keys_.empty()) return again;
    jobs.forEach([&](const std::string& jobId, std::int16_t jobType, StageResult result) {
      if (result == StageResult::Replaced && jobType == qxtJobAufträge && keys_.contains(asciiLower(jobId)))
        again.push_back(jobId);
    });
    return again;
  }

  void warn(std::ostream& messages, BulkStaging& jobs) const {
    const auto again = among(jobs);
    if (again.empty()) return;
    messages << "Warning: the next run writes a second order for each of these jobs, which were done:\n";
    for (const std::string& jobId : again) messages << "  " << oneLine(jobId) << '\n';
  }

private:
  std::unordered_set<std::string> keys_;
};

void writeJson(const Output& output, BulkStaging& jobs, const WrittenOrders& written) {
  JsonWriter json(output.result);
  json.beginObject();
  json.key("staged").number(jobs.counts().staged);
  json.key("skipped").number(jobs.counts().skipped);
  json.key("jobs").beginArray();
  jobs.forEach([&](const std::string& jobId, std::int16_t /*jobType*/, StageResult result) {
    if (result != StageResult::Skipped) json.text(jobId);
  });
  json.endArray();
  if (const auto again = written.among(jobs); !again.empty()) json.key("writtenBefore").texts(again);
  json.endObject().finish();
}

void writeText(const Output& output, BulkStaging& jobs) {
  jobs.forEach([&](const std::string& jobId, std::int16_t jobType, StageResult result) {
    switch (result) {
    case StageResult::Added:
      output.result << "added     ";
      break;
    case StageResult::Replaced:
      output.result << "replaced  ";
      break;
    case StageResult::Skipped:
      output.result << "skipped   ";
      break;
    }
    output.result << oneLine(jobId) << "  " << kindText(jobType)
                  << (result == StageResult::Skipped ? "  (done; --again stages it anew)\n" : "\n");
  });
  output.result << jobs.counts().staged << " staged, " << jobs.counts().skipped << " skipped\n";
}

} // namespace

ExitCode StageCommand::work(const CommandContext& context) {
  TextFile source(file);
  const std::unique_ptr<BulkStaging> jobs = context.connection().bulkStaging();
  JobAssembler assembler(context.environment, *jobs, source.name());
  jobs->begin();
  {
    ProgressBar bar(context.output, ProgressUnit::Bytes);
    source.observe([&](std::uintmax_t done, std::uintmax_t total) {
      bar.report(done, total);
      bar.draw();
    });
    readJobs(source, assembler);
    source.observe({});
  }
  if (const auto conflict = jobs->finish()) refuse(*conflict, source.name());
  BusyNotice wait(context.output.messages);
  const WrittenOrders written(again ? &context.connection() : nullptr);
  const auto refused =
      doneAgainOnConflict(context.environment, "stage", [&] { return jobs->copy(wait, again); });
  if (refused) refuse(*refused, source.name());
  if (context.output.json)
    writeJson(context.output, *jobs, written);
  else
    writeText(context.output, *jobs);
  written.warn(context.output.messages, *jobs);
  return ExitCode::Success;
}

} // namespace qx::cli
