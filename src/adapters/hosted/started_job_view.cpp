#include "adapters/hosted/started_job_view.h"

#include "adapters/ado/connection_text.h"
#include "automation/automation_object.h"
#include "platform/failure.h"
#include "platform/path_text.h"
#include "program/view_arguments.h"

#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace qx {
namespace {

using Variables = std::vector<std::pair<std::string, std::string>>;

/// A server that the component itself has opened is named by a variable already.
Variables databaseOf(Connection& connection) {
  constexpr const char* variable = "QXIMPORTJOB_DB";
  if (const auto* const ofHost = dynamic_cast<const automation::OfHost*>(&connection)) {
    const auto text = automation::textOf(automation::get(*ofHost->hostObject(), "ConnectionString"));
    const auto target = ado::programTarget(text);
    if (!target)
      throw std::runtime_error(
          "Das Fenster der Importvorgänge kann die Datenbank dieser Verbindung nicht öffnen.");
    return {{variable, *target}};
  }
  const auto files = connection.files();
  if (files.empty()) return {};
  return {{variable, textOf(files.front())}};
}

} // namespace

std::optional<int> StartedJobView::start(Connection& connection) {
  const Variables variables = databaseOf(connection);
  try {
    program_ = startProgram(folder_ / viewProgram, {}, variables);
  } catch (const std::system_error& failure) {
    if (failure.code() == std::errc::no_such_file_or_directory)
      throw std::runtime_error("Das Fenster der Importvorgänge ist nicht installiert.");
    throw std::runtime_error("Das Fenster der Importvorgänge kann nicht gestartet werden: " +
                             germanCause(failure));
  }
  return program_->untilReady(wait_);
}

std::optional<int> StartedJobView::ended() { return program_ ? program_->ended() : std::nullopt; }

} // namespace qx
