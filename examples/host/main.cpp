// Hands a customer and an order over and prints what becomes of them: host DATABASE
// A database that does not exist is created, with demo data. A second call hands over nothing.
#include "adapters/system/console_desktop.h"
#include "adapters/system/stream_diagnostics.h"
#include "composition/composition.h"
#include "engine/import_job_object2.h"
#include "program/program_error.h"
#include "store/entry_objects.h"

#include <iostream>
#include <string_view>

namespace {

using namespace qx;

constexpr std::string_view orderKey = "SHOP-A-2026-0815";

bool isStaged(Environment& environment) {
  return !environment.connection
              ->open(sql("Select JobID From ImportKopf Where JobID = '"_sql, value(orderKey), "'"_sql))
              ->eof();
}

/// `AddItem` checks nothing and replaces what has the same key, even if it is done.
void stage(Environment& environment) {
  Kunde customer(environment);
  customer.JobID = "SHOP-K-4711";
  customer.Kundennummer = "90010";
  customer.Bez1 = "Lotsenhaus Wieland";
  customer.Ort = "Rostock";
  customer.AddItem();
  Auftrag order(environment);
  order.JobID = orderKey;
  order.Kundennummer = customer.Kundennummer;
  order.AddItem();
  AuftragsPos position(environment);
  position.JobID = order.JobID;
  position.Positionsnummer = 1;
  position.Artikelnummer = "FEI-013";
  position.Menge = position.Auslieferungsmenge = position.Fakturiermenge = 2;
  position.AddItem();
}

int work(const char* database) {
  StreamDiagnostics diagnostics(std::cerr, true);
  ConsoleDesktop desktop(std::cerr, diagnostics);
  AbsentJobView jobView(desktop);
  ProgramOptions options;
  options.database = database;
  options.program = "host example";
  Composition composition(options, diagnostics, desktop, jobView);
  composition.create(true, DatabaseUsers::Owner);
  Environment& environment = composition.open();

  ImportJobObject2 engine(environment);
  if (!engine.Session()) return 4; // without one no order gets a number
  // A run takes no lock by itself. The engine gives it back at its end.
  if (engine.importLock().take().state != LockState::Taken) return 3;
  if (!isStaged(environment)) stage(environment);
  bool written = true;
  engine.setOutcomeSink([&](const JobOutcome& job) {
    if (!job.jobId.starts_with("SHOP-")) return;
    std::cout << job.jobId << ' ' << job.transaction << ' ' << job.number << ' ' << job.status << '\n';
    for (const Finding& finding : job.findings) std::cout << "  " << anyText(finding) << '\n';
    written = written && (job.jobType == qxtJobKundenDone || job.jobType == qxtJobAufträgeDone);
  });
  engine.ProcessJobs();
  if (!engine.lastRun().failure.empty()) std::cerr << engine.lastRun().failure << '\n';
  return engine.lastRun().end == RunEnd::Completed && written ? 0 : 1;
}

} // namespace

int main(int count, char** words) {
  if (count != 2) {
    std::cerr << "usage: host DATABASE\n";
    return 2;
  }
  try {
    return work(words[1]);
  } catch (const ProgramError& error) {
    std::cerr << error.what() << '\n' << error.nextStep() << '\n';
    return static_cast<int>(error.code());
  }
}
