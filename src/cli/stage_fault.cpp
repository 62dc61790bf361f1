#include "cli/stage_fault.h"

#include <algorithm>
#include <array>

namespace qx::cli {
namespace {

/// In the order of `FaultKind`.
constexpr auto terms = std::to_array<FaultTerm>({
    {"json.invalid", "the file is not JSON, or has another encoding than UTF-8",
     "Save the file as JSON in UTF-8; a file that breaks off was not written to its end."},
    {"object.expected", "something else stands in the place of an object",
     "Put objects into the array, and objects into `Positionen`."},
    {"type.missing", "the object does not say what it is", "Add `type`."},
    {"type.unknown", "there is no such kind of job", "Write `Kunde`, `Vertrag` or `Auftrag`."},
    {"property.unknown", "the kind has no such property",
     "Write the name exactly as the lists of properties have it; the hint names a similar one."},
    {"property.repeated", "the property is given twice", "Give it once."},
    {"property.missing", "the job cannot do without the property", "Give it a value; an empty text is none."},
    {"value.kind", "the value has the wrong kind, as a number in the place of a text",
     "Write texts in quotes, numbers and truth values without; the hint shows how."},
    {"value.range", "the number is too small or too large", "Correct the number; the schema has the limits."},
    {"value.date", "the text is not a date", "Write d.m.yyyy or yyyy-mm-dd, and days that exist."},
    {"value.character", "the text holds the character NUL", "Remove the character."},
    {"value.length", "the texts together are too long", "Shorten the texts to 16 MiB in all."},
    {"value.code", "the code does not fit the kind of job or position", "Leave `JobType` out."},
    {"key.length", "the key is longer than 32 characters",
     "Make keys of at most 32 characters, for example a hash of what identifies the job."},
    {"key.repeated", "another object of the file has the key",
     "Give each job, and each position, a key of its own."},
    {"key.taken", "a stored job has the key of the position",
     "Make `ChildID` of the job's key and the number of the line, or leave it out."},
    {"key.other_job", "the position names another job", "Leave `JobID` of positions out."},
    {"positions.unnumbered", "some positions of the order have a number and others none",
     "Number all positions or none."},
    {"content.repeated", "another job with the same content was handed over (with --unique)",
     "Hand a job over once. If it is meant twice, stage it without `--unique`, or give each an "
     "`Eingangsdatum`."},
});

static_assert(std::ranges::none_of(terms, [](const FaultTerm& term) { return term.remedy.empty(); }));

} // namespace

std::string_view codeOf(FaultKind kind) { return terms.at(static_cast<std::size_t>(kind)).code; }

std::span<const FaultTerm> faultTerms() { return terms; }

} // namespace qx::cli
