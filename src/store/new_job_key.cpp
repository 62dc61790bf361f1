#include "store/new_job_key.h"

#include <exception>
#include <optional>

namespace qx {

std::string newJobKey(const Environment& environment) {
  std::optional<GuidFields> guid;
  try {
    guid = environment.guids.create();
    if (!guid) environment.diagnostics.report({"newJobKey", "the system could not generate a key", {}});
  } catch (const std::exception& error) {
    environment.diagnostics.report({"newJobKey", error.what(), {}});
  }
  return jobKey(guid);
}

} // namespace qx
