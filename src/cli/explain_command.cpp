#include "cli/commands.h"

#include "cli/job_terms.h"
#include "cli/json_members.h"
#include "model/text.h"
#include "store/job_list.h"
#include "store/json_writer.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace qx::cli {
namespace {

std::vector<const RuleTerms*> rulesOf(std::string_view subject) {
  std::vector<const RuleTerms*> rules;
  for (const RuleTerms& row : allTerms())
    if (row.code == subject || (!subject.empty() && row.dialog.code == subject)) rules.push_back(&row);
  if (subject.starts_with(hintMark)) subject.remove_prefix(hintMark.size());
  if (rules.empty())
    for (const RuleTerms& row : allTerms())
      if (says(row, subject)) rules.push_back(&row);
  return rules;
}

void printRule(std::ostream& output, const RuleTerms& row) {
  const auto line = [&](std::string_view name, std::string_view content) {
    if (!content.empty()) output << "  " << name << oneLine(content) << '\n';
  };
  output << row.code << '\n';
  line("Art        ", severityWord(row.severity));
  line("Text       ", withoutValues(row, row.run));
  line("Kürzel     ", row.dialog.code);
  line("im Fenster ", withoutValues(row, row.dialog.text));
  line("Feld       ", row.field);
  line("Was tun    ", row.remedy);
  line("Anmerkung  ", row.note);
}

void writeRules(JsonWriter& json, const std::vector<const RuleTerms*>& rules) {
  json.key("rules").beginArray();
  for (const RuleTerms* row : rules) {
    json.beginObject().key("code").text(row->code);
    json.key("severity").number(static_cast<std::int64_t>(row->severity));
    json.key("text").text(row->run);
    json.key("dialogCode").text(row->dialog.code).key("dialogText").text(row->dialog.text);
    json.key("field").text(row->field).key("control").text(row->dialog.control);
    json.key("remedy").text(row->remedy).key("note").text(row->note).endObject();
  }
  json.endArray();
}

void printFinding(std::ostream& output, const Finding& finding) {
  output << "  " << oneLine(anyText(finding)) << '\n';
  output << "    " << severityWord(finding.severity) << ' ' << terms(finding.rule).code;
  if (!finding.position.number.empty()) output << ", Position " << oneLine(finding.position.number);
  if (!finding.fieldName().empty()) output << ", Feld " << finding.fieldName();
  if (!finding.value.empty()) output << ", im Vorgang '" << oneLine(finding.value) << "'";
  if (!finding.stored.empty()) output << ", im Stamm '" << oneLine(finding.stored) << "'";
  output << "\n    " << terms(finding.rule).remedy << '\n';
}

/// The lines of a job's reasons that are no current finding, each with its rules.
std::vector<std::pair<std::string, std::vector<const RuleTerms*>>> reasonsOf(std::string_view reasons,
                                                                             const Findings& findings) {
  const std::vector<std::string> known = findings.lines();
  std::vector<std::pair<std::string, std::vector<const RuleTerms*>>> explained;
  while (!reasons.empty()) {
    const std::size_t end = std::min(reasons.find("\r\n"), reasons.size());
    const std::string line(reasons.substr(0, end));
    reasons.remove_prefix(std::min(end + 2, reasons.size()));
    if (std::ranges::find(known, line) != known.end()) continue;
    if (auto rules = rulesOf(line); !rules.empty()) explained.emplace_back(line, std::move(rules));
  }
  return explained;
}

} // namespace

ExitCode ExplainCommand::run(Installation& installation, const Output& output) {
  const auto rules = rulesOf(subject);
  if (rules.empty()) return explainJob(installation, output);
  if (output.json) {
    JsonWriter json(output.result);
    json.beginObject();
    writeRules(json, rules);
    json.endObject().finish();
  } else {
    for (const RuleTerms* row : rules) printRule(output.result, *row);
  }
  return ExitCode::Success;
}

ExitCode ExplainCommand::explainJob(Installation& installation, const Output& output) const {
  Environment& environment = installation.open();
  ImportJobObject2 engine(environment);
  const auto job = findJob(*environment.connection, subject);
  if (!job)
    throw ProgramError(ExitCode::BadInput,
                       "'" + subject + "' is neither a code nor a text of a finding nor a job",
                       "Codes and texts are in docs/befunde.md, jobs are listed by: qximportjob list");
  const Findings findings = engine.checkJob(subject);
  const auto reasons = reasonsOf(readJobReasons(*environment.connection, subject), findings);
  if (output.json) {
    std::vector<const RuleTerms*> rules;
    for (const Finding& finding : findings) rules.push_back(&terms(finding.rule));
    for (const auto& [line, sayingIt] : reasons) rules.insert(rules.end(), sayingIt.begin(), sayingIt.end());
    std::ranges::sort(rules);
    rules.erase(std::unique(rules.begin(), rules.end()), rules.end());
    JsonWriter json(output.result);
    json.beginObject().key("JobID").text(job->jobId);
    writeCheck(json, findings);
    writeRules(json, rules);
    json.endObject().finish();
    return ExitCode::Success;
  }
  output.result << processText(job->jobType) << ' ' << oneLine(job->number) << "  " << oneLine(job->jobId)
                << '\n';
  if (findings.empty() && reasons.empty()) output.result << "  keine Befunde\n";
  for (const Finding& finding : findings) printFinding(output.result, finding);
  for (const auto& [line, rules] : reasons) {
    output.result << "  " << line << "\n    aus der letzten Verarbeitung: " << rules.front()->code << "\n    "
                  << rules.front()->remedy << '\n';
  }
  return ExitCode::Success;
}

} // namespace qx::cli
