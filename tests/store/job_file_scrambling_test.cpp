#include "store/job_file_scrambling.h"

#include "rules/scrambler.h"

#include "store/job_file_export.h"
#include "store/job_file_import.h"
#include "support/test_erp.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace qx;

namespace {

class JobFileScramblingTest : public ::testing::Test {
protected:
  std::string file(const char* name) const { return (erp.folder.path() / name).string(); }
  JobFileReport change(const char* from, const char* to, Scrambling scrambling) {
    return scrambleJobFile(erp.environment, file(from), file(to), scrambling);
  }
  std::string read(const char* name) const { return erp.folder.read(name); }
  void write(const char* name, const std::string& content) const { erp.folder.write(name, content); }

  TestErp erp;
};

const std::string plain = "\"Quorvex ImportJob V 2.0\";\r\n"
                          "\"10\";\"K1\";\"M\xFCller;\nGmbH\r\n"
                          "zweite \"Zeile\";\r\n";

} // namespace

TEST_F(JobFileScramblingTest, EachPhysicalLineIsATextOfItsOwn) {
  write("klar.edi", plain);
  const JobFileReport report = change("klar.edi", "wirr.edi", Scrambling::Scramble);
  EXPECT_EQ(report.end, JobFileEnd::Complete) << report.failure;
  EXPECT_EQ(report.lines, 3);
  const Scrambler scrambler(defaultCodeTables());
  // The umlaut is one byte of the file and one place: any other character in its place moves nothing.
  EXPECT_EQ(read("wirr.edi"), "\"" + scrambler.banner() + "\";\r\n" + scrambler.Encrypt("\"10\";\"K1\";\"M") +
                                  "\xFC" + scrambler.Encrypt("\"10\";\"K1\";\"M.ller;\nGmbH").substr(13) +
                                  "\r\n" + scrambler.Encrypt("zweite \"Zeile\";") + "\r\n");
  EXPECT_EQ(change("wirr.edi", "zurück.edi", Scrambling::Unscramble).end, JobFileEnd::Complete);
  EXPECT_EQ(read("zurück.edi"), plain);
}

