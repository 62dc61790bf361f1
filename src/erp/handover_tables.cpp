#include "erp/schema_table.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

constexpr auto eingangsdateien = list(key("Kennung"), text("Ordner"), text("Dateiname"), stamp("Zeitpunkt"));

/// What was handed over under which key, also after the job was deleted. `Kennung` is a hash.
constexpr auto vorgangsinhalte = list(key("JobID"), code("Kennung"), stamp("Zeitpunkt"));
constexpr std::array vorgangsinhalteIndexes{SchemaIndex{"Vorgangsinhalte_Kennung", {"Kennung"}}};

/// Every change of a job's state. `Folge` grows in the order in which the changes become visible.
constexpr auto zustandswechsel = list(key("Folge", ColumnType::Integer), code("JobID"), small("JobType"),
                                      code("Nummer"), text("Fehlertext"), stamp("Zeitpunkt"));
constexpr std::array zustandswechselIndexes{SchemaIndex{"Zustandswechsel_Job", {"JobID"}}};

/// The last number of a series that has no gaps. Whoever counts on holds the row until the commit. `Kennung`
/// tells the series from that of another database.
constexpr auto zaehlerstaende = list(key("Zaehler"), integer("Stand"), text("Kennung"));

constexpr std::array handoverTableList{
    SchemaTable{"Eingangsdateien", eingangsdateien, {}},
    SchemaTable{"Vorgangsinhalte", vorgangsinhalte, vorgangsinhalteIndexes},
    SchemaTable{"Zustandswechsel", zustandswechsel, zustandswechselIndexes},
    SchemaTable{"Zaehlerstaende", zaehlerstaende, {}}};

} // namespace

std::span<const SchemaTable> handoverTables() { return handoverTableList; }

} // namespace qx::erp
