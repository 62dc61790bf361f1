// The jobs that arguments name, and the names of kinds and states.
#pragma once

#include "cli/harmless_buffer.h"
#include "model/job_codes.h"
#include "platform/database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qx::cli {

/// The waiting code of "kunde", "vertrag", "auftrag" or "kundenvertrag". These words, and those below, may be
/// German or English, one or several, in any case, umlauts also as two letters or decomposed.
std::optional<std::int16_t> kindFromText(std::string_view text);

/// "waiting", "warning", "error" or "done".
std::optional<JobState> stateFromText(std::string_view text);

/// "alle", "kunden", "verträge", "aufträge" or "zubehör".
std::optional<qxProcessState> selectionFromText(std::string_view text);

/// "Kunde", "Vertrag", "Auftrag", "Kundenvertrag"; "?" for a code of no kind.
std::string_view kindText(std::int16_t jobType);

/// "wartet", "Warnung", "Fehler", "erledigt", "gelöscht"; "?" for a code of no state.
std::string_view stateText(std::int16_t jobType);

/// The same as words for programs, which are also those of the filters: "kunde", "vertrag", "auftrag",
/// "kundenvertrag"; "waiting", "warning", "error", "done", "deleted". Empty for a code of no kind or state.
std::string_view kindWord(std::int16_t jobType);
std::string_view stateWord(std::int16_t jobType);
/// All of these words, and those of `processText`.
std::vector<std::string_view> kindWords();
std::vector<std::string_view> stateWords();
std::vector<std::string_view> processTexts();

/// The style of that word, and that of a status of the protocol ("Erledigt", "Warnung", "Fehler").
Style stateStyle(std::int16_t jobType);
Style statusStyle(std::string_view status);

/// What a line says of the reasons in `Fehlertext`: the first one, and how many there are besides, without
/// the sentence that announces them.
std::string briefReasons(std::string_view reasons);

/// The kind of transaction as the protocol names it.
std::string_view processText(std::int16_t jobType);

/// What a command needs to know about a job before working on it.
struct JobBrief {
  std::string jobId;
  std::int16_t jobType = 0;
  std::string number; ///< by which the protocol names the job before it is written
};

/// From a row with `JobID`, `JobType`, `Kundennummer` and `Vertragsnummer`.
JobBrief briefOf(Recordset& header);

/// Null when no job has this key.
std::optional<JobBrief> findJob(Connection& connection, std::string_view jobId);

/// The jobs of these keys, in order and without duplicates. Raises `ProgramError` for an unknown key.
std::vector<JobBrief> findJobs(Connection& connection, const std::vector<std::string>& jobIds);

} // namespace qx::cli
