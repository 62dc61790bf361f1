// The commands on staged jobs: list, show, check, release, delete, purge.
#include "program_fixture.h"

#include "model/text.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace qx {
namespace {

using Keys = std::vector<std::string>;

class Jobs : public ProgramTest {};

TEST_F(Jobs, AreListedOldestFirstWhateverTheFormOfTheDate) {
  mustStage(R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"Dez","Eingangsdatum":"02.12.2026"},
                      {"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"Jan","Eingangsdatum":"15.1.26"},
                      {"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"Nov","Eingangsdatum":"15.11.2026"},
                      {"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"leer","Eingangsdatum":""},
                      {"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"Jan2","Eingangsdatum":"15.01.2026"}])");
  EXPECT_EQ(listed(), (Keys{"leer", "Jan", "Jan2", "Nov", "Dez"}));
  EXPECT_EQ(listed({"--limit", "2"}), (Keys{"leer", "Jan"}));
  EXPECT_EQ(listed({"--limit", "0"}), Keys());
}

TEST_F(Jobs, AreFilteredByKindAndState) {
  ASSERT_EQ(
      stage(
          R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K0"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K1"},{"type":"Vertrag","JobID":"V3"},
                      {"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"A2"},{"type":"Vertrag","JobID":"KV0","JobType":40},
                      {"type":"Vertrag","JobID":"KV4","JobType":40}])")
          .status,
      0);
  setJobType("K1", 11);
  setJobType("V3", 23);
  setJobType("A2", 32);
  setJobType("KV4", 44);
  EXPECT_EQ(listed(), (Keys{"K0", "K1", "V3", "A2", "KV0", "KV4"}));
  EXPECT_EQ(listed({"--state", "waiting"}), (Keys{"K0", "KV0"}));
  EXPECT_EQ(listed({"--state", "warning", "--state", "error"}), (Keys{"K1", "A2"}));
  EXPECT_EQ(listed({"--state", "done"}), Keys{"V3"});
  EXPECT_EQ(listed({"--kind", "kundenvertrag"}), (Keys{"KV0", "KV4"}));
  EXPECT_EQ(listed({"--kind", "kunde", "--kind", "auftrag", "--state", "error"}), Keys{"A2"});
  EXPECT_EQ(run({"list", "--state", "deleted"}).status, 2);
  EXPECT_EQ(run({"list", "--kind", "lieferant", "--json"}).json()["line"], Json());
}

TEST_F(Jobs, AreShownWithTheColumnsOfTheirTables) {
  mustStage(R"({"type":"Auftrag","JobID":"A","Kundennummer":"1","Positionen":[
                      {"ChildID":"P","Positionsnummer":3,"Artikelnummer":"A","Menge":1.5,"Preis":10,"Lieferbereit":true}]})");
  const Json listedJob = run({"list", "--json"}).json()["jobs"].at(0);
  std::vector<std::string> names;
  for (const auto& member : listedJob.items()) names.push_back(member.key());
  EXPECT_EQ(names.at(0), "JobID");
  EXPECT_EQ(names.at(4), "Eingangsdatum");
  EXPECT_EQ(static_cast<std::int64_t>(names.size()),
            erp.count("Select Count(*) From pragma_table_info('ImportKopf')"_sql) + 3);
  EXPECT_EQ(std::vector<std::string>(names.end() - 3, names.end()),
            (std::vector<std::string>{"state", "kind", "number"}));
  std::set<std::string> lower;
  for (const std::string& name : names) EXPECT_TRUE(lower.insert(lowerCase(name)).second) << name;
  Json shown = show("A");
  const Json position = shown["Positionen"].at(0);
  EXPECT_EQ(position["Menge"], 1.5);
  EXPECT_EQ(position["Preis"], 10);
  EXPECT_EQ(position["Lieferbereit"], true);
  EXPECT_EQ(position["Fakturierbereit"], false);
  EXPECT_EQ(position["Vertragsart"], Json());
  EXPECT_FALSE(position.contains("intPos"));
  for (const char* added : {"Positionen", "checkStatus", "findings", "hints", "details"}) {
    EXPECT_TRUE(shown.contains(added)) << added;
    shown.erase(added);
  }
  EXPECT_EQ(shown, listedJob);
}

TEST_F(Jobs, AreShownToPeopleWithPositionsAndFindings) {
  ASSERT_EQ(
      stage(
          R"({"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"1","Eingangsdatum":"24.11.2026","Kundengruppe":"NEU"})")
          .status,
      0);
  EXPECT_EQ(run({"list"}).output,
            "Stand     Vorgang        Eingang     Kunde       JobID                             Name"
            "                      Betreff, Fehlertext\n"
            "wartet    Kunde          24.11.2026  1           K                                 N\n");
  const ProgramResult sheet = run({"show", "K"});
  EXPECT_EQ(sheet.status, 0);
  EXPECT_NE(sheet.output.find("Kunde, wartet\n"), std::string::npos);
  EXPECT_NE(sheet.output.find("Kundengruppe            NEU\n"), std::string::npos);
  EXPECT_NE(sheet.output.find("  Kundengruppe: 'NEU' ist nicht angelegt.\n"), std::string::npos);
}

