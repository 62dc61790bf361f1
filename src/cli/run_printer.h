// Prints the jobs of a run as they become durable.
#pragma once

#include "cli/command.h"
#include "cli/json_writer.h"
#include "cli/table.h"
#include "engine/job_outcome.h"

#include <chrono>

namespace qx::cli {

class RunPrinter {
public:
  virtual ~RunPrinter() = default;
  virtual void add(const JobOutcome& outcome) = 0;
  /// To be called after a run that was not refused.
  virtual void finish(const RunReport& report, std::chrono::milliseconds span) = 0;
};

class TextRunPrinter final : public RunPrinter {
public:
  explicit TextRunPrinter(const Output& output);
  void add(const JobOutcome& outcome) override;
  void finish(const RunReport& report, std::chrono::milliseconds span) override;

private:
  const Output& output_;
  Table table_;
};

/// One document, whatever the number of jobs; it is closed in every case.
class JsonRunPrinter final : public RunPrinter {
public:
  explicit JsonRunPrinter(const Output& output) : output_(output), json_(output.result) {}
  void add(const JobOutcome& outcome) override;
  void finish(const RunReport& report, std::chrono::milliseconds span) override;

private:
  void begin();

  const Output& output_;
  JsonWriter json_;
  bool begun_ = false;
};

} // namespace qx::cli
