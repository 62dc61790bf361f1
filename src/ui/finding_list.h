// The findings of a job dialog.
#pragma once

#include "model/job_codes.h"

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The code of what an earlier processing wrote into the job; it counts for no status.
inline constexpr std::string_view processingErrorCode = "EP";

/// One line of a findings list.
struct Finding {
  std::string code; ///< short code of the field, shown as "Zuordnung"
  std::string item; ///< `ChildID` of the position that it concerns; empty for the header
  CheckStatus severity = CheckStatus::Clean;
  std::string text;    ///< shown as "Fehlertext"
  std::string control; ///< the object name of the control that it speaks of; a grid for positions
};

/// Holds one finding per code and position. A clean report removes it.
class FindingList {
public:
  void report(Finding finding);
  /// Removes every finding of these positions and codes.
  void clear(std::string_view code, std::string_view item = {});
  void clearItem(std::string_view item);
  void clearAll() { findings_.clear(); }

  /// Worst first; equal ones in the order in which they were found.
  std::vector<Finding> sorted() const;
  /// The highest severity but for `processingErrorCode`; clean without findings.
  CheckStatus status() const;
  /// The highest severity of one position.
  CheckStatus statusOf(std::string_view item) const;
  const std::vector<Finding>& all() const { return findings_; }

private:
  std::vector<Finding> findings_;
};

} // namespace qx
