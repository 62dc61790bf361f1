// Job files: import, export, scramble and unscramble.
#include "program_fixture.h"

#include "support/full_disk.h"

#include <cstdlib>
#include <sys/stat.h>

namespace qx {
namespace {

const std::string banner = "\"Quorvex ImportJob V 2.0\";\r\n";

class JobFile : public ProgramTest {
protected:
  std::string file(const char* name) const { return (erp.folder.path() / name).string(); }
  /// A customer record with its key and, possibly defective, `Status`.
  static std::string customer(const std::string& jobId, const std::string& code,
                              const std::string& status = "10") {
    std::string line = "\"" + code + "\";\"" + jobId + "\";";
    for (int field = 3; field <= 57; ++field) line += field == 30 ? "\"" + status + "\";" : "\"\";";
    return line + "\r\n";
  }
};

TEST_F(JobFile, ExportAndImportCarryJobsFromOneDatabaseToAnother) {
  mustStage(R"([{"type":"Kunde","Kundennummer":"1","JobID":"K1","Bez1":"Müller €"},
                      {"type":"Auftrag","Kundennummer":"1","JobID":"A1","Positionen":[{"ChildID":"P1","Artikelnummer":"A","Menge":2.5}]}])");
  setJobType("K1", 44);
  ProgramResult result = run({"export", file("jobs.edi"), "--json"});
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_EQ(result.json(),
            Json::parse(R"({"jobs":1,"positions":1,"skipped":1,"unreadable":0,"unreadableJobs":[]})"));
  ASSERT_EQ(run({"delete", "A1"}).status, 0);
  result = run({"import", file("jobs.edi"), "--json"});
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_EQ(result.json(),
            Json::parse(R"({"lines":[],"jobs":1,"positions":1,"skipped":0,"refused":0,"setBack":0,
                                           "withoutHeader":0})"));
  EXPECT_EQ(show("A1")["Positionen"][0]["Menge"], 2.5);
  EXPECT_EQ(result.messages, "");
}

TEST_F(JobFile, ImportNamesTheLinesThatItRefusesAndReadsTheRest) {
  mustStage(R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K3"})");
  setJobType("K3", 13);
  erp.folder.write("in.edi", banner + customer("K1", "10") + customer("K2", "10", "zehn") +
                                 customer("K3", "10") + customer("K4", "44") + "\"50\";\"K9\";\"P1\"" +
                                 ";\"\";\"\";\"\";\"\";\"\";\"\";\"\";" + "\"\";\"\";\"\";\"\";\"\";\r\n");
  const ProgramResult result = run({"import", file("in.edi"), "--json"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.json(),
            Json::parse(R"({"lines":[{"line":3,"result":"refused","reason":"Status cannot be 'zehn'"},
      {"line":4,"result":"setBack","JobID":"K3"},{"line":6,"result":"withoutHeader","JobID":"K9","ChildID":"P1"}],
      "jobs":2,"positions":1,"skipped":1,"refused":1,"setBack":1,"withoutHeader":1})"));
  const ProgramResult text = run({"import", file("in.edi")});
  EXPECT_EQ(text.status, 1);
  EXPECT_EQ(text.output, "line 3  refused: Status cannot be 'zehn'\n"
                         "line 6  position P1 without its job K9\n"
                         "2 jobs and 1 positions read, 1 skipped, 1 refused\n");
}

TEST_F(JobFile, WhatIsNoFileOfTheVersionEndsWithTwoAndChangesNothing) {
  erp.folder.write("in.edi", banner + customer("K1", "10"));
  const ProgramResult refused = run({"import", file("in.edi"), "--version1", "--json"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.json()["error"], "Die ausgewählte Datei entspricht nicht den konventionen.");
  EXPECT_EQ(refused.json()["file"], file("in.edi"));
  EXPECT_EQ(run({"import", file("fehlt.edi")}).status, 2);
  EXPECT_EQ(run({"import", erp.folder.path().string()}).status, 2);
  EXPECT_EQ(listed(), std::vector<std::string>());
}

TEST_F(JobFile, TravelsThroughStandardOutputAndInput) {
  ASSERT_EQ(
      stage(
          R"([{"type":"Kunde","Kundennummer":"1","JobID":"K1","Bez1":"Müller"},{"type":"Vertrag","JobID":"V1"}])")
          .status,
      0);
  ASSERT_EQ(run({"export", file("jobs.edi")}).status, 0);
  const ProgramResult exported = run({"export", "-"});
  EXPECT_EQ(exported.status, 0);
  EXPECT_EQ(exported.output, erp.folder.read("jobs.edi"));
  EXPECT_EQ(exported.messages, "2 jobs and 0 positions written to standard output, 0 skipped\n");
  EXPECT_EQ(run({"export", "-", "--json"}).status, 2);
  ASSERT_EQ(run({"delete", "K1", "V1"}).status, 0);
  const ProgramResult imported = run({"import", "-"}, exported.output);
  EXPECT_EQ(imported.status, 0) << imported.messages;
  EXPECT_EQ(imported.output, "2 jobs and 0 positions read, 0 skipped, 0 refused\n");
  EXPECT_EQ(show("K1")["Bez1"], "Müller");
  const ProgramResult refused = run({"import", "-"}, "kein Banner\n");
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.messages.rfind("qximportjob: standard input, line 1: ", 0), 0U) << refused.messages;
}

TEST_F(JobFile, GoesIntoAPipeThatIsGivenByItsName) {
  mustStage(
      R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K1"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K2"}])");
  ASSERT_EQ(run({"export", file("jobs.edi")}).status, 0);
  const auto shell = [&](const std::string& command) {
    return std::system(("PATH=/usr/bin:/bin; cd " + erp.folder.path().string() + "; " + command).c_str());
  };
  const std::string program = std::string(QXIMPORTJOB_PROGRAM) + " --db erp.db ";
  EXPECT_EQ(shell(program + "export /dev/stdout 2> told | cat > out.edi"), 0);
  EXPECT_EQ(erp.folder.read("out.edi"), erp.folder.read("jobs.edi"));
  EXPECT_EQ(erp.folder.read("told"), "2 jobs and 0 positions written to standard output, 0 skipped\n");
  EXPECT_EQ(shell("mkfifo pipe; cat pipe > piped.edi & " + program + "export pipe > told; wait"), 0);
  EXPECT_EQ(erp.folder.read("piped.edi"), erp.folder.read("jobs.edi"));
  EXPECT_EQ(erp.folder.read("told"), "2 jobs and 0 positions written to pipe, 0 skipped\n");
}

