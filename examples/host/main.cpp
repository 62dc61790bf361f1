// Stages a customer with the entry objects and processes what waits: host DATABASE
// The database is created when there is none. Ends with 0 when every job was written.
#include "adapters/system/console_desktop.h"
#include "adapters/system/stream_diagnostics.h"
#include "composition/composition.h"
#include "engine/import_job_object2.h"
#include "program/program_error.h"
#include "store/entry_objects.h"

#include <iostream>

namespace {

void stageCustomer(qx::Environment& environment) {
  qx::Kunde customer(environment);
  customer.Kundennummer = "10001";
  customer.Suchbegriff = "Tannschütt";
  customer.Bez1 = "Tischlerei Tannschütt";
  customer.Strasse = "Mühlenweg 12";
  customer.Land = "DE";
  customer.PLZ = "00117";
  customer.Ort = "Kranichsee";
  // A failure goes to the diagnostics, and the job is missing.
  customer.AddItem();
}

int work(const char* database) {
  qx::StreamDiagnostics diagnostics(std::cerr, true);
  qx::ConsoleDesktop desktop(std::cerr, diagnostics);
  qx::AbsentJobView jobView(desktop);
  qx::ProgramOptions options;
  options.database = database;
  options.program = "host example";
  qx::Composition composition(options, diagnostics, desktop, jobView);
  composition.create(false, qx::DatabaseUsers::Owner);
  qx::Environment& environment = composition.open();
  stageCustomer(environment);

  qx::ImportJobObject2 engine(environment);
  engine.setOutcomeSink([](const qx::JobOutcome& outcome) { std::cout << outcome.jobId << '\n'; });
  engine.ProcessJobs();
  const qx::RunReport& report = engine.lastRun();
  std::cout << report.processed << " processed, " << report.done << " done\n";
  if (!report.failure.empty()) std::cerr << report.failure << '\n';
  return report.end == qx::RunEnd::Completed && report.done == report.processed ? 0 : 1;
}

} // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::cerr << "usage: host DATABASE\n";
    return 2;
  }
  try {
    return work(words[1]);
  } catch (const qx::ProgramError& error) {
    std::cerr << error.what() << '\n' << error.nextStep() << '\n';
    return static_cast<int>(error.code());
  }
}
