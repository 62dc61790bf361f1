#include "cli/command_line.h"

#include "cli/commands.h"
#include "cli/completion.h"
#include "engine/finding_terms.h"
#include "program/common_options.h"
#include "settings/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

/// Declares the options and the verbs; the chosen verb's command is kept.
class Parser {
public:
  explicit Parser(std::string_view version)
      : app_("Import jobs: stage, check and process customers, contracts and orders.", "qximportjob") {
    app_.set_version_flag("--version", std::string(version));
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.footer("Exit status: 0 all well, 1 jobs with findings, 2 wrong usage or input, 3 refused,\n"
                "4 database or environment failure, 5 run stopped. 'qximportjob COMMAND --help' says more.");
    declareOptions();
    declareJobCommands();
    declareRunCommands();
    declareJobFiles();
    declareSettings();
    declareMaintenance();
    declareView();
    declareCompletion();
  }

  Invocation parse(int count, const char* const* arguments) {
    requireDatabaseName(count, arguments);
    Invocation invocation;
    try {
      app_.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
      if (error.get_exit_code() != 0)
        throw ProgramError(ExitCode::BadInput, error.what(), "qximportjob --help shows the usage.");
      std::ostringstream text;
      app_.exit(error, text, text);
      invocation.text = text.str();
      return invocation;
    }
    if (!shell_.empty()) {
      invocation.text = completionScript(app_, offered_, shell_);
      return invocation;
    }
    options_.json = !json_.empty();
    invocation.jsonLines = json_ == "lines";
    if (invocation.jsonLines && !chosen_->offersLines())
      throw ProgramError(ExitCode::BadInput, "this command prints one document",
                         "Give --json without 'lines'; process and list print a document a line.");
    view_->arguments.options = options_;
    invocation.options = options_;
    invocation.color = color_;
    invocation.command = std::move(chosen_);
    return invocation;
  }

private:
  template <class CommandType>
  std::pair<CLI::App*, CommandType*> verb(CLI::App& parent, const char* name, const char* purpose) {
    auto command = std::make_shared<CommandType>();
    CLI::App* verb = parent.add_subcommand(name, purpose);
    verb->callback([this, command] { chosen_ = command; });
    return {verb, command.get()};
  }

  void declareOptions() {
    declareCommonOptions(app_, options_);
    app_.add_flag("--json{document}", json_, "Print one JSON document; --json=lines: one a line")
        ->check(CLI::IsMember({"document", "lines"}));
    app_.add_option("--color", color_, "Colour states: auto, always or never")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str();
  }

  void declareJobCommands() {
    const auto [initVerb, init] = verb<InitCommand>(app_, "init", "Create the database");
    initVerb->add_flag("--demo", init->demo, "Fill it with a demo company and its jobs");
    initVerb->add_flag("--shared", init->shared, "Let the group of its owner use it, not the owner alone");

    const auto [stageVerb, stage] = verb<StageCommand>(app_, "stage", "Stage jobs from a JSON file");
    stageVerb->add_option("FILE", stage->file, "File of jobs, - for standard input")->required();
    stageVerb->add_flag("--again", stage->again, "Stage done jobs again");

    const auto [listVerb, list] = verb<ListCommand>(app_, "list", "List jobs, oldest first");
    offer(listVerb->add_option("--state", list->states, "waiting, warning, error or done; may be repeated")
              ->expected(1)
              ->take_all(),
          {"waiting", "warning", "error", "done"});
    offer(listVerb
              ->add_option("--kind", list->kinds, "kunde, vertrag, auftrag or kundenvertrag; may be repeated")
              ->expected(1)
              ->take_all(),
          {"kunde", "vertrag", "auftrag", "kundenvertrag"});
    listVerb->add_option("--limit", list->limit, "Only the first N jobs");

    const auto [showVerb, show] = verb<ShowCommand>(app_, "show", "Show one job with positions and findings");
    showVerb->add_option("JOBID", show->jobId, "Key of the job")->required();

    const auto [checkVerb, check] = verb<CheckCommand>(app_, "check", "Check jobs without writing anything");
    checkVerb->add_option("JOBID", check->jobIds, "Keys of jobs; default: all waiting jobs");

    const auto [explainVerb, explain] =
        verb<ExplainCommand>(app_, "explain", "Explain a finding, or the findings of a job");
    offer(explainVerb->add_option("SUBJECT", explain->subject, "Code or text of a finding, or key of a job")
              ->required(),
          findingCodes());

    declareDeletion();
  }

