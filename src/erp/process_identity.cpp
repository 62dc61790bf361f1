#include "erp/process_identity.h"

#include "model/text.h"

#include <algorithm>

namespace qx::erp {
namespace {

constexpr std::size_t machineLength = 4;
constexpr std::size_t numberLength = 5;
constexpr std::size_t startLength = 6;
constexpr std::string_view digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

/// The lowest digits of the number in base 36.
std::string base36(std::uint64_t number, std::size_t length) {
  std::string text(length, '0');
  for (auto at = text.rbegin(); at != text.rend(); ++at) {
    *at = digits[number % digits.size()];
    number /= digits.size();
  }
  return text;
}

std::uint64_t fromBase36(std::string_view text) {
  std::uint64_t number = 0;
  for (const char c : text) number = number * digits.size() + digits.find(c);
  return number;
}

std::uint64_t hashOf(const MachineName& machine) {
  const std::uint64_t hash = textHash(machine.hostName + '\n' + machine.machineId);
  // The low digits alone would depend on the low bits only.
  return hash ^ (hash >> 32);
}

bool hasIdentityForm(std::string_view text) {
  return text.size() == ProcessIdentity::length &&
         std::ranges::all_of(text, [](char c) { return digits.find(c) != std::string_view::npos; });
}

} // namespace

ProcessIdentity::ProcessIdentity(const MachineName& machine, const ProcessTable& processes)
    : machine_(base36(hashOf(machine), machineLength)), processes_(processes) {
  const auto self = processes.self();
  processesKnown_ = self.has_value();
  const ProcessStart process = self.value_or(ProcessStart());
  sessionId_ = machine_ + base36(process.number, numberLength) + base36(process.startTime, startLength);
}

std::optional<bool> ProcessIdentity::isAlive(std::string_view sessionId) {
  if (!processesKnown_ || !hasIdentityForm(sessionId) || !sessionId.starts_with(machine_))
    return std::nullopt;
  const ProcessState process = processes_.find(fromBase36(sessionId.substr(machineLength, numberLength)));
  if (!process.exists) return false;
  // Process numbers are reused: only an equal start time means the same process. One that may not be asked
  // may be it, and its lock is better left alone.
  return !process.startTime ||
         base36(*process.startTime, startLength) == sessionId.substr(machineLength + numberLength);
}

} // namespace qx::erp
