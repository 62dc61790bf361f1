// What `stage` stores, replaces and skips.
#include "program_fixture.h"

#include "adapters/sqlite/sqlite_database.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "store/entry_objects.h"

#include <thread>

namespace qx {
namespace {

class Staging : public ProgramTest {
protected:
  /// Every column of the rows of a job but its keys.
  std::vector<std::vector<Value>> withoutKeys(const Sql& select) {
    auto found = erp.rows(select);
    for (auto& row : found) row.erase(row.begin(), row.begin() + 2);
    return found;
  }
};

TEST_F(Staging, TakesAnArrayASingleObjectAndOneObjectPerLine) {
  EXPECT_EQ(stage(R"([{"type":"Kunde","JobID":"A"},{"type":"Vertrag","JobID":"B"}])").output,
            "{\"staged\":2,\"skipped\":0,\"jobs\":[\"A\",\"B\"]}\n");
  EXPECT_EQ(stage(R"({"JobID":"C","type":"Auftrag"})").json()["staged"], 1);
  EXPECT_EQ(stage("{\"type\":\"Kunde\",\"JobID\":\"D\"}\r\n\r\n{\"type\":\"Kunde\",\"JobID\":\"E\"}\n")
                .json()["staged"],
            2);
  EXPECT_EQ(stage("[]").output, "{\"staged\":0,\"skipped\":0,\"jobs\":[]}\n");
  EXPECT_EQ(listed(), (std::vector<std::string>{"A", "B", "C", "D", "E"}));
}

/// The rows with null for every empty text and every 0.
std::vector<std::vector<Value>> withoutEmpties(std::vector<std::vector<Value>> rows) {
  for (auto& row : rows)
    for (Value& each : row)
      if (each.isEmpty() || (each.kind() != ValueKind::Boolean && each.number() == 0.0)) each = Value::null();
  return rows;
}

TEST_F(Staging, LeavesTheRowThatTheEntryObjectsLeaveAndNullForWhatIsNotGiven) {
  Kunde kunde(erp.environment);
  kunde.Kundennummer = "10001";
  kunde.Preistyp = 1;
  kunde.KundeSeit = "1.2.26";
  kunde.AddItem();
  Vertrag vertrag(erp.environment);
  vertrag.Menge = 2.5;
  vertrag.Intervall = 6;
  vertrag.Vertragsende = "999999";
  vertrag.IndFild4 = "vier";
  vertrag.AddItem();
  Auftrag auftrag(erp.environment);
  auftrag.VS_Strasse = "Weg 1";
  auftrag.KostID = 7;
  auftrag.AddItem();
  AuftragsPos position(erp.environment);
  position.Positionsnummer = 10;
  position.Rabatt = 5;
  position.Artikelnummer = "A";
  position.Menge = position.Auslieferungsmenge = position.Fakturiermenge = 3;
  position.AddItem();
  const auto headers = sql("Select * From ImportKopf"_sql);
  // All columns; the keys come first in one table, third in none.
  const auto positions = sql("Select * From ImportPos"_sql);
  const auto expectedHeaders = withoutEmpties(erp.rows(headers));
  const auto expectedPositions = withoutEmpties(withoutKeys(positions));
  erp.execute("Delete From ImportKopf"_sql);
  erp.execute("Delete From ImportPos"_sql);

  const std::string jobs =
      R"({"type":"Kunde","JobID":")" + kunde.JobID +
      R"(","Kundennummer":"10001","Preistyp":1,"KundeSeit":"1.2.26"})" + R"({"type":"Vertrag","JobID":")" +
      vertrag.JobID + R"(","Menge":2.5,"Intervall":6,"Vertragsende":"999999","IndFild4":"vier"})" +
      R"({"type":"Auftrag","JobID":")" + auftrag.JobID +
      R"(","VS_Strasse":"Weg 1","KostID":7,"Positionen":[{"Positionsnummer":10,"Rabatt":5,"Artikelnummer":"A","Menge":3}]})";
  mustStage(jobs);
  EXPECT_EQ(erp.rows(headers), expectedHeaders);
  EXPECT_EQ(withoutKeys(positions), expectedPositions);
  EXPECT_EQ(erp.text("Select JobID From ImportPos"_sql), auftrag.JobID);
}

TEST_F(Staging, OrderPositionsStartWithTheReadyFlagsOfTheSettings) {
  erp.setOption("AuftragLieferbereit", "1");
  erp.setOption("AuftragFakturierbereit", "2"); // only exactly "1" counts
  ASSERT_EQ(
      stage(
          R"({"type":"Auftrag","JobID":"A","Positionen":[{"Positionsnummer":10,"Artikelnummer":"A","Menge":1},
                      {"Positionsnummer":2,"Artikelnummer":"A","Menge":1,"Lieferbereit":false,"Fakturierbereit":true}]})")
          .status,
      0);
  const Json positions = show("A")["Positionen"];
  ASSERT_EQ(positions.size(), 2U);
  EXPECT_EQ(positions[0]["Positionsnummer"], "2");
  EXPECT_EQ(positions[0]["Lieferbereit"], false);
  EXPECT_EQ(positions[0]["Fakturierbereit"], true);
  EXPECT_EQ(positions[1]["Lieferbereit"], true);
  EXPECT_EQ(positions[1]["Fakturierbereit"], false);
}

