// Processes as the process file system shows them.
#include "adapters/system/processes.h"

#include "adapters/system/process_stat.h"

#include <cerrno>
#include <charconv>
#include <csignal>
#include <fstream>
#include <sstream>
#include <string>

namespace qx {
namespace {

std::string firstLine(const std::string& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line;
}

} // namespace

std::optional<ProcessStart> parseProcessStat(std::string_view line) {
  // The program's name is in parentheses and may itself contain blanks and parentheses.
  const auto nameEnd = line.rfind(')');
  if (nameEnd == std::string_view::npos) return std::nullopt;
  ProcessStart process;
  if (std::from_chars(line.data(), line.data() + line.size(), process.number).ec != std::errc())
    return std::nullopt;

  constexpr int fieldsBeforeStart = 18;
  std::istringstream fields{std::string(line.substr(nameEnd + 1))};
  char state = 0;
  std::string skipped;
  fields >> state;
  for (int i = 0; i < fieldsBeforeStart; ++i) fields >> skipped;
  fields >> process.startTime;
  if (!fields || state == 'Z' || state == 'X') return std::nullopt;
  return process;
}

MachineName thisMachine() { return {firstLine("/proc/sys/kernel/hostname"), firstLine("/etc/machine-id")}; }

std::optional<ProcessStart> SystemProcesses::self() const {
  return parseProcessStat(firstLine("/proc/self/stat"));
}

ProcessState SystemProcesses::find(std::uint64_t number) const {
  const std::string line = firstLine("/proc/" + std::to_string(number) + "/stat");
  if (const auto process = parseProcessStat(line)) return {true, process->startTime};
  // The system may hide the processes of others, but does not deny that they exist.
  const bool hidden = line.empty() && kill(static_cast<pid_t>(number), 0) != 0 && errno == EPERM;
  return {hidden, std::nullopt};
}

} // namespace qx
