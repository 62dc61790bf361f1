#include "cli/stage_fault.h"

#include <array>

namespace qx::cli {
namespace {

/// In the order of `FaultKind`.
constexpr auto terms = std::to_array<FaultTerm>({
    {"json.invalid", "the file is not JSON, or has another encoding than UTF-8"},
    {"object.expected", "something else stands in the place of an object"},
    {"type.missing", "the object does not say what it is"},
    {"type.unknown", "there is no such kind of job"},
    {"property.unknown", "the kind has no such property"},
    {"property.repeated", "the property is given twice"},
    {"property.missing", "the job cannot do without the property"},
    {"value.kind", "the value has the wrong kind, as a number in the place of a text"},
    {"value.range", "the number is too small or too large"},
    {"value.date", "the text is not a date"},
    {"value.character", "the text holds the character NUL"},
    {"value.length", "the texts together are too long"},
    {"value.code", "the code does not fit the kind of job or position"},
    {"key.length", "the key is longer than 32 characters"},
    {"key.repeated", "another object of the file has the key"},
    {"key.taken", "a stored job has the key of the position"},
    {"key.other_job", "the position names another job"},
    {"positions.unnumbered", "some positions of the order have a number and others none"},
    {"content.repeated", "another job with the same content was handed over (with --unique)"},
});

} // namespace

std::string_view codeOf(FaultKind kind) { return terms.at(static_cast<std::size_t>(kind)).code; }

std::span<const FaultTerm> faultTerms() { return terms; }

} // namespace qx::cli
