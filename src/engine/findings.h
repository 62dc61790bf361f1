// What a check or a refused writing of a job found.
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

/// The position of a job; empty for the job itself.
struct FindingPosition {
  std::string key;    ///< `ChildID`
  std::string number; ///< `Positionsnummer`, as staged

  friend bool operator==(const FindingPosition&, const FindingPosition&) = default;
};

/// One thing that speaks against a job, or, with the severity `Clean`, is worth knowing (a hint). The values
/// are data: what they look like in a text is said by the terms of the rule.
struct Finding {
  Rule rule{};
  CheckStatus severity = CheckStatus::Clean;
  std::string value;  ///< of the job
  std::string stored; ///< what stands against it in the master data
  std::string field;  ///< of the job, where the rule speaks of several
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
  /// The property of the job that it speaks of; empty for none.
  std::string_view fieldName() const { return field.empty() ? terms(rule).field : std::string_view(field); }

  friend bool operator==(const Finding&, const Finding&) = default;
};

/// As a run says it; empty for a rule of which it says nothing.
std::string runText(const Finding& finding);
/// The same with line breaks of values as blanks, so that no value begins a line of its own.
std::string runLine(const Finding& finding);
/// What a hint begins with among findings and in the protocol.
inline constexpr std::string_view hintMark = "Hinweis: ";
/// The line of a hint there.
std::string hintLine(const Finding& hint);
/// As a dialog says it.
std::string dialogText(const Finding& finding);
/// As a run says it, else as a dialog does.
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

  /// What the run says of those that raise the status, and of the others.
  std::vector<std::string> texts() const;
  std::vector<std::string> hints() const;
  /// One line for each of both, as lists show them.
  std::vector<std::string> lines() const;
  /// The lines of those that raise the status, each followed by CR LF.
  std::string text() const;

private:
  std::vector<Finding> list_;
};

/// The sentence and the findings, as they are appended to a job's reasons.
std::string announced(const Findings& findings);

} // namespace qx
