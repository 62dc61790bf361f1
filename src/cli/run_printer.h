// Prints the jobs of a run as they become durable.
#pragma once

#include "cli/command.h"
#include "cli/run_causes.h"
#include "cli/table.h"
#include "engine/job_outcome.h"
#include "platform/environment.h"
#include "store/json_writer.h"

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
  /// `quiet` leaves jobs out that were written.
  TextRunPrinter(const Output& output, bool quiet);
  void add(const JobOutcome& outcome) override;
  void finish(const RunReport& report, std::chrono::milliseconds span) override;

private:
  const Output& output_;
  bool quiet_;
  Table table_;
  RunCauses causes_;
};

/// One document, whatever the number of jobs, which is closed in every case; or a document a line, that of
/// the summary last.
class JsonRunPrinter final : public RunPrinter {
public:
  /// Reads from the connection of the environment what was written.
  JsonRunPrinter(Environment& environment, const Output& output, bool quiet)
      : environment_(environment), output_(output), quiet_(quiet), json_(output.result) {}
  void add(const JobOutcome& outcome) override;
  void finish(const RunReport& report, std::chrono::milliseconds span) override;

private:
  void begin();
  void writeJob(JsonWriter& json, const JobOutcome& outcome);

  Environment& environment_;
  const Output& output_;
  bool quiet_;
  JsonWriter json_;
  RunCauses causes_;
  bool begun_ = false;
};

} // namespace qx::cli
