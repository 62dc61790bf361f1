#include "job_file_fixture.h"

#include "store/job_lines.h"
#include "store/staging_writer.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace qx;

namespace {

class JobFileImportTest : public JobFileTest {
protected:
  Value header(std::string_view jobId, ColumnName column) {
    const auto rows = erp.open("Select * From ImportKopf Where JobID = '"_sql, value(jobId), "'"_sql);
    return rows->eof() ? Value("no row") : rows->value(column);
  }
  /// Every row of a table as column -> value.
  static std::vector<std::map<std::string, Value>> everyRow(Connection& connection, const Sql& statement) {
    std::vector<std::map<std::string, Value>> all;
    for (const auto rows = connection.open(statement); !rows->eof(); rows->moveNext()) {
      auto& row = all.emplace_back();
      for (std::size_t i = 0; i < rows->fieldCount(); ++i)
        row[std::string(rows->fieldName(i))] = rows->value(i);
    }
    return all;
  }
};

/// A record in which every property has a value of its own, another one for each `turn`.
template <class Record, std::size_t N>
Record filled(const FieldTable<Record, N>& table, int turn) {
  Record record;
  for (std::size_t i = 0; i < N; ++i)
    table[i].visit(record, [&](auto& property) {
      using Property = std::remove_reference_t<decltype(property)>;
      if constexpr (std::is_same_v<Property, std::string>)
        property = std::string(table[i].name) + " ä€\r\n" + std::to_string(turn);
      else if constexpr (std::is_same_v<Property, bool>)
        property = turn % 2 == 0;
      else if constexpr (std::is_same_v<Property, double>)
        property = static_cast<double>(i) + turn * 0.125;
      else
        property = static_cast<Property>(i * 10 + static_cast<std::size_t>(turn));
    });
  return record;
}

bool isEmptyValue(const Value& value) { return value.isEmpty() || value.number() == 0.0; }

template <std::size_t names>
bool travels(const std::array<std::string_view, names>& line, const std::string& column) {
  return std::ranges::any_of(line,
                             [&](std::string_view name) { return ColumnName(name) == ColumnName(column); });
}

std::uint64_t peakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<std::uint64_t>(usage.ru_maxrss);
}

} // namespace

TEST_F(JobFileImportTest, EveryColumnOfALineComesBackAndTheOthersStayEmpty) {
  for (const int turn : {1, 2}) {
    KundeFields kunde = filled(kundeFields, turn);
    kunde.JobID = "K" + std::to_string(turn);
    kunde.JobType = static_cast<std::int16_t>(9 + turn);
    writeStaged(erp.connection(), kunde);
    VertragFields vertrag = filled(vertragFields, turn);
    vertrag.JobID = "V" + std::to_string(turn);
    vertrag.JobType = static_cast<std::int16_t>(turn * 20 + turn);
    writeStaged(erp.connection(), vertrag);
    AuftragFields auftrag = filled(auftragFields, turn);
    auftrag.JobID = "A" + std::to_string(turn);
    auftrag.JobType = static_cast<std::int16_t>(31 + turn);
    writeStaged(erp.connection(), auftrag);
    AuftragsPosFields position = filled(auftragsPosFields, turn);
    position.JobID = auftrag.JobID;
    position.ChildID = "P" + std::to_string(turn);
    position.JobType = 50;
    writeStaged(erp.connection(), position);
  }
  exported();
  ErpFile other;
  const JobFileReport report = importJobFile(other.environment, file("out.edi"), JobFileVersion::Two);
  EXPECT_EQ(report.end, JobFileEnd::Complete) << report.failure;
  EXPECT_EQ(report.counts.refused, 0) << other.diagnostics.text();

  const Sql headers = sql("Select * From ImportKopf Order by JobID"_sql);
  const auto before = everyRow(erp.connection(), headers);
  auto after = everyRow(other.connection(), headers);
  ASSERT_EQ(after.size(), 6U);
  ASSERT_EQ(before.size(), 6U);
  for (std::size_t i = 0; i < 6; ++i)
    for (const auto& [column, value] : before[i]) {
      const std::string key = after[i]["JobID"].text();
      const Value& read = after[i][column];
      bool carried = key[0] == 'K'   ? travels(customerLine, column)
                     : key[0] == 'V' ? travels(contractLine, column)
                                     : travels(orderLine, column);
      // The entry objects store none of these; the column in which every staged job has 10 is theirs.
      if (key[0] == 'A' && (column == "Preisliste" || column == "Preistyp" || column == "IndFild4"))
        carried = false;
      if (column == "ImportType")
        EXPECT_EQ(read, Value(10));
      else if (carried)
        EXPECT_EQ(read, value) << key << " " << column << ": " << read.text();
      else
        EXPECT_TRUE(isEmptyValue(read)) << key << " " << column << ": " << read.text();
    }
  const Sql lines = sql("Select * From ImportPos Order by ChildID"_sql);
  const auto linesBefore = everyRow(erp.connection(), lines);
  auto linesAfter = everyRow(other.connection(), lines);
  ASSERT_EQ(linesAfter.size(), 2U);
  for (std::size_t i = 0; i < 2; ++i)
    for (const auto& [column, value] : linesBefore[i])
      if (travels(positionLine, column))
        EXPECT_EQ(linesAfter[i][column], value) << column;
      else
        EXPECT_TRUE(isEmptyValue(linesAfter[i][column])) << column;
}

