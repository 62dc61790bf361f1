#include "ui/finding_list.h"

#include <algorithm>
#include <utility>

namespace qx {

void FindingList::report(Finding finding) {
  const auto same = std::find_if(findings_.begin(), findings_.end(), [&](const Finding& held) {
    return held.code == finding.code && held.item == finding.item;
  });
  if (finding.severity == CheckStatus::Clean) {
    if (same != findings_.end()) findings_.erase(same);
  } else if (same != findings_.end()) {
    *same = std::move(finding);
  } else {
    findings_.push_back(std::move(finding));
  }
}

void FindingList::clear(std::string_view code, std::string_view item) {
  std::erase_if(findings_, [&](const Finding& held) { return held.code == code && held.item == item; });
}

void FindingList::clearItem(std::string_view item) {
  std::erase_if(findings_, [&](const Finding& held) { return held.item == item; });
}

std::vector<Finding> FindingList::sorted() const {
  std::vector<Finding> worstFirst = findings_;
  std::stable_sort(worstFirst.begin(), worstFirst.end(),
                   [](const Finding& a, const Finding& b) { return a.severity > b.severity; });
  return worstFirst;
}

CheckStatus FindingList::status() const {
  CheckStatus status = CheckStatus::Clean;
  for (const Finding& finding : findings_)
    if (finding.code != processingErrorCode) status = worse(status, finding.severity);
  return status;
}

CheckStatus FindingList::statusOf(std::string_view item) const {
  CheckStatus status = CheckStatus::Clean;
  for (const Finding& finding : findings_)
    if (finding.item == item) status = worse(status, finding.severity);
  return status;
}

} // namespace qx
