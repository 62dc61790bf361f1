// Tests of the user's settings file.
#include "adapters/local_settings/ini_local_settings.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <future>

namespace qx {
namespace {

constexpr std::string_view application = "QXImportJob";

class LocalSettingsFile : public ::testing::Test {
protected:
  std::string content() const { return folder_.read("conf/settings.ini"); }
  /// Through a second object, as another program would.
  std::string fresh(std::string_view section, std::string_view key) const {
    return IniLocalSettings(file_).read(application, section, key);
  }

  TemporaryFolder folder_;
  std::filesystem::path file_ = folder_.path() / "conf" / "settings.ini";
  IniLocalSettings settings_{file_};
};

TEST_F(LocalSettingsFile, GivesTheEmptyTextForWhatWasNeverWritten) {
  EXPECT_EQ(settings_.read(application, "MAIN", "MainWidth"), "");
  settings_.write(application, "MAIN", "MainWidth", "800");
  EXPECT_EQ(settings_.read(application, "MAIN", "MainHeight"), "");
  EXPECT_EQ(settings_.read("ImportJob", "MAIN", "MainWidth"), "") << "another application's key";
  EXPECT_EQ(settings_.read(application, "ImportJob2", "MainWidth"), "") << "another section's key";
}

TEST_F(LocalSettingsFile, GivesEveryTextBackAsItWasWritten) {
  const std::array<std::string_view, 19> texts{"800",
                                               "",
                                               " ",
                                               "  both ends  ",
                                               "a;b",
                                               "#1",
                                               "a=b=c",
                                               "\"quoted\"",
                                               "'q'",
                                               "\"half",
                                               "one\r\ntwo\n",
                                               "tab\t",
                                               "100%",
                                               "%41",
                                               "%",
                                               "[x]",
                                               "<<<END",
                                               "Größe ß €",
                                               std::string_view("nul\0byte", 8)};
  for (const auto text : texts) {
    settings_.write(application, "MAIN", "Value", text);
    EXPECT_EQ(fresh("MAIN", "Value"), text);
    settings_.write(application, text, text, "under an awkward name");
    EXPECT_EQ(fresh(text, text), "under an awkward name") << text;
  }
  // Later writes of one name did not disturb those of another.
  for (const auto text : texts) EXPECT_EQ(fresh(text, text), "under an awkward name") << text;
}

TEST_F(LocalSettingsFile, TellsNamesApartThatDifferInTheirSeparator) {
  settings_.write("A/B", "C", "Key", "first");
  settings_.write("A", "B/C", "Key", "second");
  EXPECT_EQ(settings_.read("A/B", "C", "Key"), "first");
  EXPECT_EQ(settings_.read("A", "B/C", "Key"), "second");
}

TEST_F(LocalSettingsFile, StaysReadableForPeople) {
  settings_.write(application, "ImportJob2", "FenstergrößeSpeichern", "1");
  EXPECT_NE(content().find("[QXImportJob/ImportJob2]\nFenstergrößeSpeichern = 1\n"), std::string::npos)
      << content();
}

TEST_F(LocalSettingsFile, ChangesNothingButTheValue) {
  const std::string others = "; heading\n\n[other]\n; about path\npath = \"C:\\x; y\"\nrepeated = 1\n"
                             "repeated=2\nflag\n\n[open\nMainLeft = 1\n";
  folder_.write("conf/settings.ini", others + "\n; the end\n# of all\n");
  settings_.write(application, "MAIN", "MainLeft", "-5");
  settings_.write(application, "MAIN", "MainLeft", "7");
  settings_.write(application, "MAIN", "MainTop", "");
  EXPECT_EQ(content(), others + "\n; the end\n# of all\n\n[QXImportJob/MAIN]\nMainLeft = 7\nMainTop =\n");
}

TEST_F(LocalSettingsFile, AddsAKeyToItsSectionWhateverTheLineEnds) {
  folder_.write("conf/settings.ini",
                "\xEF\xBB\xBF[qximportjob/main]\r\n mainleft=1 \r\n; more\r\n\r\n[b]\r\nc=d");
  settings_.write(application, "MAIN", "MainTop", "3");
  settings_.write(application, "MAIN", "MainLeft", "2");
  EXPECT_EQ(content(),
            "\xEF\xBB\xBF[qximportjob/main]\r\n MainLeft = 2 \r\nMainTop = 3\r\n; more\r\n\r\n[b]\r\nc=d");
  folder_.write("conf/settings.ini", "[QXImportJob/MAIN]\nMainLeft");
  EXPECT_EQ(fresh("MAIN", "MainLeft"), "");
  settings_.write(application, "MAIN", "MainTop", "3");
  EXPECT_EQ(content(), "[QXImportJob/MAIN]\nMainLeft\nMainTop = 3\n");
}

TEST_F(LocalSettingsFile, KeepsAFileThatHoldsCommentsOnly) {
  folder_.write("conf/settings.ini", "; one\n\n; two\n");
  settings_.write(application, "MAIN", "MainTop", "3");
  EXPECT_NE(content().find("; one\n\n; two\n"), std::string::npos) << content();
  EXPECT_EQ(fresh("MAIN", "MainTop"), "3");
}

TEST_F(LocalSettingsFile, FollowsALinkInsteadOfReplacingIt) {
  folder_.write("elsewhere.ini", "");
  std::filesystem::create_directories(file_.parent_path());
  std::filesystem::create_symlink(folder_.path() / "elsewhere.ini", file_);
  settings_.write(application, "MAIN", "MainTop", "3");
  EXPECT_TRUE(std::filesystem::is_symlink(file_));
  EXPECT_EQ(IniLocalSettings(folder_.path() / "elsewhere.ini").read(application, "MAIN", "MainTop"), "3");
}

TEST_F(LocalSettingsFile, LosesNoKeyWhenTwoWriteAtOnce) {
  constexpr int keys = 25;
  const auto writeAll = [&](std::string_view section) {
    IniLocalSettings own(file_);
    for (int i = 0; i < keys; ++i) own.write(application, section, "Key" + std::to_string(i), "x");
  };
  auto other = std::async(std::launch::async, writeAll, "Second");
  EXPECT_NO_THROW(writeAll("First"));
  EXPECT_NO_THROW(other.get());
  for (int i = 0; i < keys; ++i)
    for (const std::string_view section : {"First", "Second"})
      EXPECT_EQ(fresh(section, "Key" + std::to_string(i)), "x") << section << i;
}

TEST_F(LocalSettingsFile, RaisesAndLeavesTheFileWhenItCannotBeReplaced) {
  settings_.write(application, "MAIN", "MainTop", "3");
  // A folder in the place of the draft: no permission stops a test that runs as the administrator.
  std::filesystem::create_directory(folder_.path() / "conf" / "settings.ini.new");
  try {
    settings_.write(application, "MAIN", "MainTop", "4");
    FAIL() << "the failure was swallowed";
  } catch (const std::runtime_error& failure) {
    EXPECT_NE(std::string(failure.what()).find("settings.ini"), std::string::npos) << failure.what();
  }
  EXPECT_EQ(fresh("MAIN", "MainTop"), "3");
}

TEST_F(LocalSettingsFile, RaisesWhenItsPlaceIsNoFolderOrTheFileIsNoText) {
  folder_.write("file", "");
  IniLocalSettings below(folder_.path() / "file" / "settings.ini");
  EXPECT_THROW(below.write(application, "MAIN", "MainTop", "1"), std::runtime_error);
  folder_.write("conf/settings.ini", std::string("[a]\nb = c\0d = e\n", 15));
  EXPECT_THROW(settings_.write(application, "MAIN", "MainTop", "1"), std::runtime_error);
  EXPECT_EQ(content().size(), 15U) << "a file of another kind is left alone";
}

TEST(DefaultLocalSettingsFile, LiesInTheUsersConfigurationFolder) {
  const char* const home = std::getenv("HOME");
  ASSERT_NE(home, nullptr);
  setenv("XDG_CONFIG_HOME", "/somewhere", 1);
  EXPECT_EQ(defaultLocalSettingsFile(), "/somewhere/qximportjob/settings.ini");
  // A relative folder does not count.
  for (const char* const ignored : {"", "relative"}) {
    setenv("XDG_CONFIG_HOME", ignored, 1);
    EXPECT_EQ(defaultLocalSettingsFile(), std::string(home) + "/.config/qximportjob/settings.ini");
  }
  unsetenv("XDG_CONFIG_HOME");
}

} // namespace
} // namespace qx
