// The commands of the program: a class for each verb. Its public members are the arguments.
#pragma once

#include "cli/command.h"
#include "program/view_arguments.h"
#include "store/feed_cursor.h"
#include "store/job_file_scrambling.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qx::cli {

/// `init [--demo] [--shared]`: a second call changes nothing.
class InitCommand final : public Command {
public:
  bool demo = false;
  bool shared = false; ///< for the whole group of its owner

  ExitCode run(Installation& installation, const Output& output) override;
};

/// `stage FILE|- [--again] [--unique]`: all jobs of the file or none, with `--partial` the sound ones.
class StageCommand final : public DatabaseCommand {
public:
  std::string file;
  bool again = false;  ///< stage done jobs again
  bool unique = false; ///< refuse contents that were handed over under another key
  bool partial = false;
  bool dryRun = false;
  std::string rejects; ///< a new file for the objects that are left out

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `stage --watch DIR [--once] [--again] [--unique]`: the files of a folder as they come in.
class WatchCommand final : public Command {
public:
  std::string folder;
  bool once = false; ///< only what is there now
  bool again = false;
  bool unique = false;

  void prepare() override;
  bool offersLines() const override { return true; }
  ExitCode run(Installation& installation, const Output& output) override;
};

/// `convert --map FILE [INPUT] [--output FILE]`: a file of separated values becomes a file of jobs.
class ConvertCommand final : public Command {
public:
  std::string map;
  std::string input = "-";
  std::string target; ///< a new file; empty for standard output

  void prepare() override;
  ExitCode run(Installation& installation, const Output& output) override;
};

/// `list` with filters, an order and a form: without options all jobs, oldest date of receipt first.
class ListCommand final : public DatabaseCommand {
public:
  std::vector<std::string> states;
  std::vector<std::string> kinds;
  std::vector<std::string> jobIds;
  std::string search; ///< a text that one of the shown texts holds
  std::optional<std::string> since;
  std::string sort = "eingang"; ///< "-" before it for the reverse
  std::vector<std::string> columns;
  bool csv = false;
  std::optional<std::int64_t> limit;

  void prepare() override;
  bool offersLines() const override { return true; }

  bool isForReading() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;

private:
  Sql query() const;
  bool wants(Recordset& job) const;

  std::vector<std::int16_t> codes_; ///< empty for all
  std::optional<Date> day_;
};

/// `show JOBID`: header, positions and findings.
class ShowCommand final : public DatabaseCommand {
public:
  std::string jobId;

  bool isForReading() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `check [JOBID...]`: the jobs of these keys, or all waiting ones.
class CheckCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;

  bool isForReading() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `explain CODE|TEXT|JOBID`: the rules of a code or of a text of the run or the dialogs, which needs no
/// database; else the findings of a job with their values, and the rules of its reasons.
class ExplainCommand final : public Command {
public:
  std::string subject;

  ExitCode run(Installation& installation, const Output& output) override;

private:
  ExitCode explainJob(Installation& installation, const Output& output) const;
};

/// `schema [KIND]`: what `stage` takes, as a JSON schema. `schema --output [NAME]`: what a command prints
/// with
/// `--json`.
class SchemaCommand final : public Command {
public:
  std::string kind;                  ///< empty for all
  std::optional<std::string> output; ///< an output; empty for a list of them

  void prepare() override;
  bool isForReading() const override { return true; }
  ExitCode run(Installation& installation, const Output& target) override;

private:
  void prepareOutput();
  void describeOutput(std::ostream& result) const;

  std::vector<std::int16_t> kinds_{qxtjobkunden, qxtjobverträge, qxtJobAufträge};
};

/// `delete JOBID... [--with-contracts] [--dry-run] [--keep FILE]`; a job that the database refuses to delete
/// stays and is named.
class DeleteCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;
  bool dryRun = false;
  std::string keep;           ///< file for the jobs that go; empty for none
  bool withContracts = false; ///< of a customer job also the customer's contract jobs

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `purge [--before dd.mm.yyyy] [--dry-run] [--keep FILE]`: all done jobs, or those received before a day.
class PurgeCommand final : public DatabaseCommand {
public:
  bool dryRun = false;
  std::string keep;
  std::optional<std::string> before;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  std::optional<Date> day_;
};

/// `process [--select S] [--quiet] [--unevaluated] [--wait[=TIME]]`, under the single-user lock.
class ProcessCommand final : public DatabaseCommand {
public:
  std::string select = "alle";
  bool quiet = false;       ///< print jobs that were not written only
  bool unevaluated = false; ///< skip the automatic check
  std::string wait = "0";   ///< for the lock: a number with s, min or h behind it, or `forever`

