#include "engine/order_check.h"

#include <utility>

namespace qx {

Findings OrderCheck::CheckAuftrag(std::string_view JobID, OrderFacts& facts, Findings* hints) const {
  Findings findings;
  // The known form of this statement lacks the closing bracket.
  const auto row =
      activeConnection(master_.environment)
          .open(sql("SELECT * FROM ImportKopf Where (ImportKopf.JobType = 30 or ImportKopf.JobType = 31 or "
                    "ImportKopf.JobType = 32) And (ImportKopf.JobID ='"_sql,
                    value(JobID), "')"_sql));
  if (row->eof()) return findings;
  const JobFields job = fieldsOf(*row);
  // A parked order's Fehlertext is the result of the last check, not a new finding.
  const bool isWaiting = stateOf(jobCode(row->value("JobType"))) == JobState::Waiting;
  for (const HeaderRule& rule : headerRules())
    if (isWaiting || rule.rules.front() != Rule::EarlierReasons)
      if (auto found = rule.broken(master_, job)) findings.add(std::move(*found));
  findings.append(checkPositions(JobID, facts, hints));
  return findings;
}

Findings OrderCheck::checkPositions(std::string_view jobId, OrderFacts& facts, Findings* hints) const {
  Findings findings;
  const auto positions =
      activeConnection(master_.environment)
          .open(sql("SELECT * FROM ImportPos Where ImportPos.JobID ='"_sql, value(jobId), "'"_sql));
  if (positions->eof()) findings.add(Finding(Rule::OrderNoPositions));
  const JobFields position = fieldsOf(*positions);
  for (; !positions->eof(); positions->moveNext()) {
    PositionFacts& known = facts.of(position);
    bool priceDiffers = false;
    for (const PositionRule& rule : positionRules()) {
      auto found = rule.broken(master_, position, known);
      if (!found ||
          !(terms(found->rule).countsWhere(master_.options.customerSpecific) ||
            (found->rule == Rule::OrderPriceDiffers && exceedsDeviation(master_.options, position, known))))
        continue;
      priceDiffers = priceDiffers || found->rule == Rule::OrderPriceDiffers;
      findings.add(std::move(*found).at(positionOf(position)));
    }
    if (hints == nullptr || priceDiffers) continue;
    if (auto hint = replacedPrice(position, known)) hints->add(std::move(*hint));
  }
  return findings;
}

} // namespace qx
