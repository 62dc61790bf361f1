// The rules that a code of a customer or order must be in the master data.
#pragma once

#include "engine/findings.h"
#include "engine/job_fields.h"
#include "rules/master_data.h"

namespace qx {

/// Breaks the rule when the field of which it speaks holds a code that no master table knows; an empty one
/// breaks none. A bank code is that of `bankCode`.
Findings unknownCode(const MasterData& masterData, const JobFields& job, Rule rule);

} // namespace qx