TEST_F(JobFile, ANameThatIsNoneOfAFileIsBadInput) {
  const std::string folder = erp.folder.path().string();
  const std::string endless = file(std::string(300, 'a').c_str());
  ASSERT_EQ(run({"export", file("jobs.edi")}).status, 0);
  struct Case {
    std::vector<std::string> arguments;
    std::string message;
  };
  for (const Case& c : {Case{{"export", ""}, "the job file has no name"},
                        Case{{"export", folder}, folder + ": it is a directory"},
                        Case{{"export", endless}, endless + ": File name too long"},
                        Case{{"import", ""}, "the job file has no name"},
                        Case{{"scramble", folder, file("out")}, folder + ": it is a directory"},
                        Case{{"scramble", "/dev/null", file("out")}, "/dev/null: it is not a regular file"},
                        Case{{"scramble", file("jobs.edi"), folder}, folder + ": it is a directory"}}) {
    const ProgramResult result = run(c.arguments);
    EXPECT_EQ(result.status, 2) << c.message;
    EXPECT_EQ(result.messages, "qximportjob: " + c.message + "\n");
  }
}

TEST_F(JobFile, ARecordOfMoreThan16MiBIsRefusedByStageAndNamedByExport) {
  constexpr std::size_t mebi = std::size_t{1024} * 1024;
  const std::string half(8 * mebi, 'x');
  // Two bytes here, one in a job file.
  std::string umlauts;
  for (std::size_t i = 0; i < 12 * mebi; ++i) umlauts += "ä";
  mustStage("{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"K1\",\"Bemerkung\":\"" +
            umlauts + "\"}");
  const Json refused = stage("{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\n\"Bez1\":\"" + half +
                             "\",\n\"Bemerkung\":\"" + half + "\"}")
                           .json();
  EXPECT_EQ(refused["error"],
            "object 1: property \"Bemerkung\": with this text the object is longer than a job "
            "file can carry (16 MiB)");
  EXPECT_EQ(refused["line"], 3);
  EXPECT_EQ(listed(), std::vector<std::string>{"K1"});
  // Other programs may have stored it.
  erp.execute("Update ImportKopf Set Bemerkung = '"_sql, value(half), "', Bez1 = '"_sql, value(half),
              "'"_sql);
  EXPECT_EQ(run({"export", file("jobs.edi"), "--json"}).json(),
            Json::parse(R"({"jobs":1,"positions":0,"skipped":0,"unreadable":1,"unreadableJobs":["K1"]})"));
  EXPECT_EQ(run({"import", file("jobs.edi")}).output, "line 2  refused: the record is longer than 16 MiB\n0 "
                                                      "jobs and 0 positions read, 0 skipped, 1 refused\n");
}