TEST_F(JobFileScramblingTest, AFileMayBeItsOwnTargetAndEveryByteReturns) {
  std::string content = "\"Quorvex ImportJob V 1.0.1\";\n";
  for (int byte = 0; byte < 256; ++byte) content += static_cast<char>(byte);
  content += std::string(600'000, 'x');
  write("a.aim", content);
  EXPECT_EQ(change("a.aim", "a.aim", Scrambling::Scramble).end, JobFileEnd::Complete);
  EXPECT_NE(read("a.aim"), content);
  EXPECT_EQ(change("a.aim", "a.aim", Scrambling::Unscramble).end, JobFileEnd::Complete);
  EXPECT_EQ(read("a.aim"), content);
}

TEST_F(JobFileScramblingTest, WhatHasNotTheFormAskedForLeavesTheTargetAlone) {
  write("klar.edi", plain);
  write("kein.edi", "irgendwas");
  write("ziel.edi", "bleibt");
  EXPECT_EQ(change("klar.edi", "ziel.edi", Scrambling::Unscramble).end, JobFileEnd::WrongBanner);
  EXPECT_EQ(change("kein.edi", "ziel.edi", Scrambling::Scramble).end, JobFileEnd::WrongBanner);
  EXPECT_EQ(change("fehlt.edi", "ziel.edi", Scrambling::Scramble).end, JobFileEnd::NoFile);
  EXPECT_EQ(change(".", "ziel.edi", Scrambling::Scramble).end, JobFileEnd::NoFile);
  EXPECT_EQ(change("klar.edi", "fehlt/ziel.edi", Scrambling::Scramble).end, JobFileEnd::Failed);
  EXPECT_EQ(scrambleJobFile(erp.environment, file("klar.edi"), "/dev/full", Scrambling::Scramble).end,
            JobFileEnd::Failed);
  EXPECT_EQ(read("ziel.edi"), "bleibt");
}

TEST_F(JobFileScramblingTest, ScrambledFilesOfEitherVersionAreImported) {
  erp.execute("Insert Into ImportKopf (JobID, JobType, Bez1, Fehlertext) Values "
              "('K1', 10, 'Müller €', 'eins' || char(13, 10) || 'zwei')"_sql);
  for (const JobFileVersion version : {JobFileVersion::Two, JobFileVersion::One}) {
    ASSERT_EQ(exportJobFile(erp.environment, file("a.edi"), version).end, JobFileEnd::Complete);
    ASSERT_EQ(change("a.edi", "b.edi", Scrambling::Scramble).end, JobFileEnd::Complete);
    erp.execute("Delete From ImportKopf"_sql);
    const JobFileReport report = importJobFile(erp.environment, file("b.edi"), version);
    EXPECT_EQ(report.end, JobFileEnd::Complete) << report.failure;
    EXPECT_EQ(report.counts.jobs, 1);
    EXPECT_EQ(erp.text("Select Bez1 From ImportKopf"_sql), "Müller €");
    const JobFileVersion other = version == JobFileVersion::Two ? JobFileVersion::One : JobFileVersion::Two;
    EXPECT_EQ(importJobFile(erp.environment, file("b.edi"), other).end, JobFileEnd::WrongBanner);
  }
}

TEST_F(JobFileScramblingTest, TheTablesOfTheInstallationServeAndDefectiveOnesAreToldWhenNeeded) {
  write("klar.edi", plain);
  std::string alphabet;
  for (char c = ' '; c <= '~'; ++c)
    if (c != '"') alphabet += c;
  // The four tables leave every character unchanged; only the banner differs.
  write("Codetabellen.txt",
        alphabet + "\n" + alphabet + "\n" + alphabet + "\n" + alphabet + "\nDas Banner der anderen.");
  ASSERT_EQ(change("klar.edi", "wirr.edi", Scrambling::Scramble).end, JobFileEnd::Complete);
  EXPECT_EQ(read("wirr.edi"), "\"Das Banner der anderen.\";\r\n" + plain.substr(28));
  EXPECT_EQ(importJobFile(erp.environment, file("wirr.edi"), JobFileVersion::Two).end, JobFileEnd::Complete);
  write("Codetabellen.txt", "defekt");
  const JobFileReport report = importJobFile(erp.environment, file("wirr.edi"), JobFileVersion::Two);
  EXPECT_EQ(report.end, JobFileEnd::Failed);
  EXPECT_NE(report.failure.find("Codetabellen.txt, line 1"), std::string::npos) << report.failure;
  EXPECT_EQ(importJobFile(erp.environment, file("klar.edi"), JobFileVersion::Two).end, JobFileEnd::Complete);
}

TEST_F(JobFileScramblingTest, TextBehindTheBannerStaysInItsPlace) {
  const Scrambler scrambler(defaultCodeTables());
  for (const std::string end : {"\r\n", "\n", "\r", ""}) {
    const std::string first = "\"Quorvex ImportJob V 2.0\"; von";
    const std::string content = first + end + (end.empty() ? "" : "\"10\";\"K1\";" + end);
    write("klar.edi", content);
    ASSERT_EQ(change("klar.edi", "wirr.edi", Scrambling::Scramble).end, JobFileEnd::Complete);
    EXPECT_EQ(read("wirr.edi").substr(0, first.size()),
              "\"" + scrambler.banner() + "\";" + scrambler.Encrypt(first).substr(26));
    ASSERT_EQ(change("wirr.edi", "zurück.edi", Scrambling::Unscramble).end, JobFileEnd::Complete);
    EXPECT_EQ(read("zurück.edi"), content);
  }
}

TEST_F(JobFileScramblingTest, LinesMayEndWithCarriageReturnsAlone) {
  const std::string content = "\"Quorvex ImportJob V 2.0\";\r\"10\";\"K1\";\"a\";\r\"10\";\"K2\";\r";
  write("klar.edi", content);
  EXPECT_EQ(change("klar.edi", "wirr.edi", Scrambling::Scramble).lines, 3);
  const Scrambler scrambler(defaultCodeTables());
  EXPECT_EQ(read("wirr.edi"), "\"" + scrambler.banner() + "\";\r" +
                                  scrambler.Encrypt("\"10\";\"K1\";\"a\";") + "\r" +
                                  scrambler.Encrypt("\"10\";\"K2\";") + "\r");
  EXPECT_EQ(change("wirr.edi", "klar2.edi", Scrambling::Unscramble).end, JobFileEnd::Complete);
  EXPECT_EQ(read("klar2.edi"), content);
}
