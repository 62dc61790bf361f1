// Every member of the version-1 job object, called by its name.
#include "automation_fixture.h"

#include <set>

namespace qx::automation {
namespace {

class StoreMembers : public AutomationTest {
protected:
  /// Calls a member and remembers that it was.
  std::string store(std::string_view member, const std::vector<Variant>& arguments = {}) {
    tried.insert(std::string(member));
    return called(object, member, arguments);
  }
  std::string storeGet(std::string_view property) {
    tried.insert(std::string(property));
    return read(object, property);
  }
  ObjectPointer jobOf(std::string_view member, const std::vector<Variant>& arguments = {}) {
    tried.insert(std::string(member));
    return objectOf(call(*object, member, arguments));
  }

  ObjectPointer object = create("ImportJobObject");
  std::set<std::string, std::less<>> tried;
};

} // namespace

TEST_F(StoreMembers, DoTheirWork) {
  EXPECT_EQ(set(object, "ActiveConnection", erp.file), "Empty");
  tried.insert("ActiveConnection");
  EXPECT_EQ(store("ConnectDB"), "True");
  EXPECT_EQ(store("GUID"), "'00000001000000000000000000000000'");
  EXPECT_EQ(store("LoadFromDatabase"), "True");
  EXPECT_EQ(storeGet("Count"), "0&");
  EXPECT_EQ(storeGet("Eof"), "True");

  const ObjectPointer job = create("ImportJob");
  put(*job, "JobID", "J1");
  put(*job, "JobType", 10);
  put(*job, "Ort", "Kiel");
  put(*objectIn(job, "SubItem"), "ChildID", "P1");
  put(*objectIn(job, "SubItem"), "JobID", "J1");
  call(*job, "AddSubItem");
  EXPECT_EQ(store("AddItem", {job}), "True");
  EXPECT_EQ(store("AddItem", {job}), "False");
  EXPECT_EQ(store("StoreItemToDB", {job}), "True");
  put(*job, "Ort", "Bremen");
  EXPECT_EQ(store("UpdateItem", {job, "J1"}), "True");
  EXPECT_EQ(store("UpdateItem", {job, "J9"}), "False");

  const ObjectPointer position = create("ImportJobSubItem");
  put(*position, "JobID", "J1");
  put(*position, "ChildID", "P2");
  EXPECT_EQ(store("SaveSubItem", {position}), "True");
  put(*position, "Menge", "1,5");
  EXPECT_EQ(store("UpdateSubItem", {position, "P2"}), "True");
  EXPECT_EQ(set(object, "JobItem", job), "Empty");
  EXPECT_EQ(jobOf("JobItem"), job);
  put(*objectIn(job, "SubItem"), "ChildID", "P3");
  EXPECT_EQ(store("StoreSubItemToDB"), "True");
  EXPECT_EQ(
      listed(
          "Select ImportPos.ChildID, ImportPos.Menge, Ort From ImportPos, ImportKopf Where ImportPos.JobID = "
          "ImportKopf.JobID Order By ChildID"_sql),
      (std::vector<std::string>{"P1|0|Bremen", "P2|1.5|Bremen", "P3|0|Bremen"}));

  EXPECT_EQ(store("LoadFromDatabase"), "True");
  EXPECT_EQ(store("MoveFirst"), "Empty");
  const ObjectPointer loaded = jobOf("GetItem", {"j1"});
  EXPECT_EQ(jobOf("JobItem"), loaded);
  EXPECT_NE(loaded, job);
  EXPECT_EQ(jobOf("GetItem", {1}), loaded);
  EXPECT_EQ(store("GetItem", {2}).substr(0, 3), "9: ");
  EXPECT_EQ(store("MoveNext"), "Empty");
  EXPECT_EQ(storeGet("Eof"), "True");
  EXPECT_EQ(store("MovePrev"), "Empty");
  EXPECT_EQ(jobOf("JobItem"), loaded);

  Variant code;
  EXPECT_EQ(store("SubItemGetParentType", {"P3", Variant::reference(code)}), "Empty");
  EXPECT_EQ(shown(code), "10&");
  code = 7;
  EXPECT_EQ(store("SubItemGetParentType", {"P9", Variant::reference(code)}), "Empty");
  EXPECT_EQ(shown(code), "7&");

  const std::string file = (erp.folder.path() / "aufträge.aim").string();
  EXPECT_EQ(store("Export", {file}), "True");
  EXPECT_EQ(store("DelItem", {"P2"}), "Empty");
  EXPECT_EQ(keys("Select ChildID From ImportPos Order By ChildID"_sql), "P1 P3 ");
  EXPECT_EQ(store("Import", {file}), "True");
  EXPECT_EQ(keys("Select ChildID From ImportPos Order By ChildID"_sql), "P1 P2 P3 ");
  execute("Update ImportKopf Set JobType = 11"_sql);
  EXPECT_EQ(store("DelArchives"), "Empty");
  EXPECT_EQ(count("Select Count(*) From ImportPos"_sql), 0);
  EXPECT_EQ(store("RemoveAll"), "Empty");
  EXPECT_EQ(storeGet("Count"), "0&");

  Variant view;
  EXPECT_EQ(store("JobViewShow", {Variant::reference(view)}), "Empty");
  EXPECT_EQ(objectOf(view), object);
  EXPECT_TRUE(erp.jobView.isOpen);

  for (const Member& member : ClassOf<ImportJobObject>::table().members())
    EXPECT_EQ(tried.count(member.description.name), 1U) << member.description.name << " was not called";
}

TEST_F(StoreMembers, TellOfAMissingConnection) {
  Variant view;
  EXPECT_EQ(store("JobViewShow", {Variant::reference(view)}), "Empty");
  EXPECT_EQ(shown(view), "Nothing");
  EXPECT_EQ(erp.desktop.texts(), "Bitte geben Sie eine Connection an.\n");
  EXPECT_EQ(store("ConnectDB"), "False");
  EXPECT_EQ(store("LoadFromDatabase"), "False");
}

} // namespace qx::automation
