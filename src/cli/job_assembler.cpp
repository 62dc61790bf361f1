#include "cli/job_assembler.h"

#include "model/job_codes.h"
#include "model/key_length.h"
#include "model/text.h"
#include "store/entry_objects.h"
#include "store/staging_writer.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace qx::cli {
namespace {

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

JobAssembler::JobAssembler(Environment& environment, BulkStaging& jobs, StageFaults& faults,
                           Completeness completeness)
    : environment_(environment), jobs_(jobs), faults_(faults), completeness_(completeness),
      kunde_(initial<KundeFields>(Kunde(environment))),
      vertrag_(initial<VertragFields>(Vertrag(environment))),
      auftrag_(initial<AuftragFields>(Auftrag(environment))),
      orderPosition_(initial<AuftragsPosFields>(AuftragsPos(environment, ReadyFlags::read(environment)))),
      contractPosition_(initialContractPosition()),
      keptHeader_(activeConnection(environment), sql("Select * From ImportKopf Where 0 = 1"_sql)),
      keptPosition_(activeConnection(environment), sql("Select * From ImportPos Where 0 = 1"_sql)) {}

void JobAssembler::fault(std::int64_t line, std::string_view property, ValueFault fault) {
  faulty_ = true;
  faults_.add({line, jobNumber_, std::string(property), codeOf(fault.kind), std::move(fault.message),
               std::move(fault.hint)});
}

void JobAssembler::positionFault(std::int64_t line, std::string_view property, ValueFault fault) {
  this->fault(line, pathOf(property), std::move(fault));
}

std::string JobAssembler::pathOf(std::string_view property) const {
  std::string path = std::string(positionsProperty) + "[" + std::to_string(positionNumber_) + "]";
  if (!property.empty()) path.append(".").append(property);
  return path;
}

/// Whoever has given a wrong value knows that it is needed.
bool JobAssembler::isTold(std::string_view property) const {
  const std::vector<InputFault>& all = faults_.all();
  for (auto fault = all.rbegin(); fault != all.rend() && fault->object == jobNumber_; ++fault)
    if (fault->property == property) return true;
  return false;
}

std::int64_t JobAssembler::objectOf(std::int64_t job) const {
  for (const std::int64_t dropped : dropped_) {
    if (dropped > job) break;
    ++job;
  }
  return job;
}

/// Where the earlier job of a conflict stands, or when it was handed over.
std::string JobAssembler::placeOf(const KeyConflict& conflict) const {
  if (conflict.otherJob == 0) return " of " + momentText(conflict.since);
  return " in object " + std::to_string(objectOf(conflict.otherJob)) + " on line " +
         std::to_string(conflict.otherLine);
}

void JobAssembler::conflict(const KeyConflict& conflict) {
  const bool ofPosition =
      conflict.kind == KeyConflict::Kind::PositionTwice || conflict.kind == KeyConflict::Kind::OtherOwner;
  std::string property = ofPosition ? "ChildID" : "JobID";
  FaultKind kind = FaultKind::KeyRepeated;
  std::string hint = "every job and position needs a key of its own";
  std::string message = "the " + property + " '" + conflict.key + "' ";
  switch (conflict.kind) {
  case KeyConflict::Kind::OtherOwner:
    kind = FaultKind::KeyTaken;
    message += "belongs to the job '" + conflict.owner + "'";
    break;
  case KeyConflict::Kind::OtherName:
    kind = FaultKind::OtherJob;
    message = "a position gives the JobID '" + conflict.owner + "' of another job";
    break;
  case KeyConflict::Kind::ContentTwice:
    property.clear();
    kind = FaultKind::ContentRepeated;
    message = "the content is that of the job '" + conflict.owner + "'" + placeOf(conflict);
    hint = "leave it out, or stage it without --unique when it is meant once more";
    break;
  case KeyConflict::Kind::JobTwice:
  case KeyConflict::Kind::PositionTwice:
    message += "stands already" + placeOf(conflict);
    break;
  }
  faults_.add({conflict.line, objectOf(conflict.job), std::move(property), codeOf(kind), std::move(message),
               std::move(hint)});
}

void JobAssembler::beginJob(std::int64_t line) {
  ++jobNumber_;
  jobLine_ = line;
  type_ = Type::Unknown;
  typeLine_ = 0;
  positionsLine_ = 0;
  positionNumber_ = 0;
  faulty_ = false;
  content_.begin();
  waitingProperties_.clear();
  waitingPositions_.clear();
}

void JobAssembler::property(StageProperty property) {
  if (property.name == "type") {
    setType(property);
  } else if (property.name == positionsProperty) {
    // An array arrives by beginPositions.
    if (!std::holds_alternative<std::monostate>(property.value))
      fault(property.line, property.name,
            {FaultKind::WrongKind,
             "an array of objects is expected, not " + std::string(describe(property.value)),
             {}});
    else
      beginPositions(property);
  } else if (type_ == Type::Unknown) {
    waitingProperties_.push_back(std::move(property));
  } else {
    addToJob(property);
  }
}

void JobAssembler::setType(const StageProperty& type) {
  if (typeLine_ != 0) return fault(type.line, "type", repeatedProperty(typeLine_));
  typeLine_ = type.line;
  const auto* text = std::get_if<std::string>(&type.value);
  if (text == nullptr)
    return fault(type.line, "type",
                 {FaultKind::WrongKind, "a text is expected, not " + std::string(describe(type.value)), {}});
  const auto begin = [&](Type type, auto& job) {
    type_ = type;
    job.begin();
  };
  if (*text == "Kunde")
    begin(Type::Kunde, kunde_);
  else if (*text == "Vertrag")
    begin(Type::Vertrag, vertrag_);
  else if (*text == "Auftrag")
    begin(Type::Auftrag, auftrag_);
  else if (*text == keptType)
    begin(Type::Kept, keptHeader_);
  else
    return fault(type.line, "type",
                 {FaultKind::TypeUnknown,
                  "\"" + *text + "\" is not a type; the types are Kunde, Vertrag and Auftrag",
                  {}});
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
  std::optional<ValueFault> wrong;
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
  if (wrong) fault(property.line, property.name, std::move(*wrong));
}

void JobAssembler::beginPositions(const StageProperty& key) {
  if (positionsLine_ != 0) fault(key.line, key.name, repeatedProperty(positionsLine_));
  positionsLine_ = key.line;
  if (type_ != Type::Unknown) allowPositions();
}

void JobAssembler::allowPositions() {
  if (type_ == Type::Kunde)
    fault(positionsLine_, positionsProperty,
          {FaultKind::PropertyUnknown, "the type has no such property", {}});
}

void JobAssembler::beginPosition(std::int64_t line) {
  ++positionNumber_;
  positionLine_ = line;
  if (type_ == Type::Unknown) {
    waitingPositions_.push_back({line, {}});
  } else if (type_ == Type::Kept) {
    keptPosition_.begin();
  } else if (type_ == Type::Vertrag) {
    contractPosition_.begin();
  } else {
    orderPosition_.begin();
  }
}

void JobAssembler::positionProperty(StageProperty property) {
  if (type_ == Type::Unknown)
    waitingPositions_.back().properties.push_back(std::move(property));
  else
    addToPosition(property);
}

void JobAssembler::addToPosition(StageProperty& property) {
  auto wrong = type_ == Type::Kept      ? keptPosition_.add(property)
               : type_ == Type::Vertrag ? contractPosition_.add(property, true)
                                        : orderPosition_.add(property, false);
  if (wrong) positionFault(property.line, property.name, std::move(*wrong));
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
    positionFault(builder.line("JobType"), "JobType",
                  {FaultKind::WrongCode, "the code of these positions is " + std::to_string(code), {}});
  checkKey(record.JobID, builder.line("JobID"), "JobID", true);
  checkKey(record.ChildID, builder.line("ChildID"), "ChildID", true);
  if constexpr (std::is_same_v<std::decay_t<decltype(record)>, AuftragsPosFields>) completeOrderPosition();
  if (faulty_) return;
  if (record.ChildID.empty()) record.ChildID = newJobKey(environment_);
  content_.beginPosition();
  builder.addTo(content_);
  const std::int64_t line = builder.line("ChildID");
  fill(jobs_.newPosition(), builder);
  jobs_.addPosition(line == 0 ? positionLine_ : line);
}

/// An order position requires article and quantity; values that follow from them are optional.
void JobAssembler::completeOrderPosition() {
  AuftragsPosFields& position = orderPosition_.record();
  for (const std::string_view name : requiredProperties(ObjectKind::OrderPosition)) {
    const std::int64_t line = orderPosition_.line(name);
    if (orderPosition_.lacks(name))
      missing(pathOf(name), line == 0 ? positionLine_ : line, "a position of an order needs it");
  }
  orderPosition_.derive("Auslieferungsmenge", &AuftragsPosFields::Auslieferungsmenge, position.Menge);
  orderPosition_.derive("Fakturiermenge", &AuftragsPosFields::Fakturiermenge, position.Menge);
  orderPosition_.preset("Lieferbereit");
  orderPosition_.preset("Fakturierbereit");
  const bool numbered = orderPosition_.given("Positionsnummer");
  if (positionNumber_ == 1) positionsAreNumbered_ = numbered;
  if (numbered != positionsAreNumbered_)
    positionFault(positionLine_, "Positionsnummer",
                  {FaultKind::Unnumbered, "either all positions of an order have one or none", {}});
  orderPosition_.derive("Positionsnummer", &AuftragsPosFields::Positionsnummer,
                        static_cast<std::int32_t>(positionNumber_));
}

void JobAssembler::endJob() {
  switch (type_) {
  case Type::Kunde:
    finishJob(kunde_, qxtjobkunden);
    break;
  case Type::Vertrag:
    finishJob(vertrag_, qxtjobverträge, qxtjobkundenverträge);
    break;
  case Type::Auftrag:
    finishJob(auftrag_, qxtJobAufträge);
    break;
  case Type::Kept:
    finishKeptJob();
    break;
  case Type::Unknown:
    if (typeLine_ == 0)
      fault(
          jobLine_, "type",
          {FaultKind::TypeMissing, "the property is missing; the types are Kunde, Vertrag and Auftrag", {}});
    break;
  }
  if (!faulty_) return;
  dropped_.push_back(jobNumber_);
  jobs_.dropPositions();
}

template <class Builder>
void JobAssembler::finishJob(Builder& builder, std::int16_t code, std::int16_t otherCode) {
  auto& record = builder.record();
  if (record.JobType != code && (otherCode == 0 || record.JobType != otherCode)) {
    std::string codes = "a waiting job of this type has the code " + std::to_string(code);
    if (otherCode != 0) codes += " or " + std::to_string(otherCode);
    fault(builder.line("JobType"), "JobType", {FaultKind::WrongCode, std::move(codes), {}});
  }
  // The run processes positions of single contracts only.
  if (record.JobType == qxtjobkundenverträge && positionNumber_ > 0)
    fault(positionsLine_, positionsProperty,
          {FaultKind::PropertyUnknown,
           "a contract of a customer (JobType 40) has none; give their values as properties of the contract",
           {}});
  if (completeness_ == Completeness::Required) requireHeader(builder);
  checkKey(record.JobID, builder.line("JobID"), "JobID", false);
  if (faulty_) return;
  if (record.JobID.empty()) record.JobID = newJobKey(environment_);
  content_.add(ContentHash::Name("JobType"), static_cast<double>(record.JobType));
  builder.addTo(content_);
  const std::int64_t line = builder.line("JobID");
  fill(jobs_.newJob(), builder);
  jobs_.addJob(line == 0 ? jobLine_ : line, content_.digits());
}

/// What the processing cannot do without.
template <class Builder>
void JobAssembler::requireHeader(const Builder& builder) {
  if constexpr (std::is_same_v<Builder, decltype(kunde_)>) {
    requireProperties(builder, ObjectKind::Customer, "a customer needs it");
    if (std::ranges::all_of(customerNames, [&](std::string_view name) { return builder.lacks(name); }))
      missing(customerNames.front(), builder.line(customerNames.front()), "a customer needs a name");
  } else if constexpr (std::is_same_v<Builder, decltype(auftrag_)>) {
    requireProperties(builder, ObjectKind::Order, "an order needs it");
  }
}

template <class Builder>
void JobAssembler::requireProperties(const Builder& builder, ObjectKind kind, std::string_view why) {
  for (const std::string_view name : requiredProperties(kind))
    if (name != positionsProperty) {
      if (builder.lacks(name)) missing(name, builder.line(name), why);
    } else if (positionNumber_ == 0) {
      missing(name, positionsLine_, "an order needs at least one position");
    }
}

/// `line` is 0 when the object does not mention the property.
void JobAssembler::missing(std::string_view property, std::int64_t line, std::string_view why) {
  if (!isTold(property))
    fault(line == 0 ? jobLine_ : line, property, {FaultKind::PropertyMissing, std::string(why), {}});
}

/// In whatever state it was.
void JobAssembler::finishKeptJob() {
  const std::string key = keptHeader_.text("JobID");
  checkKey(key, keptHeader_.line("JobID"), "JobID", false);
  if (key.empty()) fault(jobLine_, "JobID", {FaultKind::PropertyMissing, "a kept job needs its key", {}});
  const std::int64_t codeLine = keptHeader_.line("JobType");
  const std::int64_t code = keptHeader_.whole("JobType").value_or(0);
  if (codeLine == 0)
    fault(jobLine_, "JobType",
          {FaultKind::PropertyMissing, "a kept job needs the code of its kind and state", {}});
  else if (code < qxtjobkunden || code >= qxtJobAuftragsPos)
    fault(codeLine, "JobType", {FaultKind::WrongCode, "this is not the code of a job", {}});
  if (faulty_) return;
  keptHeader_.fill(jobs_.newJob());
  jobs_.addJob(keptHeader_.line("JobID"), {});
}

void JobAssembler::finishKeptPosition() {
  const std::int64_t line = keptPosition_.line("ChildID");
  const std::string key = keptPosition_.text("ChildID");
  checkKey(key, line, "ChildID", true);
  if (key.empty())
    positionFault(positionLine_, "ChildID",
                  {FaultKind::PropertyMissing, "a kept position needs its key", {}});
  if (faulty_) return;
  keptPosition_.fill(jobs_.newPosition());
  jobs_.addPosition(line);
}

void JobAssembler::checkKey(std::string_view key, std::int64_t line, std::string_view field,
                            bool inPosition) {
  if (characterCount(key) <= longestKey) return;
  ValueFault tooLong{
      FaultKind::KeyTooLong, "a key has at most " + std::to_string(longestKey) + " characters", {}};
  if (inPosition)
    positionFault(line, field, std::move(tooLong));
  else
    fault(line, field, std::move(tooLong));
}

} // namespace qx::cli
