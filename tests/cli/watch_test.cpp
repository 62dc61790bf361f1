// What happens to the files of a watched folder.
#include "program_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>
#include <unistd.h>

namespace qx {
namespace {

namespace fs = std::filesystem;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class WatchedFolders : public ProgramTest {
protected:
  WatchedFolders() { fs::create_directory(inbox); }

  std::vector<std::string> words(std::vector<std::string> further = {}) const {
    std::vector<std::string> all = onDatabase({"stage", "--watch", inbox.string(), "--json=lines"});
    all.insert(all.end(), further.begin(), further.end());
    return all;
  }
  ProgramResult once() const { return runPlain(words({"--once"})); }
  ProgramRun watch() const { return {erp.folder, words(), variables, {}}; }
  /// A file that is finished: it has lain there for a while.
  void put(const std::string& name, std::string_view jobs) const {
    std::ofstream(inbox / name) << jobs;
    fs::last_write_time(inbox / name, fs::file_time_type::clock::now() - std::chrono::minutes(1));
  }
  /// The files below the folder, without the keys of those that were taken.
  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(inbox))
      if (!entry.is_directory()) names.push_back(entry.path().lexically_relative(inbox).string());
    std::ranges::sort(names);
    return names;
  }
  bool comes(const fs::path& file) const {
    for (int i = 0; i < 1000; ++i) {
      if (fs::exists(inbox / file)) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
  }

  fs::path inbox = erp.folder.path() / "Eingang ä";
};

TEST_F(WatchedFolders, FilesAreStagedByNameAndMovedWithTheReasonBesideThoseThatAreRefused) {
  put("b.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"B","JobID":"B"})");
  put("a.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"})");
  put("c.json", "[{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"C\"},\n{\"type\":"
                "\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"Name\":1}]");
  put("d.txt", "no jobs");
  put(".e.json", "hidden");
  const ProgramResult result = once();
  EXPECT_EQ(result.status, 1) << result.messages;
  EXPECT_EQ(
      result.output,
      R"({"file":"a.json","state":"done","movedTo":"done/a.json","staged":1,"skipped":0})"
      "\n"
      R"({"file":"b.json","state":"done","movedTo":"done/b.json","staged":1,"skipped":0})"
      "\n"
      R"({"file":"c.json","state":"rejected","movedTo":"rejected/c.json","error":"object 2: property \"Name\": )"
      R"(the type has no such property","line":2})"
      "\n");
  EXPECT_THAT(files(), ElementsAre(".e.json", "d.txt", "done/a.json", "done/b.json", "rejected/c.json",
                                   "rejected/c.json.error.txt"));
  EXPECT_THAT(
      erp.folder.read("Eingang ä/rejected/c.json.error.txt"),
      StartsWith("line 2: object 2: property \"Name\": the type has no such property\nNothing was staged."));
  EXPECT_THAT(listed(), ElementsAre("A", "B"));
  // The same name comes again: the earlier file stays.
  put("a.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A2"})");
  EXPECT_EQ(once().json()["movedTo"], "done/a-2.json");
  EXPECT_THAT(once().output, IsEmpty());
}

TEST_F(WatchedFolders, ARepeatedContentIsToldOrTheFileRejected) {
  put("a.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"})");
  put("b.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"B"})");
  EXPECT_EQ(run({"stage", "--watch", inbox.string(), "--once"}).output,
            "done      a.json  1 staged, 0 skipped\ndone      b.json  1 staged, 0 skipped, 1 repeated\n");
  put("c.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"C"})");
  const ProgramResult refused = run({"stage", "--watch", inbox.string(), "--once", "--unique"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_THAT(refused.output,
              StartsWith("rejected  c.json  line 1: object 1: the content is that of the job 'A' of "));
}

TEST_F(WatchedFolders, AFileThatIsBeingWrittenIsLeftUntilItIsClosed) {
  std::ofstream(inbox / "a.json") << R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A")";
  const ProgramResult young = once();
  EXPECT_EQ(young.output, "");
  EXPECT_THAT(young.messages, HasSubstr("still being written"));
  const int open = ::open((inbox / "a.json").c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
  fs::last_write_time(inbox / "a.json", fs::file_time_type::clock::now() - std::chrono::minutes(1));
  EXPECT_EQ(once().output, "") << "old, but open";
  ProgramRun run = watch();
  std::ofstream(inbox / "b.tmp") << R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"B"})";
  fs::rename(inbox / "b.tmp", inbox / "b.json");
  EXPECT_TRUE(comes("done/b.json"));
  EXPECT_TRUE(fs::exists(inbox / "a.json"));
  ASSERT_EQ(::write(open, "}", 1), 1);
  ::close(open);
  EXPECT_TRUE(comes("done/a.json"));
  run.signal(SIGTERM);
  EXPECT_EQ(run.wait().status, 0);
  EXPECT_THAT(listed(), ElementsAre("B", "A"));
}

