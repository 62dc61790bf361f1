#include "store/job_file_banner.h"

#include "platform/path_text.h"
#include "rules/scrambler.h"
#include "store/job_file_line.h"

#include <string>

namespace qx {
namespace {

std::optional<JobFileForm> formOf(std::string_view line, std::string_view banner, JobFileVersion version,
                                  bool scrambled) {
  if (!line.starts_with('"') || !line.substr(1).starts_with(banner)) return std::nullopt;
  const std::string_view rest = line.substr(1 + banner.size());
  const std::size_t end = rest.find("\";");
  const bool behind =
      end != std::string_view::npos && rest.find_first_not_of(" \t", end + 2) != std::string_view::npos;
  return JobFileForm{version, scrambled, behind};
}

} // namespace

std::optional<JobFileForm> plainForm(std::string_view firstLine) {
  const auto form = formOf(firstLine, jobFileBanner, JobFileVersion::Two, false);
  return form ? form : formOf(firstLine, jobFileBanner1, JobFileVersion::One, false);
}

std::optional<JobFileForm> scrambledForm(std::string_view firstLine, const Scrambler& scrambler) {
  const auto form = formOf(firstLine, scrambler.banner(), JobFileVersion::Two, true);
  return form ? form : formOf(firstLine, scrambler.banner1(), JobFileVersion::One, true);
}

Scrambler installedScrambler(Environment& environment) {
  std::string folder;
  try {
    folder = environment.components.createProfile()->GetAppPath();
  } catch (const std::runtime_error& absent) {
    // A host without the component has no application directory and no tables of its own.
    environment.diagnostics.report({"Codetabellen.txt", absent.what(), {}});
    return Scrambler(defaultCodeTables());
  }
  if (folder.empty()) {
    environment.diagnostics.report({"Codetabellen.txt", "the installation has no application directory", {}});
    return Scrambler(defaultCodeTables());
  }
  return Scrambler(readCodeTables(pathOf(folder)));
}

} // namespace qx
