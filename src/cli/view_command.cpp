#include "cli/commands.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <unistd.h>

namespace qx::cli {

ExitCode ViewCommand::run(Installation& /*installation*/, const Output& output) {
  std::error_code failure;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", failure);
  if (failure)
    throw ProgramError(ExitCode::Failure,
                       "the program's own folder cannot be determined: " + failure.message());
  const std::string program = (self.parent_path() / viewProgram).string();
  std::vector<std::string> words = viewWords(arguments);
  words.insert(words.begin(), program);
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  output.result.flush();
  output.messages.flush();
  execv(program.c_str(), pointers.data());
  throw ProgramError(ExitCode::Failure,
                     program + ": the window program cannot be started: " + std::strerror(errno),
                     "Install it beside this program. Without it: qximportjob list");
}

} // namespace qx::cli
