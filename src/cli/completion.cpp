#include "cli/completion.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <sstream>
#include <utility>

namespace qx::cli {
namespace {

/// What a shell can offer in one place of the command line.
struct Place {
  std::vector<std::string> names; ///< of an option, with their hyphens; none for an argument
  std::string purpose;
  std::string value; ///< name of the value; empty for a flag
  std::vector<std::string> words;
  bool file = false;
  bool repeated = false;
};

/// A command, or the program itself.
struct Level {
  std::string path; ///< "settings get"; empty for the program
  std::string purpose;
  std::vector<Place> options;
  std::vector<Place> arguments;
  std::vector<const Level*> commands;

  std::string_view name() const {
    const std::string_view whole(path);
    const auto blank = whole.rfind(' ');
    return blank == std::string_view::npos ? whole : whole.substr(blank + 1);
  }
};

Place placeOf(const CLI::Option& option, const OfferedWords& offered) {
  Place place;
  for (const std::string& name : option.get_snames()) place.names.push_back("-" + name);
  for (const std::string& name : option.get_lnames()) place.names.push_back("--" + name);
  place.purpose = option.get_description();
  const bool flag = option.get_items_expected_max() == 0 || option.get_expected_max() == 0;
  if (!flag) place.value = place.names.empty() ? option.get_name() : option.get_type_name();
  if (const auto words = offered.find(&option); words != offered.end()) place.words = words->second;
  static constexpr std::string_view files[] = {"FILE", "OUT"};
  const std::string_view name = place.value;
  place.file = place.words.empty() && !flag &&
               (std::find(std::begin(files), std::end(files), name) != std::end(files) ||
                std::find(place.names.begin(), place.names.end(), "--db") != place.names.end());
  place.repeated = option.get_expected_max() > 1;
  return place;
}

/// The program and its commands, each once, a command behind the one that it belongs to.
class Tree {
public:
  Tree(const CLI::App& program, const OfferedWords& offered) {
    std::vector<const CLI::App*> apps;
    const auto add = [&](const CLI::App& app, const std::string& path) {
      apps.push_back(&app);
      Level& level = *levels_.emplace_back(std::make_unique<Level>());
      level.path = path;
      level.purpose = app.get_description();
      for (const CLI::Option* option : app.get_options()) {
        Place place = placeOf(*option, offered);
        (place.names.empty() ? level.arguments : level.options).push_back(std::move(place));
      }
      return &level;
    };
    add(program, "");
    for (std::size_t i = 0; i < apps.size(); ++i) {
      const std::string before = i == 0 ? "" : levels_[i]->path + " ";
      for (const CLI::App* command : apps[i]->get_subcommands([](const CLI::App*) { return true; }))
        levels_[i]->commands.push_back(add(*command, before + command->get_name()));
    }
  }

