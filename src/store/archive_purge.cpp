#include "store/archive_purge.h"

#include <algorithm>
#include <array>

namespace qx {
namespace {

struct Pass {
  bool PurgeOptions::*isOn;
  std::string_view text;
  Sql (*selection)();
};

constexpr std::array passes{
    Pass{&PurgeOptions::customers, "Archivdaten werden gelöscht (Kunden)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '13' "_sql); }},
    Pass{&PurgeOptions::contracts, "Archivdaten werden gelöscht (Verträge)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '43' "_sql); }},
    Pass{&PurgeOptions::orders, "Archivdaten werden gelöscht (Aufträge)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '33' "_sql); }},
};

} // namespace

PurgeOptions PurgeOptions::read(const Settings& settings) {
  return {settings.isOn("KundeDelete"), settings.isOn("VTDelete"), settings.isOn("AuftragDelete")};
}

bool ArchivePurge::run(const PurgeOptions& options, const Progress& progress, const Stopped& stopped) {
  return std::ranges::all_of(passes, [&](const Pass& pass) {
    if (!(options.*pass.isOn)) return true;
    if (stopped()) return false;
    progress(pass.text);
    return removeAll(deletion_.jobIds(pass.selection()), stopped);
  });
}

bool ArchivePurge::removeAll(const std::vector<std::string>& jobIds, const Stopped& stopped) {
  const std::size_t taken =
      group_.takeAll(jobIds.size(), {[&](std::size_t at) { deletion_.deleteDone(jobIds[at]); },
                                     [&](std::size_t at, const WorkLostError& loss) {
                                       environment_.diagnostics.report({"purge", loss.what(), jobIds[at]});
                                       return false;
                                     },
                                     stopped});
  return taken == jobIds.size();
}

} // namespace qx
