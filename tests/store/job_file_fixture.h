// A staging database and the files that are exchanged with it.
#pragma once

#include "model/code_page.h"
#include "store/job_file_export.h"
#include "store/job_file_import.h"
#include "support/erp_file.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace qx {

/// Records what an import reports, one entry per line.
class RecordingObserver final : public JobFileObserver {
public:
  void progress(std::uintmax_t done, std::uintmax_t total) override {
    EXPECT_LE(lastDone, done);
    EXPECT_LE(done, total);
    if (clock != nullptr) clock->passed += std::chrono::milliseconds(250);
    lastDone = done;
    lastTotal = total;
  }
  void skipped(std::int64_t line, std::string_view reason) override {
    told += std::to_string(line) + " skipped: " + std::string(reason) + "\n";
  }
  void unreadable(std::string_view jobId) override { told += "unreadable " + std::string(jobId) + "\n"; }
  void refused(std::int64_t line, std::string_view reason) override {
    told += std::to_string(line) + ": " + std::string(reason) + "\n";
  }
  void setBack(std::int64_t line, std::string_view jobId) override {
    told += std::to_string(line) + " set back " + std::string(jobId) + "\n";
  }
  void withoutHeader(std::int64_t line, std::string_view jobId, std::string_view childId) override {
    told += std::to_string(line) + " " + std::string(childId) + " without " + std::string(jobId) + "\n";
  }

  std::string told;
  std::uintmax_t lastDone = 0;
  std::uintmax_t lastTotal = 0;
  FixedClock* clock = nullptr; ///< moved on with every progress, so that groups of records end
};

inline constexpr std::string_view banner2 = "\"Quorvex ImportJob V 2.0\";";
inline constexpr std::string_view banner1 = "\"Quorvex ImportJob V 1.0.1\";";

/// A line of a file: the first values, and as many empty ones as it takes to fill `size` fields.
inline std::string fileLine(std::size_t size, const std::vector<std::string>& first) {
  std::string line;
  for (std::size_t i = 0; i < std::max(size, first.size()); ++i)
    line += "\"" + (i < first.size() ? first[i] : "") + "\";";
  return line;
}
inline std::string customer(const std::string& jobId, const std::string& code = "10") {
  return fileLine(57, {code, jobId, "Bemerkung " + jobId});
}
inline std::string order(const std::string& jobId) { return fileLine(60, {"30", jobId}); }
inline std::string position(const std::string& jobId, const std::string& childId) {
  return fileLine(15, {"50", jobId, childId});
}

class JobFileTest : public ::testing::Test, public DatabaseAccess {
protected:
  std::string file(const char* name) const { return (erp.folder.path() / name).string(); }

  /// Imports a file of these lines, all ended by CR LF.
  JobFileReport importLines(std::string_view banner, const std::vector<std::string>& lines,
                            JobFileVersion version = JobFileVersion::Two) {
    std::string content(banner);
    content += "\r\n";
    for (const std::string& line : lines) content += line + "\r\n";
    return importContent(content, version);
  }
  JobFileReport importContent(std::string_view content, JobFileVersion version = JobFileVersion::Two) {
    erp.folder.write("in.edi", content);
    observer = {};
    return importJobFile(erp.environment, file("in.edi"), version, &observer);
  }
  /// What an export writes, in UTF-8.
  std::string exported(JobFileVersion version = JobFileVersion::Two) {
    const JobFileReport report = exportJobFile(erp.environment, file("out.edi"), version);
    EXPECT_EQ(report.end, JobFileEnd::Complete) << report.failure;
    return textFromCodePage(erp.folder.read("out.edi"));
  }
  std::string jobs() { return keys("Select JobID From ImportKopf Order By JobID"_sql); }
  std::string positions() { return keys("Select ChildID From ImportPos Order By ChildID"_sql); }
  Connection& connection() override { return erp.connection(); }

  ErpFile erp;
  RecordingObserver observer;
};

} // namespace qx
