#include "engine/code_rules.h"

#include <string>

namespace qx {
namespace {

/// The master table of a field; most have the same name.
std::string_view masterOf(std::string_view field) {
  if (field == "Vertreter1") return "Vertreter";
  if (field == "WährungEingabe") return "Währung";
  return field;
}

} // namespace

Findings unknownCode(const MasterData& masterData, const JobFields& job, Rule rule) {
  const std::string_view field = terms(rule).field;
  const std::string code = (field == "Bankleitzahl" ? bankCode(job) : job(ColumnName(field))).text();
  if (code.empty() || masterData.codeExists(masterOf(field), code)) return {};
  return {Finding(rule, code)};
}

} // namespace qx
