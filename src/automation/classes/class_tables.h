// The public classes, each with its table.
#pragma once

#include "automation/class_table.h"
#include "engine/import_job_object2.h"
#include "model/import_job.h"
#include "model/job_codes.h"
#include "platform/erp_components.h"
#include "store/entry_objects.h"
#include "store/import_job_object.h"

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace qx::automation {

template <>
struct ClassOf<Kunde> {
  static constexpr std::string_view name = "Kunde";
  static const ClassTable& table();
};
template <>
struct ClassOf<Vertrag> {
  static constexpr std::string_view name = "Vertrag";
  static const ClassTable& table();
};
template <>
struct ClassOf<Auftrag> {
  static constexpr std::string_view name = "Auftrag";
  static const ClassTable& table();
};
template <>
struct ClassOf<AuftragsPos> {
  static constexpr std::string_view name = "AuftragsPos";
  static const ClassTable& table();
};
template <>
struct ClassOf<ImportJob> {
  static constexpr std::string_view name = "ImportJob";
  static const ClassTable& table();
};
template <>
struct ClassOf<ImportJobSubItem> {
  static constexpr std::string_view name = "ImportJobSubItem";
  static const ClassTable& table();
};
template <>
struct ClassOf<ImportJobs> {
  static constexpr std::string_view name = "ImportJobs";
  static const ClassTable& table();
};
template <>
struct ClassOf<ImportJobSubItems> {
  static constexpr std::string_view name = "ImportJobSubItems";
  static const ClassTable& table();
};
template <>
struct ClassOf<ImportJobObject> {
  static constexpr std::string_view name = "ImportJobObject";
  static const ClassTable& table();
};
template <>
struct ClassOf<ImportJobObject2> {
  static constexpr std::string_view name = "ImportJobObject2";
  static const ClassTable& table();
};

/// The connection and the session of the component itself, which hosts get but cannot create.
template <>
struct ClassOf<Connection> {
  static constexpr std::string_view name = "Connection";
  static const ClassTable& table();
};
template <>
struct ClassOf<Session> {
  static constexpr std::string_view name = "Session";
  static const ClassTable& table();
};
template <>
struct ClassOf<Umrechnungen> {
  static constexpr std::string_view name = "Umrechnungen";
  static const ClassTable& table();
};

/// The classes that a host can create, in the order of the documents.
std::span<const ClassTable* const> publicClasses();

/// The ids of the events of `ImportJobObject2`.
enum class EventId : DispatchId { JobViewUnload = 1, ProcessProgress = 2, ProcessInfo = 3 };

/// A public enumeration.
struct EnumerationTable {
  struct Constant {
    std::string_view name;
    std::int32_t value = 0;
  };
  std::string_view name;
  std::string_view help;
  std::vector<Constant> constants;
};
const std::vector<EnumerationTable>& publicEnumerations();

} // namespace qx::automation
