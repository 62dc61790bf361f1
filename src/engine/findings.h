// What a check of a job found.
#pragma once

#include "engine/hints.h"
#include "model/job_codes.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The sentence that announces findings; warnings and errors share it on purpose.
inline constexpr std::string_view findingsSentence = "Beim Verarbeiten wurden Warnungen festgestellt.";

/// The findings of a check: the highest severity and their texts.
///
/// A finding may quote a staged value that holds line breaks, so the joined text cannot be taken apart again:
/// who needs the findings one by one takes the list.
struct Findings {
  CheckStatus status = CheckStatus::Clean;
  std::vector<std::string> list;
  std::string text; ///< all of the list, each followed by CR LF
  Hints hints;      ///< what is worth knowing and no finding; the status is without them

  void add(CheckStatus severity, std::string_view finding);
  void append(const Findings& others);
};

/// The sentence and the findings, as they are appended to a job's reasons.
std::string announced(const Findings& findings);

} // namespace qx
