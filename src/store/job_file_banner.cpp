#include "store/job_file_banner.h"

#include "rules/scrambler.h"
#include "store/job_file_line.h"

#include <string>

namespace qx {
namespace {

bool hasBanner(std::string_view line, std::string_view banner) {
  return line.starts_with('"') && line.substr(1).starts_with(banner);
}

} // namespace

std::optional<JobFileForm> plainForm(std::string_view firstLine) {
  if (hasBanner(firstLine, jobFileBanner)) return JobFileForm{JobFileVersion::Two, false};
  if (hasBanner(firstLine, jobFileBanner1)) return JobFileForm{JobFileVersion::One, false};
  return std::nullopt;
}

std::optional<JobFileForm> scrambledForm(std::string_view firstLine, const Scrambler& scrambler) {
  if (hasBanner(firstLine, scrambler.banner())) return JobFileForm{JobFileVersion::Two, true};
  if (hasBanner(firstLine, scrambler.banner1())) return JobFileForm{JobFileVersion::One, true};
  return std::nullopt;
}

Scrambler installedScrambler(Environment& environment) {
  std::string folder;
  try {
    folder = environment.components.createProfile()->GetAppPath();
  } catch (const std::runtime_error& absent) {
    // A host without the component has no application directory, hence no tables of its own.
    environment.diagnostics.report({"Codetabellen.txt", absent.what(), {}});
    return Scrambler(defaultCodeTables());
  }
  return Scrambler(readCodeTables(pathOf(folder)));
}

} // namespace qx
