// Another program in place of this one by the calls of POSIX.
#include "platform/program_start.h"

#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace qx {

std::filesystem::path ownProgram() {
  std::error_code failure;
  auto program = std::filesystem::read_symlink("/proc/self/exe", failure);
  if (failure) throw std::system_error(failure);
  return program;
}

int continueAs(const std::filesystem::path& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), program.string());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execv(program.c_str(), pointers.data());
  throw std::system_error(errno, std::generic_category());
}

} // namespace qx
