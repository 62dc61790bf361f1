// Assembles the objects of a file of jobs and passes on each finished record as a row.
#pragma once

#include "cli/content_hash.h"
#include "cli/kept_row.h"
#include "cli/object_builder.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "model/required_properties.h"
#include "platform/bulk_staging.h"
#include "platform/environment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// Whether a job must have the properties without which the processing cannot write it.
enum class Completeness : std::uint8_t { Required, Any };

/// Receives the parser's events of one file in order. Properties and positions may precede the object's type:
/// they are kept until it is known. What cannot be staged becomes a fault, which names line, object and
/// property; a job with a fault is not passed on, and its other faults are found all the same.
class JobAssembler {
public:
  JobAssembler(Environment& environment, BulkStaging& jobs, StageFaults& faults,
               Completeness completeness = Completeness::Required);

  void beginJob(std::int64_t line);
  void property(StageProperty property);
  void beginPositions(const StageProperty& key);
  void beginPosition(std::int64_t line);
  void positionProperty(StageProperty property);
  void endPosition();
  void endJob();

  /// Something at a line that cannot be staged; `property` is empty when it is not one.
  void fault(std::int64_t line, std::string_view property, ValueFault fault);
  /// The same of a property of the current position.
  void positionFault(std::int64_t line, std::string_view property, ValueFault fault);
  /// A conflict of a job that was passed on.
  void conflict(const KeyConflict& conflict);
  bool full() const { return faults_.full(); }
  /// The number of the object that became a job.
  std::int64_t objectOf(std::int64_t job) const;
  std::int64_t jobNumber() const { return jobNumber_; }

private:
  enum class Type : std::uint8_t { Unknown, Kunde, Vertrag, Auftrag, Kept };
  struct WaitingPosition {
    std::int64_t line = 0;
    std::vector<StageProperty> properties;
  };

  void setType(const StageProperty& type);
  void addToJob(StageProperty& property);
  void addToPosition(StageProperty& property);
  void allowPositions();
  void finishPosition();
  template <class Builder>
  void finishJob(Builder& builder, std::int16_t code, std::int16_t otherCode = 0);
  template <class Builder>
  void finishPosition(Builder& builder, std::int16_t code);
  void completeOrderPosition();
  std::string pathOf(std::string_view property) const;
  std::string placeOf(const KeyConflict& conflict) const;
  bool isTold(std::string_view property) const;
  void finishKeptJob();
  void finishKeptPosition();
  template <class Builder>
  void requireHeader(const Builder& builder);
  template <class Builder>
  void requireProperties(const Builder& builder, ObjectKind kind, std::string_view why);
  void missing(std::string_view property, std::int64_t line, std::string_view why);
  void checkKey(std::string_view key, std::int64_t line, std::string_view field, bool inPosition);

  Environment& environment_;
  BulkStaging& jobs_;
  StageFaults& faults_;
  Completeness completeness_;

  ObjectBuilder<kundeFields, KundeFields> kunde_;
  ObjectBuilder<vertragFields, VertragFields> vertrag_;
  ObjectBuilder<auftragFields, AuftragFields> auftrag_;
  ObjectBuilder<auftragsPosFields, AuftragsPosFields> orderPosition_;
  ObjectBuilder<importJobSubItemFields, ImportJobSubItem> contractPosition_;
  KeptRow keptHeader_;
  KeptRow keptPosition_;
  ContentHash content_; ///< of the current job

  std::int64_t jobNumber_ = 0;
  std::int64_t jobLine_ = 0;
  Type type_ = Type::Unknown;
  std::int64_t typeLine_ = 0;
  std::int64_t positionsLine_ = 0;
  std::int64_t positionNumber_ = 0;
  std::int64_t positionLine_ = 0;
  bool positionsAreNumbered_ = false; ///< by the file, as decided by its first position
  bool faulty_ = false;               ///< the current job
  std::vector<std::int64_t> dropped_; ///< the numbers of the faulty objects, rising
  std::vector<StageProperty> waitingProperties_;
  std::vector<WaitingPosition> waitingPositions_;
};

} // namespace qx::cli
