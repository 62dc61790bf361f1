#include "cli/commands.h"

#include "cli/new_file.h"
#include "cli/settings_file.h"
#include "cli/text_source.h"
#include "convert/conversion.h"
#include "convert/map_reader.h"
#include "platform/path_text.h"
#include "platform/same_file.h"
#include "platform/terminal.h"
#include "store/json_writer.h"

#include <filesystem>
#include <ostream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace qx::cli {
namespace {

convert::ColumnMap mapIn(const std::string& fileName) {
  TextFile source(fileName);
  std::string text;
  for (; !source.atEnd(); source.advance()) text += source.current();
  std::vector<convert::MapEntry> entries;
  for (FileSetting& entry : readSettings(
           text, source.name(), "Nothing was converted. Correct the map and convert the file again."))
    entries.push_back({std::move(entry.section), std::move(entry.key), std::move(entry.setting), entry.line});
  return convert::readMap(entries, source.name());
}

File openInput(const std::string& name) {
  std::error_code unknown;
  if (name != "-" && std::filesystem::is_directory(pathOf(name), unknown))
    throw ProgramError(ExitCode::BadInput, "the file cannot be read: " + name + " is a directory", {},
                       {name, 0, {}});
  try {
    if (name == "-") return File::ofDescriptor(standardInput, "standard input");
    return File::forReading(pathOf(name));
  } catch (const std::system_error& failure) {
    throw ProgramError(ExitCode::BadInput, failure.what(), {}, {name, 0, {}});
  }
}

/// A shell has emptied the file for `> FILE` already; with `>> FILE` what is written would be read as well.
void refuseOwnInput(const std::string& input) {
  const std::filesystem::path source = input == "-" ? "/dev/stdin" : pathOf(input);
  std::error_code unknown;
  if (std::filesystem::is_regular_file(source, unknown) && isSameFile(source, "/dev/stdout"))
    throw ProgramError(ExitCode::BadInput, "the output would go into the file that is converted",
                       "Nothing was converted. Name another file behind --output.");
}

} // namespace

void ConvertCommand::prepare() {
  if (map == "-" && input == "-")
    throw ProgramError(ExitCode::BadInput, "the map and the file would both come from standard input",
                       "Name a file for one of them.");
}

ExitCode ConvertCommand::run(Installation& /*installation*/, const Output& output) {
  if (target.empty() && output.json)
    throw ProgramError(ExitCode::BadInput, "the jobs and the JSON document would both go to standard output",
                       "Omit --json, or name a file with --output.");
  if (target.empty()) refuseOwnInput(input);
  const convert::ColumnMap columns = mapIn(map);
  File file = openInput(input);
  const std::string name = input == "-" ? "standard input" : input;
  convert::ConversionCounts counts;
  try {
    if (target.empty()) {
      convert::convertRows(file, name, columns, output.data);
      if (!output.data.flush()) throw ProgramError(ExitCode::Failure, "standard output could not be written");
      return ExitCode::Success;
    }
    writeNewFile(target,
                 [&](std::ostream& jobs) { counts = convert::convertRows(file, name, columns, jobs); });
  } catch (const std::system_error& failure) {
    throw ProgramError(ExitCode::Failure, failure.what(), {}, {name, 0, {}});
  }
  if (output.json)
    JsonWriter(output.result)
        .beginObject()
        .key("rows")
        .number(counts.rows)
        .key("jobs")
        .number(counts.jobs)
        .endObject()
        .finish();
  else
    output.result << counts.rows << " rows, " << counts.jobs << " jobs written to " << target << '\n';
  return ExitCode::Success;
}

} // namespace qx::cli