TEST_F(Staging, OrderPositionsAreNumberedAndTheirQuantitiesFollow) {
  const std::string jobs = R"([{"type":"Auftrag","JobID":"A","Positionen":[
      {"Artikelnummer":"X","Menge":2},{"Artikelnummer":"Y","Menge":3,"Auslieferungsmenge":1,"Fakturiermenge":0}]},
      {"Positionen":[{"Artikelnummer":"Z","Menge":4,"Fakturiermenge":null}],"type":"Auftrag","JobID":"B"}])";
  mustStage(jobs);
  const auto rows = erp.rows("Select JobID || Positionsnummer || Artikelnummer, Menge, Auslieferungsmenge, "
                             "Fakturiermenge From ImportPos Order By 1"_sql);
  EXPECT_EQ(rows, (std::vector<std::vector<Value>>{{Value("A1X"), Value(2.0), Value(2.0), Value(2.0)},
                                                   {Value("A2Y"), Value(3.0), Value(1.0), Value(0.0)},
                                                   {Value("B1Z"), Value(4.0), Value(4.0), Value(4.0)}}));
}

TEST_F(Staging, AContractWithoutAnIntervalLeavesItToTheProcessing) {
  mustStage(R"([{"type":"Vertrag","JobID":"A"},{"type":"Vertrag","JobID":"B","Intervall":null},
                      {"type":"Vertrag","JobID":"C","Intervall":0}])");
  EXPECT_EQ(show("A")["Intervall"], Json());
  EXPECT_EQ(show("B")["Intervall"], Json());
  EXPECT_EQ(show("C")["Intervall"], 0);
}

TEST_F(Staging, ContractsTakePositionsOpenEndsAndTheCustomerContractCode) {
  ASSERT_EQ(
      stage(R"({"Positionen":[{"ChildID":"P","Positionsnummer":1,"Vertragsart":"W","Vertragstext":"Text",
                      "Vertragsende":"999999","ChkAbwBetrag":true}],"JobType":20,"JobID":"V","Vertragsbeginn":"00:00:00",
                      "Vertragsdatum":"12:00:00 AM","Vertragsende":"","type":"Vertrag"})")
          .status,
      0);
  mustStage(R"({"type":"Vertrag","JobType":40,"JobID":"K","Positionen":[]})");
  EXPECT_EQ(show("K")["JobType"], 40);
  const Json job = show("V");
  EXPECT_EQ(job["JobType"], 20);
  EXPECT_EQ(job["Vertragsende"], Json());
  EXPECT_EQ(job["Vertragsbeginn"], "00:00:00");
  EXPECT_EQ(job["Vertragsdatum"], "12:00:00 AM");
  const Json position = job["Positionen"].at(0);
  EXPECT_EQ(position["JobType"], 1001);
  EXPECT_EQ(position["JobID"], "V");
  EXPECT_EQ(position["Vertragsart"], "W");
  EXPECT_EQ(position["Vertragstext"], "Text");
  EXPECT_EQ(position["Vertragsende"], "999999");
}

TEST_F(Staging, MissingEmptyAndNullKeysAreMade) {
  const Json made =
      stage(
          R"([{"type":"Kunde"},{"type":"Kunde","JobID":""},{"type":"Auftrag","JobID":null,"Positionen":null}])")
          .json()["jobs"];
  ASSERT_EQ(made.size(), 3U);
  for (const Json& key : made) {
    EXPECT_EQ(key.get<std::string>().size(), 32U);
    EXPECT_EQ(key.get<std::string>().find_first_not_of("0123456789ABCDEF"), std::string::npos);
  }
  EXPECT_NE(made[0], made[1]);
}

TEST_F(Staging, AwkwardTextsComeBackFromEveryTextProperty) {
  const std::vector<std::string> awkward{"O'Brien'; DROP TABLE ImportKopf; --",
                                         "\"a\";\"b\\c\"",
                                         "\xF0\x9F\x92\xA9 \xC3\x84\xC3\x96\xC3\x9C \xE2\x82\xAC",
                                         "Zeile 1\r\nZeile 2\t\x7F\x01",
                                         std::string(10000, 'x') + "'",
                                         " ",
                                         "NULL"};
  const auto roundTrip = [&](const char* type, const auto& table) {
    Json staged = {{"type", type}, {"JobID", std::string("T'\"; ") + type}};
    std::size_t next = 0;
    for (const auto& field : table)
      if (field.kind == FieldKind::Text && field.name != "JobID")
        staged[std::string(field.name)] = awkward[next++ % awkward.size()];
    ASSERT_EQ(stage(staged.dump()).status, 0) << type;
    const Json shown = show(staged["JobID"]);
    for (const auto& field : table) {
      if (field.kind != FieldKind::Text || !field.stored()) continue;
      EXPECT_EQ(shown[std::string(field.column)], staged[std::string(field.name)]) << type << field.name;
    }
  };
  roundTrip("Kunde", kundeFields);
  roundTrip("Vertrag", vertragFields);
  roundTrip("Auftrag", auftragFields);
}