TEST_F(JobFileImportTest, WhatIsNoFileOfTheVersionChangesNothing) {
  const std::string job = customer("K1") + "\r\n";
  for (const std::string& content :
       {std::string(), std::string("\r\n"), std::string("\"Quorvex ImportJob V 2.\";\r\n") + job,
        "Quorvex ImportJob V 2.0\r\n" + job, "\"Quorvex Importjob V 2.0\";\r\n" + job,
        "\xEF\xBB\xBF\"Quorvex ImportJob V 2.0\";\r\n" + job, std::string(banner1) + "\r\n" + job, job,
        std::string(1, '\0') + std::string(banner2)}) {
    const JobFileReport report = importContent(content);
    EXPECT_EQ(report.end, JobFileEnd::WrongBanner) << content;
    EXPECT_FALSE(showImportResult(erp.environment, report));
    EXPECT_EQ(erp.desktop.shown.back().text, "Die ausgewählte Datei entspricht nicht den konventionen.");
  }
  EXPECT_EQ(importLines(banner2, {customer("K1")}, JobFileVersion::One).end, JobFileEnd::WrongBanner);
  for (const std::string& missing :
       {file("fehlt.edi"), erp.folder.path().string(), std::string("/dev/zero"), std::string()}) {
    const JobFileReport report = importJobFile(erp.environment, missing, JobFileVersion::Two);
    EXPECT_EQ(report.end, JobFileEnd::NoFile) << missing;
    EXPECT_FALSE(showImportResult(erp.environment, report));
    EXPECT_EQ(
        erp.desktop.shown.back().text,
        "Beim Importieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten importiert "
        "werden.");
  }
  EXPECT_EQ(jobs(), "");
}

TEST_F(JobFileImportTest, ReadingAFileAgainAddsNothing) {
  const std::vector<std::string> lines = {customer("K1"), order("A1"), position("A1", "P1")};
  for (int round = 0; round < 2; ++round) {
    const JobFileReport report = importLines(banner2, lines);
    EXPECT_EQ(report.end, JobFileEnd::Complete);
    EXPECT_EQ(report.counts.jobs, 2);
    EXPECT_EQ(report.counts.positions, 1);
    EXPECT_TRUE(showImportResult(erp.environment, report));
    EXPECT_EQ(jobs() + positions(), "A1 K1 P1 ");
  }
  EXPECT_EQ(observer.lastDone, observer.lastTotal);
}

TEST_F(JobFileImportTest, ARecordThatStandsTwiceIsCountedOnce) {
  const JobFileReport report = importLines(
      banner2, {customer("K1"), customer("k1"), order("A1"), position("A1", "P1"), position("A1", "P1")});
  EXPECT_EQ(report.counts.jobs, 2);
  EXPECT_EQ(report.counts.positions, 1);
}

TEST_F(JobFileImportTest, DefectiveRecordsAreRefusedByTheirLineAndTheRestIsRead) {
  const JobFileReport report = importLines(
      banner2, {fileLine(20, {"10", "zuwenig"}), customer("K1"), fileLine(67, {"10", "zuviel"}),
                fileLine(15, {"50", "A1", "P1", "", "", "2.5"}), order("A1"), fileLine(57, {"10", ""}),
                fileLine(15, {"50", "A1", ""}), customer("K2") + "Rest"});
  EXPECT_EQ(report.end, JobFileEnd::Complete);
  EXPECT_EQ(report.counts.refused, 6);
  EXPECT_EQ(jobs() + positions(), "A1 K1 ");
  EXPECT_EQ(observer.told, "2: the record has too few fields\n"
                           "4: the record has more than 66 fields\n"
                           "7: JobID is empty\n"
                           "9: the file ends before the record does\n"
                           "5: Auslieferungsmenge cannot be '2.5'\n"
                           "8: ChildID is empty\n");
  EXPECT_EQ(erp.diagnostics.entries.size(), 6U);
  EXPECT_FALSE(showImportResult(erp.environment, report));
  EXPECT_EQ(erp.desktop.shown.size(), 1U);
}

