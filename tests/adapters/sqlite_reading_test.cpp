// A database file that its user may only read.
#include "adapters/sqlite/sqlite_database.h"
#include "platform/database.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <poll.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qx {
namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;

/// The superuser may write everywhere.
void becomeReader() {
  if (geteuid() == 0 && (setresgid(nobody, nobody, nobody) != 0 || setresuid(nobody, nobody, nobody) != 0))
    _exit(9);
}

/// The exit status of a process of a user who may only read.
int asReader(const std::function<int()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    becomeReader();
    int result = 8;
    try {
      result = work();
    } catch (const std::exception& error) {
      fprintf(stderr, "%s\n", error.what());
    }
    _exit(result);
  }
  int status = 0;
  return waitpid(child, &status, 0) == child && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

class SqliteReading : public ::testing::Test {
protected:
  SqliteReading() {
    const auto connection = SqliteDatabase().create(file_);
    connection->execute(sql("CREATE TABLE Vertreter (VertreterNr TEXT, Bez1 TEXT)"_sql));
    connection->execute(sql("Insert Into Vertreter (VertreterNr) Values ('7')"_sql));
    fs::permissions(file_, fs::perms::all & ~fs::perms::owner_exec, fs::perm_options::replace);
    fs::permissions(folder_.path(), fs::perms::all, fs::perm_options::replace);
  }
  ~SqliteReading() override { close(fs::perms::all); }

  void close(fs::perms folder = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                                fs::perms::others_exec) const {
    fs::permissions(folder_.path(), folder, fs::perm_options::replace);
  }
  static std::size_t rows(Connection& connection) {
    return connection.open(sql("Select * From Vertreter"_sql))->recordCount();
  }
  static void addRow(Connection& connection) {
    connection.execute(sql("Insert Into Vertreter (VertreterNr) Values ('8')"_sql));
  }

  TemporaryFolder folder_;
  // With characters that have a meaning in a URI.
  std::string file_ = (folder_.path() / "a %41?b#c.db").string();
};

TEST_F(SqliteReading, ReadsAFileInAFolderThatMayNotBeWrittenAndNamesTheReasonForNotWriting) {
  close();
  EXPECT_EQ(asReader([&] {
              const auto connection = SqliteDatabase().open(file_);
              if (rows(*connection) != 1) return 1;
              try {
                addRow(*connection);
              } catch (const ReadOnlyError& error) {
                return std::string(error.what()).find("may read this database") == std::string::npos ? 2 : 0;
              }
              return 3;
            }),
            0);
}

TEST_F(SqliteReading, SeesWhatAnotherProgramWritesThatHasItOpen) {
  const auto writer = SqliteDatabase().open(file_);
  addRow(*writer);
  for (const auto& entry : fs::directory_iterator(folder_.path()))
    fs::permissions(entry.path(), fs::perms::others_read, fs::perm_options::add);
  close();
  EXPECT_EQ(asReader([&] { return rows(*SqliteDatabase().open(file_)) == 2 ? 0 : 1; }), 0);
}

TEST_F(SqliteReading, EndsWhenAnotherProgramBeginsToWriteMeanwhile) {
  close();
  std::array<int, 2> opened{}, written{};
  ASSERT_EQ(pipe(opened.data()), 0);
  ASSERT_EQ(pipe(written.data()), 0);
  auto writing = std::thread([&] {
    pollfd signal{opened[0], POLLIN, 0};
    constexpr int patience = 10000;
    if (poll(&signal, 1, patience) == 1) {
      close(fs::perms::all);
      addRow(*SqliteDatabase().open(file_));
    }
    EXPECT_EQ(write(written[1], "w", 1), 1);
  });
  const int status = asReader([&] {
    const auto reader = SqliteDatabase().open(file_);
    char signal = 0;
    if (rows(*reader) != 1 || write(opened[1], "o", 1) != 1 || read(written[0], &signal, 1) != 1) return 1;
    try {
      rows(*reader);
    } catch (const BusyError&) {
      return 0;
    }
    return 2;
  });
  writing.join();
  EXPECT_EQ(status, 0);
}

} // namespace
} // namespace qx