  static constexpr const char* forever = "forever";

  void prepare() override;
  bool offersLines() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;

private:
  qxProcessState selection_ = qxProcessState::ProcessAll;
  std::chrono::seconds lockWait_{0};
};

/// `release JOBID...` or `release --all-warnings`.
class ReleaseCommand final : public DatabaseCommand {
public:
  std::vector<std::string> jobIds;
  bool allWarnings = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  /// The keys of the jobs that were released.
  std::vector<std::string> release(const CommandContext& context) const;
};

/// `protocol`: the lines of the session date's protocols.
class ProtocolCommand final : public DatabaseCommand {
public:
  bool isForReading() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `results [--since TIME | --after CURSOR] [--limit N]`: what became of the jobs, change by change.
class ResultsCommand final : public DatabaseCommand {
public:
  std::optional<std::string> since;
  std::optional<std::string> after;
  std::optional<std::int64_t> limit;

  void prepare() override;
  bool offersLines() const override { return true; }
  bool isForReading() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;

private:
  std::int64_t start(const FeedReader& feed) const;

  std::string moment_; ///< as in `timeStamp`; empty without one
};

/// `protocol purge --before dd.mm.yyyy`: the protocols of earlier days, the entries of earlier runs, the
/// changes of states before that day, and the contents that were handed over before it.
class ProtocolPurgeCommand final : public DatabaseCommand {
public:
  std::string before;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  Date day_{};
};

/// `status [--prometheus] [--runs N]`: jobs, runs, lock and database at one moment.
class StatusCommand final : public DatabaseCommand {
public:
  bool prometheus = false;
  std::int64_t runs = 5;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `lock show`.
class LockShowCommand final : public DatabaseCommand {
protected:
  ExitCode work(const CommandContext& context) override;
};

/// `lock release [--force]`; only with `force` that of a program that is running.
class LockReleaseCommand final : public DatabaseCommand {
public:
  bool force = false;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `import FILE [--version1]`: reads every record that is not defective.
class ImportCommand final : public DatabaseCommand {
public:
  std::string file;
  bool version1 = false;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `export FILE [--version1]`: every job and position.
class ExportCommand final : public DatabaseCommand {
public:
  std::string file;
  bool version1 = false;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `scramble FILE OUT`: from the plain form to the scrambled one of the installation's code tables;
/// `unscramble FILE OUT`: the reverse.
class ScrambleCommand final : public DatabaseCommand {
public:
  std::string file;
  std::string target;
  Scrambling scrambling = Scrambling::Scramble;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings list`: every option that the program knows.
class SettingsListCommand final : public DatabaseCommand {
public:
  bool isForReading() const override { return true; }

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings get SECTION KEY [--local]`.
class SettingsGetCommand final : public DatabaseCommand {
public:
  std::string section;
  std::string key;
  bool local = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings set SECTION KEY VALUE [--local] [--force]`.
class SettingsSetCommand final : public DatabaseCommand {
public:
  std::string section;
  std::string key;
  std::string value;
  bool local = false;
  bool force = false; ///< also an unknown key

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings export FILE|-`: the options that may go to another installation, as an INI file.
class SettingsExportCommand final : public DatabaseCommand {
public:
  std::string file;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `settings import FILE|- [--force]`: all options of the file or none.
class SettingsImportCommand final : public DatabaseCommand {
public:
  std::string file;
  bool force = false;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `backup FILE [--replace]`: the whole database as it is at one moment.
class BackupCommand final : public DatabaseCommand {
public:
  std::string file;
  bool replace = false;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;
};

/// `upgrade [--backup-made]`: makes a backup of a file first; a second call changes nothing.
class UpgradeCommand final : public Command {
public:
  bool backupMade = false; ///< by the tool of the server

  ExitCode run(Installation& installation, const Output& output) override;
};

/// `view [FILE]`: replaces this process with the window program.
class ViewCommand final : public Command {
public:
  ViewArguments arguments;

  void prepare() override { requireJobFile(arguments.file); }
  ExitCode run(Installation& installation, const Output& output) override;
};

} // namespace qx::cli
