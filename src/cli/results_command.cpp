#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "cli/moments.h"
#include "cli/table.h"
#include "engine/finding_terms.h"
#include "engine/findings.h"
#include "model/text.h"
#include "store/feed_cursor.h"
#include "store/json_writer.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

[[noreturn]] void refuseCursor(CursorRefusal refusal, std::string_view cursor) {
  const auto because = [](const std::string& what, std::string_view nextStep) {
    throw ProgramError(ExitCode::BadInput, what, std::string(nextStep));
  };
  constexpr std::string_view anew =
      "'qximportjob results --since TIME' starts anew from a moment, without an "
      "option from the oldest change that is kept.";
  switch (refusal) {
  case CursorRefusal::OtherDatabase:
    because("the cursor '" + std::string(cursor) + "' was given out by another database",
            "Look at --db and $QXIMPORTJOB_DB. " + std::string(anew));
    break;
  case CursorRefusal::NotHere:
    because("the change behind which the cursor '" + std::string(cursor) +
                "' stands is not in this database: an earlier state of it was restored, it seems",
            "Changes since that state are lost here; 'qximportjob list' tells what became of the jobs. " +
                std::string(anew));
    break;
  case CursorRefusal::Purged:
    because("changes behind the cursor '" + std::string(cursor) + "' have been deleted by 'protocol purge'",
            "'qximportjob list' tells what became of the jobs. " + std::string(anew));
    break;
  default:
    because("'" + std::string(cursor) + "' is no cursor",
            "Give the last one as it was printed. " + std::string(anew));
  }
  throw ProgramError(ExitCode::Failure, "the cursor cannot be used", "");
}

/// The lines of the reasons, each with the code of the rule that says it.
void writeReasons(JsonWriter& json, std::string_view reasons) {
  json.key("reasons").beginArray();
  while (!reasons.empty()) {
    const std::string_view line = trimWhitespace(takeLine(reasons));
    if (line.empty() || line == findingsSentence) continue;
    const auto row =
        std::ranges::find_if(allTerms(), [&](const RuleTerms& each) { return says(each, line); });
    json.beginObject().key("code").textOrNull(row == allTerms().end() ? std::string_view() : row->code);
    json.key("text").text(line).endObject();
  }
  json.endArray();
}

void writeChange(JsonWriter& json, const ToldChange& told, const std::string& cursor) {
  json.beginObject().key("cursor").text(cursor).key("time").text(isoMoment(told.moment));
  json.key("JobID").text(told.change.jobId);
  json.key("JobType").number(std::int64_t{told.change.jobType});
  writeOutcome(json, told.change.jobType, told.change.number);
  json.key("Fehlertext").text(told.change.reasons);
  writeReasons(json, told.change.reasons);
  json.endObject();
}

/// Prints changes in the form that is asked for.
class ResultsPrinter {
public:
  explicit ResultsPrinter(const Output& output)
      : output_(output), json_(output.result), table_(output, {{"Zeit", 25, 19},
                                                               {"Vorgang", 13, 7},
                                                               {"Nummer", 10, 6},
                                                               {"Status", 8, 8},
                                                               {"JobID", 32, 13, false, Fitting::Ends},
                                                               {"Gründe", 80, 10}}) {
    if (!output.json)
      table_.head();
    else if (!output.jsonLines)
      json_.beginObject().key("results").beginArray();
  }

  void add(const ToldChange& told, const std::string& cursor) {
    if (output_.jsonLines) {
      JsonWriter line(output_.result);
      writeChange(line, told, cursor);
      line.finish();
    } else if (output_.json) {
      writeChange(json_, told, cursor);
    } else {
      const StateChange& change = told.change;
      table_.row({{isoMoment(told.moment)},
                  {std::string(kindText(change.jobType))},
                  {change.number},
                  {std::string(stateText(change.jobType)), stateStyle(change.jobType)},
                  {change.jobId},
                  {briefReasons(change.reasons)}});
    }
  }

  void finish(const std::string& cursor, bool more) {
    if (!output_.json) {
      output_.result << (more ? "There is more. " : "") << "Go on with: --after " << cursor << '\n';
    } else {
      if (output_.jsonLines)
        json_.beginObject();
      else
        json_.endArray();
      json_.key("cursor").text(cursor).key("more").boolean(more).endObject().finish();
    }
    output_.result.flush();
  }

private:
  const Output& output_;
  JsonWriter json_;
  Table table_;
};

} // namespace

void ResultsCommand::prepare() {
  if (since && after)
    throw ProgramError(ExitCode::BadInput, "--since and --after exclude each other", "Omit one of them.");
  if (limit && *limit < 0)
    throw ProgramError(ExitCode::BadInput, "the limit must not be negative",
                       "Give the number of changes to print.");
  if (since) moment_ = timeStamp(typedMoment(*since));
}

std::int64_t ResultsCommand::start(const FeedReader& feed) const {
  if (!moment_.empty()) return feed.before(moment_);
  if (!after) return feed.beginning();
  std::int64_t number = 0;
  if (const CursorRefusal refusal = feed.find(*after, number); refusal != CursorRefusal::None)
    refuseCursor(refusal, *after);
  return number;
}

ExitCode ResultsCommand::work(const CommandContext& context) {
  Connection& connection = context.connection();
  if (!hasStateFeed(connection))
    throw ProgramError(ExitCode::Failure, "this database keeps no changes of its jobs' states",
                       "'qximportjob list' tells the states themselves.");
  const ReadView view(connection);
  const FeedReader feed(connection);
  const std::int64_t number = start(feed);
  std::string cursor;
  auto changes = feed.changesBehind(number);
  ResultsPrinter printer(context.output);
  std::int64_t count = 0;
  for (; !changes->eof() && (!limit || count < *limit); changes->moveNext(), ++count) {
    const ToldChange told = toldChange(*changes);
    cursor = feed.cursorBehind(told);
    printer.add(told, cursor);
  }
  const bool more = !changes->eof();
  changes.reset();
  printer.finish(cursor.empty() ? feed.cursorAt(number) : cursor, more);
  return ExitCode::Success;
}

} // namespace qx::cli
