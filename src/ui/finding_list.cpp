#include "ui/finding_list.h"

#include <algorithm>

namespace qx {

void FindingList::report(ListedFinding finding) {
  if (finding.severity == CheckStatus::Clean) {
    clear(finding.code, finding.item);
    return;
  }
  const auto [entry, isNew] = findings_.try_emplace(key(finding.item, finding.code));
  if (isNew) entry->second.number = arrived_++;
  entry->second.finding = std::move(finding);
}

void FindingList::clear(std::string_view code, std::string_view item) { findings_.erase(key(item, code)); }

void FindingList::clearItem(std::string_view item) {
  auto entry = findings_.lower_bound(key(item, ""));
  while (entry != findings_.end() && entry->first.first == item) entry = findings_.erase(entry);
}

std::vector<ListedFinding> FindingList::sorted() const {
  std::vector<const Entry*> order;
  order.reserve(findings_.size());
  for (const auto& [key, entry] : findings_) order.push_back(&entry);
  std::sort(order.begin(), order.end(), [](const Entry* a, const Entry* b) {
    if (a->finding.severity != b->finding.severity) return a->finding.severity > b->finding.severity;
    return a->number < b->number;
  });
  std::vector<ListedFinding> findings;
  findings.reserve(order.size());
  for (const Entry* entry : order) findings.push_back(entry->finding);
  return findings;
}

CheckStatus FindingList::status() const {
  CheckStatus status = CheckStatus::Clean;
  for (const auto& [key, entry] : findings_)
    if (entry.finding.counts) status = worse(status, entry.finding.severity);
  return status;
}

CheckStatus FindingList::statusOf(std::string_view item) const {
  CheckStatus status = CheckStatus::Clean;
  for (auto entry = findings_.lower_bound(key(item, ""));
       entry != findings_.end() && entry->first.first == item; ++entry)
    status = worse(status, entry->second.finding.severity);
  return status;
}

const ListedFinding* FindingList::find(std::string_view code, std::string_view item) const {
  const auto entry = findings_.find(key(item, code));
  return entry == findings_.end() ? nullptr : &entry->second.finding;
}

} // namespace qx