TEST_F(Jobs, ColumnsCountWideCharactersTwiceAndCombiningMarksNotAtAll) {
  mustStage(
      R"([{"type":"Kunde","Kundennummer":"1","JobID":"W","Bez1":"\u6771\u4EAC\u5546\u4F1A","Betreff":"a"},
                      {"type":"Kunde","Kundennummer":"1","JobID":"Z","Bez1":"Mu\u0308ller","Betreff":"b"},
                      {"type":"Kunde","Kundennummer":"1","JobID":"L","Bez1":"\u6771\u4EAC\u6771\u4EAC\u6771\u4EAC\u6771\u4EAC\u6771\u4EAC\u6771xyz","Betreff":"c"}])");
  const std::string output = run({"list"}).output;
  EXPECT_NE(output.find("東京商会" + std::string(16 + 2, ' ') + "a\n"), std::string::npos) << output;
  EXPECT_NE(output.find("Mu\u0308ller" + std::string(18 + 2, ' ') + "b\n"), std::string::npos) << output;
  EXPECT_NE(output.find("東京東京東京東京東京東xyz  c\n"), std::string::npos) << output;
}

TEST_F(Jobs, AreCheckedWithoutBeingChanged) {
  mustStage(
      R"([{"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"1","Kundengruppe":"NEU","Vertreter1":"9"},
                      {"type":"Kunde","Kundennummer":"-","Bez1":"N","JobID":"K2"},{"type":"Kunde","Bez1":"N","JobID":"K3","Kundennummer":"3"}])");
  takeNumber("K2");
  const auto before = erp.rows("Select * From ImportKopf"_sql);
  const ProgramResult result = run({"check", "--json"});
  EXPECT_EQ(result.status, 1);
  const Json jobs = result.json()["jobs"];
  ASSERT_EQ(jobs.size(), 3U);
  // Ordered by customer number.
  EXPECT_EQ(jobs[0], Json::parse(R"({"JobID":"K2","Vorgang":"Kunden","Nummer":"","checkStatus":30,
      "findings":["Die Kundennummer fehlt."],"hints":[],"details":[{"code":"customer.number.missing",
      "severity":30,"field":"Kundennummer","position":null,"value":"","stored":"",
      "text":"Die Kundennummer fehlt."}]})"));
  EXPECT_EQ(jobs[1]["checkStatus"], 20);
  EXPECT_EQ(jobs[1]["findings"],
            (Json{"Kundengruppe: 'NEU' ist nicht angelegt.", "Vertreter1: '9' ist nicht angelegt."}));
  EXPECT_EQ(jobs[2], Json::parse(R"({"JobID":"K3","Vorgang":"Kunden","Nummer":"3","checkStatus":10,
                                     "findings":[],"hints":[],"details":[]})"));
  EXPECT_EQ(run({"check", "K3"}).status, 0);
  EXPECT_EQ(run({"check", "K3", "K1"}).output,
            "Warnung  Kunden 1  K1\n  Kundengruppe: 'NEU' ist nicht angelegt.\n"
            "  Vertreter1: '9' ist nicht angelegt.\n2 checked, 1 with findings\n");
  EXPECT_EQ(erp.rows("Select * From ImportKopf"_sql), before);
}

TEST_F(Jobs, AreCalledByTheTransactionOfTheirProtocolLine) {
  mustStage(R"([{"type":"Kunde","Bez1":"N","JobID":"1","Kundennummer":"1"},{"type":"Vertrag","JobID":"2"},
                {"type":"Auftrag","Kundennummer":"1","JobID":"3","Positionen":[{"Artikelnummer":"A","Menge":1}]}])");
  const Json checked = run({"check", "--json"}).json();
  std::string called;
  for (const auto& job : checked["jobs"])
    called += job["JobID"].get<std::string>() + job["Vorgang"].get<std::string>() + " ";
  EXPECT_EQ(called, "1Kunden 2Vertrag 3Auftrag ");
}

