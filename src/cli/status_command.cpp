#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/moments.h"
#include "cli/table.h"
#include "cli/terminal_text.h"
#include "model/date.h"
#include "model/text.h"
#include "store/json_writer.h"
#include "store/run_book.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace qx::cli {
namespace {

struct OldestJob {
  std::string jobId;
  std::string received;
  Date day;
};

struct Storage {
  std::int64_t bytes = 0; ///< of the database's files
  std::int64_t free = 0;  ///< on their disk
};

struct Status {
  std::map<std::int16_t, std::int64_t> jobs; ///< by code
  std::optional<OldestJob> oldest;
  bool keepsBook = false;
  std::vector<RunEntry> runs;
  std::optional<LockHolder> lock;
  std::string schema; ///< empty for a database of a host
  std::optional<Storage> storage;
  std::int64_t protocols = 0;
  std::int64_t protocolLines = 0;
};

constexpr std::array statesShown{JobState::Waiting, JobState::Warning, JobState::Error, JobState::Done,
                                 JobState::Deleted};
constexpr std::array kindsShown{qxtjobkunden, qxtjobkundenverträge, qxtjobverträge, qxtJobAufträge};

std::int64_t countOf(const Status& status, std::int16_t kind, JobState state) {
  const auto found = status.jobs.find(withState(kind, state));
  return found == status.jobs.end() ? 0 : found->second;
}

std::int64_t numberOf(Connection& connection, const Sql& query) {
  return connection.open(query)->value(std::size_t{0}).integer().value_or(0);
}

std::optional<OldestJob> oldestWaiting(Connection& connection) {
  const auto rows = connection.openStream(sql("Select JobID, Eingangsdatum From ImportKopf Where JobType In "
                                              "(10, 20, 30, 40) Order by Eingangsdatum"_sql));
  // Dates that cannot be read come first.
  for (; !rows->eof(); rows->moveNext())
    if (const auto day = parseGermanDate(rows->text("Eingangsdatum")))
      return OldestJob{rows->text("JobID"), rows->text("Eingangsdatum"), *day};
  return std::nullopt;
}

std::optional<Storage> storageOf(Connection& connection) {
  Storage storage;
  std::error_code failure;
  for (const std::filesystem::path& file : connection.files()) {
    std::error_code missing;
    if (const auto size = std::filesystem::file_size(file, missing); !missing)
      storage.bytes += static_cast<std::int64_t>(size);
    storage.free = static_cast<std::int64_t>(
        std::filesystem::space(std::filesystem::absolute(file).parent_path(), failure).available);
  }
  if (storage.bytes == 0 || failure) return std::nullopt;
  return storage;
}

bool hasTable(const std::vector<std::string>& tables, std::string_view wanted) {
  return std::ranges::any_of(tables, [&](const std::string& table) { return equalCodes(table, wanted); });
}

Status statusOf(const CommandContext& context, std::size_t runs) {
  Connection& connection = context.connection();
  const ReadView view(connection);
  const std::vector<std::string> tables = connection.tableNames();
  Status status;
  const auto counts =
      connection.openStream(sql("Select JobType, Count(*) As Anzahl From ImportKopf Group By JobType"_sql));
  for (; !counts->eof(); counts->moveNext())
    status.jobs[jobCode(counts->value("JobType"))] += counts->value("Anzahl").integer().value_or(0);
  status.oldest = oldestWaiting(connection);
  status.keepsBook = hasRunBook(connection);
  if (status.keepsBook) status.runs = lastRuns(connection, runs);
  status.lock = context.engine.importLock().holder();
  if (hasTable(tables, "Schemastand")) {
    const auto version = connection.open(sql("Select Version From Schemastand"_sql));
    if (!version->eof()) status.schema = version->text("Version");
  }
  status.storage = storageOf(connection);
  if (hasTable(tables, "Protokolle")) {
    status.protocols = numberOf(connection, sql("Select Count(*) From Protokolle Where Art = 'Import'"_sql));
    status.protocolLines =
        numberOf(connection,
                 sql("Select Count(*) From Protokollpositionen Where ID In (Select ID From Protokolle Where "
                     "Art = 'Import')"_sql));
  }
  return status;
}

std::string outcomeOf(const RunEntry& run) { return run.outcome.empty() ? "not ended" : run.outcome; }

Style outcomeStyle(const RunEntry& run) {
  if (run.outcome != "completed") return Style::Bad;
  return run.warning + run.error == 0 ? Style::Good : Style::Warning;
}

void printJobs(const Output& output, const Status& status) {
  Table table(output, {{"Vorgang", 13, 13},
                       {"wartet", 9, 7},
                       {"Warnung", 9, 7},
                       {"Fehler", 9, 7},
                       {"erledigt", 9, 8},
                       {"gelöscht", 9, 8}});
  table.head();
  for (const std::int16_t kind : kindsShown) {
    std::vector<TableCell> cells{{std::string(kindText(kind))}};
    for (const JobState state : statesShown) {
      const std::int64_t count = countOf(status, kind, state);
      cells.push_back(
          {std::to_string(count), count == 0 ? Style::Faint : stateStyle(withState(kind, state))});
    }
    table.row(cells);
  }
}

void printRuns(const Output& output, const Status& status) {
  if (!status.keepsBook) {
    output.result << "Runs       this database keeps no book of its runs\n";
    return;
  }
  if (status.runs.empty()) {
    output.result << "Runs       none yet\n";
    return;
  }
  output.result << "Runs, the latest first\n";
  Table table(output, {{"begin", 19, 19},
                       {"end", 19, 8, true},
                       {"outcome", 9, 9},
                       {"done", 7, 5},
                       {"warning", 7, 7},
                       {"error", 7, 5},
                       {"waiting", 7, 7},
                       {"user", 12, 6, true},
                       {"program", 22, 11, true}});
  table.head();
  for (const RunEntry& run : status.runs)
    table.row({{momentText(run.begin)},
               {momentText(run.end)},
               {outcomeOf(run), outcomeStyle(run)},
               {std::to_string(run.done)},
               {std::to_string(run.warning)},
               {std::to_string(run.error)},
               {std::to_string(run.waiting)},
               {run.user},
               {run.program}});
}

/// "12.3 MB" or "4.5 GB".
std::string sizeText(std::int64_t bytes) {
  constexpr std::int64_t tenthOfMega = 100000;
  constexpr std::int64_t kilo = 1000;
  const bool large = bytes >= tenthOfMega * 10 * kilo;
  const std::int64_t tenths = bytes / (large ? tenthOfMega * kilo : tenthOfMega);
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + (large ? " GB" : " MB");
}

void printText(const Output& output, const Status& status) {
  std::ostream& result = output.result;
  result << "Database   ";
  if (status.storage)
    result << sizeText(status.storage->bytes) << ", " << sizeText(status.storage->free)
           << " free on the disk, ";
  result << (status.schema.empty() ? "of another program" : "version " + status.schema) << '\n';
  result << "Lock       ";
  if (!status.lock)
    result << "not held\n";
  else
    result << "held by user '" << oneLine(status.lock->Benutzer) << "', whose program is "
           << (!status.lock->alive   ? "perhaps running"
               : *status.lock->alive ? "running"
                                     : "no longer running")
           << '\n';
  result << "Oldest     ";
  if (status.oldest)
    result << status.oldest->received << ", waiting: " << oneLine(status.oldest->jobId) << '\n';
  else
    result << "no job is waiting\n";
  result << "Protocol   " << status.protocolLines << " lines in " << status.protocols << " protocols\n";
  result << '\n';
  printJobs(output, status);
  result << '\n';
  printRuns(output, status);
}

/// The argument of the option `--state`.
std::string_view stateArgument(JobState state) {
  return std::array<std::string_view, 5>{"waiting", "warning", "error", "done", "deleted"}.at(
      static_cast<std::size_t>(state));
}

std::string kindArgument(std::int16_t kind) { return asciiLower(kindText(kind)); }

void writeRun(JsonWriter& json, const RunEntry& run) {
  json.beginObject().key("begin").text(run.begin).key("end").textOrNull(run.end);
  json.key("outcome").textOrNull(run.outcome).key("processed").number(run.processed);
  json.key("done").number(run.done).key("warning").number(run.warning).key("error").number(run.error);
  json.key("waiting").number(run.waiting).key("user").text(run.user).key("program").text(run.program);
  json.key("protocol").textOrNull(run.protocol).endObject();
}

void printJson(std::ostream& result, const Status& status) {
  JsonWriter json(result);
  json.beginObject().key("jobs").beginObject();
  for (const std::int16_t kind : kindsShown) {
    json.key(kindArgument(kind)).beginObject();
    for (const JobState state : statesShown)
      json.key(stateArgument(state)).number(countOf(status, kind, state));
    json.endObject();
  }
  json.endObject().key("oldest");
  if (status.oldest)
    json.beginObject()
        .key("JobID")
        .text(status.oldest->jobId)
        .key("Eingangsdatum")
        .text(status.oldest->received)
        .endObject();
  else
    json.null();
  json.key("runs");
  if (status.keepsBook) {
    json.beginArray();
    for (const RunEntry& run : status.runs) writeRun(json, run);
    json.endArray();
  } else {
    json.null();
  }
  json.key("lock").beginObject().key("held").boolean(status.lock.has_value());
  json.key("Benutzer").text(status.lock ? status.lock->Benutzer : "").key("alive");
  if (status.lock && status.lock->alive)
    json.boolean(*status.lock->alive);
  else
    json.null();
  json.endObject().key("schema").textOrNull(status.schema).key("bytes");
  if (status.storage)
    json.number(status.storage->bytes).key("bytesFree").number(status.storage->free);
  else
    json.null().key("bytesFree").null();
  json.key("protocols").number(status.protocols).key("protocolLines").number(status.protocolLines);
  json.endObject().finish();
}

/// The text format of Prometheus.
class Metrics {
public:
  explicit Metrics(std::ostream& output) : output_(output) {}

