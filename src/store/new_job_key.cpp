#include "store/new_job_key.h"

#include "platform/trapped.h"

#include <optional>
#include <stdexcept>

namespace qx {

std::string newJobKey(const Environment& environment) {
  std::optional<GuidFields> guid;
  trapped(environment.diagnostics, {"newJobKey"}, [&] {
    guid = environment.guids.create();
    if (!guid) throw std::runtime_error("the system could not generate a key");
  });
  return jobKey(guid);
}

} // namespace qx