TEST_F(Jobs, WhoseCheckFailsHaveThatAsAFindingAndTheRestIsChecked) {
  erp.setOption("KreditlimitAuftrag", "1");
  erp.execute("Insert Into Kundenstamm (Kundennummer, Bez1, Währung, Kreditlimit1) Values "
              "('70001', 'Kontor', 'XTS', 100)"_sql);
  mustStage(
      R"([{"type":"Auftrag","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"A1","Kundennummer":"70001"},
                      {"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"3"},
                      {"type":"Auftrag","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"A2","Kundennummer":"9"}])");
  const ProgramResult result = run({"check", "--json"});
  EXPECT_EQ(result.status, 1);
  const Json jobs = result.json()["jobs"];
  ASSERT_EQ(jobs.size(), 3U);
  EXPECT_EQ(jobs[1]["checkStatus"], 30);
  EXPECT_EQ(jobs[1]["findings"],
            Json{"Der Vorgang konnte nicht geprüft werden: Die Währung 'XTS' hat keinen Wechselkurs."});
  EXPECT_EQ(jobs[1]["details"][0]["value"], "Die Währung 'XTS' hat keinen Wechselkurs.");
  EXPECT_EQ(jobs[2]["JobID"], "A2");
  EXPECT_EQ(show("A1")["checkStatus"], 30);
}

TEST_F(Jobs, HaveHintsThatChangeNoStatus) {
  mustStage(R"({"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"1","Land":"FR"})");
  const std::string hint = "Neukunde im Land 'FR' mit dem Steuermerkmal des Inlands (MwSt_KZ 'IN').";
  const ProgramResult checked = run({"check"});
  EXPECT_EQ(checked.status, 0);
  EXPECT_EQ(checked.output,
            "Hinweis  Kunden 1  K1\n  Hinweis: " + hint + "\n1 checked, 0 with findings, 1 with hints\n");
  const Json job = run({"check", "--json"}).json()["jobs"][0];
  EXPECT_EQ(job["checkStatus"], 10);
  EXPECT_EQ(job["hints"], Json{hint});
  EXPECT_TRUE(run({"show", "K1"}).output.ends_with("Prüfung: keine Befunde\n  Hinweis: " + hint + "\n"));
  EXPECT_EQ(show("K1")["hints"], Json{hint});
  const ProgramResult processed = run({"process", "--json"});
  EXPECT_EQ(processed.status, 0);
  EXPECT_EQ(processed.json()["jobs"][0]["hints"], Json{hint});
  EXPECT_EQ(run({"protocol", "--json"}).json()["lines"][0]["Info"],
            "Neukunde angelegt.\r\nBez1: N\r\nBez2: \r\nBez3: \r\nHinweis: " + hint);
  EXPECT_EQ(run({"protocol"}).output,
            "Erledigt  Kunden    1           24.11.2026  Neukunde angelegt.\n  Hinweis: " + hint + "\n");
}

TEST_F(Jobs, HaveHintsOfOneLineEach) {
  erp.execute("Insert Into Kundenstamm (Kundennummer, Telefon) Values ('1', 'a\r\nb')"_sql);
  mustStage(R"({"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"1","Telefon":""})");
  ASSERT_EQ(run({"process"}).status, 0);
  EXPECT_EQ(run({"protocol"}).output, "Erledigt  Kunden    1           24.11.2026  Kunde geändert.\n"
                                      "  Hinweis: Im Kundenstamm geleert: Telefon 'a b'\n");
}

