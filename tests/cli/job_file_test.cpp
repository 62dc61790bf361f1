// Job files: import, export, scramble and unscramble.
#include "program_fixture.h"

#include "support/full_disk.h"

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
  ASSERT_EQ(stage(R"([{"type":"Kunde","JobID":"K1","Bez1":"Müller €"},
                      {"type":"Auftrag","JobID":"A1","Positionen":[{"ChildID":"P1","Artikelnummer":"A","Menge":2.5}]}])")
                .status,
            0);
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
  ASSERT_EQ(stage(R"({"type":"Kunde","JobID":"K3"})").status, 0);
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
  EXPECT_EQ(result.json()["jobs"], erp.count(sql("Select Count(*) From ImportKopf"_sql)));
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
  ASSERT_EQ(stage(R"({"type":"Kunde","JobID":"K1","Bez1":"a;b"})").status, 0);
  ASSERT_EQ(run({"export", file("a.aim"), "--version1"}).status, 0);
  EXPECT_EQ(run({"import", file("a.aim")}).status, 2);
  ASSERT_EQ(run({"delete", "K1"}).status, 0);
  EXPECT_EQ(run({"import", file("a.aim"), "--version1"}).status, 0);
  EXPECT_EQ(show("K1")["Bez1"], "a,b");
}

TEST_F(JobFile, JobsThatWillNotReadBackAreNamed) {
  ASSERT_EQ(stage(R"({"type":"Kunde","JobID":"K1","Bemerkung":"Bitte anrufen; eilt"})").status, 0);
  const ProgramResult result = run({"export", file("out.edi")});
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "will not read back as it is: K1\n1 lines will not read back as they are\n"
                           "1 jobs and 0 positions written to " +
                               file("out.edi") + ", 0 skipped\n");
  EXPECT_EQ(run({"import", file("out.edi")}).output,
            "line 2  refused: the record has more fields than its kind: a value holds the separator\n"
            "0 jobs and 0 positions read, 0 skipped, 1 refused\n");
}

TEST_F(JobFile, TheDatabaseIsNoTarget) {
  ASSERT_EQ(stage(R"({"type":"Kunde","JobID":"K1"})").status, 0);
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

} // namespace
} // namespace qx
