#include "store/entry_objects.h"

#include "model/job_codes.h"
#include "platform/conflict_retry.h"
#include "platform/failure.h"
#include "settings/settings.h"
#include "store/job_file_text.h"
#include "store/job_lines.h"
#include "store/staging_writer.h"
#include "store/state_feed.h"

#include <optional>
#include <stdexcept>
#include <utility>

namespace qx {
namespace {

constexpr auto customerTextOrder = fieldOrder(kundeFields, customerTextLine);
constexpr auto orderTailOrder = fieldOrder(auftragFields, orderTextTail);
constexpr auto positionTailOrder = fieldOrder(auftragsPosFields, orderTextTail);

template <class Record, std::size_t fields, std::size_t named>
void appendFields(std::string& line, const Record& record, const FieldTable<Record, fields>& table,
                  const std::array<std::size_t, named>& order) {
  for (const std::size_t index : order)
    appendFileField(line, index == noProperty ? std::string() : fileText(table[index], record));
}

/// The write behind `AddItem`, with every failure trapped.
template <class Write>
void addItem(const Environment& environment, std::string_view where, std::string_view key,
             Write&& write) noexcept {
  trapped(environment.diagnostics, {where, key}, std::forward<Write>(write));
}

/// A job that is replaced may be in another state.
template <class Record>
void addJob(Environment& environment, const Record& record, std::string_view where) noexcept {
  addItem(environment, where, record.JobID, [&] {
    doneAgainOnConflict(environment, where, [&] {
      WorkUnit unit(activeConnection(environment), nullptr, Join::IfOpen);
      const auto before = writeStaged(activeConnection(environment), record);
      if (before && *before != record.JobType)
        tellChange(environment, {record.JobID, record.JobType, {}, {}});
      unit.commit();
    });
  });
}

template <class Record>
void startHeader(Record& record, const Environment& environment, std::int16_t jobType) {
  record.JobID = newJobKey(environment);
  record.JobType = jobType;
  record.Status = static_cast<std::int16_t>(CheckStatus::Clean);
  record.Eingangsdatum = dateOfReceipt(environment);
}

} // namespace

std::string dateOfReceipt(const Environment& environment) noexcept {
  try {
    if (environment.session) return germanDate(environment.session->GetSessionDate());
  } catch (const std::exception& failure) {
    environment.diagnostics.report({"dateOfReceipt", failure.what(), {}});
  }
  return germanDate(environment.clock.now().date);
}

Kunde::Kunde(Environment& environment) : environment_(&environment) {
  startHeader(*this, environment, qxtjobkunden);
}

void Kunde::AddItem() const noexcept { addJob<KundeFields>(*environment_, *this, "Kunde.AddItem"); }

std::string Kunde::FormatItemCSV() const {
  std::string line;
  appendFields<KundeFields>(line, *this, kundeFields, customerTextOrder);
  return line;
}

Vertrag::Vertrag(Environment& environment) : environment_(&environment) {
  startHeader(*this, environment, qxtjobverträge);
}

void Vertrag::AddItem() const noexcept { addJob<VertragFields>(*environment_, *this, "Vertrag.AddItem"); }

std::string Vertrag::FormatItemCSV() const {
  std::string line;
  appendFields<VertragFields>(line, *this, vertragFields, contractLineOrder);
  return line;
}

Auftrag::Auftrag(Environment& environment) : environment_(&environment) {
  startHeader(*this, environment, qxtJobAufträge);
  environment.currentOrder = JobID;
}

void Auftrag::AddItem() const noexcept { addJob<AuftragFields>(*environment_, *this, "Auftrag.AddItem"); }

std::string Auftrag::FormatItemCSV() const {
  std::string line;
  appendFields<AuftragFields>(line, *this, auftragFields, orderLineOrder);
  appendFields<AuftragFields>(line, *this, auftragFields, orderTailOrder);
  return line;
}

ReadyFlags ReadyFlags::read(Environment& environment) {
  const Settings settings(environment);
  return {settings[option::readyForDelivery], settings[option::readyForInvoice]};
}

AuftragsPos::AuftragsPos(Environment& environment)
    : AuftragsPos(environment, ReadyFlags::read(environment)) {}

AuftragsPos::AuftragsPos(Environment& environment, const ReadyFlags& flags) : environment_(&environment) {
  JobID = environment.currentOrder;
  ChildID = newJobKey(environment);
  JobType = qxtJobAuftragsPos;
  Lieferbereit = flags.Lieferbereit;
  Fakturierbereit = flags.Fakturierbereit;
}

void AuftragsPos::AddItem() const noexcept {
  addItem(*environment_, "AuftragsPos.AddItem", ChildID, [this] {
    writeStaged(activeConnection(*environment_), static_cast<const AuftragsPosFields&>(*this));
  });
}

std::string AuftragsPos::FormatItemCSV() const {
  std::string line;
  appendFields<AuftragsPosFields>(line, *this, auftragsPosFields, positionLineOrder);
  appendFields<AuftragsPosFields>(line, *this, auftragsPosFields, positionTailOrder);
  return line;
}

std::string newJobKey(const Environment& environment) {
  std::optional<GuidFields> guid;
  trapped(environment.diagnostics, {"newJobKey"}, [&] {
    guid = environment.guids.create();
    if (!guid) throw std::runtime_error("the system could not generate a key");
  });
  return jobKey(guid);
}

} // namespace qx
