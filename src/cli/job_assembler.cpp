#include "cli/job_assembler.h"

#include "model/job_codes.h"
#include "model/text.h"
#include "program/program_error.h"
#include "store/entry_objects.h"
#include "store/staging_writer.h"

#include <type_traits>
#include <utility>

namespace qx::cli {
namespace {

constexpr std::size_t longestKey = 32;

/// The initial values of an entry object without its key: every job gets its own.
template <class Fields>
Fields initial(const Fields& object) {
  Fields fields = object;
  fields.JobID.clear();
  if constexpr (std::is_same_v<Fields, AuftragsPosFields>) fields.ChildID.clear();
  return fields;
}

/// Sets the columns of a new row; those that the object does not mention become null.
template <class Builder>
void fill(RowValues& row, Builder& builder) {
  setStaged(row, builder.record());
  for (const ColumnName column : builder.unspoken()) row.set(column, Value::null());
}

ImportJobSubItem initialContractPosition() {
  ImportJobSubItem position;
  position.JobType = qxtJobTypeSubItem;
  return position;
}

} // namespace

JobAssembler::JobAssembler(Environment& environment, BulkStaging& jobs, std::string fileName)
    : environment_(environment), jobs_(jobs), fileName_(std::move(fileName)),
      kunde_(initial<KundeFields>(Kunde(environment))),
      vertrag_(initial<VertragFields>(Vertrag(environment))),
      auftrag_(initial<AuftragFields>(Auftrag(environment))),
      orderPosition_(initial<AuftragsPosFields>(AuftragsPos(environment, ReadyFlags::read(environment)))),
      contractPosition_(initialContractPosition()),
      keptHeader_(activeConnection(environment), sql("Select * From ImportKopf Where 0 = 1"_sql)),
      keptPosition_(activeConnection(environment), sql("Select * From ImportPos Where 0 = 1"_sql)) {}

void JobAssembler::refuse(std::int64_t line, std::string_view field, std::string_view reason) const {
  std::string message = "object " + std::to_string(jobNumber_) + ": ";
  if (!field.empty()) message += "property \"" + std::string(field) + "\": ";
  message += reason;
  throw ProgramError(
      ExitCode::BadInput, message,
      "Nothing was staged. Correct the file and stage it again; docs/cli.md lists the properties.",
      {fileName_, line, std::string(field)});
}

void JobAssembler::refusePosition(std::int64_t line, std::string_view field, std::string_view reason) const {
  std::string path = "Positionen[" + std::to_string(positionNumber_) + "]";
  if (!field.empty()) path += "." + std::string(field);
  refuse(line, path, reason);
}

void JobAssembler::beginJob(std::int64_t line) {
  ++jobNumber_;
  jobLine_ = line;
  type_ = Type::Unknown;
  typeLine_ = 0;
  positionsLine_ = 0;
  positionNumber_ = 0;
  waitingProperties_.clear();
  waitingPositions_.clear();
}

void JobAssembler::property(StageProperty property) {
  if (property.name == "type") {
    setType(property);
  } else if (property.name == "Positionen") {
    // An array arrives by beginPositions.
    if (!std::holds_alternative<std::monostate>(property.value))
      refuse(property.line, property.name,
             "an array of objects is expected, not " + std::string(describe(property.value)));
    beginPositions(property);
  } else if (type_ == Type::Unknown) {
    waitingProperties_.push_back(std::move(property));
  } else {
    addToJob(property);
  }
}

void JobAssembler::setType(const StageProperty& type) {
  if (typeLine_ != 0)
    refuse(type.line, "type", "the property is already given on line " + std::to_string(typeLine_));
  const auto* text = std::get_if<std::string>(&type.value);
  if (text == nullptr)
    refuse(type.line, "type", "a text is expected, not " + std::string(describe(type.value)));
  typeLine_ = type.line;
  if (*text == "Kunde")
    type_ = Type::Kunde;
  else if (*text == "Vertrag")
    type_ = Type::Vertrag;
  else if (*text == "Auftrag")
    type_ = Type::Auftrag;
  else if (*text == keptType)
    type_ = Type::Kept;
  else
    refuse(type.line, "type", "\"" + *text + "\" is not a type; the types are Kunde, Vertrag and Auftrag");
  kunde_.begin();
  vertrag_.begin();
  auftrag_.begin();
  keptHeader_.begin();
  if (positionsLine_ != 0) allowPositions();
  for (StageProperty& waiting : waitingProperties_) addToJob(waiting);
  positionNumber_ = 0;
  for (WaitingPosition& position : waitingPositions_) {
    beginPosition(position.line);
    for (StageProperty& waiting : position.properties) addToPosition(waiting);
    finishPosition();
  }
  waitingProperties_.clear();
  waitingPositions_.clear();
}

void JobAssembler::addToJob(StageProperty& property) {
  std::optional<std::string> wrong;
  switch (type_) {
  case Type::Kunde:
    wrong = kunde_.add(property, false);
    break;
  case Type::Vertrag:
    wrong = vertrag_.add(property, true);
    break;
  case Type::Kept:
    wrong = keptHeader_.add(property);
    break;
  default:
    wrong = auftrag_.add(property, false);
    break;
  }
  if (wrong) refuse(property.line, property.name, *wrong);
}

void JobAssembler::beginPositions(const StageProperty& key) {
  if (positionsLine_ != 0)
    refuse(key.line, key.name, "the property is already given on line " + std::to_string(positionsLine_));
  positionsLine_ = key.line;
  if (type_ != Type::Unknown) allowPositions();
}

void JobAssembler::allowPositions() const {
  if (type_ == Type::Kunde) refuse(positionsLine_, "Positionen", "the type has no such property");
}

void JobAssembler::beginPosition(std::int64_t line) {
  ++positionNumber_;
  positionLine_ = line;
  if (type_ == Type::Unknown) {
    waitingPositions_.push_back({line, {}});
  } else {
    orderPosition_.begin();
    contractPosition_.begin();
    keptPosition_.begin();
  }
}

void JobAssembler::positionProperty(StageProperty property) {
  if (type_ == Type::Unknown)
    waitingPositions_.back().properties.push_back(std::move(property));
  else
    addToPosition(property);
}

void JobAssembler::addToPosition(StageProperty& property) {
  const auto wrong = type_ == Type::Kept      ? keptPosition_.add(property)
                     : type_ == Type::Vertrag ? contractPosition_.add(property, true)
                                              : orderPosition_.add(property, false);
  if (wrong) refusePosition(property.line, property.name, *wrong);
}

void JobAssembler::endPosition() {
  if (type_ != Type::Unknown) finishPosition();
}

void JobAssembler::finishPosition() {
  if (type_ == Type::Kept)
    finishKeptPosition();
  else if (type_ == Type::Vertrag)
    finishPosition(contractPosition_, qxtJobTypeSubItem);
  else
    finishPosition(orderPosition_, qxtJobAuftragsPos);
}

template <class Builder>
void JobAssembler::finishPosition(Builder& builder, std::int16_t code) {
  auto& record = builder.record();
  if (record.JobType != code)
    refusePosition(builder.line("JobType"), "JobType",
                   "the code of these positions is " + std::to_string(code));
  record.JobID = checkedKey(std::move(record.JobID), builder.line("JobID"), "JobID", true);
  record.ChildID = checkedKey(std::move(record.ChildID), builder.line("ChildID"), "ChildID", true);
  if constexpr (std::is_same_v<std::decay_t<decltype(record)>, AuftragsPosFields>) completeOrderPosition();
  if (record.ChildID.empty()) record.ChildID = newJobKey(environment_);
  const std::int64_t line = builder.line("ChildID");
  fill(jobs_.newPosition(), builder);
  jobs_.addPosition(line == 0 ? positionLine_ : line);
}

/// An order position requires article and quantity; values that follow from them are optional.
void JobAssembler::completeOrderPosition() {
  AuftragsPosFields& position = orderPosition_.record();
  const auto need = [&](std::string_view name, bool missing) {
    const std::int64_t line = orderPosition_.line(name);
    if (missing) refusePosition(line == 0 ? positionLine_ : line, name, "a position of an order needs it");
  };
  need("Artikelnummer", position.Artikelnummer.empty());
  need("Menge", !orderPosition_.given("Menge"));
  if (!orderPosition_.given("Auslieferungsmenge")) position.Auslieferungsmenge = position.Menge;
  if (!orderPosition_.given("Fakturiermenge")) position.Fakturiermenge = position.Menge;
  // The last two come from the options.
  for (const char* name : {"Auslieferungsmenge", "Fakturiermenge", "Lieferbereit", "Fakturierbereit"})
    orderPosition_.follows(name);
  const bool numbered = orderPosition_.given("Positionsnummer");
  if (positionNumber_ == 1) positionsAreNumbered_ = numbered;
  if (numbered != positionsAreNumbered_)
    refusePosition(positionLine_, "Positionsnummer", "either all positions of an order have one or none");
  if (!numbered) position.Positionsnummer = static_cast<std::int32_t>(positionNumber_);
}

void JobAssembler::endJob() {
  switch (type_) {
  case Type::Kunde:
    return finishJob(kunde_, qxtjobkunden);
  case Type::Vertrag:
    return finishJob(vertrag_, qxtjobverträge, qxtjobkundenverträge);
  case Type::Auftrag:
    return finishJob(auftrag_, qxtJobAufträge);
  case Type::Kept:
    return finishKeptJob();
  case Type::Unknown:
    break;
  }
  refuse(jobLine_, "type", "the property is missing; the types are Kunde, Vertrag and Auftrag");
}

template <class Builder>
void JobAssembler::finishJob(Builder& builder, std::int16_t code, std::int16_t otherCode) {
  auto& record = builder.record();
  if (record.JobType != code && (otherCode == 0 || record.JobType != otherCode))
    refuse(builder.line("JobType"), "JobType",
           otherCode == 0 ? "a waiting job of this type has the code " + std::to_string(code)
                          : "a waiting job of this type has the code " + std::to_string(code) + " or " +
                                std::to_string(otherCode));
  // The run processes positions of single contracts only.
  if (record.JobType == qxtjobkundenverträge && positionNumber_ > 0)
    refuse(positionsLine_, "Positionen",
           "a contract of a customer (JobType 40) has none; give their values as properties of the contract");
  record.JobID = checkedKey(std::move(record.JobID), builder.line("JobID"), "JobID", false);
  if (record.JobID.empty()) record.JobID = newJobKey(environment_);
  const std::int64_t line = builder.line("JobID");
  fill(jobs_.newJob(), builder);
  jobs_.addJob(line == 0 ? jobLine_ : line);
}

/// In whatever state it was.
void JobAssembler::finishKeptJob() {
  const std::string key = checkedKey(keptHeader_.text("JobID"), keptHeader_.line("JobID"), "JobID", false);
  if (key.empty()) refuse(jobLine_, "JobID", "a kept job needs its key");
  const std::int64_t codeLine = keptHeader_.line("JobType");
  if (codeLine == 0) refuse(jobLine_, "JobType", "a kept job needs the code of its kind and state");
  const std::int64_t code = keptHeader_.whole("JobType").value_or(0);
  if (code < qxtjobkunden || code >= qxtJobAuftragsPos)
    refuse(codeLine, "JobType", "this is not the code of a job");
  keptHeader_.fill(jobs_.newJob());
  jobs_.addJob(keptHeader_.line("JobID"));
}

void JobAssembler::finishKeptPosition() {
  const std::int64_t line = keptPosition_.line("ChildID");
  if (checkedKey(keptPosition_.text("ChildID"), line, "ChildID", true).empty())
    refusePosition(positionLine_, "ChildID", "a kept position needs its key");
  keptPosition_.fill(jobs_.newPosition());
  jobs_.addPosition(line);
}

std::string JobAssembler::checkedKey(std::string key, std::int64_t line, std::string_view field,
                                     bool inPosition) const {
  if (characterCount(key) <= longestKey) return key;
  const std::string reason = "a key has at most " + std::to_string(longestKey) + " characters";
  if (inPosition) refusePosition(line, field, reason);
  refuse(line, field, reason);
}

} // namespace qx::cli
