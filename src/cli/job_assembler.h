// Assembles the objects of a file of jobs and passes on each finished record as a row.
#pragma once

#include "cli/kept_row.h"
#include "cli/object_builder.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "platform/bulk_staging.h"
#include "platform/environment.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// Receives the parser's events of one file in order. Properties and positions may precede the object's type:
/// they are kept until it is known. Raises `ProgramError`, which names line, object and property, for
/// anything that cannot be staged.
class JobAssembler {
public:
  JobAssembler(Environment& environment, BulkStaging& jobs, std::string fileName);

  void beginJob(std::int64_t line);
  void property(StageProperty property);
  void beginPositions(const StageProperty& key);
  void beginPosition(std::int64_t line);
  void positionProperty(StageProperty property);
  void endPosition();
  void endJob();

  /// Refuses an item at a line; `field` is empty when it is not a property.
  [[noreturn]] void refuse(std::int64_t line, std::string_view field, std::string_view reason) const;
  /// Refuses a property of the current position.
  [[noreturn]] void refusePosition(std::int64_t line, std::string_view field, std::string_view reason) const;
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
  void allowPositions() const;
  void finishPosition();
  template <class Builder>
  void finishJob(Builder& builder, std::int16_t code, std::int16_t otherCode = 0);
  template <class Builder>
  void finishPosition(Builder& builder, std::int16_t code);
  void completeOrderPosition();
  void finishKeptJob();
  void finishKeptPosition();
  std::string checkedKey(std::string key, std::int64_t line, std::string_view field, bool inPosition) const;

  Environment& environment_;
  BulkStaging& jobs_;
  std::string fileName_;

  ObjectBuilder<kundeFields, KundeFields> kunde_;
  ObjectBuilder<vertragFields, VertragFields> vertrag_;
  ObjectBuilder<auftragFields, AuftragFields> auftrag_;
  ObjectBuilder<auftragsPosFields, AuftragsPosFields> orderPosition_;
  ObjectBuilder<importJobSubItemFields, ImportJobSubItem> contractPosition_;
  KeptRow keptHeader_;
  KeptRow keptPosition_;

  std::int64_t jobNumber_ = 0;
  std::int64_t jobLine_ = 0;
  Type type_ = Type::Unknown;
  std::int64_t typeLine_ = 0;
  std::int64_t positionsLine_ = 0;
  std::int64_t positionNumber_ = 0;
  std::int64_t positionLine_ = 0;
  bool positionsAreNumbered_ = false; ///< by the file, as decided by its first position
  std::vector<StageProperty> waitingProperties_;
  std::vector<WaitingPosition> waitingPositions_;
};

} // namespace qx::cli
