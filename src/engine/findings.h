// The findings of a check or of a job that could not be written.
#pragma once

#include "engine/finding_terms.h"
#include "model/job_codes.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// The sentence that announces findings; warnings and errors share it on purpose.
inline constexpr std::string_view findingsSentence = "Beim Verarbeiten wurden Warnungen festgestellt.";

/// A position of a job; empty for the job itself.
struct FindingPosition {
  std::string key;    ///< `ChildID`
  std::string number; ///< staged `Positionsnummer`

  friend bool operator==(const FindingPosition&, const FindingPosition&) = default;
};

/// One objection to a job or, with the severity `Clean`, a hint. The values are data; the terms of the rule
/// say how to put them in a text.
struct Finding {
  Rule rule{};
  CheckStatus severity = CheckStatus::Clean;
  std::string value;  ///< of the job
  std::string stored; ///< the differing value of the master data
  std::string field;  ///< property of the job, for rules about several
  FindingPosition position;

  Finding() = default;
  /// With the severity of the rule.
  explicit Finding(Rule broken, std::string_view jobValue = {}, std::string_view storedValue = {})
      : rule(broken), severity(terms(broken).severity), value(jobValue), stored(storedValue) {}
  Finding&& of(std::string_view jobField) && {
    field = jobField;
    return std::move(*this);
  }
  Finding&& at(FindingPosition place) && {
    position = std::move(place);
    return std::move(*this);
  }

  bool isHint() const { return severity == CheckStatus::Clean; }
  /// The property of the job concerned; empty for none.
  std::string_view fieldName() const { return field.empty() ? terms(rule).field : std::string_view(field); }

  friend bool operator==(const Finding&, const Finding&) = default;
};

/// What findings of this severity are called; a clean one is a hint.
std::string_view severityWord(CheckStatus severity);
/// The text of a run; empty for a rule without one.
std::string runText(const Finding& finding);
/// The same with line breaks of values as blanks, so that no value can begin a line.
std::string runLine(const Finding& finding);
/// The prefix of a hint among findings and in the protocol.
inline constexpr std::string_view hintMark = "Hinweis: ";
/// A hint with that prefix.
std::string hintLine(const Finding& hint);
/// The text of a dialog.
std::string dialogText(const Finding& finding);
/// The text of a run, else that of a dialog.
std::string anyText(const Finding& finding);

/// The findings of a job in the order in which they were found.
class Findings {
public:
  Findings() = default;
  Findings(std::initializer_list<Finding> list) : list_(list) {}

  void add(Finding finding) { list_.push_back(std::move(finding)); }
  void append(Findings others);

  /// The highest severity.
  CheckStatus status() const;
  bool holds(Rule rule) const;
  bool empty() const { return list_.empty(); }
  std::size_t size() const { return list_.size(); }
  auto begin() const { return list_.begin(); }
  auto end() const { return list_.end(); }

  /// The texts of those that raise the status, and of the others.
  std::vector<std::string> texts() const;
  std::vector<std::string> hints() const;
  /// One line for each of both, as lists show them.
  std::vector<std::string> lines() const;
  /// The lines of those that raise the status, each followed by CR LF.
  std::string text() const;

private:
  std::vector<Finding> list_;
};

/// The sentence and the findings, as appended to a job's reasons.
std::string announced(const Findings& findings);

} // namespace qx
