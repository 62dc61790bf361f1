// The findings of a job dialog.
#pragma once

#include "engine/findings.h"

#include <cstdint>
#include <initializer_list>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx {

/// One line of a findings list: a finding as the dialog shows it, or a hint.
struct ListedFinding {
  Finding found;
  bool counts = true; ///< whether it raises the status

  /// Short code of the field, shown as "Zuordnung".
  std::string_view code() const { return terms(found.rule).dialog.code; }
  /// The object name of the control concerned; a grid for positions.
  std::string_view control() const { return terms(found.rule).dialog.control; }
  /// Shown as "Fehlertext".
  std::string text() const { return dialogText(found); }
  /// `ChildID` of the position concerned; empty for the header.
  const std::string& item() const { return found.position.key; }
};

/// Holds one finding per code and position, and the hints, which change neither status nor `empty`.
class FindingList {
public:
  /// Adds the finding or, when `fine`, removes the one of the same code and position. `counts` overrides the
  /// rule's.
  void report(bool fine, Finding finding, std::optional<bool> counts = {});
  /// The same for these rules of a check.
  void report(const Findings& found, std::initializer_list<Rule> rules);
  /// The same for a check that finds one of them at most; the keys of the finding are those of `position`.
  void report(const std::optional<Finding>& found, std::span<const Rule> rules, bool customerSpecific,
              const FindingPosition& position = {});
  void clear(Rule rule) { findings_.erase(key({}, terms(rule).dialog.code)); }
  /// Removes all findings of a position.
  void clearItem(std::string_view item);
  void clearAll() {
    findings_.clear();
    hints_ = {};
  }
  void setHints(Findings hints) { hints_ = std::move(hints); }

  bool empty() const { return findings_.empty(); }
  /// Worst first; equal ones in the order in which they were found. Hints are last.
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
  Findings hints_;
};

} // namespace qx
