#include "composition/composition.h"

#include "adapters/local_settings/ini_local_settings.h"
#include "erp/base_data.h"
#include "erp/demo_data.h"
#include "erp/demo_jobs.h"
#include "erp/schema.h"
#include "program/program_error.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <pwd.h>
#include <unistd.h>
#include <utility>

namespace qx {
namespace {

namespace fs = std::filesystem;

std::string variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string loginName() {
  if (const passwd* entry = getpwuid(geteuid())) return entry->pw_name;
  return variable("USER");
}

/// Null when there is no home folder.
std::optional<fs::path> dataFolder() {
  // By definition a relative path in this variable counts as not set.
  fs::path data = variable("XDG_DATA_HOME");
  if (!data.is_absolute()) {
    const std::string home = variable("HOME");
    if (home.empty()) return std::nullopt;
    data = fs::path(home) / ".local" / "share";
  }
  return data / "qximportjob";
}

std::string targetText(const ProgramOptions& options) {
  if (!options.database.empty()) return options.database;
  if (std::string target = variable("QXIMPORTJOB_DB"); !target.empty()) return target;
  const auto folder = dataFolder();
  if (!folder)
    throw ProgramError(ExitCode::Failure, "there is no home folder for the database",
                       "Name the database with --db FILE or $QXIMPORTJOB_DB.");
  return (*folder / "qximportjob.db").string();
}

/// The folder of the ERP's own files: that of the database, for one on a server the user's data folder.
fs::path applicationFolder(const DatabaseTarget& target) {
  const fs::path beside = target.database.folder(target.connectionString);
  return beside.empty() ? dataFolder().value_or(fs::current_path()) : beside;
}

/// Quoted for the shell when necessary.
std::string shellWord(const std::string& text) {
  constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._-/";
  if (!text.empty() && text.find_first_not_of(plain) == std::string::npos) return text;
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

/// An existing file belongs to the user.
void writeDemoFees(const fs::path& folder) {
  const fs::path file = folder / "Zubehoer.ini";
  if (fs::exists(file)) return;
  fs::create_directories(folder);
  std::ofstream stream(file, std::ios::binary);
  stream << erp::demoAccessoryFees();
  stream.close();
  if (!stream) throw ProgramError(ExitCode::Failure, file.string() + ": the file cannot be written");
}

} // namespace

std::string Composition::UserSettings::read(std::string_view application, std::string_view section,
                                            std::string_view key) {
  return IniLocalSettings(defaultLocalSettingsFile()).read(application, section, key);
}

void Composition::UserSettings::write(std::string_view application, std::string_view section,
                                      std::string_view key, std::string_view value) {
  IniLocalSettings(defaultLocalSettingsFile()).write(application, section, key, value);
}

Composition::Composition(ProgramOptions options, Diagnostics& diagnostics, Desktop& desktop, JobView& jobView)
    : options_(std::move(options)), diagnostics_(diagnostics), desktop_(desktop), jobView_(jobView),
      iniFile_(diagnostics_), identity_(erp::MachineName::read(), processes_) {}

void Composition::offerLookups(std::function<std::unique_ptr<Auskunft>()> factory) {
  if (erp_) erp_->setAuskunftFactory(std::move(factory));
}

DatabaseTarget Composition::target() const { return drivers_.find(targetText(options_)); }

std::string Composition::initLine() const {
  const std::string option = options_.database.empty() ? "" : "--db " + shellWord(target().displayed) + " ";
  return "Create it with: qximportjob " + option + "init";
}

std::string Composition::schemaVersion() { return std::to_string(erp::schemaVersion); }

Environment& Composition::open() {
  const DatabaseTarget target = this->target();
  if (!target.database.exists(target.connectionString))
    throw ProgramError(ExitCode::Failure, target.displayed + ": there is no such database", initLine())
        .of(ErrorCause::NoDatabase);
  const std::shared_ptr<Connection> connection = target.database.open(target.connectionString);
  requireSchema(*connection, target.displayed);
  connect(connection, target);
  return *environment_;
}

void Composition::requireSchema(Connection& connection, const std::string& target) const {
  const auto version = erp::storedSchemaVersion(connection);
  if (!version)
    throw ProgramError(ExitCode::Failure, target + ": the database does not hold the tables of this program",
                       connection.tableNames().empty() ? initLine()
                                                       : "Name the database of this program with --db FILE.");
  if (*version != schemaVersion())
    throw ProgramError(ExitCode::Failure,
                       target + ": the database has version " + *version +
                           ", this program works with version " + schemaVersion(),
                       "Use the program of that version, or another database with --db.");
}

void Composition::connect(const std::shared_ptr<Connection>& connection, const DatabaseTarget& target) {
  erp::StandaloneOptions standalone;
  standalone.userName = options_.user.empty() ? loginName() : options_.user;
  standalone.sessionDate = options_.sessionDate;
  standalone.applicationDirectory = applicationFolder(target).string();
  erp_.emplace(connection, clock_, desktop_, diagnostics_, identity_, std::move(standalone));
  environment_.emplace(Environment{*erp_, desktop_, jobView_, clock_, guids_, localSettings_, iniFile_,
                                   diagnostics_, identity_, connection, erp_->createSession(), ""});
  environment_->session->Connect("", "");
}

InstallationReport Composition::create(bool demo) {
  const DatabaseTarget target = this->target();
  if (target.database.exists(target.connectionString)) {
    const std::shared_ptr<Connection> existing = target.database.open(target.connectionString);
    if (erp::storedSchemaVersion(*existing)) {
      requireSchema(*existing, target.displayed);
      return {};
    }
    if (!existing->tableNames().empty())
      throw ProgramError(ExitCode::BadInput, target.displayed + ": this is a database of another program",
                         "Nothing was changed. Name another one with --db.");
  }
  const std::shared_ptr<Connection> connection = target.database.create(target.connectionString);
  WorkUnit unit(*connection);
  erp::createSchema(*connection);
  erp::fillBaseData(*connection);
  std::size_t staged = 0;
  if (demo) {
    erp::fillDemoData(*connection);
    staged = erp::stageDemoJobs(*connection, options_.sessionDate.value_or(clock_.now().date));
    writeDemoFees(applicationFolder(target));
  }
  unit.commit();
  return {true, demo, staged};
}

} // namespace qx
