#include "convert/job_properties.h"

#include "model/entry_records.h"
#include "model/import_job.h"

#include <algorithm>
#include <array>

namespace qx::convert {
namespace {

constexpr std::array<std::string_view, 3> kindNames{"Kunde", "Vertrag", "Auftrag"};

template <class Table>
std::optional<JobProperty> findIn(const Table& table, std::string_view name, bool ofPosition) {
  const std::size_t index = fieldIndex(table, name);
  if (index == table.size()) return std::nullopt;
  return JobProperty{table[index].name, table[index].kind, ofPosition};
}

} // namespace

std::optional<JobKind> jobKindOf(std::string_view name) {
  const auto* const found = std::ranges::find(kindNames, name);
  if (found == kindNames.end()) return std::nullopt;
  return static_cast<JobKind>(found - kindNames.begin());
}

std::string_view nameOf(JobKind kind) { return kindNames.at(static_cast<std::size_t>(kind)); }

ObjectKind objectKindOf(JobKind kind) {
  switch (kind) {
  case JobKind::Kunde:
    return ObjectKind::Customer;
  case JobKind::Vertrag:
    return ObjectKind::Contract;
  case JobKind::Auftrag:
    break;
  }
  return ObjectKind::Order;
}

std::optional<JobProperty> propertyOf(JobKind kind, std::string_view name) {
  const bool ofPosition = name.starts_with(positionPrefix);
  if (ofPosition) name.remove_prefix(positionPrefix.size());
  switch (kind) {
  case JobKind::Kunde:
    return ofPosition ? std::nullopt : findIn(kundeFields, name, false);
  case JobKind::Vertrag:
    return ofPosition ? findIn(importJobSubItemFields, name, true) : findIn(vertragFields, name, false);
  case JobKind::Auftrag:
    break;
  }
  return ofPosition ? findIn(auftragsPosFields, name, true) : findIn(auftragFields, name, false);
}

} // namespace qx::convert
