// The field tables against the members of their records.
#include "model/entry_records.h"
#include "model/import_job.h"

#include <gtest/gtest.h>

#include <string>

namespace qx {
namespace {

/// The names of properties that lie before the one listed ahead of them. A member under a name not its own
/// breaks the order at its place or at the next.
template <class Record, class Table>
std::string outOfOrder(const Table& table) {
  const Record record;
  std::string names;
  const void* before = nullptr;
  for (const auto& field : table) {
    const void* here = field.visit(record, [](const auto& member) -> const void* { return &member; });
    if (std::less<>()(here, before) || here == before) names += std::string(field.name) + " ";
    before = here;
  }
  return names;
}

TEST(FieldTables, ReachTheMembersInTheOrderInWhichTheyAreDeclared) {
  // The shared fields come first in the record, so the fields of one kind among them follow.
  EXPECT_EQ(outOfOrder<KundeFields>(kundeFields), "VS_KdNr ");
  EXPECT_EQ(outOfOrder<AuftragFields>(auftragFields), "Vertragsnummer ");
  EXPECT_EQ(outOfOrder<VertragFields>(vertragFields), "");
  EXPECT_EQ(outOfOrder<AuftragsPosFields>(auftragsPosFields), "");
  EXPECT_EQ(outOfOrder<ImportJob>(importJobFields), "");
  EXPECT_EQ(outOfOrder<ImportJobSubItem>(importJobSubItemFields), "");
}

} // namespace
} // namespace qx
