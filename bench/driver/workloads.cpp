#include "driver/workloads.h"

#include "samples/contracts.h"
#include "samples/json_lines.h"
#include "samples/orders.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace qx::bench {
namespace {

constexpr Goal stagingGoal{2.0, 1.25};
constexpr Goal processingGoal{1.6, 1.0};
constexpr Goal orderGoal{2.0, 1.1};
constexpr Goal exportGoal{0, 1.3};
constexpr Goal importGoal{0, 1.1};
constexpr double growthGoal = 11.0;
constexpr double memoryGoalMiB = 64;

/// Commands of the two programs.
class Commands {
public:
  explicit Commands(const Place& place) : place_(place) {}

  CommandFor program(Command words) const {
    return [program = place_.program.string(), words = std::move(words)](const std::string& database) {
      Command command{program, "--db", database};
      command.insert(command.end(), words.begin(), words.end());
      return command;
    };
  }

  CommandFor floor(const std::string& verb, Command words = {}) const {
    return [floor = place_.floor.string(), verb, words = std::move(words)](const std::string& database) {
      Command command{floor, verb, database};
      command.insert(command.end(), words.begin(), words.end());
      return command;
    };
  }

  CommandFor stage(const std::filesystem::path& file) const { return program({"stage", file.string()}); }

private:
  const Place& place_;
};

/// A file of `count` jobs, each written by `write`.
template <class Write>
std::filesystem::path writeJobs(const Place& place, const std::string& kind, std::uint32_t count,
                                const Write& write) {
  const auto file = place.folder / (kind + "-" + std::to_string(count) + ".json");
  std::ofstream out(file, std::ios::binary);
  for (std::uint32_t i = 0; i < count; ++i) write(out, i);
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
  return file;
}

std::filesystem::path writeCustomers(const Place& place, std::uint32_t count,
                                     Numbering numbering = Numbering::Ascending) {
  const std::string kind = numbering == Numbering::Ascending ? "customers" : "scattered";
  return writeJobs(place, kind, count, [numbering](std::ostream& out, std::uint32_t i) {
    writeJsonLine(out, "Kunde", sampleCustomer(i, numbering));
  });
}

std::filesystem::path writeContracts(const Place& place, std::uint32_t count) {
  return writeJobs(place, "contracts", count, [](std::ostream& out, std::uint32_t i) {
    writeJsonLine(out, "Vertrag", sampleContract(i));
  });
}

std::filesystem::path writeOrders(const Place& place, std::uint32_t count, std::uint32_t customers) {
  return writeJobs(place, "orders", count, [customers](std::ostream& out, std::uint32_t i) {
    const SampleOrder order = sampleOrder(i, customers);
    writeJsonLine(out, "Auftrag", order.head, order.positions);
  });
}

std::string grouped(std::uint32_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3) text.insert(at - 3, ",");
  return text;
}

std::string waiting(std::uint32_t count) { return "waiting-" + std::to_string(count); }

/// Orders of four lines, as a shop exports them.
std::filesystem::path writeSeparated(const Place& place, std::uint32_t lines) {
  const auto file = place.folder / "orders.csv";
  std::ofstream out(file, std::ios::binary);
  out << "Nr;Datum;Kunde;Betreff;Hinweis;Artikel;Name;Menge;Preis\r\n";
  constexpr std::uint32_t linesOfOrder = 4;
  for (std::uint32_t i = 0; i < lines; ++i) {
    const std::uint32_t order = i / linesOfOrder;
    out << "B-" << order << ";24.11.2026;" << 70000 + order % 1000 << ";\"Bestellung; " << order
        << "\";Bitte klingeln;FEI-013;Fender wei\xC3\x9F;" << i % 9 + 1 << ";1.019,90\r\n";
  }
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
  return file;
}

std::filesystem::path writeMap(const Place& place) {
  const auto file = place.folder / "orders.ini";
  std::ofstream out(file, std::ios::binary);
  out << "[file]\nkind=Auftrag\ndelimiter=semicolon\nquote=double\nencoding=UTF-8\nheader=yes\ndecimal="
         "comma\n"
         "thousands=point\ndate=dd.mm.yyyy\ngroup=Nr\n[columns]\nJobID=Nr\nKundennummer=Kunde\n"
         "Eingangsdatum=Datum\nBetreff=Betreff\nBemerkung=Hinweis\nPositionen.Artikelnummer=Artikel\n"
         "Positionen.Menge=Menge\nPositionen.Preis=Preis\n";
  out.close();
  if (!out) throw std::runtime_error("cannot write " + file.string());
  return file;
}

/// The floor parses the same file with the library alone.
void addConversion(Plan& plan, const Place& place, const Sizes& sizes) {
  const Commands commands(place);
  const auto file = writeSeparated(place, sizes.many);
  plan.workloads.push_back({"convert lines of CSV, " + grouped(sizes.many), sizes.many, Goal{}, "empty",
                            commands.program({"convert", "--map", writeMap(place).string(), file.string()}),
                            commands.floor("read-csv", {file.string()}),
                            [file](const std::string& /*database*/) { return file; }});
}

