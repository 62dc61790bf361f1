#include "engine/contract_check.h"

#include "platform/conflict_retry.h"
#include "platform/environment.h"
#include "rules/dates.h"
#include "store/entry_objects.h"
#include "store/staging_writer.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace qx {
namespace {

bool sameContent(const Value& a, const Value& b) {
  const auto x = a.number();
  const auto y = b.number();
  if (x && y && a.kind() != ValueKind::Text && b.kind() != ValueKind::Text) return *x == *y;
  return a.text() == b.text();
}

ContractKey lineKey(Recordset& line) {
  return {line.text("Kundennummer"), line.text("Vertragsnummer"), line.text("VertrGegenstandsNr"),
          line.text("Vertragsart")};
}

/// The job for a line, among several: a pending one precedes a mark or a done one; customer contracts (40-44)
/// precede single ones (20-22).
constexpr int contractRanks = 4;
int rankOf(std::int16_t code) {
  if (code == qxtJobKundenVerträgedel) return 1;
  if (code == qxtjobkundenverträgedone) return 2;
  return kindOf(code) == qxtjobkundenverträge ? 0 : 3;
}

bool isCode(Recordset& job, JobConstants2 code) {
  return job.value("JobType").integer() == std::int64_t{code};
}

} // namespace

bool ContractComparison::differs(const JobFields& job) const {
  const auto line = openContract(activeConnection(environment_), ContractKey::of(job));
  if (line->eof()) return true;
  const auto columns = contractColumns(activeConnection(environment_), job);
  return std::ranges::any_of(columns, [&](const ContractColumn& each) {
    return !each.isKey && !sameContent(line->value(each.column), each.content);
  });
}

std::unique_ptr<Recordset> ContractComparison::stagedJobs(const ContractKey& key) const {
  return activeConnection(environment_)
      .open(sql("Select * From ImportKopf Where Kundennummer = '"_sql, value(key.customer),
                "' And JobType In (40, 41, 42, 43, 44, 20, 21, 22) And Coalesce(Vertragsnummer, '') = '"_sql,
                value(key.number), "' And Coalesce(Artikelnummer, '') = '"_sql, value(key.object),
                "' And Coalesce(Vertragsart, '') = '"_sql, value(key.kind), "'"_sql));
}

ContractState ContractComparison::state(const ContractKey& key, std::string& jobId) const {
  const auto jobs = stagedJobs(key);
  std::size_t chosen = 0;
  int best = contractRanks;
  for (std::size_t i = 0; i < jobs->recordCount(); ++i) {
    jobs->moveTo(i);
    const int rank = rankOf(jobCode(jobs->value("JobType")));
    if (rank >= best) continue;
    best = rank;
    chosen = i;
  }
  jobs->moveTo(chosen);
  jobId = jobs->text("JobID");
  if (!jobs->eof() && isCode(*jobs, qxtJobKundenVerträgedel)) return ContractState::Deleted;
  if (openContract(activeConnection(environment_), key)->eof()) return ContractState::New;
  if (jobs->eof()) return ContractState::Done;
  return differs(fieldsOf(*jobs)) ? ContractState::Changed : ContractState::Done;
}

std::int32_t ContractComparison::markUncarried(std::string_view customer) {
  return doneAgainOnConflict(environment_, "contracts", [&] { return markUncarriedOnce(customer); });
}

std::int32_t ContractComparison::markUncarriedOnce(std::string_view customer) {
  WorkUnit unit(activeConnection(environment_), nullptr, Join::IfOpen);
  std::int32_t marked = 0;
  const auto lines =
      activeConnection(environment_)
          .open(sql("Select * From Verträge Where Kundennummer = '"_sql, value(customer), "'"_sql));
  for (; !lines->eof(); lines->moveNext()) {
    const ContractKey key = lineKey(*lines);
    const auto jobs = stagedJobs(key);
    bool carried = false;
    for (; !jobs->eof(); jobs->moveNext()) {
      const auto code = jobCode(jobs->value("JobType"));
      carried |= kindOf(code) == qxtjobkundenverträge && code != qxtJobKundenVerträgedel;
    }
    if (carried) continue;
    mark(*lines, key);
    ++marked;
  }
  const auto marks = activeConnection(environment_)
                         .open(sql("Select * From ImportKopf Where JobType = 44 And Kundennummer = '"_sql,
                                   value(customer), "'"_sql));
  for (; !marks->eof(); marks->moveNext()) {
    const ContractKey key{marks->text("Kundennummer"), marks->text("Vertragsnummer"),
                          marks->text("Artikelnummer"), marks->text("Vertragsart")};
    bool keep = !openContract(activeConnection(environment_), key)->eof();
    const auto jobs = stagedJobs(key);
    for (; !jobs->eof(); jobs->moveNext()) {
      const auto code = jobCode(jobs->value("JobType"));
      keep &= kindOf(code) != qxtjobkundenverträge || code == qxtJobKundenVerträgedel;
    }
    if (!keep)
      activeConnection(environment_)
          .execute(sql("Delete From ImportKopf Where JobID = '"_sql, value(marks->text("JobID")), "'"_sql));
  }
  unit.commit();
  return marked;
}

/// Adds one job of code 44 with the line's values; an existing mark is reused.
void ContractComparison::mark(Recordset& line, const ContractKey& key) {
  const auto jobs = stagedJobs(key);
  while (!jobs->eof() && !isCode(*jobs, qxtJobKundenVerträgedel)) jobs->moveNext();
  if (jobs->eof()) {
    jobs->addNew();
    jobs->set("JobID", Value(newJobKey(environment_)));
    jobs->set("JobType", Value(std::int16_t{qxtJobKundenVerträgedel}));
    jobs->set("Eingangsdatum", Value(germanDate(NowEx(environment_))));
  }
  jobs->set("ImportType", Value(stagedImportType));
  jobs->set("Status", Value(static_cast<std::int16_t>(CheckStatus::Clean)));
  for (const ContractPair& field : contractPairs()) {
    if (field.role == ContractPair::Role::Repeats) continue;
    // A table without the contract's own remark has it in the job's.
    const bool carried = field.line != ColumnName("Bemerkung") || jobs->hasField(field.staged);
    const ColumnName staged = carried ? field.staged : ColumnName("Bemerkung");
    if (!jobs->hasField(staged)) continue;
    const Value& stored = line.value(field.line);
    const bool open = field.line == ColumnName("Vertragsende") && stored.textView() == openContractEnd;
    jobs->set(staged, open ? Value::null() : stored);
  }
  jobs->update();
}

} // namespace qx
