// What `stage` tells of a content that was handed over before, and of jobs that are done.
#include "program_fixture.h"

#include <csignal>
#include <random>
#include <thread>
#include <tuple>

namespace qx {
namespace {

class ExactlyOnce : public ProgramTest {
protected:
  ExactlyOnce() { variables["TZ"] = "Europe/Berlin"; }

  /// The hash of a content, staged under the key given.
  std::string hashOf(const std::string& key, const std::string& job) {
    mustStage(job);
    return erp.text("Select Kennung From Vorgangsinhalte Where JobID = '"_sql, value(key), "'"_sql);
  }
  void handedOver(std::string_view stamp) {
    erp.execute("Update Vorgangsinhalte Set Zeitpunkt = '"_sql, value(stamp), "'"_sql);
  }
};

/// An order under a key; the rest is the same.
std::string order(const std::string& key, const std::string& number = "4711") {
  return R"({"type":"Auftrag","JobID":")" + key + R"(","Kundennummer":"1","Betreff":"Bestellung )" + number +
         R"(","Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":2}]})" + "\n";
}

TEST_F(ExactlyOnce, AContentUnderAnotherKeyIsToldAndRefusedWhenItIsToBeUnique) {
  mustStage(order("A"));
  handedOver("20261123180400");
  const ProgramResult dry = run({"stage", "-", "--dry-run"}, order("B") + order("C", "1"));
  EXPECT_EQ(dry.output,
            "added     B  Auftrag\nadded     C  Auftrag\n2 would be staged, 0 skipped, 1 repeated\n");
  EXPECT_EQ(dry.messages,
            "Warning: these jobs have the content of others that were handed over; --unique refuses them:\n"
            "  B: same content as A of 23.11.2026 18:04:00\n");
  EXPECT_EQ(stage(order("B") + order("C", "1") + order("D", "1"), {"--dry-run"}).output,
            R"({"staged":3,"skipped":0,"dryRun":true,"jobs":["B","C","D"],"repeatedJobs":[)"
            R"({"JobID":"B","sameContentAs":{"JobID":"A","since":"2026-11-23T18:04:00+01:00"}},)"
            R"({"JobID":"D","sameContentAs":{"JobID":"C","since":null}}]})"
            "\n");
  const ProgramResult refused = stage(order("B") + order("C", "1") + order("D", "1"), {"--unique"});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.json()["faults"], Json::parse(R"([
    {"line":1,"object":1,"property":null,"code":"content.repeated",
     "message":"the content is that of the job 'A' of 23.11.2026 18:04:00",
     "hint":"leave it out, or stage it without --unique when it is meant once more"},
    {"line":3,"object":3,"property":null,"code":"content.repeated",
     "message":"the content is that of the job 'C' in object 2 on line 2",
     "hint":"leave it out, or stage it without --unique when it is meant once more"}])"));
  EXPECT_EQ(listed(), std::vector<std::string>{"A"});
  const std::string rejects = (erp.folder.path() / "rest.json").string();
  EXPECT_EQ(
      stage(order("B") + order("C", "1") + order("D", "1"), {"--unique", "--partial", "--rejects", rejects})
          .json()["jobs"],
      (Json{"C"}));
  EXPECT_EQ(erp.folder.read("rest.json")
                .find(R"({"rejected":[{"line":1,"object":1,"property":null,"code":"content.)"),
            0U);
  // Who stages it all the same is told the first one also the next time.
  mustStage(order("B"));
  EXPECT_EQ(stage(order("E")).json()["repeatedJobs"][0]["sameContentAs"]["JobID"], "A");
  EXPECT_EQ(stage(order("F"), {"--unique", "--again"}).status, 2);
  mustStage(order("A") + order("B"), {"--unique"});
}

TEST_F(ExactlyOnce, TheFirstTenRepetitionsAreNamed) {
  std::string file = order("A");
  for (int i = 0; i < 12; ++i) file += order("B" + std::to_string(i));
  const std::string told = run({"stage", "-"}, file).messages;
  EXPECT_EQ(told.substr(told.find("  B9")), "  B9: same content as A in the same file\n  and 2 more\n");
}

