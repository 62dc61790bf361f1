// Tests of the system adapters by the means of Windows.
#include "adapters/local_settings/user_settings.h"
#include "adapters/system/shell.h"
#include "adapters/system/user.h"
#include "adapters/system/wide_text.h"
#include "platform/files.h"
#include "platform/path_text.h"
#include "platform/program_start.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include <array>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

namespace qx {
namespace {

/// A value as another program sees it.
std::wstring inRegistry(const wchar_t* key, const wchar_t* name) {
  std::array<wchar_t, 100> value{};
  DWORD size = sizeof(value);
  const auto error = RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_REG_SZ, nullptr, value.data(), &size);
  return error == ERROR_SUCCESS ? std::wstring(value.data()) : L"(missing)";
}

TEST(UserSettings, LieWhereTheMacrosOfThisUserLookForThem) {
  UserSettings().write("Prüfung", "MAIN", "Größe", "800");
  EXPECT_EQ(inRegistry(L"Software\\VB and VBA Program Settings\\Prüfung\\MAIN", L"Größe"), L"800");
}

TEST(UserSettings, AreReadBackAsTheyWereWritten) {
  EXPECT_EQ(UserSettings().read("Prüfung", "MAIN", "Fehlt"), "");
  EXPECT_EQ(UserSettings().read("Prüfung", "FEHLT", "Größe"), "");
  const std::string longText(5000, 'x');
  for (const std::string& text :
       {std::string(" ä;\"ö\" €\\ "), std::string(), longText, std::string("nul\0byte", 8)}) {
    UserSettings().write("Prüfung", "MAIN", "Wert", text);
    EXPECT_EQ(UserSettings().read("Prüfung", "MAIN", "Wert"), text);
  }
}

TEST(Environment, IsReadAsUtf8) {
  SetEnvironmentVariableW(L"QX_PRÜFUNG", L"Größe €");
  EXPECT_EQ(environmentVariable("QX_PRÜFUNG"), "Größe €");
  SetEnvironmentVariableW(L"QX_PRÜFUNG", L"");
  EXPECT_EQ(environmentVariable("QX_PRÜFUNG"), "");
  SetEnvironmentVariableW(L"QX_PRÜFUNG", nullptr);
  EXPECT_EQ(environmentVariable("QX_PRÜFUNG"), std::nullopt);
  EXPECT_FALSE(loginName().empty());
}

TEST(UserDataFolder, IsTheLocalOneOfTheUser) {
  const auto before = environmentVariable("LOCALAPPDATA");
  SetEnvironmentVariableW(L"LOCALAPPDATA", L"C:\\Nutzer\\Jörg");
  EXPECT_EQ(textOf(userDataFolder().value()), "C:\\Nutzer\\Jörg\\qximportjob");
  for (const wchar_t* none : {L"", L"irgendwo"}) {
    SetEnvironmentVariableW(L"LOCALAPPDATA", none);
    EXPECT_FALSE(userDataFolder());
  }
  if (before) SetEnvironmentVariableW(L"LOCALAPPDATA", pathOf(*before).c_str());
}

TEST(ShellWord, IsQuotedAsTheCommandLineOfWindowsReadsIt) {
  EXPECT_EQ(shellWord("C:\\Büro\\Aufträge.db"), "C:\\Büro\\Aufträge.db");
  EXPECT_EQ(shellWord("Neuer Ordner\\a.db"), "\"Neuer Ordner\\a.db\"");
  EXPECT_EQ(shellWord(""), "\"\"");
}

TEST(Files, WithUmlautsAreTheSameForStreamsAndForTheSystem) {
  const TemporaryFolder folder;
  const auto path = folder.path() / pathOf("Aufträge €.txt");
  EXPECT_TRUE(createEmptyFile(path, FileSharing::Owner));
  EXPECT_FALSE(createEmptyFile(path, FileSharing::Owner));
  std::ofstream(path) << "Zeile";
  std::array<char, 100> read{};
  EXPECT_EQ(File::forReading(path).read(read.data(), read.size()), 5U);
  EXPECT_NE(GetFileAttributesW((folder.path() / L"Auftr\u00e4ge \u20ac.txt").c_str()),
            INVALID_FILE_ATTRIBUTES);
}

TEST(Files, ReplaceOthersUnlessAProgramHasThemOpen) {
  const TemporaryFolder folder;
  folder.write("neu.txt", "neu");
  folder.write("alt.txt", "alt");
  const auto path = folder.path() / "alt.txt";
  {
    const std::ifstream reader(path);
    try {
      replaceFile(folder.path() / "neu.txt", path);
      FAIL();
    } catch (const std::system_error& refused) {
      EXPECT_NE(std::string(refused.what()).find("alt.txt: another program has the file open"),
                std::string::npos)
          << refused.what();
    }
  }
  EXPECT_EQ(folder.read("alt.txt"), "alt");
  replaceFile(folder.path() / "neu.txt", path);
  EXPECT_EQ(folder.read("alt.txt"), "neu");
}

TEST(TemporaryFile, CanBeOpenedByItsNameAndVanishesWithTheObject) {
  std::string name;
  {
    TemporaryFile copy("Kopie");
    name = copy.path();
    copy.file().write("Inhalt\n");
    copy.file().rewind();
    std::array<char, 100> read{};
    EXPECT_EQ(File::forReading(pathOf(name)).read(read.data(), read.size()), 7U)
        << "line ends are not changed";
    EXPECT_EQ(copy.file().read(read.data(), read.size()), 7U);
  }
  EXPECT_FALSE(std::filesystem::exists(pathOf(name)));
}

const std::vector<std::string> awkwardWords{"",           "ein Wort",       "\"",       "a\\\\\"b",
                                            "C:\\Büro\\", "C:\\mit Leer\\", "€ %PATH%", "--option=\"x y\""};

/// Run by the test below in a process of its own.
TEST(ContinueAs, DISABLED_SeesTheWords) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  ASSERT_GT(static_cast<std::size_t>(count), awkwardWords.size());
  for (std::size_t i = 0; i < awkwardWords.size(); ++i)
    EXPECT_EQ(narrow(words[static_cast<std::size_t>(count) - awkwardWords.size() + i]), awkwardWords[i]);
  LocalFree(static_cast<void*>(words));
}

TEST(ContinueAs, PassesWordsAndReturnsTheStatus) {
  const auto program = ownProgram();
  ASSERT_EQ(program.extension(), ".exe");
  auto named = program;
  named.replace_extension();
  std::vector<std::string> words{"--gtest_also_run_disabled_tests",
                                 "--gtest_filter=ContinueAs.DISABLED_SeesTheWords", "--gtest_brief=1"};
  words.insert(words.end(), awkwardWords.begin(), awkwardWords.end());
  EXPECT_EQ(continueAs(named, words), 0);
  const auto shell = pathOf(environmentVariable("SystemRoot").value()) / "system32" / "cmd";
  EXPECT_EQ(continueAs(shell, {"/c", "exit", "7"}), 7);
  EXPECT_THROW(continueAs(shell.parent_path() / "gibt es nicht", {}), std::system_error);
}

} // namespace
} // namespace qx
