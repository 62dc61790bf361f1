// The public job object of the first version: staged jobs in memory.
#pragma once

#include "model/import_job.h"
#include "model/job_codes.h"
#include "platform/environment.h"
#include "store/job_file_report.h"
#include "store/version1_rows.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace qx {

/// Loads the staged jobs, lets a caller walk and change them, stores, deletes and exchanges them. It has a
/// database connection of its own, which it opens from a connection string, and knows only the columns of its
/// version; the others are never touched. Its processing has been replaced by `ImportJobObject2`.
///
/// Environment and database must outlive the object. Not thread-safe. Unless stated otherwise, members trap
/// their failures, report them to the diagnostics and return false. A job and its positions are stored as one
/// unit.
class ImportJobObject {
public:
  ImportJobObject(Environment& environment, Database& database);
  ImportJobObject(const ImportJobObject&) = delete;
  ImportJobObject& operator=(const ImportJobObject&) = delete;
  ~ImportJobObject() = default;

  /// Stores the connection string; nothing is opened before `ConnectDB`.
  void ActiveConnection(std::string_view connectionString) { connectionString_ = connectionString; }
  /// Opens the connection and checks that it can read the two staging tables.
  bool ConnectDB();

  /// Adds the caller's job to the loaded jobs; false when its key is already present. Nothing is stored.
  bool AddItem(const std::shared_ptr<ImportJob>& job) { return jobs_.Add(job); }
  /// Overwrites the header of this key. A failure is shown.
  bool UpdateItem(const ImportJob& myItem, std::string_view JobID);
  /// Overwrites the position of this key. A failure is shown.
  bool UpdateSubItem(const ImportJobSubItem& mySubItem, std::string_view ChildID);
  /// The code of the loaded job that holds the position of this key; left unchanged when none does. Moves the
  /// position cursors of the jobs.
  void SubItemGetParentType(std::string_view ItemName, JobTypeConstants& JobType);
  /// Deletes a stored job or position by its key.
  void DelItem(std::string_view ItemName);
  /// Deletes the stored jobs whose code is positive and ends in 1, done in the sense of this version. The
  /// warning codes of version 2 are among them, on purpose; its done codes are not.
  void DelArchives();
  /// Opens the job view and passes this object to the caller; without a connection string it only shows a
  /// message.
  void JobViewShow(ImportJobObject*& object);

  /// The current job.
  std::shared_ptr<ImportJob> JobItem = std::make_shared<ImportJob>();
  /// A loaded job by its 1-based position or its key. Raises `std::out_of_range` when there is none.
  std::shared_ptr<ImportJob> GetItem(std::int32_t ItemNr) const { return jobs_.Item(ItemNr); }
  std::shared_ptr<ImportJob> GetItem(std::string_view JobID) const { return jobs_.Item(JobID); }
  /// Moves to job 1 if there is one; otherwise does nothing.
  void MoveFirst();
  /// Always advances by one; `JobItem` follows while the cursor is within the loaded jobs.
  void MoveNext();
  /// Moves back by one when the cursor is above 0. Raises `std::out_of_range`, with the cursor moved, when
  /// that is before the first job.
  void MovePrev();
  std::int32_t Count() const { return jobs_.Count(); }
  bool Eof() const { return jobs_.Count() == 0 || cursor_ > jobs_.Count(); }

  /// Replaces the loaded jobs with all stored ones and their positions.
  bool LoadFromDatabase();
  /// Adds the job as a new row, and its positions. False, with nothing added, when a key is already stored.
  bool StoreItemToDB(const ImportJob& myItem);
  /// Adds the current position of the current job as a new row.
  bool StoreSubItemToDB();
  /// Adds the position as a new row.
  bool SaveSubItem(const ImportJobSubItem& mySubItem);
  /// Writes every stored job and its positions to a version-1 job file; a failure is shown.
  bool Export(std::string_view FileName);
  /// Stores the jobs of a version-1 job file; a refused file or line is shown. The loaded jobs are kept.
  bool Import(std::string_view FileName);
  /// A new key of 32 hexadecimal digits; empty when none could be made.
  std::string GUID();
  /// Empties the loaded jobs.
  void RemoveAll();

private:
  /// Runs a member's work; reports a failure to the diagnostics.
  template <class Work>
  bool trapping(std::string_view member, std::string_view job, Work&& work);
  template <class Work>
  bool updating(std::string_view member, std::string_view key, Work&& work);
  Connection& connection() const;
  void loadJobs();

  Environment environment_; ///< the component's ports around the connection of this object
  Database& database_;
  std::string connectionString_;
  ImportJobs jobs_;
  std::int32_t cursor_ = 0;
};

} // namespace qx
