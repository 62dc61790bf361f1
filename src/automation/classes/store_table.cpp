// The table of the version-1 job object.
#include "automation/classes/contents.h"

namespace qx::automation {
namespace {

using Store = ImportJobObject;

std::vector<Member> storeMembers() {
  using M = MembersOf<Store>;
  const Type thisClass{TypeKind::Object, ClassOf<Store>::name};
  return {
      M::setter("ActiveConnection", "The connection string; nothing is opened before ConnectDB.",
                &Store::ActiveConnection),
      M::method("ConnectDB", "Opens the connection and the two staging tables.", &Store::ConnectDB),
      M::method("AddItem",
                "Adds a job to the loaded ones; False when its key is already present. Nothing is stored.",
                &Store::AddItem, Named("ImportJob").reference()),
      M::method("UpdateItem", "Overwrites the stored header of this key.", &Store::UpdateItem, "myItem",
                "JobID"),
      M::method("UpdateSubItem", "Overwrites the stored position of this key.", &Store::UpdateSubItem,
                "mySubItem", "ChildID"),
      M::method("SubItemGetParentType",
                "The code of the loaded job that holds the position of this key; unchanged when none does.",
                &Store::SubItemGetParentType, "ItemName", "JobType"),
      M::method("DelItem", "Deletes a stored job or position by its key.", &Store::DelItem, "ItemName"),
      M::method("DelArchives", "Deletes the stored jobs that version 1 has done.", &Store::DelArchives),
      M::method(
          "JobViewShow", "Opens the job view and gives this object.",
          +[](CallOn<Store> on, ObjectPointer& shown) {
            Store* object = nullptr;
            on.target.JobViewShow(object);
            if (object != nullptr) shown = on.self;
          },
          Named("ImportJobObject").as(thisClass)),
      M::variable("JobItem", "The current job.", &Store::JobItem),
      M::method(
          "GetItem", "A loaded job by its 1-based position or its JobID. Raises 9 when there is none.",
          +[](Store& store, const Variant& ItemNr) -> std::shared_ptr<ImportJob> {
            const Variant plain = plainValue(ItemNr);
            return plain.kind() == VariantKind::Text ? store.GetItem(textOf(plain))
                                                     : store.GetItem(int32Of(plain));
          },
          "ItemNr"),
      M::method("MoveFirst", "Moves to the first job, if there is one.", &Store::MoveFirst),
      M::method("MoveNext", "Moves to the next job or behind the last one.", &Store::MoveNext),
      M::method("MovePrev", "Moves to the previous job. Raises 9 when there is none.", &Store::MovePrev),
      M::property("Count", "How many jobs are loaded.", &Store::Count),
      M::property("Eof", "Behind the last job, or there are none.", &Store::Eof),
      M::method("LoadFromDatabase", "Loads every stored job and its positions.", &Store::LoadFromDatabase),
      M::method("StoreItemToDB", "Stores a job and its positions as new rows.", &Store::StoreItemToDB,
                "myItem"),
      M::method("StoreSubItemToDB", "Stores the current position of the current job as a new row.",
                &Store::StoreSubItemToDB),
      M::method("SaveSubItem", "Stores a position as a new row.", &Store::SaveSubItem, "mySubItem"),
      M::method("Export", "Writes every stored job to a version-1 job file.", &Store::Export, "FileName"),
      M::method("Import", "Stores the jobs of a version-1 job file.", &Store::Import, "FileName"),
      M::method("GUID", "A new key of 32 hexadecimal digits.", &Store::GUID),
      M::method("RemoveAll", "Empties the loaded jobs.", &Store::RemoveAll),
  };
}

} // namespace

const ClassTable& ClassOf<ImportJobObject>::table() {
  static const ClassTable table(name, "Staged jobs in memory, for programs written for version 1.",
                                storeMembers());
  return table;
}

} // namespace qx::automation