TEST_F(Jobs, LeaveOfACustomerWhatTheirObjectDoesNotName) {
  ASSERT_EQ(
      stage(R"({"type":"Kunde","JobID":"K1","Kundennummer":"Kd1","Suchbegriff":"HAFEN","Bez1":"Hafenbau",
      "Strasse":"Kai 1","Land":"DE","PLZ":"20457","Ort":"Hamburg","Telefon":"040 1","Telefax":"040 2",
      "EMail":"a@example.org","Konto":"4711","Preisliste":"A","Preistyp":1,"UstIdentNr":"DE1",
      "Hauptkonto":"Kd1","RG_KdNr":"Kd1","KundeSeit":"01.02.2003"})")
          .status,
      0);
  ASSERT_EQ(run({"process"}).status, 0);
  const auto row = [&] { return erp.rows("Select * From Kundenstamm"_sql); };
  auto expected = row();
  ASSERT_EQ(expected.size(), 1U);
  const auto put = [&](std::string_view column, const Value& content) {
    const auto master = erp.open("Select * From Kundenstamm"_sql);
    for (std::size_t i = 0; i < master->fieldCount(); ++i)
      if (master->fieldName(i) == column) expected[0].at(i) = content;
  };
  put("Strasse", "Kai 2");
  put("Telefax", Value::null());
  mustStage(R"({"type":"Kunde","JobID":"K2","Kundennummer":"KD1","Strasse":"Kai 2","Telefax":"",
      "Bez1":null,"Suchbegriff":"HAFEN","PLZ":""})");
  EXPECT_EQ(run({"check", "K2"}).output,
            "Hinweis  Kunden KD1  K2\n  Hinweis: Im Kundenstamm geleert: Telefax '040 2'\n"
            "1 checked, 0 with findings, 1 with hints\n");
  ASSERT_EQ(run({"process"}).status, 0);
  EXPECT_EQ(row(), expected);
}

TEST_F(Jobs, KeepAFindingWholeWhenTheStagedValueHasLineBreaks) {
  ASSERT_EQ(
      stage(
          R"({"type":"Kunde","Bez1":"N","JobID":"K1","Kundennummer":"7","Kundengruppe":"A\r\nB' ist gut.\r\nC"})")
          .status,
      0);
  const Json one = {"Kundengruppe: 'A\r\nB' ist gut.\r\nC' ist nicht angelegt."};
  EXPECT_EQ(run({"check", "--json"}).json()["jobs"][0]["findings"], one);
  EXPECT_EQ(show("K1")["findings"], one);
  const std::string line = "  Kundengruppe: 'A B' ist gut. C' ist nicht angelegt.\n";
  EXPECT_EQ(run({"check"}).output, "Warnung  Kunden 7  K1\n" + line + "1 checked, 1 with findings\n");
  EXPECT_TRUE(run({"show", "K1"}).output.ends_with("Prüfung: \n" + line));
}

TEST_F(Jobs, NeverSendControlCharactersToATerminal) {
  const std::string job =
      R"({"type":"Kunde","JobID":"E\u001b[2J\u009b\u007f1","Kundennummer":"7\u0007","Kundengruppe":"\u001b]0;x","Bez1":"ä"})";
  const ProgramResult staged = run({"stage", "-"}, job);
  EXPECT_EQ(staged.output, "added     E [2J  1  Kunde\n1 staged, 0 skipped\n");
  EXPECT_EQ(run({"check"}).output,
            "Warnung  Kunden 7   E [2J  1\n  Kundengruppe: ' ]0;x' ist nicht angelegt.\n"
            "1 checked, 1 with findings\n");
  const std::string key = "E\x1B[2J\u009B\x7F"
                          "1";
  EXPECT_EQ(run({"release", key}).messages,
            "qximportjob: the job 'E [2J  1' cannot be released, its state is wartet\n"
            "Nothing was changed. Only jobs with warnings or errors are released.\n");
  setJobType(key, 11);
  EXPECT_EQ(run({"release", "--all-warnings"}).output,
            "released  E [2J  1\n1 released; the next run takes them again\n");
  for (const char* command : {"list", "process", "protocol"}) {
    const std::string text = run({command}).output;
    EXPECT_EQ(text.find_first_of("\x1B\x07\x7F"), std::string::npos) << command << text;
    EXPECT_EQ(text.find("\u009B"), std::string::npos) << command << text;
  }
  const ProgramResult shown = run({"show", key, "--json"});
  EXPECT_EQ(shown.output.find_first_of("\x1B\x07\x7F"), std::string::npos);
  EXPECT_EQ(shown.output.find("\u009B"), std::string::npos);
  EXPECT_EQ(shown.json()["JobID"], key) << "spelled out, nothing is lost";
}

TEST_F(Jobs, OfUnknownKeysChangeNothing) {
  mustStage(R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"K"})");
  setJobType("K", 12);
  for (const char* verb : {"show", "check", "release", "delete"}) {
    std::vector<std::string> arguments{verb, "--json"};
    if (std::string_view(verb) != "show") arguments.emplace_back("K");
    arguments.emplace_back("fehlt");
    const ProgramResult result = run(arguments);
    EXPECT_EQ(result.status, 2) << verb;
    EXPECT_EQ(result.json()["error"], "there is no job 'fehlt'") << verb;
  }
  EXPECT_EQ(show("K")["ProcessWarning"], Json());
}