TEST_F(JobFileImportTest, UnknownCodesAndStrayLinesAreSkipped) {
  const JobFileReport report =
      importLines(banner2, {customer("K1", "44"), fileLine(8, {"1001", "K1", "P1"}), customer("K2"),
                            "verloren", fileLine(57, {"", "K3"}), customer("K4", "14"), "\x1A"});
  EXPECT_EQ(report.end, JobFileEnd::Complete);
  // The last line belongs to the record of no kind before it.
  EXPECT_EQ(report.counts.skipped, 5);
  EXPECT_EQ(report.counts.refused, 0);
  EXPECT_EQ(jobs(), "K2 ");
}

TEST_F(JobFileImportTest, ValuesKeepLineBreaksButNotQuotes) {
  importLines(banner2, {fileLine(57, {"10", "K1", "eins\r\nzwei \"drei\"", "a", "Name"}), customer("K2")});
  EXPECT_EQ(observer.told, "");
  EXPECT_EQ(header("K1", "Bemerkung"), Value("eins\r\nzwei drei"));
  EXPECT_EQ(header("K1", "Betreff"), Value("a"));
  EXPECT_EQ(header("K1", "Bez1"), Value("Name"));
  EXPECT_EQ(jobs(), "K1 K2 ");
}

TEST_F(JobFileImportTest, BytesOfEveryKindArriveAsCharacters) {
  importLines(banner2,
              {fileLine(57, {"10", "K1", std::string("a\0b", 3), "\x81\x8D\x8F\x90\x9D", "\xFC\x80"})});
  EXPECT_EQ(header("K1", "Bemerkung"), Value(std::string("a\0b", 3)));
  EXPECT_EQ(header("K1", "Betreff"), Value("\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D"));
  EXPECT_EQ(header("K1", "Bez1"), Value("ü€"));
  // What was read is written again byte by byte.
  exported();
  EXPECT_NE(erp.folder.read("out.edi").find("\x81\x8D\x8F\x90\x9D\";\"\xFC\x80"), std::string::npos);
}

TEST_F(JobFileImportTest, LineFeedsAloneAndAMissingLastLineEndAreAccepted) {
  importContent(std::string(banner2) + "\n" + customer("K1") + "\n" + customer("K2"));
  EXPECT_EQ(jobs(), "K1 K2 ");
}

TEST_F(JobFileImportTest, PositionsMayStandAnywhereAndOneWithoutItsJobIsNamed) {
  execute("Insert Into ImportKopf (JobID, JobType) Values ('schon da', 30)"_sql);
  const JobFileReport report = importLines(
      banner2, {position("A1", "P1"), position("fehlt", "P2"), order("A1"), position("schon da", "P3")});
  EXPECT_EQ(report.end, JobFileEnd::Complete);
  EXPECT_EQ(positions(), "P1 P2 P3 ");
  EXPECT_EQ(report.counts.withoutHeader, 1);
  EXPECT_EQ(observer.told, "3 P2 without fehlt\n");
  EXPECT_TRUE(showImportResult(erp.environment, report));
}

TEST_F(JobFileImportTest, EmptyNumbersLeaveTheStartingValuesOfTheEntryObjects) {
  erp.set("AuftragLieferbereit", "1");
  importLines(banner2, {order("A1"), position("A1", "P1"),
                        fileLine(15, {"50", "A1", "P2", "", "", "", "Wahr", "", "Falsch", "1E-05"})});
  EXPECT_EQ(header("A1", "Status"), Value(10));
  // Unlike a number, an empty text is stored.
  EXPECT_EQ(header("A1", "Eingangsdatum"), Value(""));
  EXPECT_EQ(keys("Select Lieferbereit || Fakturierbereit || Menge From ImportPos Order By ChildID"_sql),
            "100.0 011.0e-05 ");
}

TEST_F(JobFileImportTest, ADoneJobThatWaitsAgainIsNamed) {
  for (const char* done : {"K1", "K2", "K3"})
    execute("Insert Into ImportKopf (JobID, JobType, ProcessWarning) Values ('"_sql, value(done),
            "', 13, 1)"_sql);
  const JobFileReport report =
      importLines(banner2, {customer("K1", "10"), customer("K2", "13"), customer("K4", "10")});
  EXPECT_EQ(report.counts.setBack, 1);
  EXPECT_EQ(observer.told, "2 set back K1\n");
  EXPECT_EQ(header("K1", "JobType"), Value(10));
  EXPECT_EQ(header("K2", "JobType"), Value(13));
  EXPECT_EQ(header("K1", "ProcessWarning"), Value(1));
}

