// The findings of a job dialog.
#pragma once

#include "model/job_codes.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// The code of what an earlier processing wrote into the job.
inline constexpr std::string_view processingErrorCode = "EP";

/// What a check reports that only warns.
inline CheckStatus warningUnless(bool fine) { return fine ? CheckStatus::Clean : CheckStatus::Warning; }

/// One line of a findings list.
struct ListedFinding {
  std::string code; ///< short code of the field, shown as "Zuordnung"
  std::string item; ///< `ChildID` of the position that it concerns; empty for the header
  CheckStatus severity = CheckStatus::Clean;
  std::string text;    ///< shown as "Fehlertext"
  std::string control; ///< the object name of the control that it speaks of; a grid for positions
  std::string place;   ///< the number of the position, shown behind the code; empty for the header
  bool counts = true;  ///< for the status; not what a clerk is told though the job goes through with it
};

/// Holds one finding per code and position. A clean report removes it.
class FindingList {
public:
  void report(ListedFinding finding);
  void clear(std::string_view code, std::string_view item = {});
  /// Removes all findings of a position.
  void clearItem(std::string_view item);
  void clearAll() { findings_.clear(); }

  bool empty() const { return findings_.empty(); }
  /// Worst first; equal ones in the order in which they were found.
  std::vector<ListedFinding> sorted() const;
  /// The highest severity of those that count; clean without findings.
  CheckStatus status() const;
  /// The highest severity of one position.
  CheckStatus statusOf(std::string_view item) const;
  /// Null when there is none. Valid until the list changes.
  const ListedFinding* find(std::string_view code, std::string_view item) const;

private:
  struct Entry {
    ListedFinding finding;
    std::uint64_t number = 0; ///< of arrival
  };
  using Key = std::pair<std::string, std::string>; ///< position, code

  static Key key(std::string_view item, std::string_view code) {
    return {std::string(item), std::string(code)};
  }

  std::map<Key, Entry> findings_;
  std::uint64_t arrived_ = 0;
};

} // namespace qx