  const Level& program() const { return *levels_.front(); }
  const std::vector<std::unique_ptr<Level>>& levels() const { return levels_; }

private:
  std::vector<std::unique_ptr<Level>> levels_;
};

/// In single quotes, for all three shells; `quote` is how the shell writes one inside.
std::string inQuotes(std::string_view text, std::string_view quote = "'\\''") {
  std::string result = "'";
  for (const char character : text) {
    if (character == '\'')
      result += quote;
    else
      result += character;
  }
  return result += "'";
}

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
  std::string result;
  for (const std::string& word : words) result.append(result.empty() ? "" : separator).append(word);
  return result;
}

std::vector<std::string> namesOf(const std::vector<Place>& places) {
  std::vector<std::string> names;
  for (const Place& place : places) names.insert(names.end(), place.names.begin(), place.names.end());
  return names;
}

/// The names of the options that are followed by a value.
std::vector<std::string> valuedOptions(const Tree& tree) {
  std::vector<std::string> names;
  for (const auto& level : tree.levels())
    for (const Place& place : level->options)
      if (!place.value.empty()) names.insert(names.end(), place.names.begin(), place.names.end());
  return names;
}

/// The paths of all commands, in quotes.
std::vector<std::string> paths(const Tree& tree) {
  std::vector<std::string> paths;
  for (const auto& level : tree.levels())
    if (!level->path.empty()) paths.push_back(inQuotes(level->path));
  return paths;
}

// --- bash

void bashOffer(std::ostream& script, const Place& place) {
  if (place.file)
    script << "_qximportjob_files";
  else if (!place.words.empty())
    script << "_qximportjob_offer " << inQuotes(joined(place.words, "\n"));
  else
    script << ":";
}

/// The values of options, then what stands at each place of each command.
void bashValues(std::ostream& script, const Tree& tree) {
  script << "    case \"$command:$previous\" in\n";
  for (const auto& level : tree.levels())
    for (const Place& place : level->options) {
      if (place.value.empty()) continue;
      std::vector<std::string> patterns;
      // Options of the program may follow any command.
      const std::string before = level->path.empty() ? "*:" : inQuotes(level->path) + ":";
      for (const std::string& name : place.names) patterns.push_back(before + name);
      script << "    " << joined(patterns, "|") << ") ";
      bashOffer(script, place);
      script << "; return ;;\n";
    }
  script << "    esac\n";
}

void bashPlaces(std::ostream& script, const Tree& tree) {
  script << "    case \"$command:$place\" in\n";
  for (const auto& level : tree.levels()) {
    for (std::size_t i = 0; i < level->arguments.size(); ++i) {
      const Place& place = level->arguments[i];
      script << "    " << inQuotes(level->path) << ":" << (place.repeated ? "*" : std::to_string(i)) << ") ";
      bashOffer(script, place);
      script << " ;;\n";
    }
    if (level->commands.empty()) continue;
    std::vector<std::string> names;
    for (const Level* command : level->commands) names.emplace_back(command->name());
    script << "    " << inQuotes(level->path) << ":0) _qximportjob_offer " << inQuotes(joined(names, "\n"))
           << " ;;\n";
  }
  script << "    esac\n";
}

std::string bashScript(const Tree& tree) {
  std::ostringstream script;
  const std::string valued = joined(valuedOptions(tree), "|");
  script << R"(# Completion of qximportjob for bash. "qximportjob completion bash" prints it.
_qximportjob_offer() { # WORDS, one a line
    local IFS=$'\n'
    COMPREPLY=($(compgen -W "$1" -- "$current"))
}
_qximportjob_files() {
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}
_qximportjob() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command= place=0 i word
    COMPREPLY=()
    # "--option=value" arrives as three words.
    if [[ $current == = ]]; then
        current=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD-2]}
    fi
    for ((i = 1; i < COMP_CWORD; ++i)); do
        word=${COMP_WORDS[i]}
        case $word in
        =) ((++i)) ;;
        )"
         << valued << R"()
            [[ ${COMP_WORDS[i+1]-} == = ]] || ((++i)) ;;
        -?*) ;;
        *)
            case "${command:+$command }$word" in
            )"
         << joined(paths(tree), "|") << R"() command=${command:+$command }$word ;;
            *) ((++place)) ;;
            esac ;;
        esac
    done
)";
  bashValues(script, tree);
  script << "    if [[ $current == -* ]]; then\n        case $command in\n";
  for (const auto& level : tree.levels()) {
    auto names = namesOf(level->options);
    if (!level->path.empty()) {
      const auto common = namesOf(tree.program().options);
      std::copy_if(common.begin(), common.end(), std::back_inserter(names), [&](const std::string& name) {
        return name != "--version" && std::find(names.begin(), names.end(), name) == names.end();
      });
    }
    script << "        " << inQuotes(level->path) << ") _qximportjob_offer " << inQuotes(joined(names, "\n"))
           << " ;;\n";
  }
  script << "        esac\n        return\n    fi\n";
  bashPlaces(script, tree);
  script << "}\ncomplete -F _qximportjob qximportjob\n";
  return script.str();
}

// --- zsh

/// A text inside what `_arguments` is told: its brackets, colons and backslashes mean themselves.
std::string zshText(std::string_view text) {
  std::string result;
  for (const char character : text) {
    if (std::string_view("[]:\\").find(character) != std::string_view::npos) result += '\\';
    result += character;
  }
  return result;
}

std::string zshValue(const Place& place) {
  std::string action;
  if (place.file)
    action = "_files";
  else if (!place.words.empty())
    action = "(" + joined(place.words, " ") + ")";
  return ":" + zshText(place.value) + ":" + action;
}

void zshPlaces(std::ostream& script, const Level& level, std::string_view indent) {
  for (const Place& place : level.options)
    for (const std::string& name : place.names) {
      std::string form = name;
      if (!place.value.empty() && name.starts_with("--")) form += "=";
      script << indent
             << inQuotes((place.repeated ? "*" : "") + form + "[" + zshText(place.purpose) + "]" +
                         (place.value.empty() ? "" : zshValue(place)))
             << " \\\n";
    }
  for (const Place& place : level.arguments)
    script << indent << inQuotes((place.repeated ? "*" : "") + zshValue(place)) << " \\\n";
}

