#include "cli/backup_command.h"

#include "cli/json_writer.h"
#include "platform/maintenance.h"

namespace qx::cli {

void BackupCommand::prepare() {
  if (file.empty() || file == "-")
    throw ProgramError(ExitCode::BadInput, "a backup needs the name of a file", "qximportjob backup FILE");
}

ExitCode BackupCommand::work(const CommandContext& context) {
  const auto maintenance = context.connection().maintenance();
  if (!maintenance)
    throw ProgramError(ExitCode::BadInput, "the database of a server is not backed up by this program",
                       "Use the server's own tool, for example pg_dump or BACKUP DATABASE.");
  try {
    maintenance->copyTo(file, replace ? ExistingFile::Replace : ExistingFile::Refuse);
  } catch (const BackupRefused& refused) {
    throw ProgramError(ExitCode::BadInput, refused.what(),
                       "Nothing was changed. Name another file; --replace replaces an earlier backup.");
  }
  if (context.output.json)
    JsonWriter(context.output.result).beginObject().key("backup").text(file).endObject().finish();
  else
    context.output.result << "The database was copied to " << file << ".\n";
  return ExitCode::Success;
}

} // namespace qx::cli