TEST_F(Staging, AKnownJobIsReplacedInItsPlace) {
  mustStage(R"([{"type":"Auftrag","JobID":"A","Bez1":"alt","Liefertermin":"1.1.2026",
                       "Positionen":[{"ChildID":"P1","Artikelnummer":"A","Menge":1},{"ChildID":"P2","Artikelnummer":"A","Menge":1}]},{"type":"Kunde","JobID":"B"}])");
  erp.execute("Update ImportKopf Set ProcessWarning = 1, Info = 'alt', JobType = 32 Where JobID = 'A'"_sql);
  const ProgramResult again =
      run({"stage", "-"}, R"([{"type":"Kunde","JobID":"C"},{"type":"Kunde","JobID":"A","Bez2":"neu"}])");
  EXPECT_EQ(again.output, "added     C  Kunde\nreplaced  A  Kunde\n2 staged, 0 skipped\n");
  EXPECT_EQ(listed(), (std::vector<std::string>{"A", "B", "C"}));
  const Json job = show("A");
  EXPECT_EQ(job["JobType"], 10);
  EXPECT_EQ(job["ProcessWarning"], Json());
  EXPECT_EQ(job["Info"], Json());
  EXPECT_EQ(job["Liefertermin"], Json()); // no property of a customer
  EXPECT_EQ(job["Bez1"], Json());
  EXPECT_EQ(job["Bez2"], "neu");
  EXPECT_EQ(erp.count("Select Count(*) From ImportPos"_sql), 0);
}

TEST_F(Staging, APositionKeyMayStandAgainInItsOwnJob) {
  const std::string_view job =
      R"({"type":"Auftrag","JobID":"A","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":2}]})";
  mustStage(job);
  mustStage(job);
  EXPECT_EQ(show("A")["Positionen"].size(), 1U);
}

TEST_F(Staging, DoneJobsAreSkippedUnlessAskedForAgain) {
  const std::string_view jobs =
      R"([{"type":"Kunde","JobID":"A"},{"type":"Auftrag","JobID":"B","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":1}]},
          {"type":"Vertrag","JobID":"C","JobType":40},{"type":"Kunde","JobID":"D"}])";
  mustStage(jobs);
  setJobType("A", 13);
  setJobType("B", 33);
  setJobType("C", 44);
  setJobType("D", 12);
  EXPECT_EQ(stage(jobs).output, "{\"staged\":1,\"skipped\":3,\"jobs\":[\"D\"]}\n");
  EXPECT_EQ(show("A")["JobType"], 13);
  EXPECT_EQ(show("B")["Positionen"].size(), 1U);
  EXPECT_EQ(show("D")["JobType"], 10);
  EXPECT_EQ(stage(jobs, {"--again"}).json()["staged"], 4);
  EXPECT_EQ(show("A")["JobType"], 10);
  EXPECT_EQ(show("C")["JobType"], 40);
}

TEST_F(Staging, WaitsForAnotherProgramAndSaysSoOnce) {
  const auto other = erp.secondConnection();
  other->beginWork(nullptr);
  ProgramRun program(erp.folder, onDatabase({"stage", "-"}), variables, R"({"type":"Kunde"})");
  std::this_thread::sleep_for(std::chrono::milliseconds(2500));
  other->rollbackWork();
  const ProgramResult result = program.wait();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "The database is in use by another program; waiting up to 60 seconds...\n");
}

TEST_F(Staging, AFailureOfTheDatabaseStagesNothing) {
  erp.execute("Create Trigger Sperre Before Insert On ImportKopf When New.JobID = 'B' Begin Select "
              "Raise(Abort, 'gesperrt'); End"_sql);
  const ProgramResult result = stage(R"([{"type":"Kunde","JobID":"A"},{"type":"Kunde","JobID":"B"}])");
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.json()["error"].get<std::string>().find("gesperrt"), std::string::npos);
  EXPECT_TRUE(listed().empty());
}

TEST_F(Staging, ARowThatATriggerLeavesOutTakesTheWholeFileBack) {
  for (const char* table : {"ImportKopf", "ImportPos"}) {
    erp.execute("Create Trigger leave Before Insert On "_sql, name(table),
                " When new.JobID = 'B' Begin Select Raise(Ignore); End"_sql);
    const ProgramResult result = stage(R"([{"type":"Kunde","JobID":"A"},
                  {"type":"Auftrag","JobID":"B","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":1}]}])");
    EXPECT_EQ(result.status, 4) << table;
    EXPECT_NE(result.output.find("the database has taken "), std::string::npos) << result.output;
    EXPECT_EQ(listed(), std::vector<std::string>());
    erp.execute("Drop Trigger leave"_sql);
  }
}

} // namespace
} // namespace qx