TEST_F(Jobs, AreReleasedOnlyWhenTheyHaveWarningsOrErrors) {
  mustStage(
      R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"W"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"E"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"N"},
                      {"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"D"}])");
  setJobType("W", 11);
  setJobType("E", 12);
  setJobType("D", 33);
  for (const char* wrong : {"N", "D"}) {
    const ProgramResult result = run({"release", "E", wrong});
    EXPECT_EQ(result.status, 2) << wrong;
    EXPECT_EQ(show("E")["ProcessWarning"], Json()) << wrong;
  }
  EXPECT_EQ(run({"release", "E", "e", "--json"}).output, "{\"released\":1,\"jobs\":[\"E\"]}\n");
  EXPECT_EQ(show("E")["ProcessWarning"], 1);
  EXPECT_EQ(run({"release", "--all-warnings", "--json"}).output, "{\"released\":1,\"jobs\":[\"W\"]}\n");
  EXPECT_EQ(run({"release", "--all-warnings", "--json"}).output, "{\"released\":0,\"jobs\":[]}\n");
  EXPECT_EQ(run({"release"}).status, 2);
  EXPECT_EQ(run({"release", "W", "--all-warnings"}).status, 2);
}

TEST_F(Jobs, AreDeletedWithTheirPositionsAndOnDemandWithTheirContracts) {
  ASSERT_EQ(
      stage(
          R"([{"type":"Auftrag","Kundennummer":"1","JobID":"A","Positionen":[{"Artikelnummer":"A","Menge":1},{"Artikelnummer":"A","Menge":1}]},{"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"1"},
                      {"type":"Vertrag","JobID":"V1","JobType":40,"Kundennummer":"1"},
                      {"type":"Vertrag","JobID":"V2","JobType":40,"Kundennummer":"1"}])")
          .status,
      0);
  setJobType("V2", 43); // done contracts stay
  EXPECT_EQ(run({"delete", "A", "--json"}).output, "{\"deleted\":1}\n");
  EXPECT_EQ(erp.count("Select Count(*) From ImportPos"_sql), 0);
  EXPECT_EQ(run({"delete", "K", "--with-contracts", "--json"}).output, "{\"deleted\":2}\n");
  EXPECT_EQ(listed(), Keys{"V2"});
  EXPECT_EQ(run({"delete"}).status, 2);
}

TEST_F(Jobs, ThatAreDoneArePurgedAllOrUpToADay) {
  mustStage(R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"alt","Eingangsdatum":"23.11.2026"},
                      {"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"neu","Eingangsdatum":"24.11.2026"},
                      {"type":"Vertrag","JobID":"unlesbar"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"offen","Eingangsdatum":"1.1.2020"}])");
  setJobType("alt", 13);
  setJobType("neu", 33);
  setJobType("unlesbar", 23);
  erp.execute("Update ImportKopf Set Eingangsdatum = 'bald' Where JobID = 'unlesbar'"_sql);
  EXPECT_EQ(run({"purge", "--before", "2026-24-11"}).status, 2);
  EXPECT_EQ(run({"purge", "--before", "2026-11-24", "--json"}).output,
            "{\"deleted\":1,\"undated\":1,\"undatedJobs\":[\"unlesbar\"],\"refused\":0}\n");
  const ProgramResult undated = run({"purge", "--before", "1.1.2020"});
  EXPECT_EQ(undated.status, 1);
  EXPECT_EQ(undated.output, "0 deleted\n1 kept: no readable date of receipt\n  unlesbar\n");
  EXPECT_EQ(listed(), (Keys{"unlesbar", "offen", "neu"}));
  EXPECT_EQ(run({"purge", "--json"}).output, "{\"deleted\":2,\"undated\":0,\"refused\":0}\n");
  EXPECT_EQ(listed(), Keys{"offen"});
}

