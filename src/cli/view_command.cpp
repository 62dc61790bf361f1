#include "cli/commands.h"

#include "platform/path_text.h"
#include "platform/program_start.h"

#include <filesystem>
#include <string>
#include <system_error>

namespace qx::cli {
namespace {

std::filesystem::path ownFolder() {
  try {
    return ownProgram().parent_path();
  } catch (const std::system_error& failure) {
    throw ProgramError(ExitCode::Failure,
                       "the program's own folder cannot be determined: " + failure.code().message());
  }
}

} // namespace

ExitCode ViewCommand::run(Installation& /*installation*/, const Output& output) {
  const std::filesystem::path program = ownFolder() / viewProgram;
  output.result.flush();
  output.messages.flush();
  try {
    return static_cast<ExitCode>(continueAs(program, viewWords(arguments)));
  } catch (const std::system_error& failure) {
    throw ProgramError(ExitCode::Failure,
                       textOf(program) +
                           ": the window program cannot be started: " + failure.code().message(),
                       "Install it beside this program. Without it: qximportjob list");
  }
}

} // namespace qx::cli
