#include "composition/composition.h"

#include "adapters/system/shell.h"
#include "adapters/system/user.h"
#include "erp/base_data.h"
#include "erp/demo_data.h"
#include "erp/schema.h"
#include "erp/schema_upgrade.h"
#include "platform/database_error.h"
#include "platform/path_text.h"
#include "program/program_error.h"

#include <exception>
#include <filesystem>
#include <fstream>
#include <new>
#include <utility>

namespace qx {
namespace {

namespace fs = std::filesystem;

std::string targetText(const ProgramOptions& options) {
  if (!options.database.empty()) return options.database;
  if (const auto target = environmentVariable("QXIMPORTJOB_DB")) {
    if (target->empty())
      throw ProgramError(ExitCode::BadInput, "the variable QXIMPORTJOB_DB is empty",
                         "Give it the name of a database, or unset it.");
    return *target;
  }
  const auto folder = userDataFolder();
  if (!folder)
    throw ProgramError(ExitCode::Failure, "there is no home folder for the database",
                       "Name the database with --db FILE or $QXIMPORTJOB_DB.");
  return textOf(*folder / "qximportjob.db");
}

/// The folder of the ERP's own files: that of the database, for one on a server the user's data folder.
fs::path applicationFolder(const DatabaseTarget& target) {
  const fs::path beside = target.database.folder(target.connectionString);
  return beside.empty() ? userDataFolder().value_or(fs::current_path()) : beside;
}

/// Raises `ProgramError` when it cannot be told.
bool exists(const DatabaseTarget& target) {
  try {
    return target.database.exists(target.connectionString);
  } catch (const StoreError& failure) {
    throw ProgramError(ExitCode::Failure, failure.what(),
                       "Have the right to its folder granted, or name another database with --db FILE.")
        .of(ErrorCause::Database);
  }
}

/// Null for the version of the program, a later one, and a text that is no version.
std::optional<int> earlierVersion(const std::string& stored) {
  for (int version = 1; version < erp::schemaVersion; ++version)
    if (stored == std::to_string(version)) return version;
  return std::nullopt;
}

/// An existing file belongs to the user.
void writeDemoFees(const fs::path& folder) {
  const fs::path file = folder / "Zubehoer.ini";
  if (fs::exists(file)) return;
  fs::create_directories(folder);
  std::ofstream stream(file, std::ios::binary);
  stream << erp::demoAccessoryFees();
  stream.close();
  if (!stream) throw ProgramError(ExitCode::Failure, textOf(file) + ": the file cannot be written");
}

} // namespace

Composition::Composition(ProgramOptions options, Diagnostics& diagnostics, Desktop& desktop, JobView& jobView)
    : options_(std::move(options)), diagnostics_(diagnostics), desktop_(desktop), jobView_(jobView),
      iniFile_(diagnostics_), identity_(thisMachine(), processes_) {}

void Composition::offerLookups(std::function<std::unique_ptr<Auskunft>()> factory) {
  if (erp_) erp_->setAuskunftFactory(std::move(factory));
}

DatabaseTarget Composition::target() const { return drivers_.find(targetText(options_)); }

std::string Composition::callOf(std::string_view verb) const {
  const std::string option = options_.database.empty() ? "" : "--db " + shellWord(target().displayed) + " ";
  return "qximportjob " + option + std::string(verb);
}

std::string Composition::initLine() const { return "Create it with: " + callOf("init"); }

std::string Composition::schemaVersion() { return std::to_string(erp::schemaVersion); }

std::shared_ptr<Connection> Composition::openExisting(const DatabaseTarget& target) const {
  if (!exists(target))
    throw ProgramError(ExitCode::Failure, target.displayed + ": there is no such database", initLine())
        .of(ErrorCause::NoDatabase);
  return target.database.open(target.connectionString);
}

Environment& Composition::open() {
  const DatabaseTarget target = this->target();
  const std::shared_ptr<Connection> connection = openExisting(target);
  requireSchema(*connection, target.displayed);
  connect(connection, target);
  return *environment_;
}

Environment& Composition::ports() {
  erp_.emplace(nullptr, clock_, desktop_, diagnostics_, identity_, erp::StandaloneOptions());
  environment_.emplace(Environment{*erp_, desktop_, jobView_, clock_, guids_, localSettings_, iniFile_,
                                   diagnostics_, identity_, nullptr, nullptr, "", options_.program});
  return *environment_;
}

void Composition::requireSchema(Connection& connection, const std::string& target) const {
  const auto version = erp::storedSchemaVersion(connection);
  if (!version)
    throw ProgramError(ExitCode::Failure, target + ": the database does not hold the tables of this program",
                       connection.tableNames().empty() ? initLine()
                                                       : "Name the database of this program with --db FILE.");
  if (*version == schemaVersion()) return;
  const std::string difference = target + ": the database has version " + *version +
                                 ", this program works with version " + schemaVersion();
  if (earlierVersion(*version))
    throw ProgramError(ExitCode::Failure, difference,
                       "Upgrade it, after a backup, with: " + callOf("upgrade"))
        .of(ErrorCause::OlderDatabase);
  throw ProgramError(ExitCode::Failure, difference,
                     "Use the program of that version, or another database with --db.");
}

/// The lock of another machine says nothing for a file, which that machine cannot have open.
void Composition::refuseWhileProcessed(Connection& connection, bool fromOtherMachines) {
  const auto lock = connection.open(sql("Select * From LockControl"_sql));
  for (; !lock->eof(); lock->moveNext()) {
    const auto alive = identity_.isAlive(lock->text("SessionID"));
    if (alive.value_or(fromOtherMachines))
      throw ProgramError(ExitCode::Refused, "the import is locked by " + lock->text("Benutzer"),
                         alive ? "Nothing was changed. Try again when that program has ended."
                               : "Nothing was changed. Try again when that program has ended; it is one of "
                                 "another machine. When it has ended without giving the lock back, delete "
                                 "its row of LockControl.");
  }
}

void Composition::requireBackup(const Maintenance& maintenance, bool made) const {
  const std::string tool(maintenance.backupTool());
  if (tool.empty() && made)
    throw ProgramError(ExitCode::BadInput, "--backup-made is for databases on a server",
                       "A file is copied before it is upgraded: leave the option out.");
  if (!tool.empty() && !made)
    throw ProgramError(ExitCode::BadInput, "the database of a server is not backed up by this program",
                       "Back it up with the server's own tool, " + tool +
                           ", then start: " + callOf("upgrade --backup-made"));
}

fs::path Composition::backUp(Maintenance& maintenance, const DatabaseTarget& target, int version) {
  const std::string name =
      target.connectionString + ".version" + std::to_string(version) + "-" + timeStamp(clock_.now());
  fs::path file = pathOf(name + ".bak");
  std::error_code ignored;
  for (int number = 2; fs::exists(fs::symlink_status(file, ignored)); ++number)
    file = pathOf(name + "-" + std::to_string(number) + ".bak");
  maintenance.copyTo(file, ExistingFile::Refuse);
  return file;
}

UpgradeReport Composition::upgrade(bool backupMade) {
  const DatabaseTarget target = this->target();
  const std::shared_ptr<Connection> connection = openExisting(target);
  const auto maintenance = connection->maintenance();
  if (!maintenance->upgrades())
    throw ProgramError(ExitCode::BadInput,
                       target.displayed + ": the tables of this server are not upgraded by this program",
                       "Let its administrator compare them with those that init creates.");
  if (maintenance->markedByOther())
    throw ProgramError(ExitCode::BadInput, target.displayed + ": this is a database of another program",
                       "Nothing was changed. Name another file with --db FILE.");
  const auto from = [&] {
    const auto stored = erp::storedSchemaVersion(*connection);
    return stored ? earlierVersion(*stored) : std::nullopt;
  };
  UpgradeReport nothing{erp::schemaVersion, erp::schemaVersion, {}, {}};
  if (!from()) {
    requireSchema(*connection, target.displayed);
    return nothing;
  }
  requireBackup(*maintenance, backupMade);
  const bool onServer = !maintenance->backupTool().empty();
  // From here to the end no other program can write, or upgrade; one may have done so meanwhile.
  WorkUnit unit(*connection);
  if (onServer) connection->execute(sql("Update Schemastand Set Version = Version"_sql));
  const auto version = from();
  if (!version) return nothing;
  refuseWhileProcessed(*connection, onServer);
  UpgradeReport report{*version, erp::schemaVersion, {}, {}};
  try {
    erp::SchemaUpgrade upgrade(*connection, *maintenance);
    if (!onServer) report.backup = backUp(*maintenance, target, *version);
    report.changes = upgrade.perform();
    unit.commit();
    return report;
  } catch (const erp::SchemaConflict& conflict) {
    throw ProgramError(ExitCode::Failure, target.displayed + ": " + conflict.what(),
                       "Nothing was changed. Move what it holds to a table of its own and drop the column.");
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& failure) {
    const std::string backup =
        report.backup.empty() ? "" : " Its backup " + textOf(report.backup) + " stays.";
    throw ProgramError(ExitCode::Failure, std::string("the upgrade failed: ") + failure.what(),
                       "The database is as it was." + backup + " Fix the cause and upgrade again.");
  }
}

void Composition::connect(const std::shared_ptr<Connection>& connection, const DatabaseTarget& target) {
  erp::StandaloneOptions standalone;
  standalone.userName = options_.user.empty() ? loginName() : options_.user;
  standalone.sessionDate = options_.sessionDate;
  standalone.applicationDirectory = textOf(applicationFolder(target));
  erp_.emplace(connection, clock_, desktop_, diagnostics_, identity_, std::move(standalone));
  environment_.emplace(Environment{*erp_, desktop_, jobView_, clock_, guids_, localSettings_, iniFile_,
                                   diagnostics_, identity_, connection, erp_->createSession(), "",
                                   options_.program});
  environment_->session->Connect("", "");
}

InstallationReport Composition::create(bool demo, DatabaseUsers users) {
  const DatabaseTarget target = this->target();
  if (exists(target)) {
    const std::shared_ptr<Connection> existing = target.database.open(target.connectionString);
    if (erp::storedSchemaVersion(*existing)) {
      requireSchema(*existing, target.displayed);
      return {};
    }
    if (!existing->tableNames().empty())
      throw ProgramError(ExitCode::BadInput, target.displayed + ": this is a database of another program",
                         "Nothing was changed. Name another one with --db.");
  }
  target.database.reserve(target.connectionString,
                          users == DatabaseUsers::Group ? FileSharing::Group : FileSharing::Owner);
  const std::shared_ptr<Connection> connection = target.database.create(target.connectionString);
  try {
    const auto staged = fill(*connection, demo, applicationFolder(target));
    if (!staged) {
      requireSchema(*connection, target.displayed);
      return {};
    }
    return {true, demo, *staged};
  } catch (const DatabaseError& failure) {
    // On a server the tables of another program that does the same appear with its commit.
    const bool refused = dynamic_cast<const StatementError*>(&failure) != nullptr ||
                         dynamic_cast<const WorkLostError*>(&failure) != nullptr;
    if (!refused || !erp::storedSchemaVersion(*connection)) throw;
    diagnostics_.report({"init", failure.what(), ""});
    requireSchema(*connection, target.displayed);
    return {};
  }
}

/// Returns the number of demo jobs; null when another program has created the tables meanwhile.
std::optional<std::size_t> Composition::fill(Connection& connection, bool demo, const fs::path& folder) {
  WorkUnit unit(connection);
  if (erp::storedSchemaVersion(connection)) return std::nullopt;
  erp::createSchema(connection);
  erp::fillBaseData(connection);
  std::size_t staged = 0;
  if (demo) {
    erp::fillDemoData(connection);
    staged = erp::stageDemoJobs(connection, options_.sessionDate.value_or(clock_.now().date));
    writeDemoFees(folder);
  }
  unit.commit();
  return staged;
}

} // namespace qx