TEST_F(ExactlyOnce, AKeyThatIsStagedAgainIsNoRepetition) {
  mustStage(order("A"));
  handedOver("20261123180400");
  EXPECT_EQ(stage(order("a"), {"--unique"}).output, "{\"staged\":1,\"skipped\":0,\"jobs\":[\"a\"]}\n");
  EXPECT_EQ(erp.text("Select Zeitpunkt From Vorgangsinhalte"_sql), "20261123180400");
  // The later one of the file is the known one.
  EXPECT_EQ(stage(order("B") + order("A"), {"--unique"}).json()["faults"].size(), 1U);
  mustStage(order("A", "2"), {"--unique"});
  EXPECT_GT(erp.text("Select Zeitpunkt From Vorgangsinhalte"_sql), "20261123180400");
  mustStage(order("B"), {"--unique"});
  EXPECT_EQ(stage(order("C", "2"), {"--unique"}).status, 2);
  // Only the handing over counts, until it is forgotten.
  EXPECT_EQ(run({"delete", "A", "B"}).status, 0);
  EXPECT_EQ(stage(order("C", "2"), {"--unique"}).status, 2);
  mustStage(order("A", "2"), {"--unique"});
  handedOver("20261123180400");
  EXPECT_EQ(run({"protocol", "purge", "--before", "23.11.2026"}).output,
            "0 protocols, 0 entries of runs and 0 changes of states deleted, 0 contents forgotten\n");
  EXPECT_EQ(run({"protocol", "purge", "--before", "24.11.2026", "--json"}).output,
            "{\"protocols\":0,\"runs\":0,\"changes\":0,\"contents\":2}\n");
  mustStage(order("C", "2"), {"--unique"});
}

TEST_F(ExactlyOnce, TheContentIsWhatIsGivenHoweverItIsWritten) {
  const std::string first = hashOf("A", order("A"));
  // Databases hold hashes for years.
  EXPECT_EQ(first, "92CA6104D1F3797C375174ADC69F01D3");
  const std::string head = R"({"type":"Auftrag","JobID":"K","Kundennummer":"1","Betreff":"Bestellung 4711",)";
  for (const std::string& same :
       {order("K"),
        std::string(
            R"({ "Positionen" : [ {"Menge":1.0,"ChildID":"C","Artikelnummer":"\u0041","Positionsnummer":1},
          {"Artikelnummer":"B","Menge":2e0,"Positionsnummer":2,"Fakturiermenge":2,"Mengeneinheit":null}],"Betreff":"Bestellung 4711",
          "Kundennummer":"\u0031","JobID":"K","Status":10,"Bez1":null,"type":"Auftrag"})"),
        head + R"("JobType":30,"Fehlertext":"x","Positionen":[{"Artikelnummer":"A","Menge":1,"JobType":50},
          {"Artikelnummer":"B","Menge":2}]})"})
    EXPECT_EQ(hashOf("K", same), first) << same;
  for (
      const char* other :
      {R"("Positionen":[{"Artikelnummer":"B","Menge":2},{"Artikelnummer":"A","Menge":1}]})",
       R"("Bez1":"","Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":2}]})",
       R"("Eingangsdatum":"24.11.2026","Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":2}]})",
       R"("Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":-2}]})",
       R"("Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":2,"Lieferbereit":false}]})",
       R"("Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":2,"Fakturiermenge":0}]})",
       R"("Positionen":[{"Artikelnummer":"A","Menge":1}]})",
       R"("Versandart":"1","Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"B","Menge":2}]})"})
    EXPECT_NE(hashOf("K", head + other), first) << other;
  // Neither the options of the installation nor the day belong to it.
  erp.setOption("AuftragLieferbereit", "1");
  ASSERT_EQ(runPlain({"--db", erp.file, "--date", "2026-11-30", "stage", "-"}, order("L")).status, 0);
  EXPECT_EQ(erp.text("Select Kennung From Vorgangsinhalte Where JobID = 'L'"_sql), first);

  const std::string contract =
      R"({"type":"Vertrag","JobID":"V","Menge":1,"Vertragsbeginn":"2026-12-01","JobType":)";
  const std::string single = hashOf("V", contract + "20}");
  EXPECT_NE(hashOf("V", contract + "40}"), single);
  EXPECT_EQ(hashOf("V", R"({"type":"Vertrag","JobID":"V","Menge":1,"Vertragsbeginn":"01.12.2026"})"), single);
  EXPECT_NE(hashOf("V", R"({"type":"Vertrag","JobID":"V","Menge":1,"Vertragsbeginn":"01.12.2026",
    "Positionen":[{"Vertragsart":"W"}]})"),
            single);
}