TEST_F(JobFile, AFullDiskEndsWithFourAndTheCountsAreWhatIsDurable) {
  std::string content = banner;
  for (int i = 0; i < 12000; ++i) content += customer("K" + std::to_string(i), "10");
  erp.folder.write("in.edi", content);
  ProgramResult result;
  {
    const FullDisk full(1'000'000);
    result = run({"import", file("in.edi"), "--json"});
  }
  EXPECT_EQ(result.status, 4);
  EXPECT_TRUE(result.json().contains("error"));
  EXPECT_EQ(result.json()["jobs"], erp.count("Select Count(*) From ImportKopf"_sql));
  EXPECT_LT(result.json()["jobs"], 12000);
  EXPECT_EQ(run({"import", file("in.edi"), "--json"}).json()["jobs"], 12000);

  erp.folder.write("out.edi", "die alte Datei");
  {
    const FullDisk full(100'000);
    result = run({"export", file("out.edi")});
  }
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.messages.find("out.edi.bak"), std::string::npos) << result.messages;
  EXPECT_EQ(erp.folder.read("out.edi.bak"), "die alte Datei");
}

TEST_F(JobFile, ExportsOfTheFirstVersionAreReadWithItsOption) {
  mustStage(R"({"type":"Kunde","Kundennummer":"1","JobID":"K1","Bez1":"a;b"})");
  ASSERT_EQ(run({"export", file("a.aim"), "--version1"}).status, 0);
  EXPECT_EQ(run({"import", file("a.aim")}).status, 2);
  ASSERT_EQ(run({"delete", "K1"}).status, 0);
  EXPECT_EQ(run({"import", file("a.aim"), "--version1"}).status, 0);
  EXPECT_EQ(show("K1")["Bez1"], "a,b");
}

