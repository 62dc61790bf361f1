#include "erp/schema_table.h"

#include <array>

namespace qx::erp {
namespace {

using namespace columns;

constexpr auto eingangsdateien = list(key("Kennung"), text("Ordner"), text("Dateiname"), stamp("Zeitpunkt"));

constexpr std::array inboxTableList{SchemaTable{"Eingangsdateien", eingangsdateien, {}}};

} // namespace

std::span<const SchemaTable> inboxTables() { return inboxTableList; }

} // namespace qx::erp
