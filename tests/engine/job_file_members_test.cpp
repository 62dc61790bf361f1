#include "engine_fixture.h"

#include <stdexcept>

using namespace qx;

namespace {

class JobFileMembersTest : public EngineTest {
protected:
  std::string file(const char* name) const { return (erp.folder.path() / name).string(); }
};

} // namespace

TEST_F(JobFileMembersTest, WhatOneInstallationExportsAnotherImportsAndProcesses) {
  stageCustomer("K1", "4711");
  ASSERT_TRUE(engine.Export(file("jobs.edi")));
  engine.DelItem("K1");
  ASSERT_TRUE(engine.Import(file("jobs.edi")));
  EXPECT_TRUE(run());
  EXPECT_EQ(jobType("K1"), 13);
  EXPECT_EQ(customer("4711", "Ort"), Value("Hamburg"));
  EXPECT_TRUE(erp.desktop.shown.empty());
}

TEST_F(JobFileMembersTest, AFileOfTheFirstVersionIsRefusedAndShown) {
  erp.folder.write("alt.aim", "\"Quorvex ImportJob V 1.0.1\";\r\n");
  EXPECT_FALSE(engine.Import(file("alt.aim")));
  EXPECT_FALSE(engine.Export(file("fehlt/jobs.edi")));
  EXPECT_EQ(
      erp.desktop.texts(),
      "Die ausgewählte Datei entspricht nicht den konventionen.\n"
      "Beim Exportieren der Daten sind Fehler aufgetreten, es konnten evtl. nicht alle Daten exportiert "
      "werden.\n");
}

TEST_F(JobFileMembersTest, TextsAreScrambledByTheTablesOfTheApplicationDirectory) {
  // The first character stands at a place of the second table: its letters are turned by one here.
  std::string alphabet;
  for (char c = ' '; c <= '~'; ++c)
    if (c != '"') alphabet += c;
  const std::string turned = alphabet.substr(1) + " ";
  erp.folder.write("Codetabellen.txt", alphabet + "\n" + turned + "\n" + alphabet + "\n" + alphabet +
                                           "\nDas Banner der anderen.\n");
  EXPECT_EQ(engine.Encrypt("abc abcda"), "bbc abcea");
  EXPECT_EQ(engine.Decrypt("bbc abcea"), "abc abcda");
  EXPECT_EQ(engine.CheckSum("AB"), 131);
  erp.folder.write("Codetabellen.txt", "defekt");
  ImportJobObject2 another(erp.environment);
  EXPECT_THROW(another.Encrypt("a"), std::runtime_error);
}