TEST_F(JobFile, JobsThatWillNotReadBackAreNamed) {
  mustStage(
      R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K1","Bemerkung":"Bitte anrufen; eilt"})");
  const ProgramResult result = run({"export", file("out.edi")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "cannot be read back unchanged: K1\n1 lines cannot be read back unchanged\n"
                           "1 jobs and 0 positions written to " +
                               file("out.edi") + ", 0 skipped\n");
  EXPECT_EQ(run({"import", file("out.edi")}).output,
            "line 2  refused: the record has more fields than its kind: a value holds the separator\n"
            "0 jobs and 0 positions read, 0 skipped, 1 refused\n");
}

TEST_F(JobFile, TheDatabaseIsNoTarget) {
  mustStage(R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K1"})");
  erp.folder.write("klar.edi", banner + customer("K2", "10"));
  ASSERT_EQ(run({"scramble", file("klar.edi"), file("wirr.edi")}).status, 0);
  for (const char* name : {"erp.db", "erp.db-wal", "Codetabellen.txt"}) {
    const std::string target = file(name);
    const ProgramResult refused = run({"export", target, "--json"});
    EXPECT_EQ(refused.status, 2) << name;
    EXPECT_NE(refused.json()["error"].get<std::string>().find(target), std::string::npos) << refused.output;
    EXPECT_EQ(run({"export", target, "--version1"}).status, 2);
    EXPECT_EQ(run({"scramble", file("klar.edi"), target}).status, 2);
    EXPECT_EQ(run({"unscramble", file("wirr.edi"), target}).status, 2);
  }
  EXPECT_EQ(listed(), std::vector<std::string>{"K1"});
}

TEST_F(JobFile, ScrambledAndBackIsTheSameFile) {
  erp.folder.write("klar.edi", banner + customer("K1", "10"));
  EXPECT_EQ(run({"unscramble", file("klar.edi"), file("wirr.edi")}).status, 2);
  const ProgramResult result = run({"scramble", file("klar.edi"), file("wirr.edi"), "--json"});
  EXPECT_EQ(result.status, 0) << result.messages;
  EXPECT_EQ(result.json(), Json::parse(R"({"lines":2})"));
  EXPECT_EQ(erp.folder.read("wirr.edi").find("K1"), std::string::npos);
  EXPECT_EQ(run({"import", file("wirr.edi")}).output, "1 jobs and 0 positions read, 0 skipped, 0 refused\n");
  EXPECT_EQ(run({"unscramble", file("wirr.edi"), file("wirr.edi")}).status, 0);
  EXPECT_EQ(erp.folder.read("wirr.edi"), erp.folder.read("klar.edi"));
  EXPECT_EQ(run({"scramble", file("fehlt.edi"), file("wirr.edi")}).status, 2);
  EXPECT_EQ(run({"scramble", file("klar.edi"), "/dev/full"}).status, 4);
  EXPECT_EQ(run({"export", "/dev/full"}).status, 4);
}

TEST_F(JobFile, GoesThroughPipesBothWays) {
  erp.folder.write("klar.edi", banner + customer("K1", "10"));
  const std::string plain = erp.folder.read("klar.edi");
  const ProgramResult scrambled = run({"scramble", "-", "-"}, plain);
  EXPECT_EQ(scrambled.status, 0) << scrambled.messages;
  EXPECT_EQ(scrambled.messages, "2 lines written to standard output\n");
  EXPECT_EQ(scrambled.output.size(), plain.size());
  EXPECT_NE(scrambled.output, plain);
  EXPECT_EQ(run({"unscramble", "-", "-"}, scrambled.output).output, plain);
  EXPECT_EQ(run({"unscramble", "-", file("wieder.edi"), "--json"}, scrambled.output).output,
            "{\"lines\":2}\n");
  EXPECT_EQ(erp.folder.read("wieder.edi"), plain);
  const ProgramResult both = run({"scramble", file("klar.edi"), "-", "--json"});
  EXPECT_EQ(both.status, 2);
  EXPECT_EQ(both.json()["error"], "the job file and the JSON document would both go to standard output");
  const ProgramResult wrong = run({"unscramble", "-", "-"}, plain);
  EXPECT_EQ(wrong.status, 2);
  EXPECT_EQ(wrong.output, "");

  // A named pipe is read like standard input.
  ASSERT_EQ(mkfifo(file("rohr").c_str(), 0600), 0);
  const std::string feed = "cat " + file("klar.edi") + " > " + file("rohr") + " &";
  ASSERT_EQ(std::system(feed.c_str()), 0);
  EXPECT_EQ(run({"import", file("rohr"), "--json"}).json()["jobs"], 1);
}

} // namespace
} // namespace qx
