#include "cli/job_file_progress.h"

namespace qx::cli {

void JobFileProgress::progress(std::uintmax_t done, std::uintmax_t total) {
  bar_.report(done, total);
  bar_.draw();
}

void ExportProgress::unreadable(std::string_view jobId) {
  constexpr std::size_t mostNamed = 100;
  if (jobs_.size() < mostNamed) jobs_.emplace(jobId);
}

ImportPrinter::ImportPrinter(const Output& output)
    : JobFileProgress(output, ProgressUnit::Bytes), output_(output), json_(output.result) {}

void ImportPrinter::beginDocument() {
  if (begun_) return;
  begun_ = true;
  json_.beginObject().key("lines").beginArray();
}

JsonWriter& ImportPrinter::beginLine(std::int64_t line, std::string_view result) {
  beginDocument();
  json_.beginObject().key("line").number(line);
  return json_.key("result").text(result);
}

std::ostream& ImportPrinter::textLine(std::int64_t line) { return output_.result << "line " << line << "  "; }

void ImportPrinter::skipped(std::int64_t line, std::string_view reason) {
  if (output_.json)
    beginLine(line, "skipped").key("reason").text(reason).endObject();
  else
    textLine(line) << "skipped: " << reason << '\n';
}

void ImportPrinter::refused(std::int64_t line, std::string_view reason) {
  if (output_.json)
    beginLine(line, "refused").key("reason").text(reason).endObject();
  else
    textLine(line) << "refused: " << reason << '\n';
}

void ImportPrinter::setBack(std::int64_t line, std::string_view jobId) {
  if (output_.json)
    beginLine(line, "setBack").key("JobID").text(jobId).endObject();
  else
    textLine(line) << "was done and is now waiting or parked: " << jobId << '\n';
}

void ImportPrinter::withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) {
  if (output_.json)
    beginLine(line, "withoutHeader").key("JobID").text(jobId).key("ChildID").text(childId).endObject();
  else
    textLine(line) << "position " << childId << " without its job " << jobId << '\n';
}

void ImportPrinter::finish(const JobFileReport& report) {
  end();
  if (!output_.json) {
    output_.result << report.counts.jobs << " jobs and " << report.counts.positions << " positions read, "
                   << report.counts.skipped << " skipped, " << report.counts.refused << " refused\n"
                   << std::flush;
    return;
  }
  beginDocument();
  json_.endArray();
  json_.key("jobs").number(report.counts.jobs);
  json_.key("positions").number(report.counts.positions);
  json_.key("skipped").number(report.counts.skipped);
  json_.key("refused").number(report.counts.refused);
  json_.key("setBack").number(report.counts.setBack);
  json_.key("withoutHeader").number(report.counts.withoutHeader);
  if (report.end == JobFileEnd::Failed) json_.key("error").text(report.failure);
  json_.endObject().finish();
}

} // namespace qx::cli
