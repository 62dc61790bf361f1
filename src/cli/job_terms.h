// The names of the kinds and states of jobs on the command line and in the output.
#pragma once

#include "model/job_codes.h"

#include <optional>
#include <string_view>

namespace qx::cli {

/// The waiting code of "kunde", "vertrag", "auftrag" or "kundenvertrag".
std::optional<std::int16_t> kindFromText(std::string_view text);

/// "waiting", "warning", "error" or "done".
std::optional<JobState> stateFromText(std::string_view text);

/// "alle", "kunden", "verträge", "aufträge" or "zubehör", umlauts also as two letters or decomposed.
std::optional<qxProcessState> selectionFromText(std::string_view text);

/// "Kunde", "Vertrag", "Auftrag", "Kundenvertrag"; "?" for a code of no kind.
std::string_view kindText(std::int16_t jobType);

/// "wartet", "Warnung", "Fehler", "erledigt", "gelöscht"; "?" for a code of no state.
std::string_view stateText(std::int16_t jobType);

/// The kind of transaction as the protocol names it.
std::string_view processText(std::int16_t jobType);

/// How findings of this severity are called; a clean one is a hint.
std::string_view severityWord(CheckStatus severity);

} // namespace qx::cli
