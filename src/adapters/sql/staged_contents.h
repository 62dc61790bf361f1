// Finds out which contents of a file of jobs were handed over before.
#pragma once

#include "platform/bulk_staging.h"
#include "platform/database.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qx::relational {

/// Compares the column StageInhalt of the temporary table StageKopf with the table of contents and keeps the
/// repeated ones in a temporary table of its own. Without the table of contents nothing is repeated.
class StagedContents {
public:
  /// `number` is the column of StageKopf that numbers the jobs. `ignoresKnown`: an insert can leave out rows
  /// whose key is taken. The connection outlives the object.
  StagedContents(Connection& connection, std::string_view number, bool ignoresKnown)
      : connection_(connection), number_(number), ignoresKnown_(ignoresKnown) {}

  /// Looks for the table of contents and makes the temporary table.
  void begin();
  bool remembered() const { return remembered_; }
  /// Before the rows of `ImportKopf` are looked at. One unit after the other looks for contents and enters
  /// its own, since none sees those of another one that is open.
  void await();
  /// Looks for repeated contents among the jobs that are not to be skipped. `inFile`: two jobs of the file
  /// may have the same content.
  void find(bool inFile);
  std::int64_t count();
  /// Adds the contents of jobs whose numbers lie behind `from`, up to `to`.
  void enter(std::int64_t from, std::int64_t to, std::string_view now);
  /// After the last jobs: `staged` is the number of all, some of which may have been known with another
  /// content.
  void finish(std::int64_t staged, std::string_view now);
  void appendTo(std::vector<KeyConflict>& conflicts, std::int64_t most);
  void forEach(const BulkStaging::RepetitionVisitor& visit);
  /// The rows of `visitStaged`, in the order of the file. `skipped`: some of them were skipped.
  Sql stagedRows(bool skipped);

private:
  Sql repetitions() const;

  Connection& connection_;
  std::string number_;
  bool ignoresKnown_;
  bool remembered_ = false;
  bool knowsChanges_ = false; ///< of states
  std::int64_t entered_ = 0;
};

} // namespace qx::relational