/// The function that completes behind a command.
std::string zshFunction(const Level& level) {
  std::string name = "_qximportjob" + (level.path.empty() ? "" : "_" + level.path);
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

void zshLevel(std::ostream& script, const Level& level) {
  script << zshFunction(level) << "() {\n";
  if (level.commands.empty()) {
    script << "  _arguments -s -S \\\n";
    zshPlaces(script, level, "    ");
    script << "    $_qximportjob_common\n}\n";
    return;
  }
  script << "  local curcontext=$curcontext state line\n  _arguments -s -S -C \\\n";
  if (!level.path.empty()) zshPlaces(script, level, "    ");
  script << "    $_qximportjob_common '1: :->command' '*:: :->words'\n  case $state in\n  command)\n"
         << "    local -a commands=(\n";
  for (const Level* command : level.commands)
    script << "      " << inQuotes(std::string(command->name()) + ":" + zshText(command->purpose)) << '\n';
  script << "    )\n    _describe command commands ;;\n  words)\n    case $words[1] in\n";
  for (const Level* command : level.commands)
    script << "    " << command->name() << ") " << zshFunction(*command) << " ;;\n";
  script << "    esac ;;\n  esac\n}\n";
}

std::string zshScript(const Tree& tree) {
  std::ostringstream script;
  script << "#compdef qximportjob\n# Completion of qximportjob for zsh. \"qximportjob completion zsh\" "
            "prints it.\n"
         << "typeset -ga _qximportjob_common=( \\\n";
  zshPlaces(script, tree.program(), "  ");
  script << ")\n";
  for (const auto& level : tree.levels()) zshLevel(script, *level);
  // Sourced it only declares; as a file of the function path it is called at once.
  script << "if [[ $zsh_eval_context[-1] == loadautofunc ]]; then\n  _qximportjob \"$@\"\nelse\n"
         << "  compdef _qximportjob qximportjob\nfi\n";
  return script.str();
}

// --- fish

constexpr std::string_view fishQuote = "\\'";

void fishPlace(std::ostream& script, const std::string& condition, const Place& place) {
  script << "complete -c qximportjob";
  if (!condition.empty()) script << " -n " << inQuotes(condition, fishQuote);
  for (const std::string& name : place.names)
    script << (name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1));
  if (!place.names.empty() && !place.value.empty()) script << (place.file ? " -r" : " -x");
  if (place.file) script << " -F";
  if (!place.words.empty()) script << " -a " << inQuotes(joined(place.words, " "), fishQuote);
  if (!place.names.empty()) script << " -d " << inQuotes(place.purpose, fishQuote);
  script << '\n';
}

std::string fishScript(const Tree& tree) {
  std::ostringstream script;
  script << R"(# Completion of qximportjob for fish. "qximportjob completion fish" prints it.
function __qximportjob_at # COMMAND [PLACE]
    set -l command
    set -l place 0
    set -l skip no
    for word in (commandline -opc)[2..]
        if test $skip = yes
            set skip no
            continue
        end
        switch $word
            case )"
         << joined(valuedOptions(tree), " ") << R"(
                set skip yes
            case '-?*'
            case '*'
                if contains -- (string join ' ' $command $word) )"
         << joined(paths(tree), " ") << R"(
                    set -a command $word
                else
                    set place (math $place + 1)
                end
        end
    end
    test "$command" = "$argv[1]"; and contains -- "$argv[2]" '' $place
end
complete -c qximportjob -f
)";
  for (const auto& level : tree.levels()) {
    const std::string at = "__qximportjob_at " + inQuotes(level->path);
    for (const Place& place : level->options) fishPlace(script, level->path.empty() ? "" : at, place);
    for (std::size_t i = 0; i < level->arguments.size(); ++i) {
      const Place& place = level->arguments[i];
      if (place.file || !place.words.empty())
        fishPlace(script, place.repeated ? at : at + " " + std::to_string(i), place);
    }
    for (const Level* command : level->commands)
      script << "complete -c qximportjob -n " << inQuotes(at + " 0", fishQuote) << " -a " << command->name()
             << " -d " << inQuotes(command->purpose, fishQuote) << '\n';
  }
  return script.str();
}

} // namespace

std::string completionScript(const CLI::App& app, const OfferedWords& offered, std::string_view shell) {
  const Tree tree(app, offered);
  if (shell == "bash") return bashScript(tree);
  if (shell == "zsh") return zshScript(tree);
  if (shell == "fish") return fishScript(tree);
  return {};
}

} // namespace qx::cli
