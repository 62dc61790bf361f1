#include "ui/finding_list.h"

#include <algorithm>

namespace qx {

void FindingList::report(bool fine, Finding finding, std::optional<bool> counts) {
  const RuleTerms& row = terms(finding.rule);
  Key place = key(finding.position.key, row.dialog.code);
  if (fine) {
    findings_.erase(place);
    return;
  }
  const auto [entry, isNew] = findings_.try_emplace(std::move(place));
  if (isNew) entry->second.number = arrived_++;
  entry->second.finding = {std::move(finding), counts.value_or(row.counts)};
}

void FindingList::report(const Findings& found, std::initializer_list<Rule> rules) {
  for (const Rule rule : rules) {
    const auto sameCode = [&](const Finding& each) {
      return terms(each.rule).dialog.code == terms(rule).dialog.code;
    };
    if (std::ranges::none_of(found, sameCode)) clear(rule);
    if (const auto broken = std::ranges::find(found, rule, &Finding::rule); broken != found.end())
      report(false, *broken);
  }
}

void FindingList::report(const std::optional<Finding>& found, std::span<const Rule> rules,
                         bool customerSpecific, const FindingPosition& position) {
  const auto code = [](Rule rule) { return terms(rule).dialog.code; };
  for (const Rule rule : rules)
    if (!found || code(rule) != code(found->rule)) report(true, Finding(rule).at(position));
  if (found) report(false, Finding(*found).at(position), terms(found->rule).countsWhere(customerSpecific));
}

void FindingList::clearItem(std::string_view item) {
  auto entry = findings_.lower_bound(key(item, ""));
  while (entry != findings_.end() && entry->first.first == item) entry = findings_.erase(entry);
}

std::vector<ListedFinding> FindingList::sorted() const {
  std::vector<const Entry*> order;
  order.reserve(findings_.size());
  for (const auto& [key, entry] : findings_) order.push_back(&entry);
  std::sort(order.begin(), order.end(), [](const Entry* a, const Entry* b) {
    if (a->finding.found.severity != b->finding.found.severity)
      return a->finding.found.severity > b->finding.found.severity;
    return a->number < b->number;
  });
  std::vector<ListedFinding> findings;
  findings.reserve(order.size() + hints_.size());
  for (const Entry* entry : order) findings.push_back(entry->finding);
  for (const Finding& hint : hints_) findings.push_back({hint, false});
  return findings;
}

CheckStatus FindingList::status() const {
  CheckStatus status = CheckStatus::Clean;
  for (const auto& [key, entry] : findings_)
    if (entry.finding.counts) status = worse(status, entry.finding.found.severity);
  return status;
}

CheckStatus FindingList::statusOf(std::string_view item) const {
  CheckStatus status = CheckStatus::Clean;
  for (auto entry = findings_.lower_bound(key(item, ""));
       entry != findings_.end() && entry->first.first == item; ++entry)
    status = worse(status, entry->second.finding.found.severity);
  return status;
}

const ListedFinding* FindingList::find(std::string_view code, std::string_view item) const {
  const auto entry = findings_.find(key(item, code));
  return entry == findings_.end() ? nullptr : &entry->second.finding;
}

} // namespace qx
