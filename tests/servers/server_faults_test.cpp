// What a server, the way to it and its rights can do to the program.
#include "servers/shared_erp.h"

#include "adapters/odbc/connection_string.h"
#include "support/server_proxy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace qx {
namespace {

using ::testing::AllOf;
using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::Not;

std::string with(const std::string& connectionString, std::string_view keyword, std::string_view value) {
  odbc::ConnectionString text(connectionString);
  text.set(keyword, value);
  return text.text();
}

/// A name that no earlier run has left on the server.
std::string freshName(std::string_view kind) {
  return std::string(kind) + "_" +
         std::to_string(std::chrono::steady_clock::now().time_since_epoch().count());
}

class ServerFaults : public ::testing::Test {
protected:
  std::string connectionString() const { return erp.schema->connectionString(); }

  SharedErp erp{Kept::OnTheServer};
};

TEST_F(ServerFaults, WhatPreventsAConnectionIsToldWithItsNextStep) {
  ServerProxy proxy(connectionString());
  proxy.set(ServerProxy::State::Silent);
  const std::string latin = freshName("latin");
  const auto server = OdbcDatabase().open(testServer());
  server->execute(sql("Create Database "_sql, name(latin),
                      " Template template0 Encoding LATIN1 LC_Collate 'C' LC_CType 'C'"_sql));
  struct Case {
    std::string way;
    int status;
    std::string_view cause;
    std::string_view nextStep;
  };
  for (const Case& each :
       {Case{"", 2, "the connection string cannot be read: it is empty", "Write it like this: odbc:Driver="},
        Case{"geheim", 2, "part 1 is not of the form Keyword=value", "Write it like this: odbc:Driver="},
        Case{"Driver={Fehlt};Server=x", 4, "Fehlt", "odbcinst -q -d lists the drivers"},
        Case{with(connectionString(), "PWD", "geheim"), 4, "password authentication failed",
             "Check database, user and password"},
        Case{with(connectionString(), "Database", "fehlt"), 4, "\"fehlt\" does not exist",
             "Check database, user and password"},
        Case{with(connectionString(), "Port", "1"), 4, "Connection refused", "Check that the server runs"},
        Case{with(proxy.connectionString(), "Pqopt", "connect_timeout=2"), 4, "timeout expired",
             "Check that the server runs and can be reached"},
        Case{with(connectionString(), "Database", latin), 4, "the texts of the database are stored as LATIN1",
             "Create a database with that encoding"}}) {
    const auto start = std::chrono::steady_clock::now();
    const ProgramResult result = erp.run({"list"}, {}, "odbc:" + each.way);
    EXPECT_EQ(result.status, each.status) << each.way;
    EXPECT_THAT(result.messages,
                AllOf(HasSubstr(each.cause), HasSubstr(each.nextStep), Not(HasSubstr("geheim"))));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(30)) << each.way;
  }
  server->execute(sql("Drop Database "_sql, name(latin)));
}

TEST_F(ServerFaults, ALoginThatMayOnlyReadIsToldTheRightAndTheTableThatItLacks) {
  erp.stageCustomers("K", 1);
  const std::string file = (erp.folder.path() / "jobs.txt").string();
  ASSERT_EQ(erp.run({"export", file}).status, 0);
  const std::string reader = freshName("reader");
  const std::string schema = erp.text("Select current_schema()"_sql);
  erp.execute("Create Role "_sql, name(reader), " Login Password 'geheim'"_sql);
  erp.execute("Grant Usage On Schema "_sql, name(schema), " To "_sql, name(reader));
  erp.execute("Grant Select On All Tables In Schema "_sql, name(schema), " To "_sql, name(reader));
  const std::string way = "odbc:" + with(with(connectionString(), "UID", reader), "PWD", "geheim");
  for (const std::vector<std::string>& reading : std::vector<std::vector<std::string>>{
           {"list"}, {"show", "K0"}, {"check"}, {"protocol"}, {"lock", "show"}, {"settings", "list"}}) {
    const ProgramResult result = erp.run(reading, {}, way);
    EXPECT_EQ(result.status, 0) << reading.front() << ": " << result.messages;
    EXPECT_EQ(result.output, erp.run(reading).output);
  }
  struct Writing {
    std::vector<std::string> arguments;
    std::string_view table;
    std::string_view right;
  };
  erp.execute("Update ImportKopf Set JobType = 11"_sql);
  for (const Writing& writing :
       {Writing{{"stage", "-"}, "zaehlerstaende", "INSERT"},
        Writing{{"import", file}, "importkopf", "UPDATE"}, Writing{{"release", "K0"}, "importkopf", "UPDATE"},
        Writing{{"delete", "K0"}, "importkopf", "DELETE"}, Writing{{"process"}, "lockcontrol", "INSERT"},
        Writing{
            {"settings", "set", "ImportJob2", "EinVorgang", "1", "--force"}, "einstellungen", "INSERT"}}) {
    const ProgramResult result =
        erp.run(writing.arguments, R"({"type":"Kunde","Bez1":"N","JobID":"K0","Kundennummer":"N"})", way);
    EXPECT_EQ(result.status, 4) << writing.arguments.front();
    EXPECT_THAT(result.messages, AllOf(HasSubstr("permission denied for table " + std::string(writing.table)),
                                       HasSubstr("The user needs the right " + std::string(writing.right))));
  }
  EXPECT_EQ(erp.listed("Select JobID, JobType From ImportKopf"_sql), std::vector<std::string>{"K0|11"});
  erp.execute("Revoke All On All Tables In Schema "_sql, name(schema), " From "_sql, name(reader));
  erp.execute("Revoke All On Schema "_sql, name(schema), " From "_sql, name(reader));
  erp.execute("Drop Role "_sql, name(reader));
}

