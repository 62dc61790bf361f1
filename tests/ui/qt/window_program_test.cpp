// The window program as a process: how it opens, closes and ends.
#include "support/test_erp.h"
#include "ui/qt/text.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>
#include <unistd.h>
#include <xcb/xcb.h>

namespace qx {
namespace {

template <class Answer>
using Reply = std::unique_ptr<Answer, decltype(&std::free)>;

/// Sees the windows of other programs on the test's display and closes them as a window frame would.
class Screen {
public:
  Screen() : connection_(xcb_connect(nullptr, nullptr), &xcb_disconnect) {}

  /// True once a shown window of this title was asked to close.
  bool close(const QString& title) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(link())).data->root;
    const Reply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(link(), xcb_query_tree(link(), root), nullptr), &std::free);
    if (!tree) return false;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
      if (isShown(children[i]) && titleOf(children[i]) == title) {
        askToClose(children[i]);
        return true;
      }
    return false;
  }

private:
  xcb_connection_t* link() { return connection_.get(); }

  xcb_atom_t atom(std::string_view name) {
    const auto asked = xcb_intern_atom(link(), 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(link(), asked, nullptr), &std::free);
    return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
  }
  bool isShown(xcb_window_t window) {
    const Reply<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(link(), xcb_get_window_attributes(link(), window), nullptr),
        &std::free);
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
  }
  QString titleOf(xcb_window_t window) {
    constexpr std::uint32_t words = 64;
    const auto asked =
        xcb_get_property(link(), 0, window, atom("_NET_WM_NAME"), atom("UTF8_STRING"), 0, words);
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(link(), asked, nullptr), &std::free);
    if (!reply) return {};
    return QString::fromUtf8(static_cast<const char*>(xcb_get_property_value(reply.get())),
                             xcb_get_property_value_length(reply.get()));
  }
  void askToClose(xcb_window_t window) {
    constexpr std::uint8_t longWords = 32;
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = longWords;
    event.window = window;
    event.type = atom("WM_PROTOCOLS");
    event.data.data32[0] = atom("WM_DELETE_WINDOW");
    xcb_send_event(link(), 0, window, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char*>(&event));
    xcb_flush(link());
  }

  std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection_;
};

class WindowProgram : public ::testing::Test {
protected:
  static constexpr int patience = 10000; ///< ms

  WindowProgram() {
    erp.setOption("AppSettings", "1");
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("HOME"), toQt(erp.folder.path().string()));
    process.setProcessEnvironment(variables);
  }

  /// Enters it as a user does, through `qximportjob view`.
  void start(QStringList arguments = {}) {
    arguments = QStringList{QStringLiteral("--db"), toQt(erp.file), QStringLiteral("view")} + arguments;
    process.start(QStringLiteral(QXIMPORTJOB_PROGRAM), arguments);
    ASSERT_TRUE(process.waitForStarted(patience));
  }
  /// Waits for a window of the program and closes it.
  void close(const QString& title) {
    ASSERT_TRUE(QTest::qWaitFor([&] { return screen.close(title); }, patience))
        << title.toStdString() << process.readAllStandardError().toStdString();
  }
  /// The exit status; -1 for a crash.
  int status() {
    if (process.state() != QProcess::NotRunning && !process.waitForFinished(patience)) return -2;
    messages = process.readAllStandardError().toStdString();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
  }
  std::int64_t locks() { return erp.count("Select Count(*) From LockControl"_sql); }

  TestErp erp;
  Screen screen;
  QProcess process;
  std::string messages;
  const QString jobs = QStringLiteral("Importvorgänge");
};

TEST_F(WindowProgram, HoldsTheLockWhileItsWindowIsOpen) {
  start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return locks() == 1; }, patience));
  close(jobs);
  EXPECT_EQ(status(), 0) << messages;
  EXPECT_EQ(locks(), 0);
}

TEST_F(WindowProgram, ReleasesTheLockWhenItIsTerminated) {
  start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return locks() == 1; }, patience));
  process.terminate();
  EXPECT_EQ(status(), 0) << messages;
  EXPECT_EQ(locks(), 0);
}

TEST_F(WindowProgram, TellsWhoHoldsTheLockAndEndsWithThree) {
  erp.execute("Insert Into LockControl (Dateiname, Satz, StationID, SessionID, Benutzer) Values "
              "('ImportJob', '1', 'unbennant', 'fremd', 'meier')"_sql);
  start();
  close(QStringLiteral("Datensatz gesperrt"));
  EXPECT_EQ(status(), 3) << messages;
  EXPECT_EQ(locks(), 1) << "it is somebody else's";
}

TEST_F(WindowProgram, EndsWithFourAndTheInitLineWithoutADatabase) {
  ASSERT_TRUE(QFile::remove(toQt(erp.file)));
  start();
  close(toQt(defaultTitle));
  EXPECT_EQ(status(), 4);
  EXPECT_NE(messages.find("Create it with: qximportjob --db " + erp.file + " init"), std::string::npos)
      << messages;
}

/// As root everything may be written, so another user opens it then.
TEST_F(WindowProgram, SaysThatTheDatabaseCanOnlyBeRead) {
  namespace fs = std::filesystem;
  const fs::path folder = erp.folder.path();
  constexpr fs::perms readable = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
  constexpr fs::perms enterable = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
  for (const fs::directory_entry& file : fs::directory_iterator(folder)) fs::permissions(file, readable);
  fs::permissions(folder, readable | enterable);
  QStringList command{QStringLiteral(QXIMPORTJOB_VIEW), QStringLiteral("--db"), toQt(erp.file)};
  if (geteuid() == 0)
    command = QStringList{QStringLiteral("setpriv"), QStringLiteral("--reuid=65534"),
                          QStringLiteral("--regid=65534"), QStringLiteral("--clear-groups")} +
              command;
  process.start(command.takeFirst(), command);
  close(toQt(defaultTitle));
  EXPECT_EQ(status(), 4);
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_NE(messages.find("the import cannot be locked: "), std::string::npos) << messages;
  EXPECT_NE(messages.find("Let this user write the database file and its folder."), std::string::npos)
      << messages;
}

TEST_F(WindowProgram, NeedsADisplay) {
  QProcessEnvironment variables = process.processEnvironment();
  variables.insert(QStringLiteral("DISPLAY"), QStringLiteral(":65000"));
  process.setProcessEnvironment(variables);
  start();
  EXPECT_EQ(status(), 4) << messages;
  EXPECT_EQ(locks(), 0);
}

TEST_F(WindowProgram, RefusesAFileThatIsNotThere) {
  const QString missing = toQt((erp.folder.path() / "fehlt.edi").string());
  start({missing});
  EXPECT_EQ(status(), 2);
  EXPECT_NE(messages.find("fehlt.edi does not exist"), std::string::npos) << messages;
  process.start(QStringLiteral(QXIMPORTJOB_VIEW), {missing});
  EXPECT_EQ(status(), 2) << "also when it is started without the program";
}

TEST_F(WindowProgram, IsMissedByTheProgramThatLiesAlone) {
  const QString alone = toQt((erp.folder.path() / "qximportjob").string());
  ASSERT_TRUE(QFile::copy(QStringLiteral(QXIMPORTJOB_PROGRAM), alone));
  process.start(alone, {QStringLiteral("view")});
  EXPECT_EQ(status(), 4);
  EXPECT_NE(messages.find("qximportjob-view: the window program cannot be started"), std::string::npos)
      << messages;
}

} // namespace
} // namespace qx
