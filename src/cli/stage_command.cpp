#include "cli/stage_command.h"

#include "cli/job_terms.h"
#include "cli/json_writer.h"
#include "cli/stage_reader.h"
#include "cli/staging_area.h"
#include "platform/one_line.h"
#include "program/busy_notice.h"

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

void writeJson(const Output& output, StagingArea& area) {
  JsonWriter json(output.result);
  json.beginObject();
  json.key("staged").number(area.counts().staged);
  json.key("skipped").number(area.counts().skipped);
  json.key("jobs").beginArray();
  area.forEach([&](const std::string& jobId, std::int16_t /*jobType*/, StageResult result) {
    if (result != StageResult::Skipped) json.text(jobId);
  });
  json.endArray().endObject().finish();
}

void writeText(const Output& output, StagingArea& area) {
  area.forEach([&](const std::string& jobId, std::int16_t jobType, StageResult result) {
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
  output.result << area.counts().staged << " staged, " << area.counts().skipped << " skipped\n";
}

} // namespace

ExitCode StageCommand::work(const CommandContext& context) {
  TextFile source(file);
  StagingArea area(context.connection());
  JobAssembler assembler(context.environment, area, source.name());
  area.begin();
  readJobs(source, assembler);
  if (const auto conflict = area.finish()) refuse(*conflict, source.name());
  BusyNotice wait(context.output.messages);
  if (const auto conflict = area.copy(wait, again)) refuse(*conflict, source.name());
  if (context.output.json)
    writeJson(context.output, area);
  else
    writeText(context.output, area);
  return ExitCode::Success;
}

} // namespace qx::cli