TEST_F(ServerFaults, ATableThatLacksAColumnIsNamed) {
  erp.stageCustomers("K", 1);
  erp.execute("Alter Table ImportKopf Drop Column JobType"_sql);
  for (const std::string command : {"list", "check", "process"}) {
    const ProgramResult result = erp.run({command});
    EXPECT_EQ(result.status, 4) << command;
    EXPECT_THAT(result.messages, AllOf(AnyOf(HasSubstr("column \"jobtype\" does not exist"),
                                             HasSubstr("the record set has no column 'JobType'")),
                                       AnyOf(HasSubstr("those of this version of the program"),
                                             HasSubstr("remedy the cause and run it again"))))
        << command;
  }
}

TEST_F(ServerFaults, ASessionThatTheServerEndsInARunLosesNothing) {
  erp.stageCustomers("K", 3);
  auto holding = std::make_unique<WorkUnit>(erp.connection());
  erp.execute("Update ImportKopf Set Bez1 = 'Firma' Where JobID = 'K2'"_sql);
  const auto whenItWaits = [&](ProgramRun run) {
    const auto session = erp.awaitWaiting();
    erp.another()->open(sql("Select pg_terminate_backend("_sql, number(session), ")"_sql));
    return run.wait();
  };
  const ProgramResult ended = whenItWaits(erp.start({"process"}));
  EXPECT_EQ(ended.status, 4);
  EXPECT_THAT(ended.messages, AllOf(HasSubstr("terminating connection due to administrator command"),
                                    HasSubstr("Check that the server runs and can be reached")));
  // A limit of the server ends the statement alone.
  odbc::ConnectionString text(connectionString());
  text.set("ConnSettings", std::string(text.value("ConnSettings")) + ";Set statement_timeout To 300");
  const ProgramResult late = erp.run({"process"}, {}, "odbc:" + text.text());
  EXPECT_EQ(late.status, 4);
  EXPECT_THAT(late.messages,
              AllOf(HasSubstr("canceling statement due to statement timeout (57014). A statement took "
                              "longer than the server allows"),
                    Not(HasSubstr("Another program holds"))));
  holding.reset();
  EXPECT_EQ(erp.count("Select Count(*) From Kundenstamm Where Bez1 = 'Firma'"_sql), 0);
  EXPECT_EQ(erp.run({"process"}).status, 0);
  erp.expectWrittenOnce(3);
}

TEST_F(ServerFaults, AWayThatBreaksAtAnyMomentLeavesNothingHalfWritten) {
  ServerProxy proxy(connectionString());
  const std::string way = "odbc:" + proxy.connectionString();
  const std::string jobs = R"({"type":"Kunde","JobID":"K0","Kundennummer":"K0","Bez1":"Firma"}
                              {"type":"Kunde","JobID":"K1","Kundennummer":"K1","Bez1":"Firma"})";
  // Ever later, until the command ends before the cut. Every other time the server is gone for good.
  const auto cutting = [&](const std::vector<std::string>& command, int step, const auto& check) {
    int cuts = 0;
    for (int message = 1;; message += step) {
      proxy.cutAt(message, cuts % 2 == 0 ? ServerProxy::State::Gone : ServerProxy::State::Open);
      const ProgramResult result = erp.run(command, jobs, way);
      const bool cut = proxy.hasCut();
      proxy.set(ServerProxy::State::Open);
      check();
      if (!cut) {
        EXPECT_EQ(result.status, 0) << result.messages;
        return cuts;
      }
      ++cuts;
      // What comes last, such as the end of the lock, may fail without harm; a connection between two units
      // is opened anew.
      EXPECT_THAT(result.status, AnyOf(0, 4)) << message << ": " << result.messages;
      if (result.status == 4) {
        EXPECT_THAT(result.messages, HasSubstr("start the command again")) << message;
      }
    }
  };
  EXPECT_GT(
      cutting({"stage", "-"}, 3, [&] { EXPECT_EQ(erp.count("Select Count(*) From ImportKopf"_sql) % 2, 0); }),
      5);
  EXPECT_GT(cutting({"process"}, 6,
                    [&] {
                      const auto done = erp.count("Select Count(*) From ImportKopf Where JobType = 13"_sql);
                      EXPECT_EQ(erp.lines(), done);
                      EXPECT_EQ(erp.count("Select Count(*) From Kundenstamm Where Bez1 = 'Firma'"_sql), done);
                    }),
            10);
  erp.expectWrittenOnce(2);
}

TEST_F(ServerFaults, WhoseCommitIsNotAnsweredSaysThatTheResultIsNotKnown) {
  erp.stageCustomers("K", 1);
  erp.execute("Update ImportKopf Set JobType = 11"_sql);
  ServerProxy proxy(connectionString());
  proxy.loseAnswerTo("Commit");
  const ProgramResult result = erp.run({"release", "K0"}, {}, "odbc:" + proxy.connectionString());
  EXPECT_EQ(result.status, 4);
  EXPECT_THAT(result.messages, HasSubstr("It is not known whether its last changes were written"));
  EXPECT_EQ(erp.keys("Select ProcessWarning From ImportKopf"_sql), "1 ") << "the server has written it";
}

} // namespace
} // namespace qx
