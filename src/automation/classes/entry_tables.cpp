// The tables of the entry objects.
#include "automation/classes/contents.h"

namespace qx::automation {
namespace {

/// The operations first, then every property in interface order.
template <class Entry, class Table>
std::vector<Member> entryMembers(const Table& properties, std::initializer_list<std::string_view> left = {}) {
  using M = MembersOf<Entry>;
  std::vector<Member> members{
      M::method("AddItem",
                "Stages the job: adds its row or replaces the one of the same key. A failure is not told.",
                &Entry::AddItem),
      M::property("FormatItemCSV", "The values as one line of a job file.", &Entry::FormatItemCSV)};
  for (const auto& property : properties)
    if (std::ranges::find(left, property.name) == left.end()) members.push_back(M::field(property));
  return members;
}

} // namespace

const ClassTable& ClassOf<Kunde>::table() {
  static const ClassTable table(name, "A customer job, created waiting, with a fresh key and today's date.",
                                entryMembers<Kunde>(kundeFields));
  return table;
}

const ClassTable& ClassOf<Vertrag>::table() {
  static const ClassTable table(name, "A contract job, created waiting, with a fresh key and today's date.",
                                entryMembers<Vertrag>(vertragFields, {"IndFild2", "IndFild3", "IndFild4"}));
  return table;
}

const ClassTable& ClassOf<Auftrag>::table() {
  static const ClassTable table(
      name, "The header of an order job. Positions that are created after it belong to it.",
      entryMembers<Auftrag>(auftragFields));
  return table;
}

const ClassTable& ClassOf<AuftragsPos>::table() {
  static const ClassTable table(name, "A position of the order that was created last, with a fresh key.",
                                entryMembers<AuftragsPos>(auftragsPosFields));
  return table;
}

} // namespace qx::automation