TEST_F(Jobs, ThatWouldBeDeletedAreListedOnly) {
  mustStage(R"([{"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"1"},
                {"type":"Vertrag","JobID":"V1","JobType":40,"Kundennummer":"1"},
                {"type":"Vertrag","JobID":"V2","JobType":40,"Kundennummer":"2"}])");
  const ProgramResult dry = run({"delete", "K", "--with-contracts", "--dry-run"});
  EXPECT_EQ(dry.status, 0);
  EXPECT_NE(dry.output.find("  V1\n2 would be deleted; nothing was changed\n"), std::string::npos)
      << dry.output;
  setJobType("V2", 43);
  EXPECT_EQ(run({"purge", "--dry-run", "--json"}).output, "{\"jobs\":[\"V2\"],\"wouldDelete\":1}\n");
  EXPECT_EQ(listed(), (Keys{"K", "V1", "V2"}));
}

TEST_F(Jobs, ThatWereKeptComeBackWithEveryColumnAndInTheirState) {
  mustStage(R"([{"type":"Auftrag","JobID":"A","Kundennummer":"7","Betreff":"\u0007 Ü","Positionen":[
                  {"ChildID":"p1","Artikelnummer":"X","Menge":1.25},{"ChildID":"p2","Artikelnummer":"Y","Menge":2}]},
                {"type":"Kunde","Kundennummer":"-","Bez1":"N","JobID":"K"},{"type":"Vertrag","JobID":"V","JobType":40,"Kundennummer":"7"}])");
  takeNumber("K");
  ASSERT_EQ(run({"process"}).status, 1);
  setJobType("A", 33);
  erp.execute("Update ImportKopf Set ProcessWarning = 1, Fehlertext = 'Grund' Where JobID = 'K'"_sql);
  const auto headers = [&] { return erp.rows("Select * From ImportKopf Order By JobID"_sql); };
  const auto positions = [&] { return erp.rows("Select * From ImportPos Order By ChildID"_sql); };
  const auto headersBefore = headers();
  const auto positionsBefore = positions();
  ASSERT_EQ(positionsBefore.size(), 2U);
  const std::string done = (erp.folder.path() / "erledigt.json").string();
  const std::string others = (erp.folder.path() / "übrige.json").string();
  EXPECT_EQ(run({"purge", "--keep", done}).status, 0);
  EXPECT_EQ(run({"delete", "K", "V", "--keep", done}).status, 2) << "the file exists";
  EXPECT_EQ(listed().size(), 2U);
  EXPECT_EQ(run({"delete", "K", "V", "--keep", others}).status, 0);
  EXPECT_TRUE(listed().empty());
  for (const std::string& file : {done, others}) EXPECT_EQ(run({"stage", file}).status, 0);
  EXPECT_EQ(headers(), headersBefore);
  EXPECT_EQ(positions(), positionsBefore);
  for (const char* wrong : {R"({"type":"ImportKopf","JobID":"X","JobType":50})",
                            R"({"type":"ImportKopf","JobID":"","JobType":10})",
                            R"({"type":"ImportKopf","JobID":"X","JobType":10,"Unbekannt":1})",
                            R"({"type":"ImportKopf","JobID":"X","JobType":10,"Positionen":[{"JobID":"X"}]})"})
    EXPECT_EQ(stage(wrong).status, 2) << wrong;
}

TEST_F(Jobs, AnOrderThatWasWrittenAndIsStagedAgainIsNamed) {
  const std::string order =
      R"([{"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"A"},{"type":"Auftrag","Kundennummer":"1","Positionen":[{"Artikelnummer":"A","Menge":1}],"JobID":"B"}])";
  mustStage(order);
  setJobType("A", 33);
  erp.folder.write("jobs.json", order);
  const ProgramResult again = run({"stage", (erp.folder.path() / "jobs.json").string(), "--again"});
  EXPECT_EQ(again.status, 0);
  EXPECT_EQ(again.messages,
            "Warning: the next run writes a second order for each of these jobs, which were done:\n  A\n");
  setJobType("A", 33);
  EXPECT_EQ(stage(order, {"--again"}).json()["writtenBefore"], Json{"A"});
  EXPECT_FALSE(stage(order, {"--again"}).json().contains("writtenBefore"));
}

TEST_F(Jobs, ALineHasTheFirstOfSeveralReasons) {
  mustStage(
      R"({"type":"Kunde","Bez1":"N","JobID":"K","Kundennummer":"1","Kundengruppe":"NEU","Vertreter1":"9","Betreff":"B"})");
  erp.setOption("AutomatischVerarbeiten", "1");
  const std::string reason = "  Kundengruppe: 'NEU' ist nicht angelegt. (+1)\n";
  for (const char* command : {"process", "list", "protocol"}) {
    const std::string output = run({command}).output;
    EXPECT_NE(output.find(reason), std::string::npos) << output;
    EXPECT_EQ(output.find("Beim Verarbeiten wurden"), std::string::npos) << output;
  }
  EXPECT_NE(show("K")["Fehlertext"].get<std::string>().find("Beim Verarbeiten wurden"), std::string::npos);
}

