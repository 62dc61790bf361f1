// The texts of single objects of a file of jobs.
#pragma once

#include "cli/text_source.h"

#include <cstdint>
#include <functional>
#include <string>

namespace qx::cli {

/// Calls `visit` with the text of every object that is wanted, as it stands in the file. The file has been
/// read by `readJobs` before, and objects have the numbers from 1 that they have there.
void forEachObjectText(TextSource& source, const std::function<bool(std::int64_t number)>& wanted,
                       const std::function<void(std::int64_t number, const std::string& text)>& visit);

} // namespace qx::cli
