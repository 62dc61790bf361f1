// The tables of jobs in memory and their collections.
#include "automation/classes/contents.h"

namespace qx::automation {
namespace {

template <class Table, class M>
void addFields(std::vector<Member>& members, const Table& properties, M /*of*/) {
  for (const auto& property : properties) members.push_back(M::field(property));
}

/// Texts are keys, everything else is a 1-based position.
template <class Collection>
auto itemOf(const Collection& collection, const Variant& index) {
  const Variant plain = plainValue(index);
  return plain.kind() == VariantKind::Text ? collection.Item(textOf(plain)) : collection.Item(int32Of(plain));
}

template <class Collection>
void removeFrom(Collection& collection, const Variant& index) {
  const Variant plain = plainValue(index);
  if (plain.kind() == VariantKind::Text)
    collection.Remove(textOf(plain));
  else
    collection.Remove(int32Of(plain));
}

/// The members of a collection of objects of the class `Item`.
template <class Collection, class Item>
std::vector<Member> collectionMembers(std::string_view key) {
  using M = MembersOf<Collection>;
  std::vector<Member> members{
      M::method(
          "Add", key,
          +[](Collection& items, const std::shared_ptr<Item>& item) -> bool { return items.Add(item); },
          "item"),
      M::method(
          "Item", "The item at a 1-based position or of a key. Raises 9 when there is none.",
          +[](Collection& items, const Variant& index) -> std::shared_ptr<Item> {
            return itemOf(items, index);
          },
          "index"),
      M::property("Count", "How many items there are.", &Collection::Count),
      M::method(
          "Remove", "Removes the item at a 1-based position or of a key. Raises 9 when there is none.",
          +[](Collection& items, const Variant& index) { removeFrom(items, index); }, "index")};
  members[1].description.id = defaultMember;
  Member walk;
  walk.description = {.name = "_NewEnum",
                      .help = "The walk of For Each through the present items.",
                      .id = enumerationMember,
                      .readable = true,
                      .hidden = true,
                      .type = {TypeKind::Object, {}}};
  walk.read = [](CallFrame& frame) -> Variant {
    std::vector<Variant> items;
    for (const auto& item : detail::targetIn<Collection>(frame))
      items.emplace_back(frame.context.objectFor(item));
    return ObjectPointer(std::make_shared<Enumeration>(std::move(items)));
  };
  members.push_back(std::move(walk));
  return members;
}

std::vector<Member> jobMembers() {
  using M = MembersOf<ImportJob>;
  std::vector<Member> members{
      M::variable("SubItem", "The current position.", &ImportJob::SubItem),
      M::method("NewSubItem", "Replaces the current position with a new, empty one.", &ImportJob::NewSubItem),
      M::method("AddSubItem",
                "Adds the current position under its ChildID; False when that key is already present.",
                &ImportJob::AddSubItem),
      M::method("SubItemMoveFirst", "Moves to the first position, if there is one.",
                &ImportJob::SubItemMoveFirst),
      M::method("SubItemMoveNext", "Moves to the next position or behind the last one.",
                &ImportJob::SubItemMoveNext),
      M::method("SubItemMovePrev", "Moves to the previous position. Raises 9 when there is none.",
                &ImportJob::SubItemMovePrev),
      M::property("SubItemCount", "How many positions there are.", &ImportJob::SubItemCount),
      M::property("SubItemEof", "Behind the last position, or there are none.", &ImportJob::SubItemEof)};
  addFields(members, importJobFields, M());
  return members;
}

std::vector<Member> positionMembers() {
  std::vector<Member> members;
  addFields(members, importJobSubItemFields, MembersOf<ImportJobSubItem>());
  return members;
}

} // namespace

const ClassTable& ClassOf<ImportJob>::table() {
  static const ClassTable table(name, "A job in memory: its header, its positions and a cursor on them.",
                                jobMembers());
  return table;
}

const ClassTable& ClassOf<ImportJobSubItem>::table() {
  static const ClassTable table(name, "A position of a job in memory.", positionMembers());
  return table;
}

const ClassTable& ClassOf<ImportJobs>::table() {
  static const ClassTable table(name, "Jobs under their JobID.",
                                collectionMembers<ImportJobs, ImportJob>(
                                    "Adds a job under its JobID; False when that key is already present."));
  return table;
}

const ClassTable& ClassOf<ImportJobSubItems>::table() {
  static const ClassTable table(
      name, "Positions under their ChildID.",
      collectionMembers<ImportJobSubItems, ImportJobSubItem>(
          "Adds a position under its ChildID; False when that key is already present."));
  return table;
}

} // namespace qx::automation