TEST_F(Jobs, ThatTheDatabaseKeepsAreNamedByDeleteAndTheOthersGo) {
  ASSERT_EQ(
      stage(
          R"([{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"B"},{"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"C"}])")
          .status,
      0);
  erp.execute("Create Trigger bleibt Before Delete On ImportKopf When old.JobID = 'B' Begin "
              "Select raise(rollback, 'nein'); End"_sql);
  const ProgramResult result = run({"delete", "A", "B", "C"});
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.output, "2 deleted\n");
  EXPECT_EQ(result.messages, "The database refused 1 deletions:\n  B: nein\n");
  EXPECT_EQ(listed(), Keys{"B"});
}

TEST_F(Jobs, ThatTheDatabaseKeepsEndAPurgeWithFour) {
  mustStage(R"({"type":"Kunde","Kundennummer":"1","Bez1":"N","JobID":"A"})");
  setJobType("A", 13);
  erp.execute("Create Trigger bleibt Before Delete On ImportKopf Begin Select raise(abort, 'nein'); End"_sql);
  const ProgramResult result = run({"purge"});
  EXPECT_EQ(result.status, 4);
  EXPECT_EQ(result.output, "0 deleted\n");
  EXPECT_EQ(result.messages, "The database refused 1 deletions:\n  A: nein\n");
  EXPECT_EQ(run({"purge", "--json"}).output, "{\"deleted\":0,\"undated\":0,\"refused\":1,\"left\":["
                                             "{\"JobID\":\"A\",\"reason\":\"nein\"}]}\n");
  EXPECT_EQ(listed(), Keys{"A"});
}

/// Article K1: 12.50 for one PC to everybody, 11 to buyers of 10.
class PricedJobs : public Jobs {
protected:
  PricedJobs() {
    erp.execute("Insert Into Artikelstamm (Artikelnummer, Bezeichnung, Mengeneinheit, Erfassungsschema) "
                "Values ('K1', 'Kabel', 'ST', '')"_sql);
    erp.execute(
        "Insert Into Verkaufspreise (Artikelnummer, GueltigAb, Mengeneinheit, Menge, Preis, Preiseinheit) "
        "Values ('K1', '20200101000000', 'ST', 0, 12.5, 1), ('K1', '20200101000000', 'ST', 10, 11, 1)"_sql);
  }

  /// The texts of the hints at a job.
  Json hints(const std::string& jobId) { return run({"check", jobId, "--json"}).json()["jobs"][0]["hints"]; }
};

TEST_F(PricedJobs, TellThePriceThatReplacesTheSendersAndWarnOfItWhenAsked) {
  mustStage(R"([{"type":"Kunde","JobID":"K","Kundennummer":"7","Bez1":"Firma"}])");
  ASSERT_EQ(run({"process"}).status, 0);
  mustStage(R"({"type":"Auftrag","JobID":"A","Kundennummer":"7","Positionen":[
      {"Artikelnummer":"K1","Menge":1,"Preis":19.9},{"Artikelnummer":"K1","Menge":2,"Preis":12.5},
      {"Artikelnummer":"K1","Menge":10,"Preis":110,"Preiseinheit":10},{"Artikelnummer":"K1","Menge":10,"Preis":12},
      {"Artikelnummer":"K1","Menge":3}]})");
  const Json told{"Preis 19,90 -> 12,50 je ST, Grundpreis, Position 1",
                  "Preis 12,00 -> 11,00 je ST, Grundpreis, Position 4"};
  EXPECT_EQ(hints("A"), told);
  EXPECT_EQ(run({"check", "A"}).status, 0);
  // 12 to 11 are 8.3 percent.
  for (const auto& [percent, positions] :
       {std::pair{"9", Json{"1"}}, std::pair{"8,3", Json{"1", "4"}}, std::pair{"40", Json::array()}}) {
    erp.setOption("PreisAbweichungWarnen", percent);
    const Json job = run({"check", "A", "--json"}).json()["jobs"][0];
    Json found = Json::array();
    for (const Json& detail : job["details"])
      if (detail["code"] == "order.price.differs") found.push_back(detail["position"]["Positionsnummer"]);
    EXPECT_EQ(found, positions) << percent;
    // The others are told all the same.
    EXPECT_EQ(job["hints"].size(), 2 - positions.size()) << percent;
  }
}