TEST_F(JobFileImportTest, ADeletedContractThatWaitsAgainIsNamedAsWell) {
  execute("Insert Into ImportKopf (JobID, JobType) Values ('K1', 44)"_sql);
  EXPECT_EQ(importLines(banner2, {customer("K1", "10")}).counts.setBack, 1);
  EXPECT_EQ(observer.told, "2 set back K1\n");
}

TEST_F(JobFileImportTest, ARecordThatTheDatabaseRefusesIsOneOfMany) {
  execute("Create Trigger Verbot Before Insert On ImportKopf When New.JobID = 'K2' Begin "
          "Select Raise(Abort, 'nicht erlaubt'); End"_sql);
  const JobFileReport report = importLines(banner2, {customer("K1"), customer("K2"), customer("K3")});
  EXPECT_EQ(report.end, JobFileEnd::Complete);
  EXPECT_EQ(report.counts.jobs, 2);
  EXPECT_EQ(report.counts.refused, 1);
  EXPECT_NE(observer.told.find("nicht erlaubt"), std::string::npos);
  EXPECT_EQ(jobs(), "K1 K3 ");
}

TEST_F(JobFileImportTest, AHostsConnectionIsWrittenRecordByRecordWithAYieldEach) {
  erp.connect(erp.hostConnection());
  erp.desktop.onYield = [this] { EXPECT_FALSE(erp.connection().inWork()); };
  importLines(banner2, {customer("K1"), customer("K2"), position("K1", "P1")});
  EXPECT_GE(erp.desktop.yields, 3);
  EXPECT_EQ(jobs() + positions(), "K1 K2 P1 ");
}

TEST_F(JobFileImportTest, ABusyDatabaseEndsTheImportWithWhatIsDurable) {
  class NoPatience final : public BusyWait {
    bool goOn(std::chrono::milliseconds /*waited*/) override { return false; }
  };
  std::string content(banner2);
  content += "\r\n";
  for (int i = 0; i < 2000; ++i) content += customer("K" + std::to_string(i)) + "\r\n";
  erp.folder.write("in.edi", content);
  // Another program takes the database between the first group and the second.
  const auto other = erp.secondConnection();
  erp.desktop.onYield = [&] {
    if (erp.desktop.yields == 1) other->beginWork(nullptr);
  };
  NoPatience wait;
  observer.clock = &erp.clock;
  const JobFileReport report =
      importJobFile(erp.environment, file("in.edi"), JobFileVersion::Two, &observer, &wait);
  other->rollbackWork();
  EXPECT_EQ(report.end, JobFileEnd::Failed);
  EXPECT_GT(report.counts.jobs, 0);
  EXPECT_LT(report.counts.jobs, 2000);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), report.counts.jobs);
}

TEST_F(JobFileImportTest, AKillAtAnyMomentAndARerunLeaveEachRowOnce) {
  /// Ends groups of records, and its own process at one of them.
  class DyingObserver final : public JobFileObserver {
  public:
    DyingObserver(FixedClock& clock, int last) : clock_(clock), left_(last) {}
    void progress(std::uintmax_t /*done*/, std::uintmax_t /*total*/) override {
      clock_.passed += std::chrono::milliseconds(250);
      if (--left_ == 0) raise(SIGKILL);
    }

  private:
    FixedClock& clock_;
    int left_;
  };
  constexpr int orders = 3000;
  std::string content(banner2);
  content += "\r\n";
  for (int i = 0; i < orders; ++i) content += order("A" + std::to_string(i)) + "\r\n";
  for (int i = 0; i < orders; ++i)
    content += position("A" + std::to_string(i), "P" + std::to_string(i)) + "\r\n";
  erp.folder.write("in.edi", content);
  std::int64_t before = -1;
  for (const int last : {1, 3, 6}) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      erp.connect(erp.secondConnection());
      DyingObserver dying(erp.clock, last);
      importJobFile(erp.environment, file("in.edi"), JobFileVersion::Two, &dying);
      _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status)) << "the import ended before group " << last;
    const std::int64_t staged = erp.count("Select Count(*) From ImportKopf"_sql);
    EXPECT_GT(staged, before);
    EXPECT_LT(staged, orders);
    before = staged;
  }
  const JobFileReport report = importJobFile(erp.environment, file("in.edi"), JobFileVersion::Two);
  EXPECT_EQ(report.end, JobFileEnd::Complete) << report.failure;
  EXPECT_EQ(report.counts.withoutHeader, 0);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), orders);
  EXPECT_EQ(erp.count("Select Count(*) From ImportPos"_sql), orders);
}

