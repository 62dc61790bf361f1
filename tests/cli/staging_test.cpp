// What `stage` stores, replaces and skips.
#include "program_fixture.h"

#include "adapters/sqlite/sqlite_database.h"
#include "model/entry_records.h"
#include "model/import_job.h"
#include "store/entry_objects.h"

#include <filesystem>
#include <thread>
#include <utility>

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
  EXPECT_EQ(
      stage(R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"},{"type":"Vertrag","JobID":"B"}])")
          .output,
      "{\"staged\":2,\"skipped\":0,\"jobs\":[\"A\",\"B\"]}\n");
  EXPECT_EQ(
      stage(
          R"({"JobID":"C","type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}]})")
          .json()["staged"],
      1);
  EXPECT_EQ(stage("{\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"D\"}\r\n\r\n{"
                  "\"type\":\"Kunde\",\"Kundennummer\":\"1\",\"Bez1\":\"N\",\"JobID\":\"E\"}\n")
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
  kunde.Bez1 = "Firma";
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
  auftrag.Kundennummer = "1";
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
      R"(","Kundennummer":"10001","Bez1":"Firma","Preistyp":1,"KundeSeit":"1.2.26"})" +
      R"({"type":"Vertrag","JobID":")" + vertrag.JobID +
      R"(","Menge":2.5,"Intervall":6,"Vertragsende":"999999","IndFild4":"vier"})" +
      R"({"type":"Auftrag","Kundennummer":"1","JobID":")" + auftrag.JobID +
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
          R"({"type":"Auftrag","Kundennummer":"1","JobID":"A","Positionen":[{"Positionsnummer":10,"Artikelnummer":"A","Menge":1},
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
  const std::string jobs = R"([{"type":"Auftrag","Kundennummer":"1","JobID":"A","Positionen":[
      {"Artikelnummer":"X","Menge":2},{"Artikelnummer":"Y","Menge":3,"Auslieferungsmenge":1,"Fakturiermenge":0}]},
      {"Positionen":[{"Artikelnummer":"Z","Menge":4,"Fakturiermenge":null}],"type":"Auftrag","Kundennummer":"1","JobID":"B"}])";
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

TEST_F(Staging, TakesIsoDatesDecomposedNamesAndAByteOrderMark) {
  mustStage(
      "\xEF\xBB\xBF{\"type\":\"Auftrag\",\"JobID\":\"A\",\"Kundennummer\":\"1\",\"Wa\u0308hrung\":\"CHF\","
      "\"Eingangsdatum\":\"2026-11-24\",\"Liefertermin\":\"2026-12-01T23:30:00.5+01:00\",\"Positionen\":["
      "{\"Artikelnummer\":\"X\",\"Menge\":1,\"Liefertermin\":\"2028-02-29T00:00Z\"}]}");
  const Json job = show("A");
  EXPECT_EQ(job["Eingangsdatum"], "24.11.2026");
  EXPECT_EQ(job["Liefertermin"], "01.12.2026");
  EXPECT_EQ(job["Währung"], "CHF");
  EXPECT_EQ(job["Positionen"][0]["Liefertermin"], "29.02.2028");
  for (const char* wrong : {"2026-02-29", "2026-1-2", "2026-11-24T", "2026-11-24T25:00", "2026-11-24Z"})
    EXPECT_EQ(
        stage(std::string(R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","KundeSeit":")") + wrong + "\"}")
            .json()["faults"][0]["code"],
        "value.date")
        << wrong;
}

