// The window of the staged jobs, a program beside the component.
#include "automation_fixture.h"

#include "adapters/ado/ado_connection.h"
#include "adapters/hosted/started_job_view.h"
#include "automation/classes/engine_object.h"
#include "support/ado_objects.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

namespace qx::automation {
namespace {

namespace fs = std::filesystem;

class JobViewProgramTest : public AutomationTest {
protected:
  class Listener final : public EventSink {
  public:
    explicit Listener(std::string& heard) : heard_(heard) {}
    void raise(DispatchId event, const std::vector<Variant>&) override { heard_ += std::to_string(event); }

  private:
    std::string& heard_;
  };

  JobViewProgramTest() {
    host.openJobView = [this] {
      return std::make_unique<StartedJobView>(erp.folder.path(), std::chrono::milliseconds(300));
    };
    dynamic_cast<EventProvider&>(*engine).advise(std::make_shared<Listener>(heard));
  }
  /// A window that writes down what it was given and then does this.
  void install(std::string_view rest) {
    const fs::path file = erp.folder.path() / "qximportjob-view";
    std::ofstream(file) << "#!/bin/sh\nprintf '%s|%s;' \"$QXIMPORTJOB_DB\" \"$*\" >> \"$0.log\"\n" << rest;
    fs::permissions(file, fs::perms::owner_all);
  }
  std::string given() const {
    std::ifstream file(erp.folder.path() / "qximportjob-view.log");
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  std::string show() {
    Variant view;
    const std::string result = called(engine, "JobViewShow", {Variant::reference(view)});
    EXPECT_EQ(view, Variant(engine));
    return result + " " + read(engine, "ViewFormLoad");
  }
  void lookUntilItEnds() {
    for (int tries = 0; tries < 500 && heard.empty(); ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
      host.look();
    }
  }

  ObjectPointer engine = create("ImportJobObject2");
  std::string heard;
};

TEST_F(JobViewProgramTest, IsGivenTheDatabaseByItsEnvironmentAndLeftToTakeTheLock) {
  std::ofstream(erp.folder.path() / "open") << "x";
  install("while [ -e \"${0%/*}/open\" ]; do sleep 0.02; done\n");
  EXPECT_EQ(show(), "Empty 1&");
  EXPECT_EQ(given(), erp.file + "|;");
  EXPECT_EQ(count("Select Count(*) From LockControl"_sql), 0);
  host.look();
  EXPECT_EQ(show(), "Empty 1&") << "there is one window";
  EXPECT_EQ(heard, "");
  fs::remove(erp.folder.path() / "open");
  lookUntilItEnds();
  EXPECT_EQ(heard, "1");
  EXPECT_EQ(read(engine, "ViewFormLoad"), "2&");
  EXPECT_EQ(given(), erp.file + "|;");
  EXPECT_EQ(erp.jobView.opened, 0);
}

TEST_F(JobViewProgramTest, UnloadsTheEngineWhenTheLockIsRefused) {
  install("exit 3\n");
  EXPECT_EQ(show(), "Empty 2&");
  EXPECT_EQ(heard, "1");
  EXPECT_EQ(erp.desktop.texts(), "");
}

TEST_F(JobViewProgramTest, MayBeMissing) {
  EXPECT_EQ(show(), "Empty 2&");
  EXPECT_EQ(heard, "1");
  EXPECT_EQ(erp.desktop.shown.back().text, "Das Fenster der Importvorgänge ist nicht installiert.");
  ASSERT_EQ(set(engine, "ActiveConnection", Variant::nothing()), "Empty");
  show();
  EXPECT_EQ(erp.desktop.shown.back().text, "Bitte geben Sie eine Connection an.");
}

TEST_F(JobViewProgramTest, OpensTheDatabaseOfAHostWhereItsProviderIsKnown) {
  install("exit 3\n");
  AdoDatabase ado(erp.file);
  const auto connected = [&] {
    return std::make_shared<AdoConnection>(ado.connection(),
                                           [&](std::string_view progId) { return ado.create(progId); });
  };
  erp.environment.connection = connected();
  show();
  EXPECT_EQ(given(), "odbc:DSN=Warenwirtschaft;UID=tester;PWD=geheim|;");
  ado.connectionString = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=a.mdb";
  erp.environment.connection = connected();
  show();
  EXPECT_EQ(erp.desktop.shown.back().text,
            "Das Fenster der Importvorgänge kann die Datenbank dieser Verbindung nicht öffnen.");
}

} // namespace
} // namespace qx::automation
