#include "cli/job_check.h"

#include <array>

namespace qx::cli {
namespace {

using Check = Findings (*)(ImportJobObject2& engine, std::string_view jobId);

struct KindCheck {
  std::int16_t kind;
  Check check;
};
constexpr std::array kindChecks{KindCheck{qxtjobkunden, [](ImportJobObject2& engine, std::string_view jobId) {
                                            return engine.proveCustomerJob(jobId);
                                          }}};

/// Every finding ends with a line break.
std::vector<std::string> lines(std::string_view text) {
  std::vector<std::string> found;
  while (!text.empty()) {
    const auto end = text.find("\r\n");
    if (end != 0) found.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 2);
  }
  return found;
}

} // namespace

std::optional<JobFindings> checkJob(ImportJobObject2& engine, std::string_view jobId, std::int16_t jobType) {
  for (const KindCheck& entry : kindChecks)
    if (entry.kind == kindOf(jobType)) {
      const Findings findings = entry.check(engine, jobId);
      return JobFindings{findings.status, lines(findings.text)};
    }
  return std::nullopt;
}

} // namespace qx::cli
