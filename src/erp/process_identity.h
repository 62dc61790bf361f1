// The session identity of machine and process, and whether that process still runs.
#pragma once

#include "platform/processes.h"
#include "platform/system.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qx::erp {

/// Creates the identity of this process and checks those of others. An identity has 15 characters in base 36:
/// 4 of the machine, 5 of the process number, 6 of its start time.
class ProcessIdentity final : public SessionLiveness {
public:
  static constexpr std::size_t length = 15;

  /// `processes` must outlive the object.
  ProcessIdentity(const MachineName& machine, const ProcessTable& processes);

  const std::string& sessionId() const { return sessionId_; }
  std::optional<bool> isAlive(std::string_view sessionId) override;

private:
  std::string machine_;
  const ProcessTable& processes_;
  bool processesKnown_ = false;
  std::string sessionId_;
};

} // namespace qx::erp