TEST_F(ExactlyOnce, ADoneJobIsSkippedWithItsNumberAndTheTimeAndWhetherAChangeIsLost) {
  mustStage(
      order("A") + order("B", "1") +
      R"({"type":"Vertrag","JobID":"C","JobType":40}{"type":"Vertrag","JobID":"D","Vertragsnummer":"V1"})");
  setJobType("A", 33);
  setJobType("B", 33);
  setJobType("C", 44);
  setJobType("D", 23);
  erp.execute("Update ImportKopf Set Bemerkung = 'eilig Auftrag: 200001' Where JobID = 'A'"_sql);
  for (const auto& [folge, type, stamp] : {std::tuple{1, 33, "20261123180400"},
                                           {2, 30, "20261123180500"},
                                           {3, 33, "20261123190000"},
                                           {4, 32, "20261123200000"}})
    erp.execute("Insert Into Zustandswechsel (Folge, JobID, JobType, Zeitpunkt) Values ("_sql, number(folge),
                ", 'a', "_sql, number(type), ", '"_sql, value(stamp), "')"_sql);
  const std::string again =
      order("A") + order("B", "2") +
      R"({"type":"Vertrag","JobID":"c","JobType":40}{"type":"Vertrag","JobID":"D","Vertragsnummer":"V1"})" +
      order("N", "2");
  EXPECT_EQ(run({"stage", "-", "--dry-run"}, again).output,
            "skipped   A  Auftrag 200001  (done since 23.11.2026 19:00:00; --again stages it anew)\n"
            "skipped   B  Auftrag  (done, with another content; --again stages it anew)\n"
            "skipped   c  Kundenvertrag  (deleted; --again stages it anew)\n"
            "skipped   D  Vertrag V1  (done; --again stages it anew)\n"
            "added     N  Auftrag\n"
            "1 would be staged, 4 skipped\n")
      << "what is skipped is not repeated";
  EXPECT_EQ(stage(again).json()["skippedJobs"], Json::parse(R"([
    {"JobID":"A","state":"done","kind":"auftrag","number":"200001","doneSince":"2026-11-23T19:00:00+01:00","changed":false},
    {"JobID":"B","state":"done","kind":"auftrag","number":null,"doneSince":null,"changed":true},
    {"JobID":"c","state":"deleted","kind":"kundenvertrag","number":null,"doneSince":null,"changed":false},
    {"JobID":"D","state":"done","kind":"vertrag","number":"V1","doneSince":null,"changed":false}])"));
  EXPECT_FALSE(stage(order("A", "2")).json().contains("repeatedJobs"));
  handedOver("20261123180400");
  EXPECT_EQ(stage(again, {"--again", "--unique"}).json()["faults"][0]["message"],
            "the content is that of the job 'N' of 23.11.2026 18:04:00");
}

TEST_F(ExactlyOnce, ADatabaseOfAHostTakesFilesAndRefusesToBeAskedForUniqueOnes) {
  erp.execute("Drop Table Vorgangsinhalte"_sql);
  erp.execute("Drop Table Zustandswechsel"_sql);
  mustStage(order("A") + order("B"));
  setJobType("A", 33);
  EXPECT_EQ(stage(order("A")).json()["skippedJobs"], Json::parse(R"([
    {"JobID":"A","state":"done","kind":"auftrag","number":null,"doneSince":null,"changed":null}])"));
  EXPECT_EQ(run({"protocol", "purge", "--before", "24.11.2026"}).status, 0);
  const ProgramResult refused = run({"stage", "-", "--unique"}, order("C"));
  EXPECT_EQ(refused.status, 4);
  EXPECT_EQ(
      refused.messages,
      "qximportjob: the database does not remember what was handed over: the table Vorgangsinhalte or "
      "Zaehlerstaende is missing\nNothing was staged. Have both made as 'init' makes them in a new database, "
      "or stage without --unique.\n");
}

TEST_F(ExactlyOnce, AContentIsKnownWhenItsJobIsStoredAndOnlyThen) {
  std::string file;
  for (int i = 0; i < 12000; ++i)
    file += R"({"type":"Kunde","Kundennummer":")" + std::to_string(i) + "\",\"Bez1\":\"N\"}\n";
  std::mt19937 random(7);
  for (int i = 0; i < 6; ++i) {
    ProgramRun program(erp.folder, onDatabase({"stage", "-"}), variables, file);
    std::this_thread::sleep_for(std::chrono::milliseconds(std::uniform_int_distribution(100, 700)(random)));
    program.signal(SIGKILL);
    program.wait();
    ASSERT_EQ(erp.count("Select Count(*) From ImportKopf"_sql),
              erp.count("Select Count(*) From Vorgangsinhalte"_sql));
  }
  erp.execute("Create Trigger Sperre Before Insert On Vorgangsinhalte When New.JobID = 'B' Begin Select "
              "Raise(Abort, 'gesperrt'); End"_sql);
  EXPECT_EQ(stage(order("A") + order("B", "1")).status, 4);
  EXPECT_EQ(erp.count("Select Count(*) From ImportKopf Where JobID = 'A'"_sql), 0);
}

} // namespace
} // namespace qx
