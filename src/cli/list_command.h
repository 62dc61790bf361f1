// Lists staged jobs.
#pragma once

#include "cli/command.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qx::cli {

/// `list [--state S]... [--kind K]... [--limit N]`: without options all jobs, oldest date of receipt first.
class ListCommand final : public DatabaseCommand {
public:
  std::vector<std::string> states;
  std::vector<std::string> kinds;
  std::optional<std::int64_t> limit;

  void prepare() override;

protected:
  ExitCode work(const CommandContext& context) override;

private:
  Sql query() const;

  std::vector<std::int16_t> codes_; ///< empty for all
};

} // namespace qx::cli