void addContracts(Plan& plan, const Place& place, const Sizes& sizes) {
  const Commands commands(place);
  const std::string count = std::to_string(sizes.jobs);
  plan.starts.push_back({"contracts",
                         "empty",
                         {commands.floor("customers", {count, "1"}), commands.floor("contracts", {count}),
                          commands.stage(writeContracts(place, sizes.jobs))}});
  plan.workloads.push_back({"process contracts (half known), " + grouped(sizes.jobs), sizes.jobs,
                            processingGoal, "contracts", commands.program({"--json", "process"}),
                            commands.floor("process-contracts")});
}

/// Every customer orders several times.
void addOrders(Plan& plan, const Place& place, const Sizes& sizes) {
  const Commands commands(place);
  const std::uint32_t customers = std::max(sizes.manyOrders / 4, 1U);
  const std::string customerCount = std::to_string(customers);
  plan.starts.push_back({"customers", "empty", {commands.floor("customers", {customerCount, "1"})}});
  const auto nameFor = [](std::uint32_t size) { return "process orders of 5, " + grouped(size); };
  std::vector<Workload> processing;
  for (const std::uint32_t size : {sizes.fewOrders, sizes.manyOrders}) {
    const auto file = writeOrders(place, size, customers);
    const std::string start = "orders-" + std::to_string(size);
    plan.starts.push_back({start, "customers", {commands.stage(file)}});
    processing.push_back({nameFor(size), size, orderGoal, start, commands.program({"--json", "process"}),
                          commands.floor("process-orders")});
    if (size != sizes.manyOrders) continue;
    plan.workloads.push_back({"stage orders of 5, " + grouped(size), size, stagingGoal, "customers",
                              commands.stage(file),
                              commands.floor("stage-orders", {std::to_string(size), customerCount})});
  }
  plan.workloads.insert(plan.workloads.end(), processing.begin(), processing.end());
  plan.growths.push_back({nameFor(sizes.fewOrders), nameFor(sizes.manyOrders), growthGoal, memoryGoalMiB});
}

/// The file to be imported is written by the program, once.
void addJobFiles(Plan& plan, const Place& place, const Sizes& sizes) {
  const Commands commands(place);
  const auto exported = [](const std::string& database) { return std::filesystem::path(database + ".edi"); };
  const auto exportTo = [program = place.program.string(), exported](const std::string& database) {
    return Command{program, "--db", database, "export", exported(database).string()};
  };
  const auto floorExport = [floor = place.floor.string(), exported](const std::string& database) {
    return Command{floor, "export-customers", database, exported(database).string()};
  };
  const std::filesystem::path file = place.folder / "exported.db.edi";
  plan.starts.push_back({"exported", waiting(sizes.many), {exportTo}});
  plan.starts.push_back({"importing", "empty", {}, "exported"});
  plan.workloads.push_back({"export customers, " + grouped(sizes.many), sizes.many, exportGoal,
                            waiting(sizes.many), exportTo, floorExport, exported});
  plan.workloads.push_back({"import customers, " + grouped(sizes.many), sizes.many, importGoal, "importing",
                            commands.program({"import", file.string()}),
                            commands.floor("import-customers", {file.string()}),
                            [file](const std::string&) { return file; }});
}

} // namespace

Plan makePlan(const Place& place, const Sizes& sizes) {
  const Commands commands(place);
  const auto jobs = writeCustomers(place, sizes.jobs);
  const auto few = writeCustomers(place, sizes.few);
  const auto many = writeCustomers(place, sizes.many);
  const auto scattered = writeCustomers(place, sizes.jobs, Numbering::Scattered);
  const std::string count = std::to_string(sizes.jobs);
  const CommandFor process = commands.program({"--json", "process"});
  const CommandFor floorProcess = commands.floor("process-customers");
  const auto newCustomers = [&](std::uint32_t size) {
    return Workload{"process customers (new), " + grouped(size),
                    size,
                    processingGoal,
                    waiting(size),
                    process,
                    floorProcess};
  };

  Plan plan;
  plan.starts = {{"empty", "", {commands.program({"init"}), commands.floor("codes")}},
                 {waiting(sizes.few), "empty", {commands.stage(few)}},
                 {waiting(sizes.many), "empty", {commands.stage(many)}},
                 {"half-known", "empty", {commands.floor("customers", {count, "2"}), commands.stage(jobs)}},
                 {"known", "empty", {commands.floor("customers", {count, "1"}), commands.stage(jobs)}},
                 {"scattered", "empty", {commands.stage(scattered)}}};
  plan.workloads = {{"stage customers, " + grouped(sizes.jobs), sizes.jobs, stagingGoal, "empty",
                     commands.stage(jobs), commands.floor("stage-customers", {count})},
                    {"process customers (half known), " + grouped(sizes.jobs), sizes.jobs, processingGoal,
                     "half-known", process, floorProcess},
                    {"process customers (scattered), " + grouped(sizes.jobs), sizes.jobs, processingGoal,
                     "scattered", process, floorProcess},
                    newCustomers(sizes.few),
                    newCustomers(sizes.many)};
  addContracts(plan, place, sizes);
  addOrders(plan, place, sizes);
  addJobFiles(plan, place, sizes);
  addConversion(plan, place, sizes);
  plan.growths.push_back(
      {newCustomers(sizes.few).name, newCustomers(sizes.many).name, growthGoal, memoryGoalMiB});
  return plan;
}

} // namespace qx::bench
