#include "cli/command_line.h"

#include "cli/close_words.h"
#include "cli/command_examples.h"
#include "cli/commands.h"
#include "cli/completion.h"
#include "cli/output_terms.h"
#include "engine/finding_terms.h"
#include "program/common_options.h"
#include "settings/options.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

/// Leaves out what a flag without a value stands for.
class HelpFormatter final : public CLI::Formatter {
public:
  std::string make_option_name(const CLI::Option* option, bool isPositional) const override {
    std::string name = Formatter::make_option_name(option, isPositional);
    return name.substr(0, name.find('{'));
  }
};

/// Declares the options and the verbs; the chosen verb's command is kept.
class Parser {
public:
  explicit Parser(std::string_view version)
      : app_("Import jobs: stage, check and process customers, contracts and orders.", "qximportjob") {
    app_.set_version_flag("-V,--version", std::string(version));
    app_.formatter(std::make_shared<HelpFormatter>());
    app_.require_subcommand(1);
    app_.fallthrough();
    app_.footer("Exit status: 0 all well, 1 jobs with findings, 2 wrong usage or input, 3 refused,\n"
                "4 database or environment failure, 5 run stopped. 'qximportjob help COMMAND' says more.");
    declareOptions();
    declareJobCommands();
    declareRunCommands();
    declareJobFiles();
    declareSettings();
    declareMaintenance();
    declareView();
    declareCompletion();
    declareHelp();
    completeHelp();
  }

  Invocation parse(int count, const char* const* arguments) {
    requireDatabaseName(count, arguments);
    Invocation invocation;
    try {
      app_.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
      if (error.get_exit_code() != 0) refuse(error, count, arguments);
      std::ostringstream text;
      app_.exit(error, text, text);
      invocation.text = text.str();
      return invocation;
    }
    if (!shell_.empty()) {
      invocation.text = completionScript(app_, offered_, shell_);
      return invocation;
    }
    if (wantsHelp_) {
      invocation.text = helpOf(helpFor_);
      return invocation;
    }
    options_.json = !json_.empty();
    invocation.jsonLines = json_ == "lines";
    if (invocation.jsonLines && !chosen_->offersLines())
      throw ProgramError(ExitCode::BadInput, "this command prints one document",
                         "Give --json without 'lines'; process, list and results print a document a line.");
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
    // The innermost verb counts, whose callback comes first.
    verb->callback([this, command] {
      if (!chosen_) chosen_ = command;
    });
    return {verb, command.get()};
  }

  void declareOptions() {
    declareCommonOptions(app_, options_);
    app_.add_flag("--json{document}", json_, "Print one JSON document; --json=lines: one a line")
        ->option_text("[=lines]")
        ->check([](const std::string& form) {
          return form == "document" || form == "lines" ? "" : "--json stands alone, or is --json=lines";
        });
    CLI::Option* const color = app_.add_option("--color", color_, "Colour states: auto, always or never");
    offer(color, {"auto", "always", "never"});
    color->type_name("WHEN")->capture_default_str()->check([](const std::string& when) {
      return when == "auto" || when == "always" || when == "never" ? "" : "--color is auto, always or never";
    });
  }

