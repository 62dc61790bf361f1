// Processes of Windows. Those of other users may exist without being shown.
#include "adapters/system/processes.h"
#include "adapters/system/wide_text.h"

#include <windows.h>

#include <array>

namespace qx {
namespace {

/// In hundredths of a second; null for a process that has ended.
std::optional<std::uint64_t> startOf(HANDLE process) {
  FILETIME created{};
  FILETIME ended{};
  FILETIME inSystem{};
  FILETIME inProgram{};
  if (GetProcessTimes(process, &created, &ended, &inSystem, &inProgram) == 0) return std::nullopt;
  constexpr std::uint64_t unitsInHundredth = 100000;
  const std::uint64_t high = created.dwHighDateTime;
  return ((high << 32U) | created.dwLowDateTime) / unitsInHundredth;
}

std::string hostName() {
  std::array<wchar_t, 256> name{};
  auto length = static_cast<DWORD>(name.size());
  return GetComputerNameExW(ComputerNameDnsHostname, name.data(), &length) != 0
             ? narrow({name.data(), length})
             : std::string();
}

std::string machineId() {
  std::array<wchar_t, 64> id{};
  DWORD size = sizeof(id);
  const auto error = RegGetValueW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Microsoft\\Cryptography", L"MachineGuid",
                                  RRF_RT_REG_SZ, nullptr, id.data(), &size);
  return error == ERROR_SUCCESS ? narrow(id.data()) : std::string();
}

} // namespace

MachineName thisMachine() { return {hostName(), machineId()}; }

std::optional<ProcessStart> SystemProcesses::self() const {
  const auto start = startOf(GetCurrentProcess());
  if (!start) return std::nullopt;
  return ProcessStart{GetCurrentProcessId(), *start};
}

ProcessState SystemProcesses::find(std::uint64_t number) const {
  const HANDLE process =
      OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, static_cast<DWORD>(number));
  if (process == nullptr) return {GetLastError() == ERROR_ACCESS_DENIED, std::nullopt};
  // A process that has ended exists as long as somebody holds it open.
  const bool running = WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
  const auto start = startOf(process);
  CloseHandle(process);
  return running ? ProcessState{true, start} : ProcessState();
}

} // namespace qx
