#include "cli/commands.h"

#include "platform/maintenance.h"
#include "platform/path_text.h"
#include "store/json_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

void writeUpgradeJson(std::ostream& result, const UpgradeReport& report) {
  JsonWriter json(result);
  json.beginObject().key("upgraded").boolean(report.upgraded());
  json.key("from").number(report.from).key("to").number(report.to);
  json.key("backup").textOrNull(textOf(report.backup)).key("tables").beginArray();
  for (const TableChange& change : report.changes) {
    json.beginObject().key("table").text(change.table);
    json.key("created").boolean(change.created).key("redefined").boolean(change.redefined);
    json.key("columns").texts(change.columns).key("indexes").texts(change.indexes).endObject();
  }
  json.endArray().endObject().finish();
}

void writeNames(std::ostream& result, std::string_view what, const std::vector<std::string>& names) {
  for (const std::string& name : names) result << (&name == &names.front() ? what : ", ") << name;
}

} // namespace

ExitCode InitCommand::run(Installation& installation, const Output& output) {
  const InstallationReport report =
      installation.create(demo, shared ? DatabaseUsers::Group : DatabaseUsers::Owner);
  if (output.json) {
    JsonWriter json(output.result);
    json.beginObject().key("created").boolean(report.created).key("demo").boolean(report.demo);
    json.key("staged").number(static_cast<std::int64_t>(report.staged)).endObject().finish();
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

void BackupCommand::prepare() {
  if (file.empty() || file == "-")
    throw ProgramError(ExitCode::BadInput, "a backup needs the name of a file", "qximportjob backup FILE");
}

ExitCode BackupCommand::work(const CommandContext& context) {
  const auto maintenance = context.connection().maintenance();
  if (const std::string tool(maintenance->backupTool()); !tool.empty())
    throw ProgramError(ExitCode::BadInput, "the database of a server is not backed up by this program",
                       "Use the server's own tool: " + tool + ".");
  try {
    maintenance->copyTo(pathOf(file), replace ? ExistingFile::Replace : ExistingFile::Refuse);
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

ExitCode UpgradeCommand::run(Installation& installation, const Output& output) {
  const UpgradeReport report = installation.upgrade(backupMade);
  if (output.json) {
    writeUpgradeJson(output.result, report);
    return ExitCode::Success;
  }
  if (!report.upgraded()) {
    output.result << "The database has version " << report.to << " already; nothing was changed.\n";
    return ExitCode::Success;
  }
  output.result << "The database was upgraded from version " << report.from << " to version " << report.to
                << ".\n";
  for (const TableChange& change : report.changes) {
    output.result << "  " << change.table << ": "
                  << (change.created     ? "created"
                      : change.redefined ? "columns defined anew"
                                         : "columns unchanged");
    writeNames(output.result, "; added ", change.columns);
    writeNames(output.result, "; index ", change.indexes);
    output.result << '\n';
  }
  if (!report.backup.empty()) output.result << "As it was before: " << textOf(report.backup) << '\n';
  return ExitCode::Success;
}

} // namespace qx::cli
