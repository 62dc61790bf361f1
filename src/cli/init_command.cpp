#include "cli/init_command.h"

#include "cli/json_writer.h"

namespace qx::cli {

ExitCode InitCommand::run(Installation& installation, const Output& output) {
  const InstallationReport report =
      installation.create(demo, shared ? DatabaseUsers::Group : DatabaseUsers::Owner);
  if (output.json) {
    JsonWriter json(output.result);
    json.beginObject();
    json.key("created").boolean(report.created);
    json.key("demo").boolean(report.demo);
    json.key("staged").number(static_cast<std::int64_t>(report.staged));
    json.endObject().finish();
    return ExitCode::Success;
  }
  if (!report.created)
    output.result << "The database exists already; nothing was changed."
                  << (demo ? " Demo data goes into a new database only." : "") << '\n';
  else if (report.demo)
    output.result << "The database was created with demo data; " << report.staged << " jobs are staged.\n";
  else
    output.result << "The database was created.\n";
  return ExitCode::Success;
}

} // namespace qx::cli
