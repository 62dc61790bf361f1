// What the surroundings can do to a run: full disks, files that cannot be written, other programs at work.
#include "program_fixture.h"

#include "store/entry_objects.h"
#include "store/staging_writer.h"
#include "support/full_disk.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <unistd.h>

namespace qx {
namespace {

class Faults : public ProgramTest {
protected:
  void stageCustomers(int count) {
    WorkUnit unit(erp.connection());
    for (int i = 1; i <= count; ++i)
      stageCustomer(erp.connection(), "F" + std::to_string(i), std::to_string(100000 + i));
    unit.commit();
  }
  void stageCustomer(Connection& connection, const std::string& key, const std::string& number) {
    Kunde job(erp.environment);
    job.JobID = key;
    job.Kundennummer = number;
    job.Bez1 = "Firma " + number;
    job.Ort = "Celle";
    writeStaged(connection, static_cast<const KundeFields&>(job));
  }
  std::int64_t done() { return erp.count("Select Count(*) From ImportKopf Where JobType = 13"_sql); }
};

TEST_F(Faults, AFullDiskBreaksARunOffAndARerunCompletesIt) {
  stageCustomers(3000);
  erp.execute("PRAGMA wal_checkpoint(TRUNCATE)"_sql);
  const auto size = std::filesystem::file_size(erp.file);
  ProgramResult result;
  {
    const FullDisk full(static_cast<std::uint64_t>(size) + 400'000);
    result = run({"process", "--json"});
  }
  EXPECT_EQ(result.status, 4) << result.messages;
  const Json document = result.json();
  EXPECT_NE(document["error"].get<std::string>().find(erp.file), std::string::npos) << document["error"];
  EXPECT_EQ(document["counts"]["done"], done()) << "only what is durable is counted";
  EXPECT_LT(done(), 3000);
  EXPECT_EQ(run({"process", "--json"}).status, 0);
  EXPECT_EQ(done(), 3000);
  EXPECT_EQ(erp.count("Select Count(*) From Kundenstamm"_sql), 3000);
  EXPECT_EQ(erp.count("Select Count(*) From Protokollpositionen"_sql), 3000);
}

TEST_F(Faults, AMissingTableEndsWithFourAndIsNamed) {
  erp.execute("DROP TABLE ImportPos"_sql);
  erp.execute("DROP TABLE ImportKopf"_sql);
  for (const char* command : {"process", "list", "check"}) {
    const ProgramResult result = run({command, "--json"});
    EXPECT_EQ(result.status, 4) << command;
    EXPECT_NE(result.output.find("ImportKopf"), std::string::npos) << result.output;
  }
}

TEST_F(Faults, AFileThatMayNotBeWrittenIsReadAndNotProcessed) {
  namespace fs = std::filesystem;
  ASSERT_EQ(
      stage(R"({"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"K1","Versandart":"DROHNE"})").status,
      0);
  erp.execute("PRAGMA wal_checkpoint(TRUNCATE)"_sql);
  // The program runs as a user without rights to the folder; root would be let through.
  const fs::path folder = erp.folder.path() / "fremd";
  fs::create_directories(folder);
  const std::string file = (folder / "erp.db").string();
  const std::string program = (folder / "qximportjob").string();
  fs::copy_file(erp.file, file);
  fs::copy_file(QXIMPORTJOB_PROGRAM, program);
  fs::permissions(file, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                              fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec);
  fs::permissions(erp.folder.path(), fs::perms::all & ~fs::perms::others_write);
  const std::string user = geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
  const auto asReader = [&](const std::string& arguments) {
    const std::string command = user + "env HOME=/nonexistent " + program + " --db " + file + " " +
                                arguments + " > " + (erp.folder.path() / "out").string() + " 2> " +
                                (erp.folder.path() / "err").string();
    return WEXITSTATUS(std::system(command.c_str()));
  };
  for (const std::string command : {"list", "show K", "check", "protocol", "lock show", "settings list"})
    EXPECT_EQ(asReader(command), command == "check" ? 1 : 0) << command << ": " << erp.folder.read("err");
  EXPECT_EQ(asReader("show K"), 0);
  EXPECT_EQ(erp.folder.read("out"), run({"show", "K"}).output);
  EXPECT_EQ(asReader("process"), 4);
  EXPECT_EQ(erp.folder.read("err"),
            "qximportjob: the import cannot be locked: " + file +
                ": you may read this database, but not change it: its file and folder must be writable\n");
  fs::permissions(folder, fs::perms::owner_all);
}

TEST_F(Faults, ARunBesideAProgramThatStagesAllTheTimeLetsItIn) {
  constexpr int jobs = 20000;
  stageCustomers(jobs);
  const auto other = erp.secondConnection();
  std::atomic<bool> ended{false};
  std::chrono::milliseconds longest{0};
  int staged = 0;
  auto stager = std::thread([&] {
    while (!ended) {
      const auto before = std::chrono::steady_clock::now();
      WorkUnit unit(*other);
      ++staged;
      stageCustomer(*other, "S" + std::to_string(staged), std::to_string(900000 + staged));
      unit.commit();
      const auto waited =
          std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - before);
      longest = std::max(longest, waited);
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
  });
  const ProgramResult result = run({"process", "--json"});
  ended = true;
  stager.join();
  EXPECT_EQ(result.status, 0) << result.messages;
  // What arrives after the section was opened is for the next run.
  EXPECT_GE(done(), jobs);
  EXPECT_GT(staged, 10);
  EXPECT_LT(longest.count(), 2000);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobType = 10"_sql) + done(), jobs + staged);
  EXPECT_EQ(erp.count("Select Count(*) From Protokollpositionen"_sql), done());
}

TEST_F(Faults, OfTwoRunsAtOnceOneIsRefused) {
  stageCustomers(4000);
  ProgramRun first(erp.folder, onDatabase({"process", "--json"}), variables, "");
  const ProgramResult second = [&] {
    ProgramResult result;
    for (int tries = 0; tries < 400; ++tries) {
      if (erp.count("Select Count(*) From LockControl"_sql) == 1) return run({"process", "--json"});
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return result;
  }();
  const ProgramResult winner = first.wait();
  EXPECT_EQ(second.status, 3) << second.output;
  EXPECT_EQ(winner.status, 0) << winner.messages;
  EXPECT_EQ(erp.count("Select Count(*) From Protokollpositionen"_sql), 4000);
  EXPECT_EQ(done(), 4000);
}

} // namespace
} // namespace qx