  void declareJobCommands() {
    const auto [initVerb, init] = verb<InitCommand>(app_, "init", "Create the database");
    initVerb->add_flag("--demo", init->demo, "Fill it with a demo company and its jobs");
    initVerb->add_flag("--shared", init->shared, "Let the group of its owner use it, not the owner alone");

    declareStage();

    const auto [convertVerb, convert] = verb<ConvertCommand>(
        app_, "convert", "Turn a CSV file into a file of jobs for stage (not on Windows)");
    convertVerb
        ->add_option("--map", convert->map, "File that says what the columns mean, - for standard input")
        ->type_name("FILE")
        ->required();
    convertVerb->add_option("INPUT", convert->input, "CSV file; default: standard input");
    convertVerb
        ->add_option("--output", convert->target,
                     "File to write, which must not exist; default: standard output")
        ->type_name("FILE");

    const auto [schemaVerb, schema] =
        verb<SchemaCommand>(app_, "schema", "Print the JSON schema of what stage takes or a command prints");
    offer(schemaVerb->add_option("KIND", schema->kind, "Only kunde, vertrag or auftrag"),
          {"kunde", "vertrag", "auftrag"});
    offer(schemaVerb
              ->add_option("--output", schema->output,
                           "What the command of this name prints with --json; without NAME list them")
              ->type_name("[NAME]")
              ->expected(0, 1),
          outputNames());

    const auto [listVerb, list] = verb<ListCommand>(app_, "list", "List jobs, oldest first");
    offer(listVerb->add_option("--state", list->states, "waiting, warning, error or done; may be repeated")
              ->type_name("STATE")
              ->expected(1)
              ->take_all(),
          {"waiting", "warning", "error", "done"});
    offer(listVerb
              ->add_option("--kind", list->kinds, "kunde, vertrag, auftrag or kundenvertrag; may be repeated")
              ->type_name("KIND")
              ->expected(1)
              ->take_all(),
          {"kunde", "vertrag", "auftrag", "kundenvertrag"});
    listVerb->add_option("--jobid", list->jobIds, "Only the job of this key; may be repeated")
        ->type_name("JOBID")
        ->expected(1)
        ->take_all();
    listVerb->add_option("--since", list->since, "Only jobs received on this day or later, dd.mm.yyyy")
        ->type_name("DATE");
    listVerb
        ->add_option("--search", list->search, "Only jobs with this text in number, name, subject or reason")
        ->type_name("TEXT");
    offer(listVerb
              ->add_option("--sort", list->sort,
                           "eingang, vorgang, kunde, jobid, name or betreff; -kunde falls")
              ->type_name("KEY")
              ->capture_default_str(),
          {"eingang", "vorgang", "kunde", "jobid", "name", "betreff"});
    listVerb->add_option("--columns", list->columns, "Columns of the table of jobs, separated by commas")
        ->type_name("NAMES")
        ->delimiter(',');
    listVerb->add_flag("--csv", list->csv, "Print comma-separated values");
    listVerb->add_option("--limit", list->limit, "Only the first N jobs")->type_name("N");

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

  void declareStage() {
    auto stage = std::make_shared<StageCommand>();
    auto watch = std::make_shared<WatchCommand>();
    CLI::App* verb = app_.add_subcommand("stage", "Stage jobs from a JSON file, or the files of a folder");
    CLI::Option* file = verb->add_option("FILE", stage->file, "File of jobs, - for standard input");
    CLI::Option* folder =
        verb->add_option("--watch", watch->folder,
                         "Stage the files of a folder as they come in; they move to done/ or rejected/ there")
            ->type_name("DIR")
            ->excludes(file);
    verb->add_flag("--once", watch->once, "With --watch: stage what is there and end")->needs(folder);
    verb->add_flag("--again", stage->again, "Stage done jobs again");
    verb->add_flag("--unique", stage->unique, "Refuse a content that was handed over under another JobID");
    CLI::Option* partial =
        verb->add_flag("--partial", stage->partial, "Stage the sound objects of a file that has faults")
            ->excludes(folder);
    verb->add_option("--rejects", stage->rejects,
                     "Write the other objects to this new file, with the reasons")
        ->type_name("FILE")
        ->needs(partial);
    verb->add_flag("--dry-run", stage->dryRun, "Check the file only")->excludes(folder);
    verb->callback([this, stage, watch, folder] {
      watch->again = stage->again;
      watch->unique = stage->unique;
      if (folder->count() > 0)
        chosen_ = watch;
      else
        chosen_ = stage;
    });
  }

  void declareDeletion() {
    const auto [deleteVerb, remove] = verb<DeleteCommand>(app_, "delete", "Delete jobs");
    deleteVerb->add_option("JOBID", remove->jobIds, "Keys of jobs")->required();
    deleteVerb->add_flag("--with-contracts", remove->withContracts,
                         "Delete the customer's contract jobs with a customer job");
    declareCare(*deleteVerb, *remove);

    const auto [purgeVerb, purge] = verb<PurgeCommand>(app_, "purge", "Delete done jobs");
    purgeVerb->add_option("--before", purge->before, "Only those received before this day, dd.mm.yyyy")
        ->type_name("DATE");
    declareCare(*purgeVerb, *purge);
  }

  template <class Deletion>
  void declareCare(CLI::App& verb, Deletion& deletion) {
    verb.add_flag("--dry-run", deletion.dryRun, "Only list the jobs that would be deleted");
    verb.add_option("--keep", deletion.keep, "Write the jobs to this new file first; stage takes them back")
        ->type_name("FILE");
  }

  void declareRunCommands() {
    const auto [processVerb, process] = verb<ProcessCommand>(app_, "process", "Process the waiting jobs");
    offer(processVerb->add_option("--select", process->select, "alle, kunden, verträge, aufträge or zubehör")
              ->type_name("WHAT")
              ->capture_default_str(),
          {"alle", "kunden", "verträge", "aufträge", "zubehör"});
    processVerb->add_flag("--quiet,-q", process->quiet, "Print jobs that were not written, and the summary");
    processVerb->add_flag("--unevaluated", process->unevaluated, "Skip the automatic check");
    processVerb
        ->add_flag("--wait{forever}", process->wait,
                   "Wait for the lock, for no longer than TIME: --wait=90s, =5min, =2h")
        ->option_text("[=TIME]");

    const auto [releaseVerb, release] =
        verb<ReleaseCommand>(app_, "release", "Release jobs with warnings or errors for the next run");
    releaseVerb->add_option("JOBID", release->jobIds, "Keys of jobs");
    releaseVerb->add_flag("--all-warnings", release->allWarnings, "All jobs with warnings");

    const auto [resultsVerb, results] =
        verb<ResultsCommand>(app_, "results", "Tell what became of the jobs, change by change");
    resultsVerb
        ->add_option("--since", results->since, "Changes since this day or moment, dd.mm.yyyy hh:mm:ss")
        ->type_name("TIME");
    resultsVerb->add_option("--after", results->after, "Changes behind the cursor of an earlier answer")
        ->type_name("CURSOR");
    resultsVerb->add_option("--limit", results->limit, "Only the first N changes")->type_name("N");

    CLI::App* protocol =
        verb<ProtocolCommand>(app_, "protocol", "Print the protocol of the day given by --date, or today's")
            .first;
    const auto [purgeVerb, purge] = verb<ProtocolPurgeCommand>(
        *protocol, "purge", "Delete the protocols, runs, changes of states and contents of earlier days");
    purgeVerb->add_option("--before", purge->before, "Only those of days before this one, dd.mm.yyyy")
        ->type_name("DATE")
        ->required();

    const auto [statusVerb, status] =
        verb<StatusCommand>(app_, "status", "Show jobs, last runs, lock and database");
    statusVerb->add_flag("--prometheus", status->prometheus, "As metrics in the text format of Prometheus");
    statusVerb->add_option("--runs", status->runs, "How many runs to show")
        ->type_name("N")
        ->capture_default_str();

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

  static std::vector<std::string> outputNames() {
    std::vector<std::string> names;
    for (const OutputTerm& term : outputTerms()) names.emplace_back(term.name);
    return names;
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

  void declareHelp() {
    CLI::App* help = app_.add_subcommand("help", "Show the help of a command");
    help->add_option("COMMAND", helpFor_, "Words of the command");
    help->callback([this] { wantsHelp_ = true; });
  }

  /// Adds what every command has in common to its help.
  void completeHelp() {
    std::vector<std::pair<CLI::App*, std::string>> parents{{&app_, {}}};
    while (!parents.empty()) {
      const auto [parent, words] = std::move(parents.back());
      parents.pop_back();
      for (CLI::App* verb : parent->get_subcommands([](const CLI::App*) { return true; })) {
        std::string name = words + verb->get_name();
        for (CLI::Option* option : verb->get_options())
          if (option->get_positional()) option->type_name("");
        verb->footer([this, name] { return footerOf(name); });
        parents.emplace_back(verb, name + " ");
      }
    }
  }

  std::string footerOf(const std::string& name) const {
    const HelpFormatter formatter;
    std::string text = "Options of all commands:\n";
    for (const CLI::Option* option : app_.get_options())
      if (option != app_.get_help_ptr()) text += formatter.make_option(option, false);
    text += "\nEnvironment:\n";
    for (const std::string_view line : environmentLines()) text.append("    ").append(line).append("\n");
    const auto found = std::ranges::find(commandExamples(), name, &CommandExamples::command);
    if (found == commandExamples().end()) return text;
    text += "\nExamples:\n";
    for (const std::string_view line : found->lines) text.append("    ").append(line).append("\n");
    return text;
  }

  static std::vector<std::string> verbsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; }))
      names.push_back(verb->get_name());
    return names;
  }

  static std::vector<std::string> optionsOf(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options())
      for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
  }

  static std::string meant(const std::string& word, const std::vector<std::string>& known) {
    const std::string closest = closestWord(word, known);
    return closest.empty() ? "" : "; did you mean '" + closest + "'?";
  }

  std::string helpOf(const std::vector<std::string>& words) const {
    const CLI::App* app = &app_;
    std::string name = app_.get_name();
    for (const std::string& word : words) {
      const CLI::App* below = verbNamed(*app, word);
      if (below == nullptr)
        throw ProgramError(ExitCode::BadInput,
                           "there is no command '" + word + "'" + meant(word, verbsOf(*app)),
                           "'qximportjob help' shows the commands.");
      app = below;
      name += " " + word;
    }
    // The application itself would show the help of the command `help`.
    return app_.get_formatter()->make_help(app, name, CLI::AppFormatMode::Normal);
  }

  static const CLI::App* verbNamed(const CLI::App& app, const std::string& word) {
    for (const CLI::App* verb : app.get_subcommands([](const CLI::App*) { return true; }))
      if (verb->get_name() == word) return verb;
    return nullptr;
  }

  /// How far the words of a wrong call have been understood.
  struct Understood {
    const CLI::App* app;
    std::string name; ///< of the command, each word behind a blank
    std::vector<std::string> options;

    std::string nextStep(const char* what) const {
      return "'qximportjob help" + name + "' shows the " + what + ".";
    }
  };

  static void requireOption(const Understood& so, const std::string& option) {
    if (std::ranges::find(so.options, option) != so.options.end()) return;
    throw ProgramError(ExitCode::BadInput,
                       (so.name.empty() ? "there is no option '" : "the command has no option '") + option +
                           "'" + meant(option, so.options),
                       so.nextStep("usage"));
  }

  bool takesNextWord(const std::string& option) const {
    const CLI::Option* known = app_.get_option_no_throw(option);
    return known != nullptr && known->get_expected_min() > 0;
  }

  /// False when the word may be an argument of a command that has others below it.
  bool enterCommand(Understood& so, const std::string& word) const {
    const CLI::App* below = verbNamed(*so.app, word);
    if (below == nullptr) {
      if (so.app != &app_ && so.app->get_require_subcommand_min() == 0) return false;
      throw ProgramError(ExitCode::BadInput,
                         "there is no command '" + (so.name.empty() ? "" : so.name.substr(1) + " ") + word +
                             "'" + meant(word, verbsOf(*so.app)),
                         so.nextStep("commands"));
    }
    so.app = below;
    so.name += " " + word;
    for (std::string& option : optionsOf(*below)) so.options.push_back(std::move(option));
    return true;
  }

  /// Says which word or option is wrong, and which one may have been meant.
  [[noreturn]] void refuse(const CLI::ParseError& error, int count, const char* const* arguments) const {
    Understood so{&app_, {}, optionsOf(app_)};
    for (int i = 1; i < count; ++i) {
      const std::string word(arguments[i]);
      if (word == "--") break;
      if (word.starts_with("--")) {
        const std::string option = word.substr(0, word.find('='));
        requireOption(so, option);
        if (word == option && takesNextWord(option)) ++i;
      } else if (!word.starts_with('-') && !verbsOf(*so.app).empty() && !enterCommand(so, word)) {
        break;
      }
    }
    if (so.app->get_require_subcommand_min() > 0)
      throw ProgramError(ExitCode::BadInput,
                         so.name.empty() ? "a command is missing"
                                         : "the command" + so.name + " needs another word",
                         so.nextStep("commands"));
    throw ProgramError(ExitCode::BadInput, reasonOf(error), so.nextStep("usage"));
  }

  /// The parser's own words, where they can be understood.
  std::string reasonOf(const CLI::ParseError& error) const {
    std::string reason = error.what();
    const std::string conversion = "Could not convert: ";
    const auto value = reason.find(" = ");
    if (reason.starts_with(conversion) && value != std::string::npos)
      return reason.substr(conversion.size(), value - conversion.size()) + ": '" + reason.substr(value + 3) +
             "' is not a number";
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr) return reason;
    reason = "too many arguments:";
    for (const std::string& word : app_.remaining(true)) reason += " '" + word + "'";
    return reason;
  }

  CLI::App app_;
  std::vector<std::string> helpFor_;
  bool wantsHelp_ = false;
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
