#include "cli/output_terms.h"

#include "cli/job_terms.h"
#include "cli/property_terms.h"
#include "cli/stage_fault.h"
#include "engine/finding_terms.h"
#include "engine/section_runner.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "model/required_properties.h"

#include <algorithm>
#include <cstddef>

namespace qx::cli {
namespace {

using Words = std::vector<std::string_view>;
using Member = OutputMember;

Words findingWords() {
  Words words;
  for (const RuleTerms& row : allTerms()) words.push_back(row.code);
  return words;
}
Words faultWords() {
  Words words;
  for (const FaultTerm& term : faultTerms()) words.push_back(term.code);
  return words;
}
Words severityDigits() { return {"10", "20", "30"}; }
Words protocolWords() { return {statusDone, statusWarning, statusError}; }
Words runWords() { return {"completed", "stopped", "refused", "broken"}; }
Words importWords() { return {"skipped", "refused", "setBack", "withoutHeader"}; }
Words doneWord() { return {"done"}; }
Words rejectedWord() { return {"rejected"}; }

constexpr Member text(std::string_view name, std::string_view meaning) { return {name, meaning}; }
constexpr Member whole(std::string_view name, std::string_view meaning) {
  return {name, meaning, MemberKind::Whole};
}
constexpr Member number(std::string_view name, std::string_view meaning) {
  return {name, meaning, MemberKind::Number};
}
constexpr Member truth(std::string_view name, std::string_view meaning) {
  return {name, meaning, MemberKind::Truth};
}
constexpr Member object(std::string_view name, std::string_view meaning, const OutputObject& content) {
  return {name, meaning, MemberKind::Object, &content};
}

template <std::size_t... Ns>
constexpr auto joined(const std::array<Member, Ns>&... parts) {
  std::array<Member, (Ns + ...)> all{};
  auto at = all.begin();
  ((at = std::ranges::copy(parts, at).out), ...);
  return all;
}

constexpr Member jobId = text("JobID", "Key of the job.");
constexpr Member transaction = text("Vorgang", "Transaction of the protocol.").of(processTexts);
constexpr Member protocolNumber =
    text("Nummer",
         "Number in the protocol: of a written order that of the order, else of the contract or customer.");

// Parts of several objects.

constexpr auto outcomeMembers = std::to_array<Member>({
    text("state", "State of the job, as the filter of list has it.").of(stateWords).orNull(),
    text("kind", "Kind of the job, as the filter of list has it.").of(kindWords).orNull(),
    text("number", "Number of the order, contract or customer in the ERP; null unless the job is done.")
        .orNull(),
});

constexpr auto positionMembers = std::to_array<Member>({
    text("ChildID", "Key of the position."),
    text("Positionsnummer", "Number of its line, as staged."),
});
constexpr OutputObject position{"position", "A position of a job.", positionMembers};

constexpr auto detailMembers = std::to_array<Member>({
    text("code", "Code of the rule; it never changes, but there may be new ones.").of(findingWords),
    whole("severity", "10 for a hint, 20 for a warning, 30 for an error.").of(severityDigits),
    text("field", "Property of the job that is concerned.").orNull(),
    object("position", "Position that is concerned; null for the job itself.", position).orNull(),
    text("value", "Value of the job."),
    text("stored", "Differing value of the master data."),
    text("text", "The finding as a German sentence."),
});
constexpr OutputObject detail{"detail", "A finding or hint.", detailMembers};

constexpr auto detailsMembers = std::to_array<Member>({
    text("hints", "Hints as German sentences; they change no status.").list(),
    object("details", "Every finding and hint, in their order.", detail).list(),
});
constexpr auto checkMembers =
    joined(std::to_array<Member>({
               whole("checkStatus", "Highest severity: 10 clean, 20 with warnings, 30 with errors.")
                   .of(severityDigits),
               text("findings", "Findings as German sentences.").list(),
           }),
           detailsMembers);

constexpr auto faultMembers = std::to_array<Member>({
    whole("line", "Line of the file, from 1.").orNull(),
    whole("object", "Number of the object in the file, from 1.").orNull(),
    text("property", "Property at fault, as Positionen[2].Menge.").orNull(),
    text("code", "Code of the fault; it never changes, but there may be new ones.").of(faultWords),
    text("message", "What is wrong."),
    text("hint", "What to write instead.").orNull(),
});
constexpr OutputObject fault{"fault", "A fault of a file of jobs.", faultMembers};

constexpr auto leftMembers = std::to_array<Member>({
    jobId,
    text("reason", "What the database says."),
});
constexpr OutputObject leftJob{"left", "A job that the database refuses to change.", leftMembers};
constexpr Member left =
    object("left", "Jobs that stay as they were, because the database refuses to change them.", leftJob)
        .list()
        .sometimes();

// Databases and files.

constexpr auto initMembers = std::to_array<Member>({
    truth("created", "Whether the database is new."),
    truth("demo", "Whether it has the demo data."),
    whole("staged", "How many jobs of the demo data are staged."),
});
constexpr OutputObject init{"init", "What became of the database.", initMembers};

constexpr auto backupMembers = std::to_array<Member>({text("backup", "Name of the copy.")});
constexpr OutputObject backup{"backup", "The copy of the database.", backupMembers};

constexpr auto tableMembers = std::to_array<Member>({
    text("table", "Name of the table."),
    truth("created", "Whether the table is new."),
    truth("redefined", "Whether its rows were copied into a table defined anew."),
    text("columns", "Columns that were added.").list(),
    text("indexes", "Indexes that were added.").list(),
});
constexpr OutputObject changedTable{"table", "A table that was changed.", tableMembers};
constexpr auto upgradeMembers = std::to_array<Member>({
    truth("upgraded", "Whether anything was changed."),
    whole("from", "Version that the database had."),
    whole("to", "Version that it has now."),
    text("backup", "Copy of the database as it was before.").orNull(),
    object("tables", "What was changed.", changedTable).list(),
});
constexpr OutputObject upgrade{"upgrade", "What was done to the database.", upgradeMembers};

constexpr auto convertMembers = std::to_array<Member>({
    whole("rows", "How many rows were read."),
    whole("jobs", "How many jobs were written."),
});
constexpr OutputObject conversion{"conversion", "What was converted.", convertMembers};

constexpr auto exportMembers = std::to_array<Member>({
    whole("jobs", "How many jobs were written."),
    whole("positions", "How many positions were written."),
    whole("skipped", "How many jobs do not travel: deleted ones and those of an unknown code."),
    whole("unreadable", "How many lines no import reads back as they are."),
    text("unreadableJobs", "Keys of the first 100 jobs that they belong to.").list(),
});
constexpr OutputObject exported{"export", "What was written.", exportMembers};

constexpr auto importedLineMembers = std::to_array<Member>({
    whole("line", "Line of the file, from 1."),
    text("result", "What became of it.").of(importWords),
    text("reason", "Why it was skipped or refused.").sometimes(),
    text("JobID", "Key of the job that waits or is parked again, or is not staged.").sometimes(),
    text("ChildID", "Key of the position without its job.").sometimes(),
});
constexpr OutputObject importedLine{"line", "A line of the file that needs attention.", importedLineMembers};
constexpr auto importMembers = std::to_array<Member>({
    object("lines", "Lines that were not read, or that have done what may not be expected.", importedLine)
        .list(),
    whole("jobs", "How many jobs are staged."),
    whole("positions", "How many positions are staged."),
    whole("skipped", "How many lines were passed over."),
    whole("refused", "How many records are defective."),
    whole("setBack", "How many jobs were done and are waiting or parked now."),
    whole("withoutHeader", "How many positions are stored without their job."),
    text("error", "Why the import broke off; what the counts say is staged.").sometimes(),
});
constexpr OutputObject imported{"import", "What was read.", importMembers};

constexpr auto scrambleMembers = std::to_array<Member>({whole("lines", "How many lines were written.")});
constexpr OutputObject scrambled{"scramble", "What was written.", scrambleMembers};

constexpr auto outputMembers = std::to_array<Member>({
    text("name", "Name of the output."),
    text("command", "What prints it."),
});
constexpr OutputObject listedOutput{"output", "A document that a command prints.", outputMembers};
constexpr auto outputsMember =
    std::to_array<Member>({object("outputs", "Every output.", listedOutput).list()});
constexpr OutputObject outputList{"outputs", "The outputs that have a schema.", outputsMember};

// Staging.

constexpr auto skippedMembers = joined(
    std::to_array<Member>({jobId}), outcomeMembers,
    std::to_array<Member>({
        text("doneSince", "Moment since which it is done, in ISO form; null when that is unknown.").orNull(),
        truth("changed", "Whether its content differs from what is done; null when that is unknown.")
            .orNull(),
    }));
constexpr OutputObject skippedJob{"skipped", "A job that is done already and was passed over.",
                                  skippedMembers};
constexpr auto earlierMembers = std::to_array<Member>({
    jobId,
    text("since", "Moment of the handover, in ISO form; null for a job of the same file.").orNull(),
});
constexpr OutputObject earlierJob{"earlier", "The job that was handed over first.", earlierMembers};
constexpr auto repeatedMembers = std::to_array<Member>({
    jobId,
    object("sameContentAs", "The job whose content it has.", earlierJob),
});
constexpr OutputObject repeatedJob{"repeated", "A job with the content of another one.", repeatedMembers};

constexpr auto stageMembers = std::to_array<Member>({
    whole("staged", "How many jobs are staged, or would be."),
    whole("skipped", "How many jobs are done already and were passed over."),
    truth("dryRun", "True when the file was only checked.").sometimes(),
    text("jobs", "Keys of the staged jobs, in the order of the file.").list(),
    object("skippedJobs", "Those that were passed over, in the order of the file.", skippedJob)
        .list()
        .sometimes(),
    object("repeatedJobs", "Those whose content was handed over under another key.", repeatedJob)
        .list()
        .sometimes(),
    text("writtenBefore", "Keys of the orders of which the next run writes a second one.").list().sometimes(),
    whole("rejected", "With --partial: how many objects were left out.").sometimes(),
    object("faults", "With --partial: the first 100 faults.", fault).list().sometimes(),
});
constexpr OutputObject staging{"staging", "What was staged.", stageMembers};

constexpr auto fileMembers = std::to_array<Member>({
    text("file", "Name of the file in the watched folder."),
    text("state", "What became of it.").of(doneWord),
    text("movedTo", "Where it is now, seen from the folder."),
    whole("staged", "How many jobs are staged; missing for a file that had been staged before.").sometimes(),
    whole("skipped", "How many jobs are done already and were passed over; missing in the same case.")
        .sometimes(),
    whole("repeated", "How many jobs have a content that was handed over under another key.").sometimes(),
});
constexpr OutputObject doneFile{"done", "A file that was staged.", fileMembers};
constexpr auto rejectedMembers = std::to_array<Member>({
    text("file", "Name of the file in the watched folder."),
    text("state", "What became of it.").of(rejectedWord),
    text("movedTo", "Where it is now, seen from the folder."),
    text("error", "Why nothing of it is staged."),
    whole("line", "Line of the first fault.").orNull(),
});
constexpr OutputObject rejectedFile{"rejected", "A file of which nothing is staged.", rejectedMembers};

// Looking at jobs.

/// With `--columns` a row has the named ones alone.
constexpr auto sometimesOutcome = [] {
  auto members = outcomeMembers;
  for (Member& member : members) member.optional = true;
  return members;
}();
constexpr OutputObject listedJob{"job", "A job of the list, with all columns or those of --columns.",
                                 sometimesOutcome, RowKind::Job};
constexpr auto listMembers =
    std::to_array<Member>({object("jobs", "The jobs, in the order of the list.", listedJob).list()});
constexpr OutputObject jobList{"list", "The list of jobs.", listMembers};

constexpr OutputObject shownPosition{
    "jobPosition", "A staged position, with its columns.", {}, RowKind::Position};
constexpr auto lineMembers = std::to_array<Member>({
    whole("Positionsnummer", "Number of the line.").orNull(),
    text("Artikelnummer", "Number of the article.").orNull(),
    number("Menge", "Quantity.").in("in Mengeneinheit").orNull(),
    text("Mengeneinheit", "Unit of the quantity.").from("Mengeneinheit").orNull(),
    number("Preis", "Price that was written, net or with tax as Preistyp of the order says.")
        .in("for Preiseinheit units of Mengeneinheit, in Währung of the order")
        .orNull(),
    number("Preiseinheit", "How many units Preis is for.").in("in Mengeneinheit").orNull(),
    number("Rabatt", "Discount on the line.").in("percent").orNull(),
});
constexpr OutputObject orderLine{"orderLine", "An article line of the written order.", lineMembers};
constexpr auto orderMembers = std::to_array<Member>({
    whole("Auftragsnummer", "Number of the order.").orNull(),
    text("Währung", "Currency of the order.").from("Währung").orNull(),
    whole("Preistyp", "0: the prices of the lines are net; 1: they contain the tax.").orNull(),
    number("Gesamtnetto", "Sum without tax.").in("in Währung").orNull(),
    number("GesamtMwSt", "Tax.").in("in Währung").orNull(),
    number("Gesamtbrutto", "Sum with tax.").in("in Währung").orNull(),
    object("lines", "Article lines.", orderLine).list(),
});
constexpr OutputObject order{"order", "The order that the job has become, as the ERP has it.", orderMembers};
constexpr Member writtenOrder =
    object("order", "What was written; missing unless the job has become an order.", order).sometimes();
constexpr auto showMembers =
    joined(std::to_array<Member>({object("Positionen", "Positions of the job.", shownPosition).list()}),
           outcomeMembers, std::to_array<Member>({writtenOrder}), checkMembers);
constexpr OutputObject shownJob{"job", "The job, with all columns.", showMembers, RowKind::Job};

constexpr auto checkedJobMembers =
    joined(std::to_array<Member>({jobId, transaction, protocolNumber}), checkMembers);
constexpr OutputObject checkedJob{"job", "A checked job.", checkedJobMembers};
constexpr auto checkDocument = std::to_array<Member>({
    object("jobs", "The checked jobs.", checkedJob).list(),
    text("error", "Why not all jobs were checked.").sometimes(),
});
constexpr OutputObject check{"check", "What the check has found.", checkDocument};

constexpr auto ruleMembers = std::to_array<Member>({
    text("code", "Code of the rule.").of(findingWords),
    whole("severity", "10 for a hint, 20 for a warning, 30 for an error.").of(severityDigits),
    text("text", "German text of the run, with marks in the places of values."),
    text("dialogCode", "Short code of the windows."),
    text("dialogText", "German text of the windows."),
    text("field", "Property of the job that is concerned; empty for none."),
    text("control", "Control of the window that is concerned; empty for none."),
    text("remedy", "What to do, in German."),
    text("note", "What else to know, in German; empty for nothing."),
});
constexpr OutputObject rule{"rule", "A rule of checking or writing.", ruleMembers};
constexpr auto rulesMember = std::to_array<Member>({object("rules", "The rules that say so.", rule).list()});
constexpr OutputObject rules{"rules", "The rules of a code or a text.", rulesMember};
constexpr auto explainedMembers = joined(std::to_array<Member>({jobId}), checkMembers, rulesMember);
constexpr OutputObject explainedJob{"job", "The findings of a job and their rules.", explainedMembers};

// Deleting.

constexpr auto dryRunMembers = std::to_array<Member>({
    text("jobs", "Keys of the jobs that would go.").list(),
    whole("wouldDelete", "Their number."),
});
constexpr OutputObject dryRun{"dryRun", "With --dry-run: what would be deleted.", dryRunMembers};
constexpr auto deleteMembers = std::to_array<Member>({whole("deleted", "How many jobs were deleted."), left});
constexpr OutputObject deletion{"deletion", "What was deleted.", deleteMembers};
constexpr auto purgeMembers = std::to_array<Member>({
    whole("deleted", "How many jobs were deleted."),
    whole("undated", "How many jobs stay because their date of receipt cannot be read."),
    text("undatedJobs", "Keys of the first 100 of them.").list().sometimes(),
    whole("refused", "How many jobs the database refused to delete."),
    left,
});
constexpr OutputObject purge{"deletion", "What was deleted.", purgeMembers};

// Processing.

constexpr auto processedMembers =
    joined(std::to_array<Member>({
               jobId,
               transaction,
               protocolNumber,
               text("Status", "Result in the protocol.").of(protocolWords),
               whole("JobType", "Code of kind and state."),
           }),
           outcomeMembers,
           std::to_array<Member>({text("Fehlertext", "Reasons of the run, one a line; empty for none.")}),
           detailsMembers, std::to_array<Member>({writtenOrder}));
constexpr OutputObject processedJob{"job", "A job that the run has taken.", processedMembers};

constexpr auto countMembers = std::to_array<Member>({
    whole("processed", "All jobs that were taken."),
    whole("done", "Those that were written."),
    whole("warning", "Those that are parked with warnings."),
    whole("error", "Those that are parked with errors."),
});
constexpr OutputObject counts{"counts", "Numbers of jobs.", countMembers};
constexpr auto causeMembers = std::to_array<Member>({
    text("code", "Code of the rule that they break.").of(findingWords),
    text("value", "Value that breaks it, cut after 60 characters; empty for many values."),
    whole("jobs", "How many jobs."),
});
constexpr OutputObject cause{"cause", "A reason for which jobs were not written.", causeMembers};
constexpr auto summaryMembers = std::to_array<Member>({
    object("counts", "What is durable.", counts),
    object("causes", "Why jobs were not written, the most frequent cause first.", cause).list(),
    text("protocol", "Identity of the protocol; empty without one."),
    number("seconds", "Time that the run took.").in("seconds"),
    whole("protocolErrors", "How many lines of the protocol or entries of the index could not be written.")
        .sometimes(),
    left,
    truth("stopped", "True when the run was stopped before its end.").sometimes(),
    whole("waiting", "How many jobs the stopped run has left waiting.").sometimes(),
    text("error", "Why the run broke off; all other jobs are still waiting.").sometimes(),
});
constexpr OutputObject summary{"summary", "The run; the last line.", summaryMembers};
constexpr auto runMembers =
    joined(std::to_array<Member>(
               {object("jobs", "The jobs that the run has taken; with --quiet those that were not written.",
                       processedJob)
                    .list()}),
           summaryMembers);
constexpr OutputObject run{"run", "The run.", runMembers};

constexpr auto releaseMembers = std::to_array<Member>({
    whole("released", "How many jobs the next run takes again."),
    text("jobs", "Their keys.").list(),
});
constexpr OutputObject release{"release", "What was released.", releaseMembers};

constexpr auto protocolLineMembers =
    joined(std::to_array<Member>({
               transaction,
               protocolNumber,
               text("Status", "Result of the job.").of(protocolWords),
               text("VADatum", "Date of receipt of the job."),
               text("Info", "What was done, or the reasons; the hints below, one a line."),
               text("Artikelnummern", "Articles of an order, in the order of its positions."),
               text("Bez", "Their names."),
               text("Menge", "Their quantities."),
               text("Preis", "Their prices as staged."),
               truth("Neukunde", "Whether the job has created a customer."),
           }),
           outcomeMembers);
constexpr OutputObject protocolLine{
    "line", "A job in the protocol; kind is vertrag for both kinds of contract.", protocolLineMembers};
constexpr auto protocolMembers = std::to_array<Member>({
    text("protocol", "Identity of the last protocol of the day.").orNull(),
    text("protocols", "Identities of all protocols of the day.").list(),
    object("lines", "Their lines.", protocolLine).list(),
});
constexpr OutputObject protocol{"protocol", "The protocols of a day.", protocolMembers};
constexpr auto protocolPurgeMembers = std::to_array<Member>({
    whole("protocols", "How many protocols were deleted."),
    whole("runs", "How many entries of runs were deleted."),
    whole("changes", "How many changes of states were deleted."),
    whole("contents", "How many contents were forgotten."),
});
constexpr OutputObject protocolPurge{"protocolPurge", "What was deleted.", protocolPurgeMembers};

constexpr auto reasonMembers = std::to_array<Member>({
    text("code", "Code of the rule that says it; null for a text of no rule.").of(findingWords).orNull(),
    text("text", "The reason as a German sentence."),
});
constexpr OutputObject reason{"reason", "Why a job was not written, or what is to be known about it.",
                              reasonMembers};
constexpr auto cursorMember =
    std::to_array<Member>({text("cursor", "Place in the feed behind which --after goes on.")});
constexpr auto changeMembers =
    joined(cursorMember,
           std::to_array<Member>({
               text("time", "Moment at which the change was written, in ISO form."),
               jobId,
               whole("JobType", "Code of kind and state after the change."),
           }),
           outcomeMembers,
           std::to_array<Member>({
               text("Fehlertext", "Reasons as they were then, one a line; empty for none."),
               object("reasons", "The same, one by one.", reason).list(),
           }));
constexpr OutputObject change{"change", "A change of a job's state.", changeMembers};
constexpr auto feedEndMembers = joined(
    cursorMember, std::to_array<Member>({truth("more", "Whether --limit has left out further changes.")}));
constexpr OutputObject feedEnd{"end", "Where the feed goes on; the last line.", feedEndMembers};
constexpr auto resultsMembers =
    joined(std::to_array<Member>(
               {object("results", "The changes, in the order in which they became visible.", change).list()}),
           feedEndMembers);
constexpr OutputObject results{"results", "The feed of results.", resultsMembers};

// The state of an installation.

constexpr auto stateMembers = std::to_array<Member>({
    whole("waiting", "Those that the next run takes."),
    whole("warning", "Those that are parked with warnings."),
    whole("error", "Those that are parked with errors."),
    whole("done", "Those that were written."),
    whole("deleted", "Those that are marked as deleted."),
});
constexpr OutputObject states{"states", "Numbers of jobs by state.", stateMembers};
constexpr auto kindMembers = std::to_array<Member>({
    object("kunde", "Customer jobs.", states),
    object("kundenvertrag", "Contracts of customer jobs.", states),
    object("vertrag", "Contract jobs.", states),
    object("auftrag", "Order jobs.", states),
});
constexpr OutputObject jobCounts{"jobs", "Numbers of jobs by kind.", kindMembers};
constexpr auto oldestMembers =
    std::to_array<Member>({jobId, text("Eingangsdatum", "Date of receipt, dd.mm.yyyy.")});
constexpr OutputObject oldest{"oldest", "The job that waits longest.", oldestMembers};
constexpr auto bookedRunMembers = std::to_array<Member>({
    text("begin", "Time stamp of its begin."),
    text("end", "Time stamp of its end; null as long as it goes on, and when its program died.").orNull(),
    text("outcome", "How it ended; null in the same cases.").of(runWords).orNull(),
    whole("processed", "All jobs that were taken."),
    whole("done", "Those that were written."),
    whole("warning", "Those that were parked with warnings."),
    whole("error", "Those that were parked with errors."),
    whole("waiting", "Those that a stopped run has left waiting."),
    text("user", "Who has started it."),
    text("program", "Program and version."),
    text("protocol", "Identity of the protocol.").orNull(),
});
constexpr OutputObject bookedRun{"run", "A run.", bookedRunMembers};

constexpr Member held = truth("held", "Whether the import is locked.");
constexpr Member holder = text("Benutzer", "User who holds the lock; empty for nobody.");
constexpr Member alive =
    truth("alive", "Whether the program that holds the lock is running; null when that is unknown.").orNull();
constexpr auto statusLockMembers = std::to_array<Member>({held, holder, alive});
constexpr OutputObject statusLock{"lock", "The single-user lock.", statusLockMembers};
constexpr auto statusMembers = std::to_array<Member>({
    object("jobs", "How many jobs there are.", jobCounts),
    object("oldest", "The waiting job with the earliest date of receipt.", oldest).orNull(),
    object("runs", "The last runs, the latest first; null for a database that keeps no book of them.",
           bookedRun)
        .list()
        .orNull(),
    object("lock", "Who processes now.", statusLock),
    text("schema", "Version of the database; null for that of another program.").orNull(),
    whole("bytes", "Size of the database's files; null on a server.").in("bytes").orNull(),
    whole("bytesFree", "Free space of their disk; null on a server.").in("bytes").orNull(),
    whole("protocols", "How many protocols there are."),
    whole("protocolLines", "How many lines they have."),
});
constexpr OutputObject status{"status", "The state of an installation at one moment.", statusMembers};
constexpr auto lockMembers = std::to_array<Member>(
    {held, holder, text("SessionID", "Session that holds the lock; empty for none."), alive});
constexpr OutputObject lock{"lock", "The single-user lock.", lockMembers};
constexpr OutputObject releasedLock{
    "lock", "The single-user lock, which is not held now; the other members say who held it.", lockMembers};

// Options.

constexpr auto settingMembers = std::to_array<Member>({
    text("section", "Section of the option."),
    text("key", "Key of the option."),
    text("value", "Value as it is stored; empty for an option that was never written."),
    truth("local", "Whether it is in the user's own store."),
});
constexpr OutputObject setting{"setting", "An option.", settingMembers};
constexpr auto listedSettingMembers =
    joined(settingMembers, std::to_array<Member>({
                               text("meaning", "What the option does."),
                               text("effective", "Value that counts."),
                               text("default", "Value that counts when none is stored."),
                               text("allowed", "Values that it takes."),
                               text("readers", "Commands that read it; none when other programs do.").list(),
                           }));
constexpr OutputObject listedSetting{"setting", "An option and its terms.", listedSettingMembers};
constexpr auto settingsMembers =
    std::to_array<Member>({object("settings", "All options.", listedSetting).list()});
constexpr OutputObject settings{"settings", "The options.", settingsMembers};
constexpr auto exportedSettings =
    std::to_array<Member>({whole("exported", "How many options were written.")});
constexpr OutputObject settingsExport{"settingsExport", "What was written.", exportedSettings};
constexpr auto importedSettings = std::to_array<Member>({whole("imported", "How many options were stored.")});
constexpr OutputObject settingsImport{"settingsImport", "What was stored.", importedSettings};

constexpr auto errorMembers = std::to_array<Member>({
    text("error", "What is wrong."),
    text("file", "File that is wrong.").orNull(),
    whole("line", "Line that is wrong, from 1.").orNull(),
    text("field", "Property or key that is wrong.").orNull(),
    object("faults", "The first 100 faults of a file of jobs.", fault).list().sometimes(),
});
constexpr OutputObject error{"error", "Why the command did nothing, or did not come to its end.",
                             errorMembers};

constexpr auto outputs = std::to_array<OutputTerm>({
    {"init", "init --json", {&init}},
    {"stage", "stage --json", {&staging}},
    {"stage-watch-line", "a line of stage --watch --json=lines", {&doneFile, &rejectedFile}},
    {"convert", "convert --output --json", {&conversion}},
    {"schema", "schema --output --json", {&outputList}},
    {"list", "list --json", {&jobList}},
    {"list-line", "a line of list --json=lines", {&listedJob}},
    {"show", "show --json", {&shownJob}},
    {"check", "check --json", {&check}},
    {"explain", "explain --json", {&rules, &explainedJob}},
    {"delete", "delete --json", {&deletion, &dryRun}},
    {"purge", "purge --json", {&purge, &dryRun}},
    {"process", "process --json", {&run}},
    {"process-line", "a line of process --json=lines", {&processedJob, &summary}},
    {"release", "release --json", {&release}},
    {"protocol", "protocol --json", {&protocol}},
    {"protocol-purge", "protocol purge --json", {&protocolPurge}},
    {"results", "results --json", {&results}},
    {"results-line", "a line of results --json=lines", {&change, &feedEnd}},
    {"status", "status --json", {&status}},
    {"lock-show", "lock show --json", {&lock}},
    {"lock-release", "lock release --json", {&releasedLock}},
    {"import", "import --json", {&imported}},
    {"export", "export --json", {&exported}},
    {"scramble", "scramble --json", {&scrambled}},
    {"unscramble", "unscramble --json", {&scrambled}},
    {"settings-list", "settings list --json", {&settings}},
    {"settings-get", "settings get --json", {&setting}},
    {"settings-set", "settings set --json", {&setting}},
    {"settings-export", "settings export --json", {&settingsExport}},
    {"settings-import", "settings import --json", {&settingsImport}},
    {"backup", "backup --json", {&backup}},
    {"upgrade", "upgrade --json", {&upgrade}},
    {"error", "any command with --json that fails", {&error}},
});

// Rows.

MemberKind memberKind(FieldKind kind) {
  switch (kind) {
  case FieldKind::Int16:
  case FieldKind::Int32:
    return MemberKind::Whole;
  case FieldKind::Double:
    return MemberKind::Number;
  case FieldKind::Boolean:
    return MemberKind::Truth;
  case FieldKind::Text:
  case FieldKind::Date:
    break;
  }
  return MemberKind::Text;
}

/// Adds the columns of the table that are not there yet.
template <class Table>
void addColumns(std::vector<OutputMember>& members, ObjectKind kind, const Table& table) {
  for (const auto& field : table) {
    if (!field.stored() || std::ranges::find(members, field.name, &OutputMember::name) != members.end())
      continue;
    const PropertyTerm& term = propertyTerm(kind, field.name);
    OutputMember member{field.name, term.meaning, memberKind(field.kind)};
    member.unit = term.unit;
    member.codes = term.codes;
    members.push_back(member);
  }
}

constexpr std::string_view unused = "Kept for other programs; this one leaves it as it is.";

constexpr Member jobTypeColumn = whole("JobType", "Code of kind and state.");

/// What is not put as to a sender.
constexpr auto jobColumns = std::to_array<Member>({
    jobId,
    jobTypeColumn,
    whole("Status", "Severity of the last check: 10 clean, 20 with warnings, 30 with errors."),
    text("Eingangsdatum", "Date of receipt as it was staged, dd.mm.yyyy."),
    text("Fehlertext", "Reasons of the last check or run, one a line."),
});
constexpr auto positionColumns = std::to_array<Member>({
    jobId,
    text("ChildID", "Key of the position."),
    jobTypeColumn,
    text("Positionsnummer", "Number of the line; its column is a text."),
});

/// The columns of the tables that no property of a staged object fills.
constexpr auto furtherJobColumns = std::to_array<Member>({
    whole("ImportType", "Always 10."),
    whole("ProcessWarning", "1 for a parked job that the next run takes again."),
    truth("Fehler", unused),
    truth("Erledigt", "Whether the order was written."),
    truth("Neukunde", unused),
    truth("AdresseAendernJN", unused),
    truth("ZahlungsartAendernJN", unused),
    truth("NeukundeJN", unused),
    text("KontoNummer", unused),
    text("Bankleitzahl", unused),
    text("KundengruppenShop", unused),
    whole("AendStatShop", unused),
    text("Info", unused),
    text("Kündigungsgrund", unused),
    whole("PreisabweichungGrund", unused),
    text("PreisabweichungGenehmigender", unused),
    text("PreisabweichungDatum", unused),
    text("PreisabweichungBemerkung", unused),
});

} // namespace

std::span<const OutputTerm> outputTerms() { return outputs; }

std::vector<OutputMember> rowMembers(RowKind row) {
  std::vector<OutputMember> members;
  if (row == RowKind::Job) {
    members.assign(jobColumns.begin(), jobColumns.end());
    addColumns(members, ObjectKind::Customer, kundeFields);
    addColumns(members, ObjectKind::Order, auftragFields);
    addColumns(members, ObjectKind::Contract, vertragFields);
    members.insert(members.end(), furtherJobColumns.begin(), furtherJobColumns.end());
  } else if (row == RowKind::Position) {
    members.assign(positionColumns.begin(), positionColumns.end());
    addColumns(members, ObjectKind::OrderPosition, auftragsPosFields);
    addColumns(members, ObjectKind::ContractPosition, importJobSubItemFields);
  }
  for (OutputMember& member : members) {
    member.nullable = true;
    member.optional = true;
  }
  return members;
}

} // namespace qx::cli
