#include "engine/erp_number.h"

#include "model/job_codes.h"

#include <algorithm>

namespace qx {
namespace {

constexpr std::string_view mark = " Auftrag: ";

/// What somebody has written behind the number hides it.
std::string orderOf(std::string_view remark) {
  const auto at = remark.rfind(mark);
  if (at == std::string_view::npos) return {};
  const std::string_view number = remark.substr(at + mark.size());
  const bool isNumber =
      !number.empty() && std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; });
  return std::string(isNumber ? number : std::string_view());
}

} // namespace

std::string remarkWithOrder(std::string_view remark, std::int32_t order) {
  return std::string(remark).append(mark).append(std::to_string(order));
}

std::string erpNumber(Recordset& header) {
  const auto jobType = jobCode(header.value("JobType"));
  if (stateOf(jobType) != JobState::Done) return {};
  switch (kindOf(jobType)) {
  case qxtjobkunden:
    return header.text("Kundennummer");
  case qxtjobverträge:
  case qxtjobkundenverträge:
    return header.text("Vertragsnummer");
  case qxtJobAufträge:
    return orderOf(header.text("Bemerkung"));
  default:
    return {};
  }
}

} // namespace qx