/// Sound and faulty objects with faults of every stage: while reading, between objects, against stored jobs.
constexpr std::string_view mixedFile = R"([
{"type":"Kunde","JobID":"K1","Kundennummer":"1","Bez1":"Gut"},
{"type":"Auftrag","JobID":"A1","Kundennummer":10001,"Positionen":[{"ChildID":"P1","Artikelnummer":"X","Menge":"2.5"},
 {"Artikelnummer":4711}]},
{"type":"Kunde","JobID":"k1","Kundennummer":"2","Bez1":"Doppelt"},
{"type":"Auftrag","JobID":"A2","Kundennummer":"1","Positionen":[{"ChildID":"P1","Artikelnummer":"X","Menge":1}]},
{"type":"Auftrag","JobID":"A3","Kundennummer":"1","Positionen":[{"ChildID":"p1","Artikelnummer":"X","Menge":1}]},
{ },
{"type":"Auftrag","JobID":"A4","Kundennummer":"1","Positionen":[{"ChildID":"FREMD","Artikelnummer":"X","Menge":1}]},
{"type":"Kunde","JobID":"K2","Kundennumer":"3","Bez1":{"a":[1,{"b":2}]}}
])";

TEST_F(Staging, TellsAllFaultsOfAFileAtOnceAndStagesNothing) {
  const ProgramResult result = stage(mixedFile);
  EXPECT_EQ(result.status, 2);
  const Json error = result.json();
  EXPECT_EQ(error["faults"], Json::parse(R"([
    {"line":3,"object":2,"property":"Kundennummer","code":"value.kind","message":"a text is expected, not a number",
     "hint":"write it in quotes: \"10001\""},
    {"line":3,"object":2,"property":"Positionen[1].Menge","code":"value.kind","message":"a number is expected, not a text",
     "hint":"write it without quotes: 2.5"},
    {"line":4,"object":2,"property":"Positionen[2].Artikelnummer","code":"value.kind",
     "message":"a text is expected, not a number","hint":"write it in quotes: \"4711\""},
    {"line":4,"object":2,"property":"Positionen[2].Menge","code":"property.missing","message":"a position of an order needs it",
     "hint":null},
    {"line":8,"object":6,"property":"type","code":"type.missing",
     "message":"the property is missing; the types are Kunde, Vertrag and Auftrag","hint":null},
    {"line":10,"object":8,"property":"Kundennumer","code":"property.unknown","message":"the type has no such property",
     "hint":"did you mean \"Kundennummer\"?"},
    {"line":10,"object":8,"property":"Bez1","code":"value.kind","message":"an object is not expected here","hint":null},
    {"line":10,"object":8,"property":"Kundennummer","code":"property.missing","message":"a customer needs it","hint":null}])"));
  EXPECT_EQ(error["line"], 3);
  EXPECT_EQ(error["field"], "Kundennummer");
  EXPECT_TRUE(listed().empty());
  const ProgramResult text = run({"stage", "-"}, mixedFile);
  EXPECT_NE(text.messages.find("  line 10: object 8: property \"Kundennummer\": a customer needs it\n"
                               "8 faults in 3 objects.\nNothing was staged."),
            std::string::npos)
      << text.messages;
}