  void declareDeletion() {
    const auto [deleteVerb, remove] = verb<DeleteCommand>(app_, "delete", "Delete jobs");
    deleteVerb->add_option("JOBID", remove->jobIds, "Keys of jobs")->required();
    deleteVerb->add_flag("--with-contracts", remove->withContracts,
                         "Delete the customer's contract jobs with a customer job");
    declareCare(*deleteVerb, *remove);

    const auto [purgeVerb, purge] = verb<PurgeCommand>(app_, "purge", "Delete done jobs");
    purgeVerb->add_option("--before", purge->before, "Only those received before this day, dd.mm.yyyy");
    declareCare(*purgeVerb, *purge);
  }

  template <class Deletion>
  void declareCare(CLI::App& verb, Deletion& deletion) {
    verb.add_flag("--dry-run", deletion.dryRun, "Only list the jobs that would be deleted");
    verb.add_option("--keep", deletion.keep, "Write the jobs to this new file first; stage takes them back");
  }

  void declareRunCommands() {
    const auto [processVerb, process] = verb<ProcessCommand>(app_, "process", "Process the waiting jobs");
    offer(processVerb->add_option("--select", process->select, "alle, kunden, verträge, aufträge or zubehör")
              ->capture_default_str(),
          {"alle", "kunden", "verträge", "aufträge", "zubehör"});
    processVerb->add_flag("--quiet,-q", process->quiet, "Print jobs that were not written, and the summary");
    processVerb->add_flag("--unevaluated", process->unevaluated, "Skip the automatic check");
    processVerb->add_flag("--wait{forever}", process->wait,
                          "Wait for the lock, for no longer than TIME: --wait=90s, =5min, =2h");

    const auto [releaseVerb, release] =
        verb<ReleaseCommand>(app_, "release", "Release jobs with warnings or errors for the next run");
    releaseVerb->add_option("JOBID", release->jobIds, "Keys of jobs");
    releaseVerb->add_flag("--all-warnings", release->allWarnings, "All jobs with warnings");

    verb<ProtocolCommand>(app_, "protocol", "Print the protocol of the day given by --date, or today's");

    CLI::App* lock = app_.add_subcommand("lock", "The single-user lock");
    lock->require_subcommand(1);
    verb<LockShowCommand>(*lock, "show", "Show who holds the lock");
    const auto [freeVerb, release_] =
        verb<LockReleaseCommand>(*lock, "release", "Remove the lock of a program that is gone");
    freeVerb->add_flag("--force", release_->force, "Also that of a program that is running");
  }

  void declareJobFiles() {
    const auto [importVerb, importing] = verb<ImportCommand>(app_, "import", "Stage the jobs of a job file");
    importVerb->add_option("FILE", importing->file, "Job file, plain or scrambled, - for standard input")
        ->required();
    importVerb->add_flag("--version1", importing->version1, "The file has version 1");

    const auto [exportVerb, exporting] = verb<ExportCommand>(app_, "export", "Write all jobs to a job file");
    exportVerb->add_option("FILE", exporting->file, "File to write, - for standard output")->required();
    exportVerb->add_flag("--version1", exporting->version1, "Write version 1");

    const auto [scrambleVerb, scramble] = verb<ScrambleCommand>(
        app_, "scramble", "Scramble a job file with the code tables of this installation");
    scrambleVerb->add_option("FILE", scramble->file, "Plain job file, - for standard input")->required();
    scrambleVerb->add_option("OUT", scramble->target, "File to write, - for standard output")->required();

    const auto [unscrambleVerb, unscramble] =
        verb<ScrambleCommand>(app_, "unscramble", "Turn a scrambled job file into a plain one");
    unscramble->scrambling = Scrambling::Unscramble;
    unscrambleVerb->add_option("FILE", unscramble->file, "Scrambled job file, - for standard input")
        ->required();
    unscrambleVerb->add_option("OUT", unscramble->target, "File to write, - for standard output")->required();
  }

