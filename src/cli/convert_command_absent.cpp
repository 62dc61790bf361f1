// In place of the command where its library is not built.
#include "cli/commands.h"

namespace qx::cli {

void ConvertCommand::prepare() {
  throw ProgramError(ExitCode::BadInput, "convert is not part of the program for this system",
                     "Convert the file on Linux and stage the result here.");
}

ExitCode ConvertCommand::run(Installation& /*installation*/, const Output& /*output*/) {
  return ExitCode::BadInput;
}

} // namespace qx::cli
