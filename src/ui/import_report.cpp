#include "ui/import_report.h"

#include "ui/counted.h"

#include <algorithm>
#include <array>
#include <utility>

namespace qx {
namespace {

constexpr std::size_t mostKept = 500;
constexpr std::size_t mostInQuestion = 10;

/// The reasons of a refusal, as reported by the reader of the file, with their German texts.
struct Reason {
  std::string_view given;
  std::string_view german;
};
constexpr std::array reasons{
    Reason{"the file ends before the record does", "Die Datei endet mitten im Satz."},
    Reason{"the record has too few fields", "Der Satz hat zu wenige Felder."},
    Reason{"the record has more fields than its kind: a value holds the separator",
           "Der Satz hat zu viele Felder; vermutlich enthält ein Wert ein Semikolon."},
    Reason{"the record has more than 66 fields", "Der Satz hat mehr als 66 Felder."},
    Reason{"the record is longer than 16 MiB", "Der Satz ist länger als 16 MiB."},
    Reason{"JobID is empty", "Der Schlüssel des Vorgangs (JobID) fehlt."},
    Reason{"ChildID is empty", "Der Schlüssel der Position (ChildID) fehlt."},
    Reason{"JobID has more than 32 characters", "Der Schlüssel des Vorgangs ist länger als 32 Zeichen."},
    Reason{"ChildID has more than 32 characters", "Der Schlüssel der Position ist länger als 32 Zeichen."},
    Reason{"a position of code 1001 is not read", "Positionen der Art 1001 werden nicht eingelesen."},
    Reason{"text after the banner is not read", "Der Text hinter der Kennung der Datei wird nicht gelesen."},
    Reason{"the position does not follow its header", "Die Position folgt nicht auf ihren Vorgang."},
};

std::string germanReason(std::string_view reason) {
  const auto* const known = std::ranges::find(reasons, reason, &Reason::given);
  if (known != reasons.end()) return std::string(known->german);
  constexpr std::string_view unfit = " cannot be '";
  if (const auto at = reason.find(unfit); at != std::string_view::npos && reason.ends_with('\'')) {
    std::string_view value = reason.substr(at + unfit.size());
    value.remove_suffix(1);
    return "Der Wert '" + std::string(value) + "' passt nicht in das Feld " +
           std::string(reason.substr(0, at)) + ".";
  }
  return "Der Satz kann nicht gespeichert werden (" + std::string(reason) + ").";
}

std::string atLine(std::int64_t line, std::string_view text) {
  return "Zeile " + std::to_string(line) + ": " + std::string(text);
}

} // namespace

void ImportReport::Lines::add(std::string line) {
  ++count;
  if (first.size() < mostKept) first.push_back(std::move(line));
}

std::string ImportReport::Lines::listed(std::size_t most) const {
  std::string text;
  const std::size_t shown = std::min(most, first.size());
  for (std::size_t i = 0; i < shown; ++i) text += first[i] + "\r\n";
  if (const std::int64_t more = count - static_cast<std::int64_t>(shown); more > 0)
    text += "und " + counted(more, "weiterer", "weitere") + "\r\n";
  return text;
}

void ImportReport::skipped(std::int64_t line, std::string_view reason) {
  refused_.add(atLine(line, germanReason(reason)));
}

void ImportReport::refused(std::int64_t line, std::string_view reason) {
  refused_.add(atLine(line, germanReason(reason)));
}

void ImportReport::setBack(std::int64_t line, std::string_view jobId) { setBack_.add(atLine(line, jobId)); }

void ImportReport::withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) {
  withoutHeader_.add(
      atLine(line, "Position " + std::string(childId) + " des Vorgangs " + std::string(jobId)));
}

std::string ImportReport::question() const {
  return (setBack_.count == 1
              ? std::string("Ein Vorgang der Datei ist hier schon erledigt und würde wieder zurückgesetzt:")
              : grouped(setBack_.count) +
                    " Vorgänge der Datei sind hier schon erledigt und würden wieder zurückgesetzt:") +
         "\r\n\r\n" + setBack_.listed(mostInQuestion) +
         "\r\nDie nächste Verarbeitung schreibt sie dann noch einmal in die Warenwirtschaft.\r\n"
         "Soll die Datei trotzdem eingelesen werden?";
}

std::string ImportReport::text(std::string_view fileName, const JobFileReport& report) const {
  if (report.end != JobFileEnd::Complete && report.end != JobFileEnd::Failed) return {};
  const bool failed = report.end == JobFileEnd::Failed;
  if (setBack_.count + refused_.count + withoutHeader_.count == 0 && !failed) return {};
  std::string text = std::string(fileName) + "\r\n\r\nEingelesen wurden " +
                     counted(report.counts.jobs, "Vorgang", "Vorgänge") + " und " +
                     counted(report.counts.positions, "Position", "Positionen") + ".\r\n";
  if (failed) text += "\r\nDas Lesen brach ab: " + report.germanFailure + "\r\n";
  if (refused_.count > 0) text += "\r\nNicht eingelesen wurden:\r\n" + refused_.listed(mostKept);
  if (setBack_.count > 0)
    text += "\r\nErledigte Vorgänge, die zurückgesetzt wurden (die nächste Verarbeitung schreibt sie noch "
            "einmal):\r\n" +
            setBack_.listed(mostKept);
  if (withoutHeader_.count > 0)
    text += "\r\nPositionen, deren Vorgang nicht eingetroffen ist:\r\n" + withoutHeader_.listed(mostKept);
  return text;
}

} // namespace qx
