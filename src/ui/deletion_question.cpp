#include "ui/deletion_question.h"

#include "platform/failure.h"
#include "platform/path_text.h"
#include "store/job_file_target.h"
#include "store/kept_jobs.h"

#include <exception>
#include <string_view>

namespace qx {
namespace {

constexpr std::string_view savingTitle = "Vorgänge sichern";
constexpr std::string_view savingFilter = "JSON (*.json)|*.json";

std::string causeOfTarget(const std::exception& failure) {
  const auto end = endOfTarget(failure);
  if (!end) return germanCause(failure);
  return end == JobFileEnd::TargetRefused ? "Diese Datei gehört zur Datenbank."
                                          : "Unter diesem Namen kann keine Datei geschrieben werden.";
}

/// The file with the jobs; null when there is none.
std::optional<std::string> save(Environment& environment, const std::vector<std::string>& jobIds) {
  std::optional<std::string> file;
  trapped(environment.diagnostics, {"file choice"},
          [&] { file = environment.desktop.chooseFile(savingTitle, savingFilter, FileUse::Writing); });
  if (!file || file->empty()) return std::nullopt;
  const bool failed = trapped(
      environment.diagnostics, {"saving before a deletion"}, [&] { keepJobs(environment, jobIds, *file); },
      [&](const std::exception& failure) {
        showMessage(environment,
                    {"Es wurde nichts gelöscht, denn die Vorgänge konnten nicht gesichert werden.\r\n" +
                         causeOfTarget(failure),
                     std::string(savingTitle), MessageIcon::Critical});
      });
  return failed ? std::nullopt : file;
}

} // namespace

DeletionConsent askBeforeDeletion(Environment& environment, const AskDeletion& ask, const Message& question,
                                  const std::vector<std::string>& jobIds) {
  std::optional<DeletionAnswer> answer;
  if (ask) answer = ask(question);
  if (!answer) answer = askQuestion(environment, question) ? DeletionAnswer::Delete : DeletionAnswer::Keep;
  if (answer != DeletionAnswer::SaveFirst) return {answer == DeletionAnswer::Delete, {}};
  const std::optional<std::string> file = save(environment, jobIds);
  return {file.has_value(), file.value_or("")};
}

std::string deletionResult(std::string deleted, const DeletionConsent& consent) {
  if (consent.file.empty()) return deleted;
  return deleted + ", gesichert in " + textOf(pathOf(consent.file).filename());
}

} // namespace qx