  void declareSettings() {
    CLI::App* settings = app_.add_subcommand("settings", "Options");
    settings->require_subcommand(1);
    verb<SettingsListCommand>(*settings, "list", "List all options");

    const auto [getVerb, get] = verb<SettingsGetCommand>(*settings, "get", "Print one option");
    offer(getVerb->add_option("SECTION", get->section, "Section, for example ImportJob2")->required(),
          sectionsOfOptions());
    offer(getVerb->add_option("KEY", get->key, "Key")->required(), keysOfOptions());
    getVerb->add_flag("--local", get->local, "From the user's own store");

    const auto [setVerb, set] = verb<SettingsSetCommand>(*settings, "set", "Write one option");
    offer(setVerb->add_option("SECTION", set->section, "Section, for example ImportJob2")->required(),
          sectionsOfOptions());
    offer(setVerb->add_option("KEY", set->key, "Key")->required(), keysOfOptions());
    setVerb->add_option("VALUE", set->value, "New value, may be empty")->required();
    setVerb->add_flag("--local", set->local, "Into the user's own store");
    setVerb->add_flag("--force", set->force, "Also an option that only another program knows");

    const auto [outVerb, out] = verb<SettingsExportCommand>(
        *settings, "export", "Write the options of the installation to an INI file");
    outVerb->add_option("FILE", out->file, "File to write, which must not exist; - for standard output")
        ->required();
    const auto [inVerb, in] =
        verb<SettingsImportCommand>(*settings, "import", "Take over the options of an INI file");
    inVerb->add_option("FILE", in->file, "File of options, - for standard input")->required();
    inVerb->add_flag("--force", in->force, "Also options that only another program knows");
  }

  void declareMaintenance() {
    const auto [backupVerb, backup] = verb<BackupCommand>(app_, "backup", "Copy the database to a file");
    backupVerb->add_option("FILE", backup->file, "File to write, which must not exist")->required();
    backupVerb->add_flag("--replace", backup->replace, "Replace the file when it exists");

    const auto [upgradeVerb, upgrade] = verb<UpgradeCommand>(
        app_, "upgrade", "Bring the database of an earlier program to the version of this one");
    upgradeVerb->add_flag("--backup-made", upgrade->backupMade,
                          "The server's own tool has backed the database up");
  }

  void declareView() {
    const auto [viewVerb, view] = verb<ViewCommand>(app_, "view", "Open the window");
    viewVerb->add_option("FILE", view->arguments.file, "Job file to import once it is open");
    view_ = view;
  }

  /// Prints and ends, as the help does.
  void declareCompletion() {
    CLI::App* completion =
        app_.add_subcommand("completion", "Print the script with which a shell completes commands");
    const std::vector<std::string> shells(std::begin(completionShells), std::end(completionShells));
    offer(completion->add_option("SHELL", shell_, "bash, zsh or fish")
              ->required()
              ->check(CLI::IsMember(shells)),
          shells);
  }

  void offer(const CLI::Option* option, std::vector<std::string> words) {
    offered_.emplace(option, std::move(words));
  }

  static std::vector<std::string> findingCodes() {
    std::vector<std::string> codes;
    for (const RuleTerms& terms : allTerms()) codes.emplace_back(terms.code);
    return codes;
  }

  static std::vector<std::string> sectionsOfOptions() {
    std::vector<std::string> sections;
    for (const OptionSpec* option : allOptions())
      if (std::find(sections.begin(), sections.end(), option->section) == sections.end())
        sections.emplace_back(option->section);
    return sections;
  }

  static std::vector<std::string> keysOfOptions() {
    std::vector<std::string> keys;
    for (const OptionSpec* option : allOptions())
      if (std::find(keys.begin(), keys.end(), option->key) == keys.end()) keys.emplace_back(option->key);
    return keys;
  }

  CLI::App app_;
  ProgramOptions options_;
  std::string json_;
  std::string color_ = "auto";
  ViewCommand* view_ = nullptr; ///< the one command that passes the options on
  std::shared_ptr<Command> chosen_;
  OfferedWords offered_;
  std::string shell_; ///< whose completion is asked for
};

} // namespace

Invocation parseArguments(int count, const char* const* arguments, std::string_view version) {
  return Parser(version).parse(count, arguments);
}

bool asksForJson(int count, const char* const* arguments) {
  for (int i = 1; i < count; ++i) {
    const std::string_view argument(arguments[i]);
    if (argument == "--") return false;
    if (argument == "--json" || argument.starts_with("--json=")) return true;
  }
  return false;
}

} // namespace qx::cli
