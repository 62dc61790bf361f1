#include "program/view_arguments.h"

#include "platform/path_text.h"
#include "program/common_options.h"
#include "program/program_error.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <sstream>

namespace qx {

ViewArguments parseViewArguments(int count, const char* const* arguments, std::string_view version) {
  ViewArguments read;
  CLI::App app("Import jobs: the window.", std::string(viewProgram));
  app.set_version_flag("--version", std::string(version));
  declareCommonOptions(app, read.options);
  app.add_option("FILE", read.file, "Job file to import");
  app.footer(
      "Exit status: 0 all well, 2 wrong usage or input, 3 refused, 4 database or environment failure.");
  requireDatabaseName(count, arguments);
  try {
    app.parse(count, arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0)
      throw ProgramError(ExitCode::BadInput, error.what(),
                         std::string(viewProgram) + " --help shows the usage.");
    std::ostringstream text;
    app.exit(error, text, text);
    read.text = text.str();
    return read;
  }
  requireJobFile(read.file);
  return read;
}

std::vector<std::string> viewWords(const ViewArguments& arguments) {
  std::vector<std::string> words;
  const auto add = [&](const char* option, const std::string& text) {
    if (!text.empty()) words.push_back(option + text);
  };
  add("--db=", arguments.options.database);
  add("--user=", arguments.options.user);
  if (arguments.options.sessionDate) add("--date=", germanDate(*arguments.options.sessionDate));
  if (arguments.options.verbose) words.emplace_back("--verbose");
  if (arguments.file.empty()) return words;
  // A file name may look like an option.
  words.emplace_back("--");
  words.push_back(arguments.file);
  return words;
}

void requireJobFile(const std::string& file) {
  if (file.empty()) return;
  std::error_code ignored;
  if (!std::filesystem::exists(pathOf(file), ignored))
    throw ProgramError(ExitCode::BadInput, "the file cannot be opened: " + file + " does not exist",
                       "Name a job file, or none.", {file, 0, ""});
  if (std::filesystem::is_directory(pathOf(file), ignored))
    throw ProgramError(ExitCode::BadInput, "the file cannot be opened: " + file + " is a directory",
                       "Name a job file, or none.", {file, 0, ""});
}

} // namespace qx