TEST_F(Staging, StagesTheSoundObjectsAndWritesTheOthersWithTheirReasons) {
  mustStage(
      R"({"type":"Auftrag","JobID":"ALT","Kundennummer":"1","Positionen":[{"ChildID":"fremd","Artikelnummer":"X","Menge":1}]})");
  const std::string rejects = (erp.folder.path() / "übrige.json").string();
  const Json dry = stage(mixedFile, {"--partial", "--dry-run"}).json();
  EXPECT_EQ(dry["dryRun"], true);
  EXPECT_EQ(dry["jobs"], (Json{"K1", "A2"}));
  EXPECT_EQ(listed(), std::vector<std::string>{"ALT"});
  const ProgramResult result = stage(mixedFile, {"--partial", "--rejects", rejects});
  EXPECT_EQ(result.status, 1);
  const Json staged = result.json();
  EXPECT_EQ(staged["jobs"], (Json{"K1", "A2"}));
  EXPECT_EQ(staged["rejected"], 6);
  EXPECT_EQ(listed(), (std::vector<std::string>{"ALT", "K1", "A2"}));
  EXPECT_EQ(erp.count("Select Count(*) From ImportPos"_sql), 2);
  const std::string written = erp.folder.read("übrige.json");
  EXPECT_EQ(
      written.find(R"({"rejected":[{"line":3,"object":2,"property":"Kundennummer","code":"value.kind",)"),
      0U);
  for (
      const char* expected :
      {R"("code":"key.repeated","message":"the JobID 'k1' stands already in object 1 on line 2","hint":"every job and position needs a key of its own"}],
 "type":"Kunde","JobID":"k1","Kundennummer":"2","Bez1":"Doppelt"}
)",
       R"("the ChildID 'p1' stands already in object 4 on line 6")",
       R"("code":"key.taken","message":"the ChildID 'FREMD' belongs to the job 'ALT'")",
       R"("code":"type.missing","message":"the property is missing; the types are Kunde, Vertrag and Auftrag","hint":null}] }
)"})
    EXPECT_NE(written.find(expected), std::string::npos) << expected << "\n" << written;
  EXPECT_EQ(stage(mixedFile, {"--partial", "--rejects", rejects}).status, 2) << "the file exists";

  // The file is corrected where it stands and staged like any other.
  std::string mended = written.substr(0, written.find("{\"rejected\"", 1));
  for (const auto& [wrong, right] : {std::pair{R"("Kundennummer":10001)", R"("Kundennummer":"10001")"},
                                     {R"("Menge":"2.5")", R"("Menge":2.5)"},
                                     {R"({"Artikelnummer":4711})", R"({"Artikelnummer":"4711","Menge":1})"},
                                     {R"("ChildID":"P1")", R"("ChildID":"P1b")"}}) {
    const auto at = mended.rfind(wrong);
    ASSERT_NE(at, std::string::npos) << wrong;
    mended.replace(at, std::string_view(wrong).size(), right);
  }
  mustStage(mended);
  EXPECT_EQ(show("A1")["Positionen"].size(), 2U);
}

TEST_F(Staging, NothingOfAPartialFileIsStagedWhenTheOthersCannotBeWritten) {
  EXPECT_EQ(
      stage(mixedFile, {"--partial", "--rejects", (erp.folder.path() / "fehlt" / "r.json").string()}).status,
      4);
  EXPECT_TRUE(listed().empty());
  EXPECT_EQ(stage(mixedFile, {"--rejects", "r.json"}).status, 2) << "without --partial";
  // The others are of no use when the sound ones are not staged.
  erp.execute(
      "Create Trigger Sperre Before Insert On ImportKopf Begin Select Raise(Abort, 'gesperrt'); End"_sql);
  const auto rejects = erp.folder.path() / "r.json";
  EXPECT_EQ(stage(mixedFile, {"--partial", "--rejects", rejects.string()}).status, 4);
  EXPECT_FALSE(std::filesystem::exists(rejects));
}

TEST_F(Staging, AHundredFaultsAreToldAndTheRestOfTheFileIsNotRead) {
  std::string file;
  for (int i = 0; i < 150; ++i) file += "{\"type\":\"Lieferant\"}\n";
  EXPECT_EQ(stage(file + "kein JSON").json()["faults"].size(), 100U);
  const Json partial = stage(file, {"--partial"}).json();
  EXPECT_EQ(partial["rejected"], 150);
  EXPECT_EQ(partial["faults"].size(), 100U);
}

TEST_F(Staging, MissingEmptyAndNullKeysAreMade) {
  const Json made =
      stage(
          R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":""},{"type":"Auftrag","Kundennummer":"1","JobID":null,"Positionen":[{"Artikelnummer":"A","Menge":1}]}])")
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
    if (type == std::string_view("Auftrag"))
      staged["Positionen"] = Json::parse(R"([{"Artikelnummer":"A","Menge":1}])");
    ASSERT_EQ(stage(staged.dump()).status, 0) << type;
    const Json shown = show(staged["JobID"]);
    for (const auto& field : table) {
      if (field.kind != FieldKind::Text || !field.stored()) continue;
      EXPECT_EQ(shown[std::string(field.name)], staged[std::string(field.name)]) << type << field.name;
    }
  };
  roundTrip("Kunde", kundeFields);
  roundTrip("Vertrag", vertragFields);
  roundTrip("Auftrag", auftragFields);
}