TEST_F(JobFileImportTest, AVeryLongLineIsRefusedInBoundedMemory) {
  erp.folder.write("in.edi", std::string(banner2) + "\r\n" + customer("K1") + "\r\n\"10\";\"K2\";\"");
  // A hole of a gibibyte: the file reads as that many NUL bytes.
  std::filesystem::resize_file(file("in.edi"), std::uintmax_t{1} << 30U);
  const std::uint64_t before = peakKilobytes();
  const JobFileReport report = importJobFile(erp.environment, file("in.edi"), JobFileVersion::Two, &observer);
  EXPECT_LT(peakKilobytes() - before, 100'000U);
  EXPECT_EQ(report.end, JobFileEnd::Complete) << report.failure;
  EXPECT_EQ(observer.told, "3: the record is longer than 16 MiB\n");
  EXPECT_EQ(jobs(), "K1 ");
}

TEST_F(JobFileImportTest, WhatIsPassedOverIsNamed) {
  const std::string head(banner2);
  const JobFileReport report =
      importLines(head + "\"10\";\"verloren\";", {order("A1"), fileLine(15, {"1001", "A1", "P1"})});
  EXPECT_EQ(observer.told, "1 skipped: text after the banner is not read\n"
                           "3 skipped: a position of code 1001 is not read\n");
  EXPECT_EQ(report.counts.skipped, 2);
  EXPECT_EQ(jobs() + positions(), "A1 ");
  EXPECT_EQ(importLines(head + " ", {order("A1")}).counts.skipped, 0);
}

TEST_F(JobFileImportTest, AKeyThatNobodyCanNameIsRefused) {
  const std::string longest(31, 'x');
  importLines(banner2, {customer(longest + "\xE4"), customer(longest + "xy"),
                        customer(std::string("K\0001", 3)), position("A", longest + "xy")});
  EXPECT_EQ(observer.told, "3: JobID has more than 32 characters\n"
                           "4: JobID holds the character NUL\n"
                           "5: ChildID has more than 32 characters\n");
  EXPECT_EQ(jobs() + positions(), longest + "ä ");
}

TEST_F(JobFileImportTest, WhichJobsAFileWouldSetBackIsKnownBeforehand) {
  importLines(banner2, {customer("done", "13"), customer("auch", "13"), customer("offen")});
  erp.folder.write("in.edi", std::string(banner2) + "\r\n" + customer("offen") + "\r\n" +
                                 customer("auch", "13") + "\r\n" + customer("done") + "\r\n" +
                                 customer("neu") + "\r\n");
  const auto told = [&](const char* name, JobFileVersion version) {
    RecordingObserver observer;
    previewSetBacks(erp.environment, file(name), version, observer);
    return observer.told;
  };
  EXPECT_EQ(told("in.edi", JobFileVersion::Two), "4 set back done\n");
  EXPECT_EQ(jobs(), "auch done offen ");
  EXPECT_EQ(told("in.edi", JobFileVersion::One), "");
  EXPECT_EQ(told("fehlt.edi", JobFileVersion::Two), "");
}

TEST_F(JobFileImportTest, AValueWithASeparatorIsToldByExportAndImport) {
  importLines(banner2, {customer("K1"), customer("K2"), order("A1")});
  execute("Update ImportKopf Set Bemerkung = 'Bitte anrufen; eilt' Where JobID = 'K1'"_sql);
  execute("Insert Into ImportPos (JobID, ChildID, JobType) Values ('A1', 'P', 1001)"_sql);
  observer = {};
  const JobFileReport written =
      exportJobFile(erp.environment, file("out.edi"), JobFileVersion::Two, &observer);
  EXPECT_EQ(written.counts.unreadable, 2);
  EXPECT_EQ(observer.told, "unreadable K1\nunreadable A1\n");
  EXPECT_EQ(importContent(erp.folder.read("out.edi")).counts.refused, 1);
  EXPECT_NE(observer.told.find("a value holds the separator"), std::string::npos) << observer.told;
  EXPECT_EQ(keys("Select Bemerkung From ImportKopf Where JobID = 'K1'"_sql), "Bitte anrufen; eilt ");
}