TEST_F(PricedJobs, TellItInTheRunAndItsProtocolToo) {
  const std::string demo = (erp.folder.path() / "demo.db").string();
  ASSERT_EQ(runPlain({"--db", demo, "init", "--demo"}).status, 0);
  ASSERT_EQ(runPlain({"--db", demo, "stage", "-"}, R"({"type":"Auftrag","JobID":"A","Kundennummer":"70002",
      "Positionen":[{"Artikelnummer":"SKS-001","Menge":1,"Preis":19.9},{"Artikelnummer":"SKS-001","Menge":1}]})")
                .status,
            0);
  const Json document = runPlain({"--db", demo, "process", "--json", "--select", "orders"}).json();
  const auto written =
      std::ranges::find(document["jobs"], Json("A"), [](const Json& job) { return job["JobID"]; });
  ASSERT_NE(written, document["jobs"].end());
  EXPECT_EQ((*written)["Status"], "Erledigt");
  EXPECT_EQ((*written)["hints"], Json{"Preis 19,90 -> 0,068 je ST, Preisliste, Position 1"});
  EXPECT_EQ((*written)["details"][0]["code"], "order.price.replaced");
  EXPECT_EQ((*written)["state"], "done");
  EXPECT_EQ((*written)["kind"], "auftrag");
  const Json number = (*written)["number"];
  EXPECT_EQ(number.get<std::string>().substr(0, 2), "20");
  // 0.068 + 0.068 and 19 percent, by lines of whole cents.
  const Json shown = runPlain({"--db", demo, "show", "A", "--json"}).json();
  EXPECT_EQ(shown["number"], number);
  EXPECT_EQ(shown["order"]["Auftragsnummer"].dump(), number.get<std::string>());
  EXPECT_EQ(shown["order"]["Gesamtnetto"], 0.14);
  EXPECT_EQ(shown["order"]["GesamtMwSt"], 0.03);
  EXPECT_EQ(shown["order"]["Gesamtbrutto"], 0.17);
  EXPECT_EQ(shown["order"]["lines"][0]["Preis"], 0.068);
  EXPECT_EQ(shown["order"]["lines"].size(), 2U);
  EXPECT_EQ((*written)["order"], shown["order"]);
  EXPECT_EQ(runPlain({"--db", demo, "list", "--json", "--jobid", "A"}).json()["jobs"][0]["number"], number);
  const Json waiting = runPlain({"--db", demo, "list", "--json", "--kind", "customers", "--state", "waiting"})
                           .json()["jobs"][0];
  EXPECT_EQ(waiting["state"], "waiting");
  EXPECT_EQ(waiting["kind"], "kunde");
  EXPECT_EQ(waiting["number"], Json()) << "nothing is written yet";
  EXPECT_NE(runPlain({"--db", demo, "protocol"}).output.find("Hinweis: Preis 19,90 -> 0,068 je ST"),
            std::string::npos);
}

TEST_F(PricedJobs, OfACustomerWhoWaitsBesideThemAreNoErrors) {
  mustStage(
      R"([{"type":"Auftrag","JobID":"A","Kundennummer":"8","Positionen":[{"Artikelnummer":"K1","Menge":1}]},
                {"type":"Kunde","JobID":"K","Kundennummer":"8","Bez1":"Firma"}])");
  const Json waiting = run({"check", "A", "--json"}).json()["jobs"][0];
  EXPECT_EQ(waiting["checkStatus"], 10);
  EXPECT_EQ(waiting["hints"], Json{"Kunde wird in diesem Lauf angelegt"});
  EXPECT_EQ(waiting["details"][0]["value"], "K");
  EXPECT_EQ(run({"check"}).status, 0);
  // A customer whom the run parks creates nobody.
  erp.execute("Update ImportKopf Set Versandart = 'DROHNE' Where JobID = 'K'"_sql);
  EXPECT_EQ(run({"check", "A"}).status, 0);
  erp.setOption("AutomatischVerarbeiten", "1");
  EXPECT_EQ(run({"check", "A", "--json"}).json()["jobs"][0]["findings"], Json{"Kunde nicht angelegt"});
  erp.execute("Update ImportKopf Set JobType = 13, Versandart = Null Where JobID = 'K'"_sql);
  EXPECT_EQ(run({"check", "A"}).status, 1);
}

} // namespace
} // namespace qx