TEST_F(Staging, AKnownJobIsReplacedInItsPlace) {
  mustStage(R"([{"type":"Auftrag","Kundennummer":"1","JobID":"A","Bez1":"alt","Liefertermin":"1.1.2026",
                       "Positionen":[{"ChildID":"P1","Artikelnummer":"A","Menge":1},{"ChildID":"P2","Artikelnummer":"A","Menge":1}]},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"B"}])");
  erp.execute("Update ImportKopf Set ProcessWarning = 1, Info = 'alt', JobType = 32 Where JobID = 'A'"_sql);
  const ProgramResult again = run(
      {"stage", "-"},
      R"([{"type":"Kunde","Kundennummer":"1","Bez1":"C","JobID":"C"},{"type":"Kunde","Kundennummer":"1","JobID":"A","Bez2":"neu"}])");
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
      R"({"type":"Auftrag","Kundennummer":"1","JobID":"A","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":2}]})";
  mustStage(job);
  mustStage(job);
  EXPECT_EQ(show("A")["Positionen"].size(), 1U);
}

TEST_F(Staging, DoneJobsAreSkippedUnlessAskedForAgain) {
  const std::string_view jobs =
      R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"},{"type":"Auftrag","Kundennummer":"1","JobID":"B","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":1}]},
          {"type":"Vertrag","JobID":"C","JobType":40},{"type":"Kunde","Kundennummer":"1","Bez1":"D","JobID":"D"}])";
  mustStage(jobs);
  setJobType("A", 13);
  setJobType("B", 33);
  setJobType("C", 44);
  setJobType("D", 12);
  const Json result = stage(jobs).json();
  EXPECT_EQ(result["staged"], 1);
  EXPECT_EQ(result["skipped"], 3);
  EXPECT_EQ(result["jobs"], Json{"D"});
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
  ProgramRun program(erp.folder, onDatabase({"stage", "-"}), variables,
                     R"({"type":"Kunde","Kundennummer":"1","Bez1":"N"})");
  std::this_thread::sleep_for(std::chrono::milliseconds(2500));
  other->rollbackWork();
  const ProgramResult result = program.wait();
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.messages, "The database is in use by another program; waiting up to 60 seconds...\n");
}

TEST_F(Staging, AFailureOfTheDatabaseStagesNothing) {
  erp.execute("Create Trigger Sperre Before Insert On ImportKopf When New.JobID = 'B' Begin Select "
              "Raise(Abort, 'gesperrt'); End"_sql);
  const ProgramResult result = stage(
      R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"B"}])");
  EXPECT_EQ(result.status, 4);
  EXPECT_NE(result.json()["error"].get<std::string>().find("gesperrt"), std::string::npos);
  EXPECT_TRUE(listed().empty());
}

TEST_F(Staging, ARowThatATriggerLeavesOutTakesTheWholeFileBack) {
  for (const char* table : {"ImportKopf", "ImportPos"}) {
    erp.execute("Create Trigger leave Before Insert On "_sql, name(table),
                " When new.JobID = 'B' Begin Select Raise(Ignore); End"_sql);
    const ProgramResult result = stage(R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"},
                  {"type":"Auftrag","Kundennummer":"1","JobID":"B","Positionen":[{"ChildID":"P","Artikelnummer":"A","Menge":1}]}])");
    EXPECT_EQ(result.status, 4) << table;
    EXPECT_NE(result.output.find("the database has taken "), std::string::npos) << result.output;
    EXPECT_EQ(listed(), std::vector<std::string>());
    erp.execute("Drop Trigger leave"_sql);
  }
}

} // namespace
} // namespace qx
