// Jobs in memory and their collections, as scripts use them.
#include "automation_fixture.h"

namespace qx::automation {
namespace {

class RecordMembers : public AutomationTest {
protected:
  ObjectPointer job(std::string_view key) {
    ObjectPointer made = create("ImportJob");
    put(*made, "JobID", key);
    return made;
  }
  /// The keys that For Each meets.
  static std::string walked(Enumeration& walk) {
    std::string keys;
    while (const auto item = walk.next()) keys += textOf(get(*objectOf(*item), "JobID")) + " ";
    return keys;
  }
  static std::shared_ptr<Enumeration> walkThrough(const ObjectPointer& collection) {
    Arguments none;
    return std::dynamic_pointer_cast<Enumeration>(
        objectOf(collection->invoke(enumerationMember, Access::MethodOrGet, none)));
  }
};

} // namespace

TEST_F(RecordMembers, OfACollectionFindByPositionAndKey) {
  const ObjectPointer jobs = create("ImportJobs");
  const ObjectPointer first = job("J1");
  EXPECT_EQ(called(jobs, "Add", {first}), "True");
  EXPECT_EQ(called(jobs, "Add", {job("j1")}), "False");
  EXPECT_EQ(called(jobs, "Add", {job("2")}), "True");
  EXPECT_EQ(read(jobs, "Count"), "2&");
  EXPECT_EQ(objectOf(call(*jobs, "Item", {1.4})), first);
  EXPECT_EQ(objectOf(call(*jobs, "Item", {"J1"})), first);
  // A text is a key, not a position.
  EXPECT_EQ(read(objectOf(call(*jobs, "Item", {"2"})), "JobID"), "'2'");
  // The default member.
  Arguments one{{1}, {}};
  EXPECT_EQ(objectOf(jobs->invoke(defaultMember, Access::MethodOrGet, one)), first);
  EXPECT_EQ(called(jobs, "Item", {3}).substr(0, 3), "9: ");
  EXPECT_EQ(called(jobs, "Item", {0}).substr(0, 3), "9: ");
  EXPECT_EQ(called(jobs, "Remove", {"J9"}).substr(0, 3), "9: ");
  EXPECT_EQ(called(jobs, "Remove", {"J1"}), "Empty");
  EXPECT_EQ(called(jobs, "Remove", {1}), "Empty");
  EXPECT_EQ(read(jobs, "Count"), "0&");
  // A collection is no value.
  EXPECT_EQ(numberOf([&] { return Variant(textOf(jobs)); }), "13");

  const ObjectPointer positions = create("ImportJobSubItems");
  const ObjectPointer position = create("ImportJobSubItem");
  put(*position, "ChildID", "P1");
  EXPECT_EQ(called(positions, "Add", {position}), "True");
  EXPECT_EQ(objectOf(call(*positions, "Item", {"p1"})), position);
  EXPECT_EQ(called(positions, "Add", {first}).substr(0, 3), "13:");
  EXPECT_EQ(called(positions, "Remove", {1}), "Empty");
  EXPECT_EQ(read(positions, "Count"), "0&");
}

TEST_F(RecordMembers, OfACollectionAreWalkedAsTheyWereAtTheStart) {
  const ObjectPointer jobs = create("ImportJobs");
  for (const char* key : {"A", "B", "C"}) call(*jobs, "Add", {job(key)});
  const auto walk = walkThrough(jobs);
  EXPECT_TRUE(walk->skip(1));
  const auto copy = walk->clone();
  call(*jobs, "Remove", {"B"});
  call(*jobs, "Add", {job("D")});
  EXPECT_EQ(walked(*walk), "B C ");
  EXPECT_FALSE(walk->skip(1));
  walk->reset();
  EXPECT_FALSE(walk->skip(4));
  EXPECT_EQ(walk->next(), std::nullopt);
  EXPECT_EQ(walked(*copy), "B C ");
  EXPECT_EQ(walked(*walkThrough(jobs)), "A C D ");
  EXPECT_EQ(walked(*walkThrough(create("ImportJobs"))), "");
  Arguments none;
  EXPECT_EQ(numberOf([&] { return copy->invoke(defaultMember, Access::Get, none); }), "438");
}

TEST_F(RecordMembers, OfAJobMoveThroughItsPositions) {
  const ObjectPointer it = job("J1");
  EXPECT_EQ(read(it, "SubItemEof"), "True");
  EXPECT_EQ(called(it, "SubItemMoveFirst"), "Empty");
  for (const char* key : {"P1", "P2"}) {
    EXPECT_EQ(called(it, "NewSubItem"), "Empty");
    put(*objectIn(it, "SubItem"), "ChildID", key);
    EXPECT_EQ(called(it, "AddSubItem"), "True");
  }
  EXPECT_EQ(called(it, "AddSubItem"), "False");
  EXPECT_EQ(read(it, "SubItemCount"), "2&");
  EXPECT_EQ(read(it, "SubItemEof"), "False");
  call(*it, "SubItemMoveFirst");
  EXPECT_EQ(read(objectIn(it, "SubItem"), "ChildID"), "'P1'");
  call(*it, "SubItemMoveNext");
  call(*it, "SubItemMoveNext");
  EXPECT_EQ(read(it, "SubItemEof"), "True");
  call(*it, "SubItemMovePrev");
  EXPECT_EQ(read(objectIn(it, "SubItem"), "ChildID"), "'P2'");
  call(*it, "SubItemMovePrev");
  EXPECT_EQ(called(it, "SubItemMovePrev").substr(0, 3), "9: ");
  EXPECT_EQ(set(it, "SubItem", Variant::nothing()), "Empty");
  EXPECT_EQ(read(it, "SubItem"), "Nothing");
  EXPECT_EQ(called(it, "AddSubItem"), "False");
}

TEST_F(RecordMembers, KeepEveryPropertyAndRefuseOtherKinds) {
  for (const char* name : {"ImportJob", "ImportJobSubItem", "Kunde", "Vertrag", "Auftrag", "AuftragsPos"}) {
    const ObjectPointer record = create(name);
    for (const Member& member : dynamic_cast<const ClassObject&>(*record).table().members()) {
      const MemberDescription& it = member.description;
      if (!it.writable || it.type.kind == TypeKind::Object) continue;
      SCOPED_TRACE(std::string(name) + "." + std::string(it.name));
      struct Try {
        Variant given;
        const char* kept;
      };
      const std::vector<Try> tries =
          it.type.kind == TypeKind::Text
              ? std::vector<Try>{{5, "'5'"}, {"5", "'5'"}, {Variant(), "''"}, {Variant::null(), "94"}}
          : it.type.kind == TypeKind::Boolean
              ? std::vector<Try>{{5, "True"}, {"Falsch", "False"}, {"5x", "13"}, {Variant::null(), "94"}}
          : it.type.kind == TypeKind::Double
              ? std::vector<Try>{{5, "5#"}, {"5,5", "5.5#"}, {"5x", "13"}, {Variant(), "0#"}}
          : it.type.kind == TypeKind::Int16
              ? std::vector<Try>{{5, "5%"}, {"5", "5%"}, {70000, "6"}, {"", "13"}, {Variant(), "0%"}}
              : std::vector<Try>{{5, "5&"}, {5e9, "6"}, {true, "-1&"}, {Variant::null(), "94"}};
      for (const Try& each : tries)
        EXPECT_EQ(numberOf([&] {
                    put(*record, it.name, each.given);
                    return get(*record, it.name);
                  }),
                  each.kept);
    }
  }
}

TEST_F(RecordMembers, OfAnEntryObjectGiveItsLineOfAJobFile) {
  const ObjectPointer order = create("Auftrag");
  const ObjectPointer position = create("AuftragsPos");
  EXPECT_EQ(read(position, "JobID"), read(order, "JobID"));
  put(*position, "ChildID", "C1");
  put(*position, "JobID", "J1");
  put(*position, "Menge", "2,5");
  put(*position, "Lieferbereit", true);
  EXPECT_EQ(
      read(position, "FormatItemCSV"),
      "'\"50\";\"J1\";\"C1\";\"\";\"\";\"0\";\"Falsch\";\"0\";\"Wahr\";\"2,5\";\"\";\"0\";\"0\";\"0\";\"0\";"
      "\"\";\"0\";'");
}

} // namespace qx::automation