  Metrics& describe(std::string_view name, std::string_view meaning) {
    name_ = "qximportjob_" + std::string(name);
    output_ << "# HELP " << name_ << ' ' << meaning << "\n# TYPE " << name_ << " gauge\n";
    return *this;
  }
  Metrics& sample(std::int64_t number, std::string_view labels = {}) {
    output_ << name_;
    if (!labels.empty()) output_ << '{' << labels << '}';
    output_ << ' ' << number << '\n';
    return *this;
  }

private:
  std::ostream& output_;
  std::string name_;
};

void printMetrics(std::ostream& result, const Status& status) {
  Metrics metrics(result);
  metrics.describe("jobs", "Staged jobs by kind and state.");
  for (const std::int16_t kind : kindsShown)
    for (const JobState state : statesShown)
      metrics.sample(countOf(status, kind, state), "kind=\"" + kindArgument(kind) + "\",state=\"" +
                                                       std::string(stateArgument(state)) + "\"");
  if (status.oldest)
    metrics
        .describe("oldest_waiting_job_timestamp_seconds", "Day on which the oldest waiting job was received.")
        .sample(secondsOf({status.oldest->day, 0, 0, 0}));
  if (!status.runs.empty()) {
    const RunEntry& last = status.runs.front();
    if (const auto begin = parseTimeStamp(last.begin))
      metrics.describe("last_run_begin_timestamp_seconds", "Begin of the last run.")
          .sample(secondsOf(*begin));
    if (const auto end = parseTimeStamp(last.end))
      metrics.describe("last_run_end_timestamp_seconds", "End of the last run.").sample(secondsOf(*end));
    metrics.describe("last_run_completed", "1 when the last run came to its end.")
        .sample(last.outcome == "completed" ? 1 : 0);
    metrics.describe("last_run_jobs", "Jobs of the last run by result.")
        .sample(last.done, "result=\"done\"")
        .sample(last.warning, "result=\"warning\"")
        .sample(last.error, "result=\"error\"");
  }
  metrics.describe("lock_held", "1 while the import is locked.").sample(status.lock ? 1 : 0);
  if (status.storage) {
    metrics.describe("database_bytes", "Size of the database's files.").sample(status.storage->bytes);
    metrics.describe("disk_free_bytes", "Free space on their disk.").sample(status.storage->free);
  }
  metrics.describe("protocol_lines", "Lines of all protocols.").sample(status.protocolLines);
}

} // namespace

void StatusCommand::prepare() {
  if (runs < 0)
    throw ProgramError(ExitCode::BadInput, "the number of runs must not be negative",
                       "Give the number of runs to show.");
}

ExitCode StatusCommand::work(const CommandContext& context) {
  if (prometheus && context.output.json)
    throw ProgramError(ExitCode::BadInput, "--json and --prometheus exclude each other", "Omit one of them.");
  const Status status = statusOf(context, static_cast<std::size_t>(runs));
  if (prometheus)
    printMetrics(context.output.result, status);
  else if (context.output.json)
    printJson(context.output.result, status);
  else
    printText(context.output, status);
  return ExitCode::Success;
}

} // namespace qx::cli