TEST_F(WatchedFolders, WhatIsNoFaultOfAFileLeavesItAndIsToldAndTriedAgain) {
  fs::create_directory(inbox / "done");
  EXPECT_EQ(runPlain(onDatabase({"stage", "--watch", (inbox / "fehlt").string()})).status, 2);
  EXPECT_EQ(runPlain({"--db", (inbox / "keine.db").string(), "stage", "--watch", inbox.string()}).status, 4);
  put("a.json", R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"})");
  erp.refuse("INSERT ON ImportKopf"_sql, "'gesperrt'"_sql);
  const ProgramResult refused = once();
  EXPECT_EQ(refused.status, 4);
  EXPECT_THAT(refused.output, HasSubstr("gesperrt"));
  EXPECT_TRUE(listed().empty());
  erp.allow();
  ProgramRun run = watch();
  EXPECT_TRUE(comes("done/a.json"));
  EXPECT_EQ(once().status, 3) << "one program watches a folder";
  fs::rename(inbox, erp.folder.path() / "weg");
  const ProgramResult gone = run.wait();
  EXPECT_EQ(gone.status, 4);
  EXPECT_THAT(gone.messages, HasSubstr("the watched folder is gone"));
  EXPECT_THAT(listed(), ElementsAre("A"));
}

TEST_F(WatchedFolders, NoFileIsStagedTwiceOrLostWhateverTheMomentOfTheKill) {
  constexpr int total = 60;
  // Without keys of their own: a file that is staged twice leaves two jobs.
  for (int i = 0; i < total; ++i)
    put("f" + std::to_string(100 + i) + ".json",
        R"({"type":"Kunde","Bez1":"N","Kundennummer":")" + std::to_string(i) + "\"}");
  std::mt19937 random(20261124);
  int kills = 0;
  for (; kills < 12; ++kills) {
    ProgramRun run(erp.folder, words({"--once"}), variables, {});
    std::this_thread::sleep_for(std::chrono::milliseconds(20 + random() % 60));
    run.signal(SIGKILL);
    if (run.wait().status == 0) break;
  }
  EXPECT_GT(kills, 2);
  EXPECT_EQ(once().status, 0);
  EXPECT_EQ(erp.count("Select Count(Distinct Kundennummer) From ImportKopf"_sql), total);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), total);
  EXPECT_EQ(std::distance(fs::directory_iterator(inbox / "done"), {}), total);
}

TEST_F(WatchedFolders, AFileThatWasStagedBeforeTheEndIsOnlyMoved) {
  put("a.json", R"({"type":"Kunde","Bez1":"N","Kundennummer":"1"})");
  EXPECT_EQ(once().status, 0);
  // As if it had ended before the move.
  const std::string key =
      erp.connection().open(sql("Select Kennung From Eingangsdateien"_sql))->text("Kennung");
  fs::rename(inbox / "done/a.json", inbox / "working" / (key + "-a.json"));
  EXPECT_EQ(once().output, "{\"file\":\"a.json\",\"state\":\"done\",\"movedTo\":\"done/a.json\"}\n");
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 1);
}

TEST_F(WatchedFolders, AFolderIntoWhichNothingCanBeMovedIsToldBeforeAFileIsTaken) {
  put("a.json", R"({"type":"Kunde","Bez1":"N","Kundennummer":"1","JobID":"A"})");
  for (const char* name : {"working", "done", "rejected"}) {
    // No file can be moved to another file system.
    const fs::path elsewhere = "/dev/shm" / erp.folder.path().filename();
    fs::remove(inbox / name);
    fs::create_directory(elsewhere);
    fs::create_directory_symlink(elsewhere, inbox / name);
    const ProgramResult result = once();
    EXPECT_EQ(result.status, 2);
    EXPECT_THAT(result.output, HasSubstr(std::string(name) + ": files cannot be moved there"));
    EXPECT_TRUE(fs::is_empty(elsewhere));
    fs::remove(inbox / name);
    fs::remove(elsewhere);
  }
  EXPECT_THAT(files(), ElementsAre("a.json"));
  EXPECT_EQ(once().status, 0);
}

TEST_F(WatchedFolders, NamesOfAnyKindAreStagedAndOneThatIsTooLongHoldsUpNoOther) {
  std::vector<std::string> moved;
  for (const char* name : {" a b.json", "-c.json", "d\ne.json", "f\xFFg.json", "\"h'.json", "ä.json"}) {
    put(name, R"({"type":"Kunde","Bez1":"N","Kundennummer":"1"})");
    moved.push_back("done/" + std::string(name));
  }
  const std::string tooLong = std::string(196, 'a') + ".json";
  put(tooLong, R"({"type":"Kunde","Bez1":"N","Kundennummer":"1"})");
  const ProgramResult result = once();
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.messages, HasSubstr("aaa.json: the name is longer than 200 bytes"));
  moved.push_back(tooLong);
  std::ranges::sort(moved);
  EXPECT_EQ(files(), moved);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql), 6);
  EXPECT_EQ(std::ranges::count(result.output, '\n'), 6);
}

} // namespace
} // namespace qx
