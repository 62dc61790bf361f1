#include "program/common_options.h"

#include "program/program_error.h"

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace qx {

Date typedDate(std::string_view text) {
  if (const auto day = parseDate(text)) return *day;
  throw ProgramError(ExitCode::BadInput, "'" + std::string(text) + "' is not a date",
                     "Dates are written dd.mm.yyyy or yyyy-mm-dd.");
}

void declareCommonOptions(CLI::App& app, ProgramOptions& options) {
  // A word that begins with a slash is a file on every system.
  app.allow_windows_style_options(false);
  app.add_option(
         "--db", options.database,
         "Database file, or odbc: and the connection string of a server; default $QXIMPORTJOB_DB, else "
         "qximportjob/qximportjob.db in the user's data folder")
      ->type_name("TARGET")
      ->check([](const std::string& text) {
        return text.empty() ? std::string("a file or a connection string is missing") : std::string();
      });
  app.add_option("--user", options.user, "Name of the user; default the login name")->type_name("NAME");
  app.add_option_function<std::string>(
         "--date", [&options](const std::string& text) { options.sessionDate = typedDate(text); },
         "Session date, dd.mm.yyyy or yyyy-mm-dd; default today")
      ->type_name("DATE");
  app.add_flag("--verbose", options.verbose, "Report every failure that was skipped");
}

void requireDatabaseName(int count, const char* const* arguments) {
  for (int i = 1; i < count; ++i) {
    const std::string_view argument(arguments[i]);
    if (argument == "--") return;
    // The parser would take the next argument for the name.
    const bool empty = argument == "--db=" ||
                       (argument == "--db" && i + 1 < count && std::string_view(arguments[i + 1]).empty());
    if (empty)
      throw ProgramError(ExitCode::BadInput, "the name of the database is empty",
                         "Give --db the name of a database, or omit it.");
  }
}

} // namespace qx
