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
  return {settings[option::purgeCustomers], settings[option::purgeContracts], settings[option::purgeOrders]};
}

bool purgeArchives(JobDeletion& deletion, const PurgeOptions& options,
                   const std::function<void(std::string_view text)>& progress,
                   const JobDeletion::GoOn& goOn) {
  return std::ranges::all_of(passes, [&](const Pass& pass) {
    if (!(options.*pass.isOn)) return true;
    if (!goOn()) return false;
    progress(pass.text);
    return deletion.deleteDone(deletion.jobIds(pass.selection()), goOn);
  });
}

} // namespace qx
