#include "engine/findings.h"

#include "engine/job_marks.h"
#include "model/german_text.h"
#include "model/text.h"
#include <algorithm>
#include <iterator>

namespace qx {
namespace {

using TextOfValue = std::string (*)(std::string_view);

std::string asItIs(std::string_view text) { return std::string(text); }

std::string withTwoDecimals(const std::string& number) {
  return germanDecimals(parseEnteredNumber(number).value_or(0), 2);
}

/// Replaces the placeholders of the pattern by the values of the finding.
std::string filled(std::string_view pattern, const Finding& finding, TextOfValue shown) {
  std::string text;
  while (!pattern.empty()) {
    const std::size_t begin = std::min(pattern.find('{'), pattern.size());
    text += pattern.substr(0, begin);
    pattern.remove_prefix(begin);
    const std::size_t end = pattern.find('}');
    if (pattern.empty() || end == std::string_view::npos) break;
    const std::string_view place = pattern.substr(1, end - 1);
    if (place == "field")
      text += finding.fieldName();
    else if (place == "value")
      text += shown(finding.value);
    else if (place == "stored")
      text += shown(finding.stored);
    else if (place == "value.00")
      text += withTwoDecimals(finding.value);
    else if (place == "stored.00")
      text += withTwoDecimals(finding.stored);
    pattern.remove_prefix(end + 1);
  }
  return text;
}

} // namespace

std::string_view severityWord(CheckStatus severity) {
  if (severity == CheckStatus::Clean) return "Hinweis";
  return severity == CheckStatus::Warning ? "Warnung" : "Fehler";
}

std::string runText(const Finding& finding) { return filled(terms(finding.rule).run, finding, asItIs); }

std::string runLine(const Finding& finding) { return filled(terms(finding.rule).run, finding, oneLine); }

std::string hintLine(const Finding& hint) { return std::string(hintMark) + runLine(hint); }

std::string dialogText(const Finding& finding) {
  const RuleTerms& row = terms(finding.rule);
  return filled(row.dialog.text.empty() ? row.run : row.dialog.text, finding, asItIs);
}

std::string anyText(const Finding& finding) {
  std::string text = runText(finding);
  return text.empty() ? dialogText(finding) : text;
}

void Findings::append(Findings others) { std::ranges::move(others.list_, std::back_inserter(list_)); }

CheckStatus Findings::status() const {
  CheckStatus status = CheckStatus::Clean;
  for (const Finding& finding : list_) status = worse(status, finding.severity);
  return status;
}

bool Findings::holds(Rule rule) const {
  return std::ranges::find(list_, rule, &Finding::rule) != list_.end();
}

std::vector<std::string> Findings::texts() const {
  std::vector<std::string> texts;
  for (const Finding& finding : list_)
    if (!finding.isHint() && !terms(finding.rule).run.empty()) texts.push_back(runText(finding));
  return texts;
}

std::vector<std::string> Findings::hints() const {
  std::vector<std::string> texts;
  for (const Finding& finding : list_)
    if (finding.isHint()) texts.push_back(runText(finding));
  return texts;
}

std::vector<std::string> Findings::lines() const {
  std::vector<std::string> lines;
  for (const Finding& finding : list_)
    if (finding.isHint() || !terms(finding.rule).run.empty())
      lines.push_back(finding.isHint() ? hintLine(finding) : runLine(finding));
  return lines;
}

std::string Findings::text() const {
  std::string text;
  for (const Finding& finding : list_)
    if (!finding.isHint() && !terms(finding.rule).run.empty()) text.append(runLine(finding)).append(crlf);
  return text;
}

std::string announced(const Findings& findings) {
  std::string text(findingsSentence);
  appendLine(text, findings.text());
  return text;
}

} // namespace qx
