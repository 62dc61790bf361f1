// Tests of the ERP's profile files.
#include "adapters/local_settings/profile_ini_file.h"
#include "support/fake_system.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace qx {
namespace {

class ProfileFile : public ::testing::Test {
protected:
  std::string read(std::string_view content, std::string_view section, std::string_view key) {
    folder_.write("Zubehoer.ini", content);
    return profile_.read((folder_.path() / "Zubehoer.ini").string(), section, key);
  }

  TemporaryFolder folder_;
  RecordingDiagnostics diagnostics_;
  ProfileIniFile profile_{diagnostics_};
};

TEST_F(ProfileFile, FindsValuesAsTheProfileFunctionsDo) {
  constexpr std::string_view content = "stray = 0\r\n"
                                       "[Allgemein]\r\n"
                                       ";MinBestGebuehr = 1;1\r\n"
                                       "  MinBestGebuehr =  50,00;3,50  \r\n"
                                       "MinBestGebuehr=later\r\n"
                                       "no value\r\n"
                                       "Quoted = \" a ; b \"\r\n"
                                       "Single='x'\r\n"
                                       "Half=\"x\r\n"
                                       "Equation=a=b\r\n"
                                       "[ Werte ] comment\r\n"
                                       "1=100;5\r\n"
                                       "Last=end";
  struct Case {
    std::string_view section, key, value;
  };
  for (const Case& c :
       {Case{"Allgemein", "MinBestGebuehr", "50,00;3,50"}, Case{"ALLGEMEIN", "minbestgebuehr", "50,00;3,50"},
        Case{"Allgemein", "Quoted", " a ; b "}, Case{"Allgemein", "Single", "x"},
        Case{"Allgemein", "Half", "\"x"}, Case{"Allgemein", "Equation", "a=b"},
        Case{"Allgemein", "no value", ""}, Case{"Allgemein", "1", ""}, Case{"Werte", "1", "100;5"},
        Case{"Werte", "Last", "end"}, Case{"", "stray", ""}, Case{"Fehlt", "1", ""}})
    EXPECT_EQ(read(content, c.section, c.key), c.value) << c.section << "/" << c.key;
  EXPECT_TRUE(diagnostics_.entries.empty());
}

TEST_F(ProfileFile, ReadsCodePage1252UnlessMarkedAsUtf8) {
  EXPECT_EQ(read("[Geb\xFChr]\nW\xC4HRUNG=\x80 \x84\xDF\x93 \x81", "gebühr", "währung"), "€ „ß“ \u0081");
  EXPECT_EQ(read("\xEF\xBB\xBF[Gebühr]\nWährung=€", "Gebühr", "Währung"), "€");
}

TEST_F(ProfileFile, TakesAMissingFileForAnEmptyOne) {
  const std::string missing = (folder_.path() / "none.ini").string();
  EXPECT_EQ(profile_.read(missing, "Allgemein", "MinBestGebuehr"), "");
  EXPECT_TRUE(diagnostics_.entries.empty());
}

TEST_F(ProfileFile, TellsOfAFileThatCannotBeRead) {
  EXPECT_EQ(profile_.read(folder_.path().string(), "Allgemein", "MinBestGebuehr"), "");
  ASSERT_EQ(diagnostics_.entries.size(), 1U);
  EXPECT_NE(diagnostics_.entries[0].what.find(folder_.path().string()), std::string::npos);
}

TEST_F(ProfileFile, UnderstandsTheSeparatorsOfWindows) {
  folder_.write("Zubehoer.ini", "[Werte]\n1=2;3\n");
  EXPECT_EQ(profile_.read(folder_.path().string() + "\\Zubehoer.ini", "Werte", "1"), "2;3");
}

} // namespace
} // namespace qx
