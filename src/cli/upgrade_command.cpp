#include "cli/upgrade_command.h"

#include "cli/json_writer.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

void writeTexts(JsonWriter& json, std::string_view key, const std::vector<std::string>& texts) {
  json.key(key).beginArray();
  for (const std::string& text : texts) json.text(text);
  json.endArray();
}

void writeUpgradeJson(std::ostream& result, const UpgradeReport& report) {
  JsonWriter json(result);
  json.beginObject().key("upgraded").boolean(report.upgraded());
  json.key("from").number(report.from).key("to").number(report.to).key("backup");
  if (report.backup.empty())
    json.null();
  else
    json.text(report.backup.string());
  json.key("tables").beginArray();
  for (const TableChange& change : report.changes) {
    json.beginObject().key("table").text(change.table);
    json.key("created").boolean(change.created).key("redefined").boolean(change.redefined);
    writeTexts(json, "columns", change.columns);
    writeTexts(json, "indexes", change.indexes);
    json.endObject();
  }
  json.endArray().endObject().finish();
}

void writeNames(std::ostream& result, std::string_view what, const std::vector<std::string>& names) {
  for (const std::string& name : names) result << (&name == &names.front() ? what : ", ") << name;
}

} // namespace

ExitCode UpgradeCommand::run(Installation& installation, const Output& output) {
  const UpgradeReport report = installation.upgrade();
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
  output.result << "As it was before: " << report.backup.string() << '\n';
  return ExitCode::Success;
}

} // namespace qx::cli
