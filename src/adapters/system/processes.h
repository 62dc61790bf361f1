// The processes of the operating system.
#pragma once

#include "platform/processes.h"

#include <optional>
#include <string_view>

namespace qx {

MachineName thisMachine();

/// Asks the system each time.
class SystemProcesses final : public ProcessTable {
public:
  std::optional<ProcessStart> self() const override;
  ProcessState find(std::uint64_t number) const override;
};

} // namespace qx
