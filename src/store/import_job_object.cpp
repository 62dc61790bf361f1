#include "store/import_job_object.h"

#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "store/entry_objects.h"
#include "store/job_deletion.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"

namespace qx {

ImportJobObject::ImportJobObject(Environment& environment, Database& database)
    : environment_(environment), database_(database) {
  environment_.connection.reset();
}

Connection& ImportJobObject::connection() const { return activeConnection(environment_); }

template <class Work>
bool ImportJobObject::trapping(std::string_view member, std::string_view job, Work&& work) {
  return !trapped(environment_.diagnostics, {member, job}, work);
}

/// The same for the two members that show their failures.
template <class Work>
bool ImportJobObject::updating(std::string_view member, std::string_view key, Work&& work) {
  return !trapped(environment_.diagnostics, {member, key}, work, [&](const std::exception& failure) {
    showMessage(environment_, {"Fehler beim Update: " + germanCause(failure)});
  });
}

bool ImportJobObject::ConnectDB() {
  return trapping("ConnectDB", {}, [this] {
    environment_.connection = database_.open(connectionString_);
    // Opened anew at every use to see what others have stored meanwhile.
    connection().openStream(sql("Select * From [ImportKopf]"_sql));
    connection().openStream(sql("Select * From [ImportPos]"_sql));
  });
}

bool ImportJobObject::UpdateItem(const ImportJob& myItem, std::string_view JobID) {
  return updating("UpdateItem", JobID,
                  [&] { updateVersion1(*openVersion1Header(connection(), JobID), myItem); });
}

bool ImportJobObject::UpdateSubItem(const ImportJobSubItem& mySubItem, std::string_view ChildID) {
  return updating("UpdateSubItem", ChildID,
                  [&] { updateVersion1(*openVersion1Position(connection(), ChildID), mySubItem); });
}

void ImportJobObject::SubItemGetParentType(std::string_view ItemName, JobTypeConstants& JobType) {
  for (const auto& job : jobs_)
    for (job->SubItemMoveFirst(); !job->SubItemEof(); job->SubItemMoveNext())
      if (job->SubItem->ChildID == ItemName) {
        JobType = static_cast<JobTypeConstants>(job->JobType);
        return;
      }
}

void ImportJobObject::DelItem(std::string_view ItemName) {
  trapping("DelItem", ItemName, [&] { JobDeletion(environment_).DelItem(ItemName); });
}

void ImportJobObject::DelArchives() {
  trapping("DelArchives", {}, [this] {
    JobDeletion deletion(environment_);
    deletion.delItems(
        deletion.jobIds(sql(
            "Select JobID From ImportKopf Where Right(JobType,1) = '1' And Not Left(JobType,1) ='-'"_sql)),
        false);
  });
}

void ImportJobObject::JobViewShow(ImportJobObject*& object) {
  if (connectionString_.empty()) {
    showMessage(environment_, {"Bitte geben Sie eine Connection an."});
    return;
  }
  object = this;
  trapping("JobViewShow", {}, [this] { environment_.jobView.open(); });
}

void ImportJobObject::MoveFirst() {
  if (Count() == 0) return;
  cursor_ = 1;
  JobItem = jobs_.Item(cursor_);
}

void ImportJobObject::MoveNext() {
  ++cursor_;
  if (cursor_ <= Count()) JobItem = jobs_.Item(cursor_);
}

void ImportJobObject::MovePrev() {
  if (cursor_ <= 0) return;
  --cursor_;
  JobItem = jobs_.Item(cursor_);
}

bool ImportJobObject::LoadFromDatabase() {
  RemoveAll();
  return trapping("LoadFromDatabase", {}, [this] { loadJobs(); });
}

void ImportJobObject::loadJobs() {
  const auto headers = connection().openStream(sql("Select * From [ImportKopf]"_sql));
  for (; !headers->eof(); headers->moveNext()) {
    auto job = readVersion1Job(*headers);
    const auto positions = openVersion1Positions(connection(), job->JobID);
    for (; !positions->eof(); positions->moveNext()) {
      job->SubItem = readVersion1Position(*positions);
      job->AddSubItem();
    }
    jobs_.Add(job);
  }
}

bool ImportJobObject::StoreItemToDB(const ImportJob& myItem) {
  const auto store = [&] {
    WorkUnit unit(connection(), nullptr, Join::IfOpen);
    insertVersion1(connection(), myItem);
    for (const auto& position : myItem.SubItems()) insertVersion1(connection(), *position);
    unit.commit();
  };
  return trapping("StoreItemToDB", myItem.JobID,
                  [&] { doneAgainOnConflict(environment_, "StoreItemToDB", store); });
}

bool ImportJobObject::StoreSubItemToDB() {
  return JobItem && JobItem->SubItem && SaveSubItem(*JobItem->SubItem);
}

bool ImportJobObject::SaveSubItem(const ImportJobSubItem& mySubItem) {
  return trapping("SaveSubItem", mySubItem.ChildID, [&] { insertVersion1(connection(), mySubItem); });
}

bool ImportJobObject::Export(std::string_view FileName) {
  return showExportResult(environment_, exportJobFile(environment_, FileName, JobFileVersion::One));
}

bool ImportJobObject::Import(std::string_view FileName) {
  return showImportResult(environment_, importJobFile(environment_, FileName, JobFileVersion::One));
}

std::string ImportJobObject::GUID() { return newJobKey(environment_); }

void ImportJobObject::RemoveAll() {
  jobs_ = {};
  cursor_ = 0;
}

} // namespace qx
