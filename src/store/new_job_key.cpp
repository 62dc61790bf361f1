#include "store/new_job_key.h"

namespace qx {

std::string newJobKey(const Environment& environment) {
  const auto guid = environment.guids.create();
  if (!guid) environment.diagnostics.report({"newJobKey", "the system could not generate a key", {}});
  return jobKey(guid);
}

} // namespace qx
