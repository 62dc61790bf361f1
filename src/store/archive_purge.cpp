#include "store/archive_purge.h"

#include "settings/settings.h"

#include <array>

namespace qx {
namespace {

struct Pass {
  std::string_view setting;
  std::string_view text;
  Sql (*selection)();
};

constexpr std::array passes{
    Pass{"KundeDelete", "Archivdaten werden gelöscht (Kunden)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '13' "_sql); }},
    Pass{"VTDelete", "Archivdaten werden gelöscht (Verträge)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '43' "_sql); }},
    Pass{"AuftragDelete", "Archivdaten werden gelöscht (Aufträge)",
         [] { return sql("Select JobID From ImportKopf Where JobType = '33' "_sql); }},
};

} // namespace

void ArchivePurge::run(const Progress& progress, const AfterJob& afterJob) {
  const Settings settings(environment_);
  for (const Pass& pass : passes) {
    if (!settings.isOn(pass.setting)) continue;
    if (progress) progress(pass.text);
    deletion_.deleteDone(deletion_.jobIds(pass.selection()), afterJob);
  }
}

} // namespace qx
